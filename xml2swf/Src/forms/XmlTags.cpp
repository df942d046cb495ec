#include "XmlTags.h"

#include <stdexcept>
#include <unordered_map>

#include "TagText.h"
#include "XmlGlyphs.h"
#include "XmlIdentifiers.h"
#include "XmlTagForms.h"

namespace xml2swf {

using namespace libswf;

namespace {

// Both directions of one tag class. `write` is false when the object is not of the class.
struct TagForm {
    const char* name;
    bool (*write)(XmlNode& parent, const char* name, const SwfTag& tag);
    std::shared_ptr<SwfTag> (*make)();
    void (*read)(XmlElement& element, SwfTag& tag);
};

template <class Tag>
bool writeAs(XmlNode& parent, const char* name, const SwfTag& tag) {
    const auto* typed = dynamic_cast<const Tag*>(&tag);
    if (typed == nullptr)
        return false;
    XmlNode node(parent, name);
    writeXml(node, *typed);
    if constexpr (!std::is_same_v<Tag, SwfTagDefineSprite>) // whose tags' places are known by now
        writeRecordForm(node, tag);
    return true;
}

template <class Tag>
std::shared_ptr<SwfTag> makeAs() {
    if constexpr (std::is_same_v<Tag, SwfTagUnknown>)
        return std::make_shared<Tag>(uint16_t(0));
    else
        return std::make_shared<Tag>();
}

template <class Tag>
void readAs(XmlElement& element, SwfTag& tag) {
    readXml(element, static_cast<Tag&>(tag));
}

template <class Tag>
constexpr TagForm formOf(const char* name) {
    return {name, writeAs<Tag>, makeAs<Tag>, readAs<Tag>};
}

constexpr const char* unknownName = "Unknown";
const TagForm unknownForm = formOf<SwfTagUnknown>(unknownName);

const TagForm* formByCode(uint16_t code, bool fullForm) {
    static const std::unordered_map<uint16_t, TagForm> classic = {
#define SWF_TAG(code, name) {code, formOf<SwfTag##name>(#name)},
#include "SwfTags.def"
    };
    static const std::unordered_map<uint16_t, TagForm> full = {
#define SWF_TAG(code, name) {code, formOf<SwfTag##name>(#name)},
#define SWF_FULL_TAG SWF_TAG
#include "SwfTags.def"
    };
    const auto& forms = fullForm ? full : classic;
    const auto found = forms.find(code);
    return found == forms.end() ? nullptr : &found->second;
}

const TagForm* formByName(std::string_view name, bool fullForm) {
    static const std::unordered_map<std::string_view, TagForm> classic = {
        {unknownName, unknownForm},
#define SWF_TAG(code, name) {#name, formOf<SwfTag##name>(#name)},
#include "SwfTags.def"
    };
    static const std::unordered_map<std::string_view, TagForm> full = {
        {unknownName, unknownForm},
#define SWF_TAG(code, name) {#name, formOf<SwfTag##name>(#name)},
#define SWF_FULL_TAG SWF_TAG
#include "SwfTags.def"
    };
    const auto& forms = fullForm ? full : classic;
    const auto found = forms.find(name);
    return found == forms.end() ? nullptr : &found->second;
}

// The tag's bytes in the form that keeps any tag.
void writeUnknown(XmlNode& parent, uint16_t code, SwfBytes body) {
    writeChild(parent, unknownForm.name, SwfTagUnknown(code, std::move(body)));
}

SwfBytes bodyOf(SwfTag& tag, const SwfContext& movie) {
    if (!tag.source.empty()) {
        const size_t header = SwfTag::headerSize(tag.source.span());
        return tag.source.part(header, tag.source.size() - header);
    }
    SwfContext context = movie;
    context.tagType = tag.type;
    tag.prepare();
    const uint32_t size = tag.getSize(context);
    SwfOStream stream(uint64_t(size) + tag.headerSize());
    stream.context = context;
    tag.write(stream);
    stream.flushBits();
    std::vector<uint8_t> body(stream.begin() + tag.headerSize(), stream.end());
    body.resize(size);
    return SwfBytes::adopt(std::move(body));
}

void warnKeptRaw(XmlWriteContext& context, const SwfTag& tag, const std::string& reason) {
    if (context.warnings == nullptr)
        return;
    SwfWarning warning;
    warning.kind = SwfWarning::Kind::keptRaw;
    warning.tagCode = tag.type;
    warning.tagName = tagName(tag.type);
    warning.path = tagPathText(context.tagPath);
    warning.reason = reason;
    context.warnings->add(std::move(warning));
}

// A record by itself, read in the movie's form. None for an End; Unknown where the body is not of the layout.
SwfTags readRecord(uint16_t code, std::span<const uint8_t> body, const SwfContext& movie) {
    SwfOStream record(body.size() + SwfTag::longHeaderSize);
    constexpr uint32_t longLength = 63; // the length follows
    record.writeUI16(static_cast<uint16_t>(code << 6 | longLength));
    record.writeUI32(static_cast<uint32_t>(body.size()));
    record.writeBytes(body);
    SwfIStream stream(record.begin(), static_cast<size_t>(record.end() - record.begin()));
    stream.context = movie;
    stream.context.keepRaw = true;
    stream.context.readLater = false;
    stream.context.warnings = nullptr;
    SwfTags list;
    list.readUntil(stream, stream.size());
    return list;
}

// Whether the full form shows what stands as Unknown in the classic one. What can be read has names there. Big bodies,
// mostly of fonts, are hardly ever broken: they are not read for it, which would take longer than showing their bytes.
void countUnknown(XmlWriteContext& context, uint16_t code, const SwfBytes& body) {
    constexpr size_t mostRead = 32 * 1024;
    if (context.differences == nullptr || formByCode(code, true) == nullptr)
        return;
    if (body.size() > mostRead) {
        ++context.differences->tags;
        return;
    }
    SwfContext full = context.swf;
    full.fullForm = true;
    const SwfTags read = readRecord(code, body.span(), full);
    context.differences->tags += read.count() == 0 || !read.at(0).isUnknown();
}

} // namespace

SwfTags readBytes(SwfTag& tag, const SwfContext& movie) {
    const SwfBytes body = bodyOf(tag, movie);
    return readRecord(tag.type, body.span(), movie);
}

static void writeForm(XmlNode& parent, SwfTag& tag) {
    const size_t start = parent.out().size();
    XmlWriteContext& context = parent.context();
    const FormDifferences before = context.differences == nullptr ? FormDifferences() : *context.differences;
    if (tag.isUnknown() && context.differences != nullptr)
        countUnknown(context, tag.type, bodyOf(tag, context.swf));
    try {
        const TagForm* form = tag.isUnknown() ? &unknownForm : formByCode(tag.type, parent.fullForm());
        if (form != nullptr && form->write(parent, form->name, tag))
            return;
        writeUnknown(parent, tag.type, {}); // a code without a form and an empty body
    } catch (SwfException& error) {
        parent.out().cut(start); // the half-written element would compile into a wrong tag
        if (!context.keepRaw) {
            error.addPlace("tag " + tagPathText(context.tagPath) + " (" + tagName(tag.type) + ")");
            throw;
        }
        warnKeptRaw(context, tag, error.what());
        SwfBytes body = bodyOf(tag, context.swf);
        if (context.differences != nullptr) {
            *context.differences = before;
            countUnknown(context, tag.type, body);
        }
        writeUnknown(parent, tag.type, std::move(body));
    }
}

std::optional<std::string> reasonOfUnknown(uint16_t code, std::span<const uint8_t> body, const SwfContext& movie) {
    const TagForm* form = formByCode(code, movie.fullForm);
    if (form == nullptr)
        return formByCode(code, true) == nullptr ? "no layout of it is known" : "only the full form shows it";
    const SwfTags read = readRecord(code, body, movie);
    if (read.count() == 0)
        return {};
    const SwfTag& tag = read.at(0);
    if (tag.isUnknown())
        return static_cast<const SwfTagUnknown&>(tag).reason;
    XmlWriteContext writing;
    writing.swf = movie;
    writing.keepRaw = writing.abcAsData = true;
    XmlText text;
    XmlNode root(text, writing, 0, "Movie");
    try {
        form->write(root, form->name, tag);
        return {};
    } catch (const SwfException& error) {
        return error.what();
    }
}

// What the full form says of any tag. Stands last: the first attribute tells which tag it is.
void writeRecordForm(XmlNode& node, const SwfTag& tag) {
    if (!node.fullForm())
        return;
    if (tag.longHeader && tag.size < 63)
        node.attribute("LongHeader", true);
    if (tag.lacksNul)
        node.attribute("MissingNul", true);
    if (!tag.trailing.empty())
        node.attribute("Trailing", formatHexBytes(tag.trailing.span()));
}

static void readRecordForm(XmlElement& element, SwfTag& tag) {
    if (!element.fullForm())
        return;
    tag.longHeader = element.boolean("LongHeader");
    if (SwfTag::mayEndInText(tag.type))
        tag.lacksNul = element.boolean("MissingNul");
    const std::string_view trailing = element.attribute("Trailing", XmlValueForm::text(hexBytesForm)).value_or("");
    std::vector<uint8_t> bytes(trailing.size() / 2);
    if (!parseHexBytes(trailing, bytes))
        element.refuse("Trailing", "it is not bytes in hexadecimal");
    if (!bytes.empty())
        tag.trailing = SwfBytes::adopt(std::move(bytes));
}

void writeTag(XmlNode& parent, SwfTag& tag) {
    const XmlText& out = parent.out();
    const size_t before = out.size();
    if (const SwfTagLater* later = tag.later()) {
        XmlWriteContext& context = parent.context();
        writeForm(parent, *later->read(context.warnings, &context.outline));
        context.outline.script = nullptr;
    } else {
        writeForm(parent, tag);
    }
    if (std::vector<TagText>* texts = parent.context().tagTexts)
        texts->push_back({out.view().find('<', before), out.size(), &tag});
}

void writeTagList(XmlNode& parent, const SwfTags& tags) {
    XmlText& out = parent.out();
    out.reserve(out.size() + tags.count() * textPerTag);
    std::vector<uint32_t>& path = parent.context().tagPath;
    path.push_back(0);
    for (const auto& tag : tags.items()) {
        writeTag(parent, *tag);
        ++path.back();
    }
    path.pop_back();
}

std::shared_ptr<SwfTag> makeTag(std::string_view elementName) {
    const TagForm* form = formByName(elementName, false);
    if (form == nullptr)
        throw std::runtime_error("Trying to get unknown type from factory");
    return form->make();
}

bool isTagElement(std::string_view name, bool fullForm) { return formByName(name, fullForm) != nullptr; }

const XmlNameGroup& tagElements(bool fullForm) {
    static constexpr std::string_view classicNames[] = {
#define SWF_TAG(code, name) #name,
#include "SwfTags.def"
        unknownName};
    static constexpr std::string_view fullNames[] = {
#define SWF_TAG(code, name) #name,
#define SWF_FULL_TAG SWF_TAG
#include "SwfTags.def"
        unknownName};
    static constexpr XmlNameGroup classic{"Tags", classicNames}, full{"Tags", fullNames};
    return fullForm ? full : classic;
}

std::shared_ptr<SwfTag> readTag(XmlElement& element) {
    if (const auto& untouched = element.context().untouched) {
        if (std::shared_ptr<SwfTag> kept = untouched(element.offset())) {
            element.acceptAll();
            return kept;
        }
    }
    const TagForm* form = formByName(element.name(), element.fullForm());
    if (form == nullptr) {
        element.skip(noTagReason);
        return nullptr;
    }
    std::shared_ptr<SwfTag> tag = form->make();
    form->read(element, *tag);
    readRecordForm(element, *tag);
    if (SpelledTexts* spelled = element.context().spelled)
        spelled->keep(tag);
    return tag;
}

void readTagList(XmlElement& parent, SwfTags& tags) {
    std::vector<uint32_t>& path = parent.context().tagPath;
    uint32_t index = 0;
    path.push_back(0);
    for (XmlElement child : parent.children(tagElements(parent.fullForm()))) {
        path.back() = index++; // stays until the child has given its warnings
        try {
            if (auto tag = readTag(child))
                tags.append(std::move(tag));
        } catch (SwfException& error) {
            error.addTag(index - 1, std::string(child.name())); // Not the path's: inner lists may have left theirs.
            throw;
        }
    }
    path.pop_back();
}

} // namespace xml2swf
