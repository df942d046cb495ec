// Small pictures of movie files, made beside the GUI thread.
#pragma once

#include <QImage>
#include <QObject>
#include <QStringList>

#include <thread>

namespace zelk {

/// [any thread] The first frame in which something is to be seen, on the movie's background and cut to its stage. Null
/// for what is no movie, is very big or shows nothing. `size` is in device pixels.
QImage moviePicture(const QString& fileName, const QSize& size, const std::stop_token& stop);

/// One file after the other. What was asked for before is dropped.
class MoviePictures : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;

    void want(const QStringList& fileNames, const QSize& size);
    void drop() { _thread.request_stop(); }

Q_SIGNALS:
    /// Only for files that have a picture.
    void drawn(const QString& fileName, const QImage& picture);

private:
    // A thread that was stopped finishes the file it is at: the next one waits for it.
    std::jthread _thread;
};

} // namespace zelk
