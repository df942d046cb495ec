// Any text with the caret anywhere: what may be typed and inserted there is told, and what is inserted stands in the
// text.
#include <cstdlib>

#include "Completion.h"
#include "ElementInsertion.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0)
        return 0;
    const std::string_view text(reinterpret_cast<const char*>(data) + 1, size - 1);
    const size_t caret = data[0] * text.size() / 255;
    const auto completion = zelk::completionAt(text, caret);
    if (completion && (completion->start > caret || completion->words.empty()))
        std::abort();
    for (const auto kind : {zelk::ElementKind::tag, zelk::ElementKind::action, zelk::ElementKind::structure}) {
        const auto place = zelk::placeForElement(text, caret, kind);
        if (!place)
            continue;
        const zelk::TextChange change = zelk::insertElement(*place, place->choices[data[0] % place->choices.size()]);
        if (change.start > change.end || change.end > text.size())
            std::abort();
    }
    return 0;
}
