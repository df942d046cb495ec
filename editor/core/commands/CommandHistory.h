// The commands of a document's tag list that can be undone.
#pragma once

#include "Command.h"

namespace zelk::guicommand {

/// There is one history for both views: the text's. A command here is a step of it that the list can do more about: it
/// knows which tags come and go. As soon as the text was changed by anyone else, be it by going through the history in
/// the text view, the commands are forgotten and the steps are the text's alone.
class CommandHistory {
public:
    explicit CommandHistory(IEditableText& text) : _text(text) {}

    /// Reports failures. A command that did nothing is not kept.
    bool execute(Session& session, CommandPtr command);
    bool undo();
    bool redo(Session& session);
    /// The command of the last execute, undo or redo; null when that was a step of the text alone.
    ICommand* last() const { return _last.get(); }

private:
    void forgetOutdated();

    IEditableText& _text;
    std::vector<CommandPtr> _done, _undone;
    CommandPtr _last;
    uint64_t _changes = 0; // of the text after the last command
};

} // namespace zelk::guicommand
