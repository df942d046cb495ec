#include "PlayerFiles.h"

#include <QDir>

namespace zelk {

namespace {

QString scheme() { return QString::fromLatin1(playerScheme); }
QString host() { return QStringLiteral("player"); }

struct Kind {
    QLatin1String suffix;
    const char* mimeType;
};

// All that the package has for a page. A browser compiles a module only when it comes under its own type.
constexpr Kind kinds[] = {{QLatin1String("js"), "text/javascript"}, {QLatin1String("wasm"), "application/wasm"}};

} // namespace

QUrl PlayerFiles::pageUrl() { return {QStringLiteral("%1://%2/player.html").arg(scheme(), host())}; }

std::optional<ServedFile> PlayerFiles::find(const QUrl& url) const {
    if (url.scheme() != scheme() || url.host() != host())
        return std::nullopt;
    const QString name = url.path(QUrl::FullyDecoded).mid(1);
    if (name == QStringLiteral("player.html"))
        return ServedFile{QStringLiteral(":/player/player.html"), "text/html"};
    if (name == QStringLiteral("player.js"))
        return ServedFile{QStringLiteral(":/player/player.js"), "text/javascript"};
    if (name == QStringLiteral("movie.swf"))
        return ServedFile{_movie, "application/x-shockwave-flash"};
    const QString folder = QStringLiteral("ruffle/");
    const QString file = name.mid(folder.size());
    // The package is one flat folder: a name with a slash would leave it.
    if (!name.startsWith(folder) || file.contains(u'/') || file.contains(u'\\') || file.startsWith(u'.'))
        return std::nullopt;
    for (const Kind& kind : kinds) {
        const QFileInfo info(_package, file);
        if (info.suffix() == kind.suffix && info.isFile())
            return ServedFile{info.filePath(), kind.mimeType};
    }
    return std::nullopt;
}

bool isAllowed(const QUrl& url) {
    return url.scheme() == scheme() || url.scheme() == QStringLiteral("data") || url.scheme() == QStringLiteral("blob");
}

QString findPackage(const QString& programFolder) {
    const QDir folder(QDir(programFolder).filePath(QStringLiteral(ZELK_RUFFLE_FOLDER)));
    return folder.exists(QStringLiteral("ruffle.js")) ? folder.canonicalPath() : QString();
}

} // namespace zelk
