// Hears that something happened to files, or to the folders that they are in.
#pragma once

#include <QFileSystemWatcher>
#include <QStringList>
#include <QTimer>

namespace zelk {

/// Reports with a delay, once for many events: a program that writes a file does so in many steps.
class FileWatch : public QObject {
    Q_OBJECT
public:
    explicit FileWatch(QObject* parent = nullptr);

    /// Full paths, in place of those before.
    void setFiles(const QStringList& files);

public Q_SLOTS:
    /// As if something had happened.
    void lookSoon();

Q_SIGNALS:
    /// To one of the files, or to none of them after all.
    void happened();

private:
    QFileSystemWatcher _watcher;
    QTimer _delay;
    QStringList _files;
};

} // namespace zelk
