#include "PlayerScheme.h"

#include <QBuffer>
#include <QFile>
#include <QWebEngineUrlRequestInfo>
#include <QWebEngineUrlRequestJob>
#include <QWebEngineUrlScheme>

#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

namespace zelk {

namespace {

// On the platforms without a display the engine would crash with the flag.
bool hasDisplay(const QString& platform) {
    if (platform.isEmpty())
        return qEnvironmentVariableIsSet("DISPLAY") || qEnvironmentVariableIsSet("WAYLAND_DISPLAY");
    return platform.startsWith(QStringLiteral("xcb")) || platform.startsWith(QStringLiteral("wayland"));
}

} // namespace

void registerPlayerScheme() {
    QWebEngineUrlScheme scheme(playerScheme);
    scheme.setSyntax(QWebEngineUrlScheme::Syntax::Host);
    scheme.setFlags(QWebEngineUrlScheme::SecureScheme | QWebEngineUrlScheme::CorsEnabled);
    QWebEngineUrlScheme::registerScheme(scheme);
}

void setEngineFlags() {
    const char variable[] = "QTWEBENGINE_CHROMIUM_FLAGS";
    if (!qEnvironmentVariableIsSet(variable) && hasDisplay(qEnvironmentVariable("QT_QPA_PLATFORM")))
        qputenv(variable, "--ignore-gpu-blocklist");
}

QString engineRefusal() {
#ifdef Q_OS_UNIX
    const bool hasSandbox =
        !qEnvironmentVariableIsSet("QTWEBENGINE_DISABLE_SANDBOX") &&
        !qEnvironmentVariable("QTWEBENGINE_CHROMIUM_FLAGS").contains(QStringLiteral("--no-sandbox"));
    if (hasSandbox && geteuid() == 0)
        return QObject::tr("The player does not run as root, for whom its engine has no sandbox. Start Zelk as another "
                           "user, or set QTWEBENGINE_DISABLE_SANDBOX=1 to play without one.");
#endif
    return {};
}

void PlayerSchemeHandler::setMovie(const QString& fileName, const QByteArray& bytes) {
    _files.setMovie(fileName);
    _movie = bytes;
}

void PlayerSchemeHandler::requestStarted(QWebEngineUrlRequestJob* job) {
    const std::optional<ServedFile> served = _files.find(job->requestUrl());
    if (!served || job->requestMethod() != "GET") {
        job->fail(QWebEngineUrlRequestJob::UrlNotFound);
        return;
    }
    // Lives as long as the job reads from it.
    const bool isInMemory = served->path == _files.movie() && !_movie.isEmpty();
    QIODevice* file = isInMemory ? static_cast<QIODevice*>(new QBuffer(&_movie, job)) : new QFile(served->path, job);
    if (!file->open(QIODevice::ReadOnly)) {
        job->fail(QWebEngineUrlRequestJob::UrlNotFound);
        return;
    }
    job->reply(served->mimeType, file);
}

void PlayerRequestGuard::interceptRequest(QWebEngineUrlRequestInfo& info) {
    if (isAllowed(info.requestUrl()))
        return;
    info.block(true);
    Q_EMIT refused(info.requestUrl());
}

} // namespace zelk
