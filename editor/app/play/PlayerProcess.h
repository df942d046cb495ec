// Plays movies in other programs: the player that belongs to the editor, or one that the user has chosen.
#pragma once

#include <QFileInfo>
#include <QObject>
#include <QSettings>

#include <optional>

#include "Session.h"

class QProcess;

namespace zelk {

class RequestQueue;

/// Reads what to play with from the settings: "Player/kind" is "ruffle" (also when it is not set), "command" or "none";
/// "Player/command" a command line for the second.
class PlayerProcess : public QObject, public IPlayer {
    Q_OBJECT
public:
    /// The settings and the queue outlive it. `program` is the player that belongs to the editor.
    PlayerProcess(QSettings& settings, RequestQueue& requests, QString program = besideTheEditor())
        : _settings(settings), _requests(requests), _program(std::move(program)) {}
    /// Ends the players of the editor.
    ~PlayerProcess() override;

    /// Whether a player belongs to the editor.
    static bool hasOwn() { return QFileInfo::exists(besideTheEditor()); }
    void play(const PlayRequest& request, Ended ended) override;

private:
    struct Playing {
        PlayRequest request;
        Ended ended;
    };
    static QString besideTheEditor();
    bool playInWindow(const Playing& next);
    void startOwn(const Playing& first);
    void readAnswers(QProcess* process, QByteArray& answers);
    void windowEnded(QProcess* process, const std::exception_ptr& failure, const Ended& ended);
    void tell(const Ended& ended, const std::exception_ptr& failure);
    void startCommand(const QString& command, const QString& movie);

    QSettings& _settings;
    RequestQueue& _requests; // through which it tells how a player ended
    const QString _program;
    QProcess* _window = nullptr;  // that takes one movie after the other; null when there is none
    Ended _windowEnded;           // of the movie in it
    std::optional<Playing> _next; // that it was told to play, and has not begun with
};

/// The program and its arguments. "%1" stands for the movie, which comes last when the command does not name it; quotes
/// hold together what has blanks. Empty when the command is.
QStringList playerCommand(const QString& command, const QString& movie);

} // namespace zelk
