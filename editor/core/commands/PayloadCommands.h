// Commands on the payload of one tag in the text of a document: the innermost around an offset.
#pragma once

#include "Command.h"

namespace zelk::guicommand::documentviewtext {

/// Writes the payload into a file that the user chooses.
class ExportPayloadCmd : public FinalCommand {
public:
    ExportPayloadCmd(Session& session, ITextView& view, size_t offset)
        : _session(session), _view(view), _offset(offset) {}
    /// False, with the reason told, when there is no tag or no payload. Throws as payloadElementsAt, TagPayload and
    /// exportPayload do, and FileSaveException.
    bool Execute() override;
    const std::string& fileName() const { return _fileName; } ///< that was written

private:
    Session& _session;
    ITextView& _view;
    size_t _offset;
    std::string _fileName;
};

/// Puts a new element with the content of a file that the user chooses in place of the tag's, as one step of undo.
/// Nothing else in the text changes.
class ImportPayloadCmd : public FinalCommand {
public:
    ImportPayloadCmd(Session& session, ITextView& view, size_t offset)
        : _session(session), _view(view), _offset(offset) {}
    /// False, with the reason told, when there is no tag, for one that takes no file and for a file that changes
    /// nothing. Throws as payloadElementsAt and TagPayload do, and FileLoadException for a file that cannot be read or
    /// does not fit.
    bool Execute() override;

private:
    Session& _session;
    ITextView& _view;
    size_t _offset;
};

} // namespace zelk::guicommand::documentviewtext
