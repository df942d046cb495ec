#include "PlayerProcess.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QProcess>

#include "Exceptions.h"
#include "PlayerStatus.h"
#include "RequestQueue.h"

namespace zelk {

namespace {

// What the process that has ended failed with, if it did.
std::exception_ptr failureOf(QProcess& process) {
    const std::string reason = QString::fromUtf8(process.readAllStandardOutput().left(1000)).trimmed().toStdString();
    if (process.error() == QProcess::FailedToStart)
        return std::make_exception_ptr(NoPlayerException(process.errorString().toStdString()));
    if (process.exitStatus() == QProcess::CrashExit)
        return std::make_exception_ptr(PlayerException(PlayerProcess::tr("The player broke down.").toStdString()));
    switch (process.exitCode()) {
    case PlayerStatus::closed: return nullptr;
    case PlayerStatus::noPlayer: return std::make_exception_ptr(NoPlayerException(reason));
    default: return std::make_exception_ptr(PlayerException(reason));
    }
}

} // namespace

PlayerProcess::~PlayerProcess() {
    for (auto* process : findChildren<QProcess*>()) {
        process->disconnect();
        process->terminate();
        if (!process->waitForFinished(1000)) {
            process->kill();
            process->waitForFinished(1000);
        }
    }
}

void PlayerProcess::play(const std::string& fileName, int width, int height, Ended ended) {
    const QString kind = _settings.value(QStringLiteral("Player/kind")).toString();
    const QString movie = QString::fromStdString(fileName);
    if (kind == QStringLiteral("none"))
        throw NoPlayerException("");
    if (kind == QStringLiteral("command"))
        startCommand(_settings.value(QStringLiteral("Player/command")).toString(), movie);
    else
        startOwn(movie, width, height, ended);
}

// The program may hand the movie to another and end at once: nobody knows when the file is needed no more.
void PlayerProcess::startCommand(const QString& command, const QString& movie) {
    QStringList arguments = playerCommand(command, movie);
    if (arguments.isEmpty())
        throw NoPlayerException(tr("The settings name no command.").toStdString());
    const QString program = arguments.takeFirst();
    if (!QProcess::startDetached(program, arguments))
        throw NoPlayerException(tr("%1 cannot be started.").arg(program).toStdString());
}

void PlayerProcess::startOwn(const QString& movie, int width, int height, const Ended& ended) {
    const QString program = QDir(QCoreApplication::applicationDirPath()).filePath(QStringLiteral("zelk-player"));
    if (!QFileInfo(program).isExecutable())
        throw NoPlayerException(tr("This Zelk was built without a player.").toStdString());
    auto* process = new QProcess(this);
    process->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    const auto end = [this, process, ended] {
        process->disconnect();
        process->deleteLater();
        _requests.add(this, [ended, failure = failureOf(*process)] { ended(failure); });
    };
    connect(process, &QProcess::finished, this, end);
    connect(process, &QProcess::errorOccurred, this, [end](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart) // after any other it still finishes
            end();
    });
    QStringList arguments = {QStringLiteral("--width"), QString::number(width), QStringLiteral("--height"),
                             QString::number(height),   QStringLiteral("--"),   movie};
    process->start(program, arguments, QIODevice::ReadOnly);
}

QStringList playerCommand(const QString& command, const QString& movie) {
    QStringList parts = QProcess::splitCommand(command);
    if (parts.isEmpty())
        return {};
    bool isNamed = false;
    for (qsizetype i = 1; i < parts.size(); ++i) {
        isNamed = isNamed || parts[i].contains(QStringLiteral("%1"));
        parts[i].replace(QStringLiteral("%1"), movie);
    }
    if (!isNamed)
        parts.append(movie);
    return parts;
}

} // namespace zelk
