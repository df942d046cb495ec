#include "TextEditorAutocomplete.h"

#include "DocumentTags.h"
#include "DocumentViewTextCommands.h"
#include "TextEditorView.h"

namespace zelk {

namespace {

using Sci = QsciScintillaBase;

constexpr char separator = '\n';
constexpr std::string_view beforeNote = "  ";

} // namespace

TextEditorAutocomplete::TextEditorAutocomplete(TextEditorView& control) : QObject(&control), _control(control) {
    control.send(Sci::SCI_AUTOCSETSEPARATOR, separator);
    control.send(Sci::SCI_AUTOCSETIGNORECASE, 1);
    control.send(Sci::SCI_AUTOCSETORDER, Sci::SC_ORDER_CUSTOM);
    control.send(Sci::SCI_AUTOCSETMAXHEIGHT, 12);
    control.send(Sci::SCI_AUTOCSETCANCELATSTART, 0);
    connect(&control, &Sci::SCN_CHARADDED, this, &TextEditorAutocomplete::typed);
    // What is put in is more than the word, so it is done here instead of by the control.
    connect(&control, qOverload<const char*, int, int, int>(&Sci::SCN_AUTOCSELECTION), this,
            [this](const char* word, int, int, int) {
                const std::string chosen = word;
                _control.send(Sci::SCI_AUTOCCANCEL);
                choose(chosen);
            });
}

void TextEditorAutocomplete::typed(int character) {
    if (character < 128 && std::string_view("< \"'/").find(static_cast<char>(character)) != std::string_view::npos)
        show();
}

void TextEditorAutocomplete::show() { guicommand::documentviewtext::SwfAutoCompleteCmd(*this).Execute(); }

std::string_view TextEditorAutocomplete::text() const { return _control.bytes(); }

size_t TextEditorAutocomplete::caret() const { return static_cast<size_t>(_control.send(Sci::SCI_GETCURRENTPOS)); }

void TextEditorAutocomplete::showList(const Completion& completion) {
    std::string list;
    for (size_t i = 0; i < completion.words.size(); ++i) {
        if (i != 0)
            list += separator;
        list += completion.words[i];
        if (i < completion.notes.size())
            list.append(beforeNote).append(completion.notes[i]);
    }
    _control.SendScintilla(Sci::SCI_AUTOCSHOW, static_cast<uintptr_t>(caret() - completion.start), list.c_str());
}

std::shared_ptr<const CharacterIndex> TextEditorAutocomplete::characters() const {
    return DocumentTags::of(_control).characters();
}

void TextEditorAutocomplete::choose(std::string_view word) {
    const size_t place = caret();
    const std::optional<Completion> completion = completionAt(text(), place, _fullForm, characters().get());
    if (!completion)
        return;
    if (!completion->notes.empty())
        word = word.substr(0, word.find(beforeNote));
    const std::string_view behind = text().substr(place);
    std::string chosen(word);
    const bool isAttribute = completion->kind == Completion::Kind::attribute && !behind.starts_with('=');
    if (isAttribute)
        chosen += "=\"\"";
    else if ((completion->kind == Completion::Kind::endTag || word.starts_with('/')) && !behind.starts_with('>'))
        chosen += '>';
    size_t step = isAttribute ? chosen.size() - 1 : chosen.size(); // from the start of the new text to the caret
    if (completion->kind == Completion::Kind::value && (behind.starts_with('"') || behind.starts_with('\'')))
        ++step;
    _control.replaceBytes(completion->start, place, chosen);
    _control.send(Sci::SCI_GOTOPOS, static_cast<long>(completion->start + step));
    if (isAttribute) // Not at once: a list that is there when this returns would be taken for the one that was
                     // cancelled.
        QMetaObject::invokeMethod(this, &TextEditorAutocomplete::show, Qt::QueuedConnection);
}

} // namespace zelk
