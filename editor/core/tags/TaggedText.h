// A text that commands change, with the places of its tags.
#pragma once

#include <memory>

#include "EditableText.h"
#include "TagIndex.h"

namespace zelk {

class TaggedText {
public:
    explicit TaggedText(IEditableText& text) : _text(text) {}

    IEditableText& view() { return _text; }
    /// Valid until the text changes.
    std::string_view text() { return _text.text(); }
    /// Looked for again when the text has changed. Throws XmlException.
    const TagIndex& tags() { return *sharedTags(); }
    /// The same, for who wants to keep it: it goes on telling of the text as it was.
    std::shared_ptr<const TagIndex> sharedTags();
    /// What `tags` gives until the text changes.
    void setTags(std::shared_ptr<const TagIndex> tags);
    /// True when `tags` need not look again.
    bool isCurrent() const { return _index != nullptr && _indexed == _text.changeCount(); }
    /// The bytes of a tag's element.
    std::string_view element(uint32_t tag);
    /// The Movie element without what stands in it.
    std::string movieElement();

private:
    IEditableText& _text;
    std::shared_ptr<const TagIndex> _index;
    uint64_t _indexed = 0; // change count of the text that the index is of
};

} // namespace zelk
