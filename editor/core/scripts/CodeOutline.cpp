#include "CodeOutline.h"

#include <algorithm>

#include "XmlSurroundings.h"

namespace zelk {

namespace {

using Kind = XmlTagToken::Kind;

bool isMethod(std::string_view element) {
    constexpr std::string_view names[] = {"Method", "Getter", "Setter", "FunctionSlot", "Constructor"};
    return std::ranges::find(names, element) != std::end(names);
}

} // namespace

bool showsCode(std::string_view text, size_t start, size_t end) {
    const auto tag = tagTokenAt(text, start, end);
    if (!tag || tag->kind != Kind::start || !tag->name.starts_with("DoABC"))
        return false;
    const auto block = tagTokenAt(text, skipSections(text.substr(0, end), tag->end), end);
    return block && block->kind == Kind::start && block->name == "Abc";
}

// Instructions are passed over by their code: none of them declares anything.
CodeOutline::CodeOutline(std::string_view text, size_t start, size_t end) {
    if (!showsCode(text, start, end))
        return;
    text = text.substr(0, end);
    uint32_t around = top;
    for (size_t at = skipSections(text, start); at < end; at = skipSections(text, at)) {
        const auto tag = tagTokenAt(text, at, end);
        if (!tag || tag->name == "Constants")
            return;
        at = tag->end;
        if (tag->name == "Class") {
            around = top;
            if (tag->kind != Kind::end)
                add(tag->open, top, true);
            if (tag->kind == Kind::start)
                around = count() - 1;
        } else if (tag->kind == Kind::end) {
            continue;
        } else if (tag->name == "Code") {
            at = tag->kind == Kind::empty ? at : std::min(text.find("</Code>", at), end);
        } else if (isMethod(tag->name)) {
            add(tag->open, around, false);
        }
    }
}

void CodeOutline::add(size_t start, uint32_t parent, bool isClass) {
    const uint32_t row = childCount(parent);
    if (parent == top)
        _top.push_back(count());
    else
        ++_entries[parent].childCount;
    _entries.push_back({static_cast<uint32_t>(start), parent, row, 0, isClass});
}

} // namespace zelk
