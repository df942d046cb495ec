// Gives a character another id, wherever it is used.
#pragma once

#include "Command.h"

namespace zelk::guicommand {

/// As one step of undo. Says why it cannot be done: the id is taken or none, or a tag that is kept as bytes has it.
/// Throws XmlException for a text that is not well-formed.
class RenameCharacterCmd : public FinalCommand {
public:
    RenameCharacterCmd(Session& session, IEditableText& text, uint16_t from, int64_t to)
        : _session(session), _text(text), _from(from), _to(to) {}
    bool Execute() override;
    /// Places that have the new id.
    size_t changed() const { return _changed; }

private:
    Session& _session;
    IEditableText& _text;
    const uint16_t _from;
    const int64_t _to;
    size_t _changed = 0;
};

} // namespace zelk::guicommand
