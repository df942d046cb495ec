// Commands on the text of a document.
#pragma once

#include "Command.h"
#include "Completion.h"
#include "FormatXml.h"

namespace zelk::guicommand::documentviewtext {

/// Puts the document's text into the text view; it stands only there then.
class LoadFromDocCmd : public FinalCommand {
public:
    LoadFromDocCmd(Document& document, ITextView& view) : _document(document), _view(view) {}
    bool Execute() override;

private:
    Document& _document;
    ITextView& _view;
};

/// Takes a copy of the text view's text back into the document.
class SaveAsDocCmd : public FinalCommand {
public:
    SaveAsDocCmd(Document& document, ITextView& view) : _document(document), _view(view) {}
    bool Execute() override;

private:
    Document& _document;
    ITextView& _view;
};

/// Looks for all that is wrong with the text. Says that it is correct, or lists what was found among the warnings.
/// Throws as checkMovieText does for a text that is not well-formed or no movie's.
class CheckXmlCmd : public FinalCommand {
public:
    CheckXmlCmd(Session& session, ITextView& view, WarningList& warnings)
        : _session(session), _view(view), _warnings(warnings) {}
    bool Execute() override;
    bool foundProblems() const { return _foundProblems; }

private:
    bool _foundProblems = false;
    Session& _session;
    ITextView& _view;
    WarningList& _warnings;
};

/// Asks for the settings of the movie and changes its Movie element, as one step of undo.
class MovieSettingsCmd : public FinalCommand {
public:
    MovieSettingsCmd(Session& session, Document& document, ITextView& view)
        : _session(session), _document(document), _view(view) {}
    bool Execute() override;

private:
    void apply(const MovieSettings& before, const MovieSettings& settings);

    Session& _session;
    Document& _document;
    ITextView& _view;
};

/// Shows the document in the full or the classic form, as one step of undo. Throws as changeForm does.
class ChangeFormCmd : public FinalCommand {
public:
    ChangeFormCmd(Session& session, Document& document, ITextView& view, bool fullForm)
        : _session(session), _document(document), _view(view), _fullForm(fullForm) {}
    bool Execute() override;

private:
    Session& _session;
    Document& _document;
    ITextView& _view;
    bool _fullForm;
};

/// Puts each element on a line of its own, as one step of undo: those that the range from `start` to `end` touches, or
/// all. Says so when nothing changes. Throws XmlException for a text that is not well-formed.
class FormatXmlCmd : public FinalCommand {
public:
    FormatXmlCmd(Session& session, IEditableText& view, size_t start, size_t end, size_t caret, FormatStyle style)
        : _session(session), _view(view), _start(start), _end(end), _caret(caret), _style(std::move(style)) {}
    bool Execute() override;
    /// Where the caret is to be then.
    size_t caret() const { return _caret; }

private:
    Session& _session;
    IEditableText& _view;
    const size_t _start, _end;
    size_t _caret;
    const FormatStyle _style;
};

/// Asks for a row and goes there.
class GotoLineCmd : public FinalCommand {
public:
    GotoLineCmd(Session& session, ITextView& view) : _session(session), _view(view) {}
    bool Execute() override;

private:
    Session& _session;
    ITextView& _view;
};

/// Lists what may be typed at the caret; nothing where nothing is known.
class SwfAutoCompleteCmd : public FinalCommand {
public:
    explicit SwfAutoCompleteCmd(ICompletionView& view) : _view(view) {}
    bool Execute() override;

private:
    ICompletionView& _view;
};

/// Shows a colour as the background of a small movie. Does nothing for an empty text; one that is no colour fails.
class ShowColorCmd : public FinalCommand {
public:
    ShowColorCmd(Session& session, std::string color) : _session(session), _color(std::move(color)) {}
    bool Execute() override;

private:
    Session& _session;
    std::string _color;
};

} // namespace zelk::guicommand::documentviewtext
