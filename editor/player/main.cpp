// zelk-player: plays one movie in a window. A process of its own, so that the browser engine costs the editor nothing
// and a movie that breaks it takes no unsaved document along.
#include <QApplication>
#include <QCommandLineParser>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QSettings>
#include <cstdio>

#include "CommandTable.h"
#include "PlayerScheme.h"
#include "PlayerStatus.h"
#include "PlayerWindow.h"
#include "Theme.h"

namespace {

struct Arguments {
    QString movie;
    QSize size;
};

Arguments parse(const QApplication& application) {
    const auto tr = [](const char* text) { return QCoreApplication::translate("main", text); };
    QCommandLineParser parser;
    parser.setApplicationDescription(tr("Plays a Flash movie (SWF)."));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption width(QStringLiteral("width"), tr("Width in pixels instead of the movie's."), tr("N"));
    const QCommandLineOption height(QStringLiteral("height"), tr("Height, likewise."), tr("N"));
    parser.addOptions({width, height});
    parser.addPositionalArgument(QStringLiteral("FILE"), tr("The movie"));
    parser.process(application);
    if (parser.positionalArguments().size() != 1)
        parser.showHelp(zelk::PlayerStatus::wrongUse);
    return {parser.positionalArguments().first(), {parser.value(width).toInt(), parser.value(height).toInt()}};
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
    QObject::connect(&window, &zelk::PlayerWindow::failed, &window, [&window](const QString& reason) {
        window.hide();
        QApplication::exit(fail(zelk::PlayerStatus::cannotPlay, reason));
    });
    window.show();
    return QApplication::exec();
}
