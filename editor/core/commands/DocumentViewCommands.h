// Commands on a document as a whole.
#pragma once

#include "Command.h"
#include "RecoverySession.h"

namespace zelk::guicommand::documentview {

/// Fills a document from a file. A failure leaves it as it was.
class LoadFromFileCmd : public FinalCommand {
public:
    /// The form is for movies; without one it is that of the session.
    LoadFromFileCmd(Session& session, Document& document, std::string fileName, std::optional<bool> fullForm = {})
        : _session(session), _document(document), _fileName(std::move(fileName)),
          _fullForm(fullForm.value_or(session.fullForm)) {}
    bool Execute() override;

private:
    Session& _session;
    Document& _document;
    std::string _fileName;
    bool _fullForm;
};

/// Fills a document from the copy that a run left which ended without closing it.
class RecoverCmd : public FinalCommand {
public:
    RecoverCmd(Session& session, const RecoverySession& copies, const KeptDocument& kept, Document& document)
        : _session(session), _copies(copies), _kept(kept), _document(document) {}
    bool Execute() override;

private:
    Session& _session;
    const RecoverySession& _copies;
    const KeptDocument& _kept;
    Document& _document;
};

/// Writes the document's text to its own file. The document's text is empty then.
class SaveToFileCmd : public FinalCommand {
public:
    SaveToFileCmd(Session& session, Document& document) : _session(session), _document(document) {}
    bool Execute() override;

private:
    Session& _session;
    Document& _document;
};

/// Asks for a name, writes the document's text there and renames the document. Its text is empty
/// once it was written.
class SaveAsFileCmd : public FinalCommand {
public:
    SaveAsFileCmd(Session& session, Document& document) : _session(session), _document(document) {}
    bool Execute() override;

private:
    Session& _session;
    Document& _document;
};

/// Gives a document the name and kind of the file that now holds it.
class SetDocAttributesCmd : public FinalCommand {
public:
    SetDocAttributesCmd(Document& document, std::string fileName, FileKind kind)
        : _document(document), _fileName(std::move(fileName)), _kind(kind) {}
    bool Execute() override;

private:
    Document& _document;
    std::string _fileName;
    FileKind _kind;
};

/// Compiles the document's text into a temporary file and plays it. The document's text is empty then.
class SwfPlayCmd : public FinalCommand {
public:
    /// `isApart`: in a window of its own.
    SwfPlayCmd(Session& session, Document& document, bool isApart)
        : _session(session), _document(document), _isApart(isApart) {}
    bool Execute() override;

private:
    Session& _session;
    Document& _document;
    const bool _isApart;
};

} // namespace zelk::guicommand::documentview
