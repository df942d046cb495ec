// What a page of the player may reach: itself, the emulator's package and one movie.
#pragma once

#include <QString>
#include <QUrl>
#include <optional>

namespace zelk {

inline constexpr char playerScheme[] = "zelk-player";

struct ServedFile {
    QString path; ///< a file or a resource
    QByteArray mimeType;
};

class PlayerFiles {
public:
    /// A folder with the package's files, and the movie.
    PlayerFiles(QString package, QString movie) : _package(std::move(package)), _movie(std::move(movie)) {}

    void setMovie(QString movie) { _movie = std::move(movie); }
    const QString& movie() const { return _movie; }

    static QUrl pageUrl();
    /// Nothing for whatever is not the player's own.
    std::optional<ServedFile> find(const QUrl& url) const;

private:
    QString _package, _movie;
};

/// What a page may ask for at all: the player's scheme, and data that the page has made itself.
bool isAllowed(const QUrl& url);

/// The installed package, looked for from the folder of the program; empty when it is not there.
QString findPackage(const QString& programFolder);

} // namespace zelk
