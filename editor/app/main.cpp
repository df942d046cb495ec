#include <QApplication>
#include <QCommandLineParser>
#include <QDir>

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
    QApplication application(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("Orvane"));
    QApplication::setApplicationName(QStringLiteral("Zelk"));
    QApplication::setApplicationVersion(QStringLiteral(ZELK_VERSION));
    QGuiApplication::setDesktopFileName(QStringLiteral("zelk"));
    zelk::setPlainButtons();

    QCommandLineParser parser;
    parser.setApplicationDescription(
        QCoreApplication::translate("main", "Shows a Flash movie (SWF) as XML and compiles the edited XML back."));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption alone(QStringLiteral("new-window"),
                                   QCoreApplication::translate("main", "Do not hand the files to a running Zelk."));
    parser.addOption(alone);
    parser.addPositionalArgument(QStringLiteral("FILE"), QCoreApplication::translate("main", "Files to open"),
                                 QStringLiteral("[FILE...]"));
    parser.process(application);

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
