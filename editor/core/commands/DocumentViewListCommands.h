// Commands on the tags of a document. They change its text where the tags stand.
#pragma once

#include "Command.h"
#include "TaggedText.h"

namespace zelk::guicommand::documentviewlist {

/// Positions in the text as it is when the command is made; in any order.
using TagSelection = std::vector<TagPath>;

/// Behind the last of these tags that stands in no other of them; empty when there is none.
TagPath positionBehind(TagSelection selection);

/// Finds the tags of the text, as a job. Throws XmlException when it is not well-formed.
class BuildTagListCmd : public FinalCommand {
public:
    BuildTagListCmd(Session& session, TaggedText& text) : _session(session), _text(text) {}
    bool Execute() override;

private:
    Session& _session;
    TaggedText& _text;
};

/// A command that changes the text in one step of its history. To reverse it is to take that step back, which puts the
/// tags back at their positions with all that stood around them: it may only be done while nothing was changed after
/// the command. To repeat it is to make that step again.
class TagListCmd : public ICommand {
public:
    explicit TagListCmd(TaggedText& text) : _text(text) {}

    bool Execute() final;
    bool Unexecute() override;
    /// The tags that the command put there, or that are back. Empty when it took tags away.
    const TagSelection& shown() const { return _shown; }
    /// Where something came or went.
    const TagPath& place() const { return _edit.place; }

protected:
    struct Edit {
        std::vector<TextChange> changes;
        TagSelection shown; ///< afterwards
        TagSelection back;  ///< after it was reversed
        TagPath place;
    };

    TaggedText& text() { return _text; }
    /// What to do, worked out before the first Execute. No changes: nothing can be done.
    virtual Edit prepare() = 0;
    /// Done at every Execute.
    virtual void finish() {}

private:
    void change();

    TaggedText& _text;
    Edit _edit;
    TagSelection _shown;
    bool _isPrepared = false;
};

/// False for an empty selection.
class DeleteCmd : public TagListCmd {
public:
    DeleteCmd(TaggedText& text, TagSelection selection) : TagListCmd(text), _selection(std::move(selection)) {}

protected:
    Edit prepare() override;
    /// What goes, as splitElements gives it; set by prepare.
    const std::vector<std::string>& removed() const { return _removed; }

private:
    TagSelection _selection;
    std::vector<std::string> _removed;
};

/// Also puts the tags on the clipboard, each time it is executed. True even if the clipboard does not take them.
class CutCmd : public DeleteCmd {
public:
    CutCmd(TaggedText& text, IClipboard& clipboard, TagSelection selection)
        : DeleteCmd(text, std::move(selection)), _clipboard(clipboard) {}

protected:
    void finish() override;

private:
    IClipboard& _clipboard;
};

/// True when the tags are on the clipboard.
class CopyCmd : public FinalCommand {
public:
    CopyCmd(TaggedText& text, IClipboard& clipboard, TagSelection selection)
        : _text(text), _clipboard(clipboard), _selection(std::move(selection)) {}
    bool Execute() override;

private:
    TaggedText& _text;
    IClipboard& _clipboard;
    TagSelection _selection;
};

/// Puts new elements at a position, with the line ends of the text. False when there are none.
class InsertCmd : public TagListCmd {
public:
    InsertCmd(TaggedText& text, std::vector<std::string> elements, TagPath position)
        : TagListCmd(text), _elements(std::move(elements)), _position(std::move(position)) {}

protected:
    InsertCmd(TaggedText& text, TagPath position) : TagListCmd(text), _position(std::move(position)) {}
    Edit prepare() override;
    /// Puts them with the line ends that they have.
    Edit put(const std::vector<std::string>& elements);

private:
    std::vector<std::string> _elements;
    TagPath _position;
};

/// Puts what the clipboard holds when the command is executed for the first time, with its line ends.
class PasteCmd : public InsertCmd {
public:
    PasteCmd(TaggedText& text, IClipboard& clipboard, TagPath position)
        : InsertCmd(text, std::move(position)), _clipboard(clipboard) {}

protected:
    Edit prepare() override;

private:
    IClipboard& _clipboard;
};

/// Puts copies of tags at a position, as they stand in the text.
class DuplicateCmd : public InsertCmd {
public:
    DuplicateCmd(TaggedText& text, TagSelection selection, TagPath position)
        : InsertCmd(text, std::move(position)), _selection(std::move(selection)) {}

protected:
    Edit prepare() override;

private:
    TagSelection _selection;
};

/// Moves tags, in their order, to before the tag that is at a position now. False when they are there already, or when
/// the position is inside one of them.
class MoveCmd : public TagListCmd {
public:
    MoveCmd(TaggedText& text, TagSelection selection, TagPath position)
        : TagListCmd(text), _selection(std::move(selection)), _position(std::move(position)) {}

protected:
    Edit prepare() override;

private:
    TagSelection _selection;
    TagPath _position;
};

/// Lets the user edit a tag. False when the user cancels or changes nothing.
class EditSingleTagCmd : public TagListCmd {
public:
    EditSingleTagCmd(TaggedText& text, ITagEditor& editor, TagPath position)
        : TagListCmd(text), _editor(editor), _position(std::move(position)) {}

protected:
    Edit prepare() override;

private:
    ITagEditor& _editor;
    TagPath _position;
};

} // namespace zelk::guicommand::documentviewlist
