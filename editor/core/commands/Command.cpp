#include "Command.h"

namespace zelk::guicommand {

bool MacroCommand::Execute() {
    return std::ranges::all_of(_commands, [](const CommandPtr& command) { return command->Execute(); });
}

bool MacroCommand::Unexecute() {
    bool result = true;
    for (size_t i = _commands.size(); i-- > 0;)
        result = _commands[i]->Unexecute();
    return result;
}

void MacroCommand::append(CommandPtr command) { _commands.push_back(std::move(command)); }

void MacroCommand::insertFront(CommandPtr command) { _commands.insert(_commands.begin(), std::move(command)); }

Failure reportFailure(Session& session, const std::exception_ptr& error) {
    try {
        std::rethrow_exception(error);
    } catch (...) {
        const Failure failure = describeFailure();
        session.user.report(failure);
        return failure;
    }
}

bool runCommand(Session& session, ICommand& command, ITextView* view) {
    try {
        return command.Execute();
    } catch (const JobCancelled&) {
        return false;
    } catch (...) {
        const Failure failure = reportFailure(session, std::current_exception());
        if (view != nullptr && failure.row != 0)
            view->gotoPlace(failure.row, failure.column);
        return false;
    }
}

} // namespace zelk::guicommand
