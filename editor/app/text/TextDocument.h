// Documents of the control: made beside the window, and kept while the control shows another.
#pragma once

#include <memory>
#include <string>

class QsciScintillaBase;

namespace zelk {

/// With its own steps of undo. Has to go before the control it was taken from.
using TextDocument = std::shared_ptr<void>;

TextDocument shownDocument(QsciScintillaBase& control);
void showDocument(QsciScintillaBase& control, const TextDocument& document);

/// Bytes that a document has room for without asking for memory anew, when it would copy all of its text.
constexpr size_t documentRoom = 512 * 1024;
/// For this control, in loops of its own. Nothing in it can be undone, and it counts as saved. The memory of `bytes`
/// goes as the document takes it in. Throws std::bad_alloc.
TextDocument makeDocument(QsciScintillaBase& control, std::string bytes);

} // namespace zelk
