#include "StaticTexts.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "MovieStrings.h"

namespace zelk {

using namespace libswf;

namespace {

constexpr double twipsPerPixel = 20;

// A record with what holds in it from the records before.
struct Placed {
    const SwfTextRecord* record = nullptr;
    std::optional<uint16_t> font;
    uint16_t height = 0;
    int64_t start = 0, end = 0, y = 0; // twips

    bool has(uint8_t bit) const { return (record->flags & bit) != 0; }
};

std::vector<Placed> placed(const SwfTextRecords& records) {
    std::vector<Placed> result;
    Placed now;
    for (const SwfTextRecord& record : records) {
        now.record = &record;
        if (now.has(SwfTextRecord::fontBit)) {
            now.font = record.fontId;
            now.height = record.height;
        }
        now.start = now.has(SwfTextRecord::xOffsetBit) ? record.xOffset : now.end;
        if (now.has(SwfTextRecord::yOffsetBit))
            now.y = record.yOffset;
        now.end = now.start;
        for (const SwfGlyphEntry& glyph : record.glyphs)
            now.end += glyph.advance;
        result.push_back(now);
    }
    return result;
}

// The last record whose place follows from the width of this one.
size_t endOfRun(const std::vector<Placed>& records, size_t at) {
    while (at + 1 < records.size() && !records[at + 1].has(SwfTextRecord::xOffsetBit))
        ++at;
    return at;
}

double scaleOf(const SwfMatrix& matrix) { return matrix.hasScale ? matrix.scaleX : 1; }

bool isTurned(const SwfMatrix& matrix) {
    return matrix.hasRotate && (matrix.rotateSkew0 != 0 || matrix.rotateSkew1 != 0);
}

// Where a run has to end: at the record behind it on the same line, or at the right edge of the bounds.
struct Limit {
    double end = 0; // twips
    bool isBounds = false;
};

Limit limitOf(const SwfTagDefineText& text, const std::vector<Placed>& records, size_t runEnd) {
    const auto end = static_cast<double>(records[runEnd].end);
    if (runEnd + 1 < records.size()) {
        const Placed& next = records[runEnd + 1];
        if (next.y == records[runEnd].y && next.start >= records[runEnd].start)
            return {std::max(end, static_cast<double>(next.start)), false};
    }
    const double scale = scaleOf(text.matrix);
    if (isTurned(text.matrix) || scale <= 0)
        return {end, false};
    return {std::max(end, std::floor((double(text.bounds.Xmax) - text.matrix.translateX) / scale)), true};
}

std::string fontText(uint16_t id, const TextFont& font) {
    return "font " + std::to_string(id) + (font.name.empty() ? "" : " (" + font.name + ")");
}

// Characters of glyphs; or why there are none.
void read(const Placed& record, const TextFonts& fonts, StaticText& result) {
    const TextFont* font = record.font ? fonts.find(*record.font) : nullptr;
    if (font == nullptr) {
        result.problem = record.font ? "the movie has no font " + std::to_string(*record.font) + " with glyphs"
                                     : "no font is chosen";
        return;
    }
    if (font->characters.empty()) {
        result.problem = fontText(*record.font, *font) + " does not say what characters its glyphs are";
        return;
    }
    for (const SwfGlyphEntry& glyph : record.record->glyphs) {
        const std::optional<char32_t> character = font->characters.ofGlyph(glyph.index);
        if (!character) {
            result.problem = fontText(*record.font, *font) + " does not say what character glyph " +
                             std::to_string(glyph.index) + " is";
            result.characters.clear();
            return;
        }
        result.characters += *character;
    }
}

int32_t advanceOf(const TextFont& font, uint32_t glyph, uint16_t height) {
    return static_cast<int32_t>(std::lround(font.advance(glyph).value_or(0) * height));
}

// What most glyphs have beyond the advances of their font: the letter spacing.
int32_t spacingOf(const Placed& record, const TextFont& font) {
    std::map<int32_t, uint32_t> counts;
    for (const SwfGlyphEntry& glyph : record.record->glyphs)
        ++counts[glyph.advance - advanceOf(font, glyph.index, record.height)];
    const auto most = std::max_element(counts.begin(), counts.end(),
                                       [](const auto& a, const auto& b) { return a.second < b.second; });
    return most == counts.end() || std::abs(most->first) <= 1 ? 0 : most->first; // 1 is rounding
}

SwfGlyphEntries glyphsFor(const Placed& record, const TextFonts& fonts, std::u32string_view characters) {
    constexpr size_t mostGlyphs = 255;
    const TextFont* font = record.font ? fonts.find(*record.font) : nullptr;
    if (font == nullptr || font->characters.empty())
        throw TextRefusal{"its font does not say what characters its glyphs are"};
    if (characters.size() > mostGlyphs)
        throw TextRefusal{"a record of a static text has at most 255 characters"};
    std::map<char32_t, uint32_t> used; // of several glyphs for a character the one that stands there already
    for (const SwfGlyphEntry& glyph : record.record->glyphs) {
        if (const std::optional<char32_t> character = font->characters.ofGlyph(glyph.index))
            used.emplace(*character, glyph.index);
    }
    const int32_t spacing = spacingOf(record, *font);
    SwfGlyphEntries glyphs;
    for (const char32_t c : characters) {
        const auto before = used.find(c);
        const std::optional<uint32_t> glyph = before != used.end() ? before->second : font->characters.glyphOf(c);
        if (!glyph)
            throw TextRefusal{fontText(*record.font, *font) + " has no glyph for " + characterName(c)};
        if (!font->advance(*glyph))
            throw TextRefusal{fontText(*record.font, *font) + " has no advances, and no text shows how wide " +
                              characterName(c) + " is"};
        glyphs.append({*glyph, advanceOf(*font, *glyph, record.height) + spacing});
    }
    return glyphs;
}

std::string pixels(double twips) {
    return std::to_string(static_cast<int64_t>(std::ceil(twips / twipsPerPixel))) + " px";
}

} // namespace

std::vector<StaticText> staticTexts(const SwfTagDefineText& text, const TextFonts& fonts) {
    const std::vector<Placed> records = placed(text.records);
    std::vector<StaticText> result;
    for (size_t i = 0; i < records.size(); ++i) {
        const Placed& record = records[i];
        if (record.record->glyphs.empty())
            continue;
        StaticText found;
        found.record = static_cast<uint32_t>(i);
        found.font = record.font;
        read(record, fonts, found);
        const size_t runEnd = endOfRun(records, i);
        const auto width = static_cast<double>(record.end - record.start);
        const double left = limitOf(text, records, runEnd).end - static_cast<double>(records[runEnd].end);
        found.room = {width / twipsPerPixel, (width + left) / twipsPerPixel};
        result.push_back(std::move(found));
    }
    return result;
}

void putStaticText(SwfTagDefineText& text, uint32_t record, std::u32string_view characters, const TextFonts& fonts,
                   TextChangeOptions options) {
    const std::vector<Placed> records = placed(text.records);
    SwfGlyphEntries glyphs = glyphsFor(records.at(record), fonts, characters);
    int64_t width = 0;
    for (const SwfGlyphEntry& glyph : glyphs)
        width += glyph.advance;
    const Placed& changed = records[record];
    const size_t runEnd = endOfRun(records, record);
    const auto end = static_cast<double>(records[runEnd].end + width - (changed.end - changed.start));
    const Limit limit = limitOf(text, records, runEnd);
    if (end > limit.end) {
        if (!limit.isBounds || !options.widen)
            throw TextRefusal{"too wide by " + pixels(end - limit.end)};
        text.bounds.Xmax = static_cast<int32_t>(std::ceil(end * scaleOf(text.matrix))) + text.matrix.translateX;
    }
    text.records[record].glyphs = std::move(glyphs);
}

} // namespace zelk
