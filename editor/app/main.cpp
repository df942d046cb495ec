#include <QApplication>
#include <QCommandLineParser>
#include <QDir>

#include "FileTypes.h"
#include "LongPaths.h"
#include "MainWindow.h"
#include "SingleInstance.h"
#include "StateFolder.h"
#include "Theme.h"

namespace {

QStringList fullPaths(const QStringList& names) {
    QStringList paths;
    for (const QString& name : names)
        paths.append(QDir::current().absoluteFilePath(name));
    return paths;
}

} // namespace

int main(int argc, char** argv) {
    zelk::takeLongPaths();
    QApplication application(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("Orvane"));
    QApplication::setApplicationName(QStringLiteral("Zelk"));
    QApplication::setApplicationVersion(QStringLiteral(ZELK_VERSION));
    QGuiApplication::setDesktopFileName(QStringLiteral("zelk"));
    zelk::applyStyle();

    QCommandLineParser parser;
    parser.setApplicationDescription(
        QCoreApplication::translate("main", "Shows a Flash movie (SWF) as XML and compiles the edited XML back."));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption alone(QStringLiteral("new-window"),
                                   QCoreApplication::translate("main", "Do not hand the files to a running Zelk."));
    parser.addOption(alone);
    const QCommandLineOption associate(
        QStringLiteral("associate"), QCoreApplication::translate("main", "Offer Zelk for its kinds of file, and end."));
    const QCommandLineOption dissociate(QStringLiteral("dissociate"),
                                        QCoreApplication::translate("main", "Take that back, and end."));
    if (zelk::canSetFileTypes())
        parser.addOptions({associate, dissociate}); // for the installer
    parser.addPositionalArgument(QStringLiteral("FILE"), QCoreApplication::translate("main", "Files to open"),
                                 QStringLiteral("[FILE...]"));
    parser.process(application);

    for (const QCommandLineOption* option : {&associate, &dissociate}) {
        if (zelk::canSetFileTypes() && parser.isSet(*option)) {
            zelk::setFileTypes(option == &associate);
            return 0;
        }
    }
    const QStringList files = fullPaths(parser.positionalArguments());
    zelk::SingleInstance instance;
    if (!parser.isSet(alone) && instance.handOver(files))
        return 0;

    QSettings settings(QStringLiteral("Orvane"), QStringLiteral("Zelk"));
    zelk::MainWindow window(settings, zelk::stateFolder());
    QObject::connect(&instance, &zelk::SingleInstance::filesReceived, &window, &zelk::MainWindow::receiveFiles);
    window.show();
    window.requests().add(&window, [&] {
        window.keeper().offerRecovery();
        if (!parser.isSet(alone))
            window.keeper().reopenSession();
    });
    window.openLater(files);
    return QApplication::exec();
}
