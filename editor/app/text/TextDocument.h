// Documents of the control: made beside the window, and kept while the control shows another.
#pragma once

#include <memory>
#include <string_view>

class QsciScintillaBase;

namespace Scintilla {
class ILoader;
}

namespace zelk {

/// With its own steps of undo. Has to go before the control it was taken from.
using TextDocument = std::shared_ptr<void>;

TextDocument shownDocument(QsciScintillaBase& control);
void showDocument(QsciScintillaBase& control, const TextDocument& document);

class TextDocumentMaker {
public:
    explicit TextDocumentMaker(QsciScintillaBase& control);
    ~TextDocumentMaker();
    TextDocumentMaker(const TextDocumentMaker&) = delete;
    TextDocumentMaker& operator=(const TextDocumentMaker&) = delete;

    /// Bytes that a document has room for without asking for memory anew, when it would copy all of its text.
    static constexpr size_t room = 512 * 1024;
    /// Once, in any thread. Throws std::bad_alloc.
    void fill(std::string_view bytes);
    /// Nothing in it can be undone, and it counts as saved.
    TextDocument take();

private:
    void add(std::string_view bytes);

    QsciScintillaBase& _control;
    Scintilla::ILoader* _loader;
};

} // namespace zelk
