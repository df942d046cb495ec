// zelk-player: plays one movie in a window. A process of its own, so that the browser engine costs the editor nothing
// and a movie that breaks it takes no unsaved document along.
#include <QApplication>
#include <QCommandLineParser>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QLoggingCategory>
#include <QSettings>
#include <QSocketNotifier>
#include <cstdio>
#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

#include "CommandTable.h"
#include "PlayerScheme.h"
#include "PlayerStatus.h"
#include "PlayerWindow.h"
#include "Theme.h"

namespace {

struct Arguments {
    QString movie, title;
    QSize size;
    bool follows = false; // what comes on standard input
};

Arguments parse(const QApplication& application) {
    const auto tr = [](const char* text) { return QCoreApplication::translate("main", text); };
    QCommandLineParser parser;
    parser.setApplicationDescription(tr("Plays a Flash movie (SWF)."));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption width(QStringLiteral("width"), tr("Width in pixels instead of the movie's."), tr("N"));
    const QCommandLineOption height(QStringLiteral("height"), tr("Height, likewise."), tr("N"));
    // Not "title", which Qt takes for itself on X11.
    const QCommandLineOption title(QStringLiteral("movie-name"), tr("What the window calls the movie."), tr("TEXT"));
    const QCommandLineOption follow(QStringLiteral("follow"), tr("Play what lines of standard input name, too."));
    parser.addOptions({width, height, title, follow});
    parser.addPositionalArgument(QStringLiteral("FILE"), tr("The movie"));
    parser.process(application);
    if (parser.positionalArguments().size() != 1)
        parser.showHelp(zelk::PlayerStatus::wrongUse);
    return {parser.positionalArguments().first(),
            parser.value(title),
            {parser.value(width).toInt(), parser.value(height).toInt()},
            parser.isSet(follow)};
}

// The theme of the editor.
void applySavedTheme() {
    using namespace zelk;
    const QSettings settings(QStringLiteral("Orvane"), QStringLiteral("Zelk"));
    const int id = settings.value(QStringLiteral("Window/theme")).toInt();
    if (id == CommandId::themeLight || id == CommandId::themeDark)
        applyTheme(static_cast<Theme>(id - CommandId::themeSystem));
}

// The editor reads the reason from standard output; the engine writes to the other one.
int fail(int status, const QString& reason) {
    std::puts(reason.toUtf8().constData());
    std::fflush(stdout);
    return status;
}

// Plays what the editor names on standard input.
void follow(zelk::PlayerWindow& window) {
#ifdef Q_OS_UNIX
    auto* input = new QSocketNotifier(STDIN_FILENO, QSocketNotifier::Read, &window);
    QObject::connect(input, &QSocketNotifier::activated, &window, [input, &window, text = QByteArray()]() mutable {
        char bytes[4096];
        const ssize_t size = read(STDIN_FILENO, bytes, sizeof bytes);
        if (size <= 0)
            return input->setEnabled(false);
        text.append(bytes, size);
        for (qsizetype end; (end = text.indexOf('\n')) >= 0; text.remove(0, end + 1)) {
            const QJsonArray line = QJsonDocument::fromJson(text.left(end)).array();
            const QString movie = line.at(0).toString();
            window.setMovieName(line.at(1).toString());
            window.play(movie);
            std::printf("%s%s\n", zelk::PlayerStatus::plays, qUtf8Printable(movie));
            std::fflush(stdout);
        }
    });
#else
    Q_UNUSED(window);
#endif
}

} // namespace

int main(int argc, char** argv) {
    zelk::setEngineFlags();
    zelk::registerPlayerScheme();
    QLoggingCategory::setFilterRules(QStringLiteral("qt.webenginecontext=false")); // the engine lists its parameters
    const QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("zelk-player"));
    QApplication::setApplicationVersion(QStringLiteral(ZELK_VERSION));
    QGuiApplication::setDesktopFileName(QStringLiteral("zelk"));
    const Arguments arguments = parse(application);
    const QString package = zelk::findPackage(QCoreApplication::applicationDirPath());
    if (package.isEmpty())
        return fail(zelk::PlayerStatus::noPlayer, QObject::tr("The files of Ruffle are not installed."));

    if (const QString refusal = zelk::engineRefusal(); !refusal.isEmpty())
        return fail(zelk::PlayerStatus::cannotPlay, refusal);

    applySavedTheme();
    zelk::PlayerWindow window(QFileInfo(arguments.movie).absoluteFilePath(), package, arguments.size);
    window.setMovieName(arguments.title);
    if (arguments.follows)
        follow(window);
    QObject::connect(&window, &zelk::PlayerWindow::failed, &window, [&window](const QString& reason) {
        window.hide();
        QApplication::exit(fail(zelk::PlayerStatus::cannotPlay, reason));
    });
    window.show();
    return QApplication::exec();
}
