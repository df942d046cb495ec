#include "MovieOutline.h"

#include <algorithm>

#include "MovieScan.h"

namespace zelk {

TagKind kindOfTag(std::string_view element) {
    constexpr std::pair<std::string_view, TagKind> beginnings[] = {
        {"DefineShape", TagKind::shape},    {"DefineMorphShape", TagKind::shape}, {"DefineSprite", TagKind::sprite},
        {"DefineFont", TagKind::font},      {"DefineText", TagKind::text},        {"DefineEditText", TagKind::text},
        {"CSMTextSettings", TagKind::text}, {"DefineBits", TagKind::picture},     {"JPEGTables", TagKind::picture},
        {"DefineSound", TagKind::sound},    {"SoundStream", TagKind::sound},      {"StartSound", TagKind::sound},
        {"DefineButton", TagKind::button},  {"DoAction", TagKind::script},        {"DoInitAction", TagKind::script},
        {"DoABC", TagKind::script}};
    for (const auto& [beginning, kind] : beginnings) {
        if (element.starts_with(beginning))
            return kind;
    }
    return TagKind::other;
}

class OutlineReader : public MovieVisitor {
public:
    explicit OutlineReader(MovieOutline& result) : _result(result) {}

    void tagBegins(const ScannedTag& tag, std::string_view startTag) override {
        const TagKind kind = kindOfTag(tag.name);
        _result._tags.push_back({static_cast<uint32_t>(tag.start), 0, kind});
        if (tag.list == ScannedTag::movie || kind == TagKind::script)
            _result._kinds[static_cast<size_t>(kind)].push_back(tag.number);
        if (tag.list != ScannedTag::movie)
            followFrame(tag, startTag);
        if (kind == TagKind::sprite)
            _sprites.push_back({});
    }

    void tagEnds(const ScannedTag& tag, size_t end) override {
        _result._tags[tag.number].end = static_cast<uint32_t>(end);
        if (_result._tags[tag.number].kind == TagKind::sprite)
            _sprites.pop_back();
    }

    void element(const ScannedTag& around, std::string_view startTag, size_t offset) override {
        if (!around.name.starts_with("DoABC") || elementName(startTag) != "Class")
            return;
        const auto name = attributeOf(startTag, "Name");
        _result._parts.push_back(
            {around.number, static_cast<uint32_t>(offset), name ? decoded(name->value) : std::string()});
    }

private:
    struct Sprite {
        uint32_t frames = 0;
        bool isInFrame = false;
        size_t frame = 0; // in the parts
    };

    void followFrame(const ScannedTag& tag, std::string_view startTag) {
        Sprite& sprite = _sprites.back();
        if (!sprite.isInFrame) {
            sprite.frame = _result._parts.size();
            _result._parts.push_back(
                {tag.list, static_cast<uint32_t>(tag.start), "Frame " + std::to_string(++sprite.frames)});
        }
        sprite.isInFrame = tag.name != "ShowFrame";
        const auto label = tag.name == "FrameLabel" ? attributeOf(startTag, "Name") : std::nullopt;
        if (label)
            _result._parts[sprite.frame].name += " (" + decoded(label->value) + ")";
    }

    MovieOutline& _result;
    std::vector<Sprite> _sprites;
};

MovieOutline::MovieOutline(std::string_view text) {
    const xml2swf::MovieSpan movie = xml2swf::findTagSpans(text).movie;
    OutlineReader reader(*this);
    MovieScan(text, movie, reader).run();
    std::ranges::stable_sort(_parts, {}, &OutlinePart::tag);
}

std::span<const OutlinePart> MovieOutline::parts(uint32_t tag) const {
    return {std::ranges::lower_bound(_parts, tag, {}, &OutlinePart::tag),
            std::ranges::upper_bound(_parts, tag, {}, &OutlinePart::tag)};
}

} // namespace zelk
