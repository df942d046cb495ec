// Any text with the caret anywhere, in both forms: what may be typed and inserted there is told, and what is inserted
// stands in the text.
#include <cstdlib>

#include "Completion.h"
#include "ElementInsertion.h"

static void askFor(std::string_view text, size_t caret, bool fullForm, uint8_t choice) {
    const auto completion = zelk::completionAt(text, caret, fullForm);
    if (completion && (completion->start > caret || completion->words.empty()))
        std::abort();
    for (const auto kind : {zelk::ElementKind::tag, zelk::ElementKind::action, zelk::ElementKind::structure}) {
        const auto place = zelk::placeForElement(text, caret, kind, fullForm);
        if (!place)
            continue;
        const zelk::TextChange change = zelk::insertElement(*place, place->choices[choice % place->choices.size()]);
        if (change.start > change.end || change.end > text.size())
            std::abort();
    }
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0)
        return 0;
    const std::string_view text(reinterpret_cast<const char*>(data) + 1, size - 1);
    for (const bool fullForm : {false, true})
        askFor(text, data[0] * text.size() / 255, fullForm, data[0]);
    return 0;
}
