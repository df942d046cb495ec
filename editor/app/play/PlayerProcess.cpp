#include "PlayerProcess.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
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

// What the process that has ended failed with, if it did: what it wrote about it on standard output, and on standard
// error.
std::exception_ptr failureOf(QProcess& process, const QByteArray& answers, const QString& complaint) {
    if (process.error() == QProcess::FailedToStart)
        return failure<NoPlayerException>(process.errorString());
    if (process.exitStatus() == QProcess::CrashExit)
        return failure<PlayerException>(PlayerProcess::tr("The player broke down. %1").arg(complaint).trimmed());
    const QString reason = QString::fromUtf8(answers.left(1000)).trimmed();
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

void PlayerProcess::play(const PlayRequest& request, Ended ended) {
    const QString kind = _settings.value(QStringLiteral("Player/kind")).toString();
    if (kind == QStringLiteral("none"))
        throw NoPlayerException("");
    if (kind == QStringLiteral("command"))
        startCommand(_settings.value(QStringLiteral("Player/command")).toString(),
                     QString::fromStdString(request.fileName));
    else if (request.isApart || !playInWindow({request, ended}))
        startOwn({request, std::move(ended)});
}

// --- the player's window ---------------------------------------------------------------------------------------------

void PlayerProcess::tell(const Ended& ended, const std::exception_ptr& failure) {
    _requests.add(this, [ended, failure] { ended(failure); });
}

// False when there is no window.
bool PlayerProcess::playInWindow(const Playing& next) {
    if (_window == nullptr)
        return false;
    const QJsonArray line = {QString::fromStdString(next.request.fileName), QString::fromStdString(next.request.title)};
    _window->write(QJsonDocument(line).toJson(QJsonDocument::Compact) + '\n');
    if (_next)
        tell(_next->ended, nullptr);
    _next = next;
    return true;
}

// The window says which movie it plays now; whatever else it says is why it ends.
void PlayerProcess::readAnswers(QProcess* process, QByteArray& answers) {
    answers += process->readAllStandardOutput();
    const QByteArray plays = PlayerStatus::plays;
    for (qsizetype end; answers.startsWith(plays) && (end = answers.indexOf('\n')) >= 0; answers.remove(0, end + 1)) {
        const std::string movie = answers.mid(plays.size(), end - plays.size()).toStdString();
        if (process != _window || !_next || movie != _next->request.fileName)
            continue;
        tell(_windowEnded, nullptr);
        _windowEnded = std::move(_next->ended);
        _next.reset();
    }
}

// A window that was being closed when it was told of a movie does not play it any more: another one does.
void PlayerProcess::windowEnded(QProcess* process, const std::exception_ptr& failure, const Ended& ended) {
    if (process != _window)
        return tell(ended, failure);
    _window = nullptr;
    tell(_windowEnded, failure);
    if (const auto next = std::exchange(_next, std::nullopt)) {
        try {
            startOwn(*next);
        } catch (...) {
            tell(next->ended, std::current_exception());
        }
    }
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

void PlayerProcess::startOwn(const Playing& first) {
    if (!QFileInfo(_program).isExecutable())
        throw NoPlayerException(
            tr("This Zelk has no player of its own. Tools, Settings takes a program that plays movies.").toStdString());
    auto* process = new QProcess(this);
    // Its complaints go where the editor's own go; the last one may be the reason for its end.
    const auto complaints = std::make_shared<QByteArray>();
    const auto readComplaints = [process, complaints] {
        const QByteArray read = process->readAllStandardError();
        std::fwrite(read.data(), 1, static_cast<size_t>(read.size()), stderr);
        *complaints = (*complaints + read).right(mostComplaints);
    };
    connect(process, &QProcess::readyReadStandardError, this, readComplaints);
    const auto answers = std::make_shared<QByteArray>();
    const auto read = [this, process, answers] { readAnswers(process, *answers); };
    connect(process, &QProcess::readyReadStandardOutput, this, read);
    const auto end = [this, process, ended = first.ended, complaints, answers, readComplaints, read] {
        readComplaints();
        read();
        process->disconnect();
        process->deleteLater();
        windowEnded(process, failureOf(*process, *answers, lastComplaint(*complaints)), ended);
    };
    connect(process, &QProcess::finished, this, end);
    connect(process, &QProcess::errorOccurred, this, [end](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart) // after any other it still finishes
            end();
    });
    const PlayRequest& movie = first.request;
    if (!movie.isApart) {
        _window = process;
        _windowEnded = first.ended;
    }
    QStringList arguments = {QStringLiteral("--width"),      QString::number(movie.width),
                             QStringLiteral("--height"),     QString::number(movie.height),
                             QStringLiteral("--movie-name"), QString::fromStdString(movie.title)};
    if (!movie.isApart)
        arguments.append(QStringLiteral("--follow"));
    process->start(_program, arguments << QStringLiteral("--") << QString::fromStdString(movie.fileName));
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
