// The scheme under which a page gets its files, and the guard that refuses every other.
#pragma once

#include <QWebEngineUrlRequestInterceptor>
#include <QWebEngineUrlSchemeHandler>

#include "PlayerFiles.h"

namespace zelk {

/// Both are to be called before the application object is made.
void registerPlayerScheme();
/// Lets the engine draw by OpenGL where there is a display, whatever it thinks of the driver: without, a movie loses
/// its filters and bitmaps. Leaves what the user has set for QTWEBENGINE_CHROMIUM_FLAGS.
void setEngineFlags();
/// Why the engine would end the program instead of starting; empty when nothing is known against it.
QString engineRefusal();

class PlayerSchemeHandler : public QWebEngineUrlSchemeHandler {
    Q_OBJECT
public:
    PlayerSchemeHandler(PlayerFiles files, QObject* parent)
        : QWebEngineUrlSchemeHandler(parent), _files(std::move(files)) {}

    /// The bytes that stand for the movie's file, unless they are empty.
    void setMovie(const QString& fileName, const QByteArray& bytes);

    void requestStarted(QWebEngineUrlRequestJob* job) override;

private:
    PlayerFiles _files;
    QByteArray _movie;
};

class PlayerRequestGuard : public QWebEngineUrlRequestInterceptor {
    Q_OBJECT
public:
    using QWebEngineUrlRequestInterceptor::QWebEngineUrlRequestInterceptor;

    void interceptRequest(QWebEngineUrlRequestInfo& info) override;

Q_SIGNALS:
    void refused(const QUrl& url);
};

} // namespace zelk
