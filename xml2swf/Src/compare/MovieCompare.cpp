#include "MovieCompare.h"

#include <algorithm>
#include <functional>

#include "AbcCompare.h"
#include "Conversion.h"
#include "SwfTagDefineSprite.h"
#include "TagAligner.h"
#include "XmlDifference.h"
#include "XmlNumbers.h"

namespace xml2swf {

using namespace libswf;

namespace {

// A tag with its element's text; of a sprite the start tag only, as the tags inside have nodes of their own.
struct TagNode {
    const SwfTag* tag;
    size_t start;
    std::string_view text;
    std::vector<TagNode> children;
    TagKeys keys{};

    bool isSprite() const { return dynamic_cast<const SwfTagDefineSprite*>(tag) != nullptr; }
};

uint64_t mixed(uint64_t a, uint64_t b) {
    return (a ^ (b + 0x9e3779b97f4a7c15 + (a << 6) + (a >> 2))) * 0xff51afd7ed558ccd;
}

uint64_t hashOf(std::string_view text) { return std::hash<std::string_view>()(text); }

// The start tag without what closes it, which tells whether content follows.
std::string_view startTag(std::string_view element) {
    std::string_view text = element.substr(0, element.find('>')); // values have it escaped
    if (text.ends_with(" /"))
        text.remove_suffix(2);
    return text;
}

std::string_view firstValue(std::string_view element) {
    const std::string_view text = startTag(element);
    const size_t start = text.find('"');
    return start == text.npos ? std::string_view() : text.substr(start, text.find('"', start + 1) - start);
}

TagKeys keysOf(const TagNode& node) {
    const uint64_t code = mixed(node.tag->type, 1);
    uint64_t whole = mixed(code, hashOf(node.text));
    for (const TagNode& child : node.children)
        whole = mixed(whole, child.keys[0]);
    return {whole, mixed(code, hashOf(firstValue(node.text))), code};
}

// The tags of a movie as a tree. Refers to the movie.
class MovieTree {
public:
    explicit MovieTree(SwfMovieSafe& movie) {
        std::vector<TagText> places;
        ConversionOptions options;
        options.keepRaw = true;
        options.abcAsData = true;   // its code is taken apart only where it differs
        options.ignoreFonts = true; // the same letter may be another glyph
        options.tagTexts = &places;
        _text = swfToXml(movie, options);
        for (const TagText& place : places)
            add(place); // a sprite comes after the tags inside
    }
    MovieTree(const MovieTree&) = delete;
    MovieTree& operator=(const MovieTree&) = delete;

    const std::vector<TagNode>& tags() const { return _tags; }

private:
    void add(const TagText& place) {
        TagNode node{place.tag, place.start, std::string_view(_text).substr(place.start, place.end - place.start), {}};
        auto inside = _tags.end();
        while (inside != _tags.begin() && (inside - 1)->start > place.start)
            --inside;
        node.children.assign(std::move_iterator(inside), std::move_iterator(_tags.end()));
        _tags.erase(inside, _tags.end());
        if (node.isSprite())
            node.text = startTag(node.text);
        node.keys = keysOf(node);
        _tags.push_back(std::move(node));
    }

    std::string _text;
    std::vector<TagNode> _tags;
};

std::span<const uint8_t> bodyOf(const SwfTag& tag) {
    const std::span<const uint8_t> record = tag.source.span();
    return record.subspan(SwfTag::headerSize(record));
}

// The block of ActionScript 3 in a tag; none in other tags.
std::span<const uint8_t> blockOf(const SwfTag& tag) {
    constexpr uint16_t doAbcDefine = 72, doAbc = 82;
    constexpr size_t flags = 4;
    const std::span<const uint8_t> body = bodyOf(tag);
    if (tag.type == doAbcDefine)
        return body;
    if (tag.type != doAbc || body.size() < flags)
        return {};
    const auto nameEnd = std::find(body.begin() + flags, body.end(), 0);
    return nameEnd == body.end() ? std::span<const uint8_t>()
                                 : body.subspan(static_cast<size_t>(nameEnd - body.begin()) + 1);
}

using Path = std::vector<uint32_t>;

class TagComparer {
public:
    explicit TagComparer(std::vector<TagComparison>& out) : _out(out) {}

    void compareLists(const std::vector<TagNode>& a, const std::vector<TagNode>& b) {
        const std::vector<uint32_t> partners = align(a, b);
        _pathA.push_back(0);
        _pathB.push_back(0);
        for (size_t i = 0; i < a.size(); ++i, ++_pathA.back()) {
            if (partners[i] == noPartner) {
                add(TagRelation::onlyInA, &a[i], nullptr);
                continue;
            }
            while (_pathB.back() < partners[i])
                addOnlyInB(b);
            comparePair(a[i], b[partners[i]]);
            ++_pathB.back();
        }
        while (_pathB.back() < b.size())
            addOnlyInB(b);
        _pathA.pop_back();
        _pathB.pop_back();
    }

private:
    static std::vector<uint32_t> align(const std::vector<TagNode>& a, const std::vector<TagNode>& b) {
        std::vector<TagKeys> keysA, keysB;
        for (const TagNode& node : a)
            keysA.push_back(node.keys);
        for (const TagNode& node : b)
            keysB.push_back(node.keys);
        return alignTags(keysA, keysB);
    }

    void add(TagRelation relation, const TagNode* a, const TagNode* b) {
        TagComparison& entry = _out.emplace_back();
        entry.relation = relation;
        entry.code = (a != nullptr ? a : b)->tag->type;
        if (a != nullptr) {
            entry.pathA = tagPathText(_pathA);
            entry.sizeA = static_cast<uint32_t>(bodyOf(*a->tag).size());
        }
        if (b != nullptr) {
            entry.pathB = tagPathText(_pathB);
            entry.sizeB = static_cast<uint32_t>(bodyOf(*b->tag).size());
        }
    }

