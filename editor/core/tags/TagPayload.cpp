#include "TagPayload.h"

#include <algorithm>
#include <charconv>
#include <string>

#include "AttributeText.h"
#include "Exceptions.h"
#include "SingleTag.h"
#include "TagText.h"
#include "XmlErrors.h"
#include "XmlTagSpans.h"

namespace zelk {

using namespace libswf;
using namespace xml2swf;

namespace {

using Spans = std::vector<ElementSpan>;

constexpr std::string_view blanks = " \t";

std::string_view elementOf(std::string_view text, const ElementSpan& span) {
    return text.substr(span.start, span.end - span.start);
}

bool hasName(std::string_view element, std::string_view name) {
    const size_t end = element.find_first_of(" \t\r\n/>", 1);
    return element.substr(1, std::min(end, element.size()) - 1) == name;
}

bool isStreamHead(std::string_view element) {
    return hasName(element, "SoundStreamHead") || hasName(element, "SoundStreamHead2");
}

// The attribute that names the character of a tag with a payload; empty for other elements.
std::string_view idAttribute(std::string_view element) {
    if (hasName(element, "DefineSound"))
        return "SoundId";
    if (hasName(element, "DefineFont4"))
        return "FontId";
    const bool hasOne =
        element.starts_with("<DefineBits") || hasName(element, "DefineBinaryData") || hasName(element, "Unknown");
    return hasOne ? "CharacterId" : "";
}

// The id as it stands in the start tag, which is not compiled for it.
std::optional<uint32_t> characterIdOf(std::string_view element) {
    const std::string_view attribute = idAttribute(element);
    if (attribute.empty())
        return std::nullopt;
    const std::string value = attributeText(element.substr(0, element.find('>')), attribute).value_or("");
    const size_t digits = std::min(value.find_first_not_of(" \t\r\n"), value.size());
    uint32_t id = 0;
    const auto [end, error] = std::from_chars(value.data() + digits, value.data() + value.size(), id);
    return error == std::errc() ? std::optional(id) : std::nullopt;
}

// The blocks behind a head in the list that it stands in, up to the next head.
std::vector<std::string_view> blocksBehind(std::string_view text, const Spans& spans, size_t head) {
    size_t listEnd = text.size();
    for (size_t i = 0; i < head; ++i) {
        if (spans[i].end > spans[head].start)
            listEnd = spans[i].end; // The one that starts last is the innermost.
    }
    std::vector<std::string_view> blocks;
    size_t passed = spans[head].end;
    for (size_t i = head + 1; i < spans.size() && spans[i].start < listEnd; ++i) {
        if (spans[i].start < passed)
            continue; // of a sprite in between
        passed = spans[i].end;
        const std::string_view element = elementOf(text, spans[i]);
        if (isStreamHead(element))
            break;
        if (hasName(element, "SoundStreamBlock"))
            blocks.push_back(element);
    }
    return blocks;
}

PayloadElements elementsOf(std::string_view text, const Spans& spans, size_t index) {
    PayloadElements result;
    result.text = text;
    result.element = elementOf(text, spans[index]);
    result.layout = movieLayout(text.substr(0, spans.front().start));
    for (const ElementSpan& span : spans) {
        if (hasName(elementOf(text, span), "JPEGTables"))
            result.jpegTables = elementOf(text, span);
    }
    if (isStreamHead(result.element))
        result.streamBlocks = blocksBehind(text, spans, index);
    return result;
}

// The only place that knows how tags are found in a text.
Spans spansOf(std::string_view text) { return findTagSpans(text).spans; }

[[noreturn]] void throwNoTag(const PayloadElements& elements) {
    XmlPlace place{elements.start()};
    place.locate(elements.text);
    throw NotMovieException::noTag(elementName(elements.element), place.row, place.column);
}

std::shared_ptr<SwfTag> compiled(const PayloadElements& elements, std::string_view element) {
    const auto locate = [&](XmlPlace& place) {
        place.offset += static_cast<size_t>(element.data() - elements.text.data());
        place.locate(elements.text);
    };
    try {
        return compileTag(element, elements.layout, nullptr);
    } catch (Base64Error& error) {
        locate(error.place);
        throw;
    } catch (XmlValueError& error) {
        locate(error.place);
        throw;
    }
}

} // namespace

std::optional<PayloadElements> payloadElementsAt(std::string_view text, size_t offset) {
    const Spans spans = spansOf(text);
    const size_t next = text.find_first_not_of(blanks, std::min(offset, text.size()));
    const size_t place = next != text.npos && text[next] == '<' ? next : offset;
    std::optional<size_t> found;
    for (size_t i = 0; i < spans.size() && spans[i].start <= place; ++i) {
        if (place < spans[i].end || (place == spans[i].end && !found))
            found = i;
    }
    return found ? std::optional(elementsOf(text, spans, *found)) : std::nullopt;
}

std::optional<PayloadElements> payloadElementsOf(std::string_view text, uint16_t characterId) {
    const Spans spans = spansOf(text);
    for (size_t i = spans.size(); i-- > 0;) {
        if (characterIdOf(elementOf(text, spans[i])) == characterId)
            return elementsOf(text, spans, i);
    }
    return std::nullopt;
}

TagPayload::TagPayload(const PayloadElements& elements) {
    _tag = compiled(elements, elements.element);
    if (_tag == nullptr)
        throwNoTag(elements);
    if (!elements.jpegTables.empty())
        _tables = compiled(elements, elements.jpegTables);
    for (std::string_view block : elements.streamBlocks)
        _blocks.push_back(compiled(elements, block));
}

PayloadContext TagPayload::context() const {
    PayloadContext result;
    result.tables = dynamic_cast<const SwfTagJPEGTables*>(_tables.get());
    for (const auto& block : _blocks) {
        if (const auto* known = dynamic_cast<const SwfTagSoundStreamBlock*>(block.get()))
            result.blocks.push_back(known);
    }
    return result;
}

} // namespace zelk
