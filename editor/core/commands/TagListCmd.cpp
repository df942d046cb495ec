#include "DocumentViewListCommands.h"

namespace zelk::guicommand::documentviewlist {

bool TagListCmd::Execute() {
    if (_isPrepared) {
        if (!_text.view().redo())
            return false;
    } else {
        _edit = prepare();
        if (_edit.changes.empty())
            return false;
        _text.view().replaceAll(_edit.changes);
        _edit.changes = {};
        checkText();
        _isPrepared = true;
    }
    _shown = _edit.shown;
    finish();
    return true;
}

// The list could not be shown any more, and nobody would know why.
void TagListCmd::checkText() {
    try {
        _text.tags();
    } catch (...) {
        _text.view().undo();
        throw;
    }
}

bool TagListCmd::Unexecute() {
    _shown = _edit.back;
    return _text.view().undo();
}

} // namespace zelk::guicommand::documentviewlist