    void addOnlyInB(const std::vector<TagNode>& b) {
        add(TagRelation::onlyInB, nullptr, &b[_pathB.back()]);
        ++_pathB.back();
    }

    void comparePair(const TagNode& a, const TagNode& b) {
        const std::span<const uint8_t> bytesA = bodyOf(*a.tag), bytesB = bodyOf(*b.tag);
        const bool identical = std::equal(bytesA.begin(), bytesA.end(), bytesB.begin(), bytesB.end());
        const size_t entry = _out.size();
        add(identical ? TagRelation::identical : TagRelation::sameMeaning, &a, &b);
        if (a.isSprite() && b.isSprite())
            compareLists(a.children, b.children);
        if (identical)
            return;
        if (a.text != b.text)
            differs(entry, differenceOf(a, b));
        else
            differsInside(entry);
    }

    static FieldDifference differenceOf(const TagNode& a, const TagNode& b) {
        if (startTag(a.text) == startTag(b.text)) {
            if (auto field = abcDifference(blockOf(*a.tag), blockOf(*b.tag))) {
                field->path.insert(0, tagName(a.tag->type) + "/");
                return std::move(*field);
            }
        }
        return firstDifference(elementOf(a), elementOf(b));
    }

    static std::string elementOf(const TagNode& node) {
        return std::string(node.text) + (node.isSprite() ? " />" : "");
    }

    void differs(size_t entry, FieldDifference field) {
        _out[entry].relation = TagRelation::different;
        _out[entry].field = std::move(field);
    }

    // A sprite differs where the first of its tags does.
    void differsInside(size_t entry) {
        const auto inside =
            std::find_if(_out.begin() + static_cast<ptrdiff_t>(entry) + 1, _out.end(), [](const auto& tag) {
                return tag.relation != TagRelation::identical && tag.relation != TagRelation::sameMeaning;
            });
        if (inside == _out.end())
            return;
        const std::string name = "<" + tagName(inside->code) + ">";
        FieldDifference field;
        if (inside->relation == TagRelation::different)
            field = *inside->field;
        else if (inside->relation == TagRelation::onlyInA)
            field = {tagName(inside->code), name, {}};
        else
            field = {tagName(inside->code), {}, name};
        field.path.insert(0, tagName(_out[entry].code) + "/");
        differs(entry, std::move(field));
    }

    std::vector<TagComparison>& _out;
    Path _pathA, _pathB;
};

// What stands after the End of the movie, End left out: "2 bytes (00 ff)".
std::string tailText(const SwfMovieSafe& movie) {
    constexpr size_t shown = 16;
    static constexpr char digits[] = "0123456789abcdef";
    std::span<const uint8_t> tail = movie.source().tail->span();
    if (tail.size() >= 2 && tail[0] == 0 && tail[1] == 0)
        tail = tail.subspan(2);
    std::string text = std::to_string(tail.size()) + " bytes";
    for (size_t i = 0; i < std::min(tail.size(), shown); ++i)
        text.append(i == 0 ? ": " : " ").append({digits[tail[i] >> 4], digits[tail[i] & 15]});
    return text;
}

class HeaderComparer {
public:
    explicit HeaderComparer(std::vector<FieldDifference>& out) : _out(out) {}

    void compare(const SwfMovieSafe& a, const SwfMovieSafe& b) {
        number("SwfVersion", a.version, b.version);
        text("IsCompressed", a.isCompressed ? "true" : "false", b.isCompressed ? "true" : "false");
        text("FrameRate", formatReal(a.frameRate).view(), formatReal(b.frameRate).view());
        number("MinX", a.frameSize.Xmin, b.frameSize.Xmin);
        number("MaxX", a.frameSize.Xmax, b.frameSize.Xmax);
        number("MinY", a.frameSize.Ymin, b.frameSize.Ymin);
        number("MaxY", a.frameSize.Ymax, b.frameSize.Ymax);
        number("FrameCount", a.frameCount, b.frameCount);
        text("AfterLastTag", tailText(a), tailText(b));
    }

private:
    void number(const char* field, int64_t a, int64_t b) {
        text(field, formatInteger(a).view(), formatInteger(b).view());
    }
    void text(const char* field, std::string_view a, std::string_view b) {
        if (a != b)
            _out.push_back({field, std::string(a), std::string(b)});
    }

    std::vector<FieldDifference>& _out;
};

} // namespace

const char* relationText(TagRelation relation) {
    switch (relation) {
    case TagRelation::identical: return "identical";
    case TagRelation::sameMeaning: return "same meaning";
    case TagRelation::different: return "different";
    case TagRelation::onlyInA: return "only in A";
    default: return "only in B";
    }
}

std::array<uint64_t, tagRelations> MovieComparison::counts() const {
    std::array<uint64_t, tagRelations> result{};
    for (const TagComparison& tag : tags)
        ++result[static_cast<size_t>(tag.relation)];
    return result;
}

bool MovieComparison::same() const {
    const auto number = counts();
    return header.empty() && number[0] + number[1] == tags.size();
}

MovieComparison compareMovies(SwfMovieSafe& a, SwfMovieSafe& b) {
    MovieComparison result;
    HeaderComparer(result.header).compare(a, b);
    const MovieTree treeA(a), treeB(b);
    TagComparer(result.tags).compareLists(treeA.tags(), treeB.tags());
    return result;
}

} // namespace xml2swf
