#include "FileWatch.h"

#include <QFileInfo>

namespace zelk {

using namespace std::chrono_literals;

FileWatch::FileWatch(QObject* parent) : QObject(parent) {
    _delay.setSingleShot(true);
    _delay.setInterval(400ms);
    connect(&_watcher, &QFileSystemWatcher::fileChanged, this, &FileWatch::lookSoon);
    connect(&_watcher, &QFileSystemWatcher::directoryChanged, this, &FileWatch::lookSoon);
    connect(&_delay, &QTimer::timeout, this, [this] {
        setFiles(_files); // A file that was replaced is no longer watched.
        Q_EMIT happened();
    });
}

void FileWatch::setFiles(const QStringList& files) {
    _files = files;
    QStringList wanted;
    for (const QString& file : files) {
        for (const QString& path : {file, QFileInfo(file).absolutePath()}) {
            if (!wanted.contains(path) && QFileInfo::exists(path))
                wanted.append(path);
        }
    }
    const QStringList watched = _watcher.files() + _watcher.directories();
    for (const QString& path : watched) {
        if (!wanted.removeOne(path))
            _watcher.removePath(path);
    }
    if (!wanted.isEmpty())
        _watcher.addPaths(wanted);
}

// Not from anew each time, so that a folder in which much happens does not put it off forever.
void FileWatch::lookSoon() {
    if (!_delay.isActive())
        _delay.start();
}

} // namespace zelk
