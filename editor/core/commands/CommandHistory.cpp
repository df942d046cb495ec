#include "CommandHistory.h"

namespace zelk::guicommand {

void CommandHistory::forgetOutdated() {
    _last.reset();
    if (_changes == _text.changeCount())
        return;
    _done.clear();
    _undone.clear();
}

bool CommandHistory::execute(Session& session, CommandPtr command) {
    forgetOutdated();
    const uint64_t before = _text.changeCount();
    if (!runCommand(session, *command, &_text) || _text.changeCount() == before)
        return false;
    _undone.clear();
    _done.push_back(command);
    _last = std::move(command);
    _changes = _text.changeCount();
    return true;
}

bool CommandHistory::undo() {
    forgetOutdated();
    if (_done.empty())
        return _text.undo();
    _last = std::move(_done.back());
    _done.pop_back();
    const bool isDone = _last->Unexecute();
    _undone.push_back(_last);
    _changes = _text.changeCount();
    return isDone;
}

bool CommandHistory::redo(Session& session) {
    forgetOutdated();
    if (_undone.empty())
        return _text.redo();
    _last = std::move(_undone.back());
    _undone.pop_back();
    const bool isDone = runCommand(session, *_last, &_text);
    if (isDone)
        _done.push_back(_last);
    _changes = _text.changeCount();
    return isDone;
}

} // namespace zelk::guicommand
