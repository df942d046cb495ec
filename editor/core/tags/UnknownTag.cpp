#include "UnknownTag.h"

#include "AttributeText.h"
#include "SingleTag.h"
#include "SwfTagCodes.h"
#include "SwfTags.h"
#include "TagText.h"
#include "XmlSurroundings.h"
#include "XmlTags.h"

namespace zelk {

using namespace libswf;

namespace {

constexpr std::string_view unknownName = "Unknown";

// Empty when there is none to tell.
std::string reasonOf(SwfTag& tag, MovieLayout layout) {
    SwfContext context;
    context.version = layout.version;
    context.fullForm = layout.fullForm;
    if (!layout.fullForm && tag.type == SwfTagCode::DefineFontAlignZones)
        return {}; // its layout depends on the font, which is not looked for
    const uint32_t size = tag.getSize(context);
    SwfOStream stream(uint64_t(size) + tag.headerSize());
    stream.context = context;
    tag.write(stream);
    return xml2swf::reasonOfUnknown(tag.type, {stream.begin() + tag.headerSize(), size}, context).value_or("");
}

} // namespace

std::string unknownTagWords(std::string_view element, MovieLayout layout, size_t most) {
    if (elementName(element) != unknownName)
        return {};
    const bool isBig = element.size() > most;
    std::string start(startTagOf(element));
    if (isBig && !start.ends_with("/>"))
        start.insert(start.size() - 1, 1, '/'); // its bytes are left out
    try {
        const std::shared_ptr<SwfTag> tag = compileTag(isBig ? std::string_view(start) : element, layout, nullptr);
        const std::string reason = isBig || tag == nullptr ? std::string() : reasonOf(*tag, layout);
        return tag == nullptr ? "" : tagName(tag->type) + ", kept raw" + (reason.empty() ? "" : ": " + reason);
    } catch (const std::exception&) { // Compiling says what is wrong with it.
        return {};
    }
}

std::optional<std::string_view> unknownElementAt(std::string_view text, size_t position) {
    constexpr std::string_view startTag = "<Unknown ", endTag = "</Unknown>";
    const size_t least = position > surroundingsReach ? position - surroundingsReach : 0;
    const std::string_view near = text.substr(least, position - least + surroundingsReach);
    const size_t open = near.rfind(startTag, position - least);
    const auto tag = open == near.npos ? std::nullopt : tagTokenAt(near, open, near.size());
    if (!tag)
        return {};
    size_t end = tag->end;
    if (tag->kind == XmlTagToken::Kind::start)
        end = near.find(endTag, end) + endTag.size();
    if (end < open || position - least >= end)
        return {};
    return near.substr(open, end - open);
}

} // namespace zelk
