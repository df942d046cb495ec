// What of a text can be found by name: tags, frame labels, classes, methods and functions.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "TagIndex.h"

namespace zelk {

struct Symbol {
    enum class Kind : uint8_t { tag, label, type, method };

    Kind kind;
    size_t offset;     ///< of the element's "<"
    std::string name;  ///< as people read it
    std::string where; ///< the element's kind, and what it belongs to
};

/// In the order of the text; without tags that nothing tells apart, like ShowFrame. Of the tag from `start` to `end`
/// with all in it, or of the whole text when these are equal. Takes time by the text's size.
std::vector<Symbol> symbolsOf(std::string_view text, const TagIndex& tags, size_t start = 0, size_t end = 0,
                              xml2swf::IProgressReporter* progress = nullptr);

/// Indices of the symbols that hold all words of the filter, whatever their case, in their order; those whose name
/// begins with it come first. At most `most`.
std::vector<uint32_t> matchingSymbols(const std::vector<Symbol>& symbols, std::string_view filter, size_t most);

} // namespace zelk
