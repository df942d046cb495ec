// What a user does to a document is a command: made for one action, executed, and kept where it can be undone.
#pragma once

#include <memory>
#include <vector>

#include "Session.h"

namespace zelk::guicommand {

class ICommand {
public:
    /// True when the command did its work. May throw: runCommand reports it.
    virtual bool Execute() = 0;
    /// True when the work was reversed. Only called after an Execute that did its work.
    virtual bool Unexecute() = 0;
    virtual ~ICommand() = default;
};

using CommandPtr = std::shared_ptr<ICommand>;

/// A command that has nothing to reverse.
class FinalCommand : public ICommand {
public:
    bool Unexecute() override { return false; }
};

/// Runs commands in their order, as one.
class MacroCommand : public ICommand {
public:
    MacroCommand() = default;
    MacroCommand(std::initializer_list<CommandPtr> commands) : _commands(commands) {}

    /// Stops at the first that returns false; those already run stay done.
    bool Execute() override;
    /// In reverse order, without stopping at a failure. The result is that of the last call made.
    bool Unexecute() override;
    virtual void append(CommandPtr command);
    virtual void insertFront(CommandPtr command);

private:
    std::vector<CommandPtr> _commands;
};

/// The one way in which a failure comes before the user. Gives what was reported.
Failure reportFailure(Session& session, const std::exception_ptr& error);

/// Executes a command and reports a failure to the user; a place in the text is shown in `view`. A command that the
/// user cancels does nothing. The one place where the editor catches exceptions of commands.
bool runCommand(Session& session, ICommand& command, ITextView* view = nullptr);

} // namespace zelk::guicommand
