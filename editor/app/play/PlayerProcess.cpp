#include "PlayerProcess.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>

#include <algorithm>
#include <cstdio>

#include "Exceptions.h"
#include "PlayerStatus.h"
#include "RequestQueue.h"

namespace zelk {

namespace {

constexpr int notLoaded = 127;             // exit status of a program that lacks a library
constexpr qsizetype mostComplaints = 4096; // bytes of standard error that are kept

// The last line that says something: behind it may stand where in the code the engine broke down, before its text which
// process and when.
QString lastComplaint(const QByteArray& complaints) {
    static const QRegularExpression origin(QStringLiteral("^\\[[^\\]]*\\]\\s*"));
    const QStringList lines = QString::fromUtf8(complaints).split(u'\n');
    const auto saysSomething = [](const QString& line) { return !line.trimmed().isEmpty() && !line.startsWith(u'#'); };
    const auto found = std::find_if(lines.rbegin(), lines.rend(), saysSomething);
    return found == lines.rend() ? QString() : QString(*found).remove(origin).trimmed();
}

template <class Exception>
std::exception_ptr failure(const QString& reason) {
    return std::make_exception_ptr(Exception(reason.toStdString()));
}

// What the process that has ended failed with, if it did. `complaint` is what it wrote about it on standard error.
std::exception_ptr failureOf(QProcess& process, const QString& complaint) {
    if (process.error() == QProcess::FailedToStart)
        return failure<NoPlayerException>(process.errorString());
    if (process.exitStatus() == QProcess::CrashExit)
        return failure<PlayerException>(PlayerProcess::tr("The player broke down. %1").arg(complaint).trimmed());
    const QString reason = QString::fromUtf8(process.readAllStandardOutput().left(1000)).trimmed();
    switch (process.exitCode()) {
    case PlayerStatus::closed: return nullptr;
    case PlayerStatus::noPlayer: return failure<NoPlayerException>(reason);
    case PlayerStatus::cannotPlay: return failure<PlayerException>(reason);
    case notLoaded: return failure<NoPlayerException>(complaint);
    default: return failure<PlayerException>(complaint);
    }
}

} // namespace

QString PlayerProcess::besideTheEditor() {
    return QDir(QCoreApplication::applicationDirPath()).filePath(QStringLiteral("zelk-player"));
}

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
    if (!QFileInfo(_program).isExecutable())
        throw NoPlayerException(tr("This Zelk was built without a player.").toStdString());
    auto* process = new QProcess(this);
    // Its complaints go where the editor's own go; the last one may be the reason for its end.
    const auto complaints = std::make_shared<QByteArray>();
    const auto readComplaints = [process, complaints] {
        const QByteArray read = process->readAllStandardError();
        std::fwrite(read.data(), 1, static_cast<size_t>(read.size()), stderr);
        *complaints = (*complaints + read).right(mostComplaints);
    };
    connect(process, &QProcess::readyReadStandardError, this, readComplaints);
    const auto end = [this, process, ended, complaints, readComplaints] {
        readComplaints();
        process->disconnect();
        process->deleteLater();
        _requests.add(this, [ended, failure = failureOf(*process, lastComplaint(*complaints))] { ended(failure); });
    };
    connect(process, &QProcess::finished, this, end);
    connect(process, &QProcess::errorOccurred, this, [end](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart) // after any other it still finishes
            end();
    });
    QStringList arguments = {QStringLiteral("--width"), QString::number(width), QStringLiteral("--height"),
                             QString::number(height),   QStringLiteral("--"),   movie};
    process->start(_program, arguments, QIODevice::ReadOnly);
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
