#include "TagWords.h"

#include <QStringList>

#include "SwfAllTags.h"

namespace zelk {

using namespace libswf;

namespace {

QString number(uint64_t count, const char* one, const char* many) {
    return count == 0 ? QString() : QStringLiteral("%1 %2").arg(count).arg(QLatin1String(count == 1 ? one : many));
}

QString sizeOf(const SwfRect& rect) {
    return pixelWords((double(rect.Xmax) - rect.Xmin) / 20, (double(rect.Ymax) - rect.Ymin) / 20);
}

QString quoted(const SwfString& text) {
    constexpr int longest = 40;
    const std::string_view bytes = text.view().substr(0, 4 * longest);
    const QString all = QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size())).simplified();
    return QStringLiteral("“%1”").arg(all.size() > longest ? all.left(longest) + u'…' : all);
}

uint64_t edgesOf(const SwfShapeRecords& records) {
    uint64_t edges = 0;
    for (const SwfShapeRecord* record : records.items())
        edges += record->kind != SwfShapeRecord::Kind::styleChange;
    return edges;
}

struct Styles {
    uint64_t fills = 0, lines = 0;
};

QString words(const Styles& styles, const SwfShapeRecords& records) {
    Styles all = styles;
    for (const SwfShapeRecord* record : records.items()) {
        if (record->kind != SwfShapeRecord::Kind::styleChange)
            continue;
        if (const auto& change = static_cast<const SwfStyleChange&>(*record); change.newStyles != nullptr) {
            all.fills += change.newStyles->fillStyles.items.size();
            all.lines += change.newStyles->lineStyles.items.size();
        }
    }
    QStringList parts{number(all.fills, "fill", "fills"), number(all.lines, "line style", "line styles"),
                      number(edgesOf(records), "edge", "edges")};
    parts.removeAll(QString());
    return parts.join(QStringLiteral(", "));
}

QStringList partsOf(const SwfShapeTag& tag) {
    return {sizeOf(tag.bounds), words({tag.fillStyles.items.size(), tag.lineStyles.items.size()}, tag.records)};
}

QStringList partsOf(const SwfMorphShapeTag& tag) {
    return {sizeOf(tag.startBounds) + QStringLiteral(" → ") + sizeOf(tag.endBounds),
            words({tag.fillStyles.items.size(), tag.lineStyles.items.size()}, tag.startEdges)};
}

QStringList partsOf(const SwfTagDefineText& tag) {
    uint64_t glyphs = 0;
    for (const SwfTextRecord& record : tag.records)
        glyphs += record.glyphs.size();
    return {sizeOf(tag.bounds), number(glyphs, "glyph", "glyphs")};
}

QStringList partsOf(const SwfTagDefineEditText& tag) {
    QStringList parts{sizeOf(tag.bounds)};
    if (!tag.varName.empty())
        parts.append(QStringLiteral("variable ") + quoted(tag.varName));
    if (tag.hasText && !tag.html)
        parts.append(quoted(tag.initialText));
    return parts;
}

QStringList partsOf(const SwfGlyphFont& tag) {
    QStringList parts{tag.glyphs.count() == 0 ? QStringLiteral("no glyphs")
                                              : number(tag.glyphs.count(), "glyph", "glyphs")};
    if (const auto* named = dynamic_cast<const SwfTagDefineFont2*>(&tag)) {
        const QLatin1String style(named->bold ? (named->italic ? " bold italic" : " bold")
                                              : (named->italic ? " italic" : ""));
        parts.prepend(quoted(named->fontName) + style);
    }
    return parts;
}

QStringList partsOf(const SwfTagDefineSound& tag) {
    constexpr const char* formats[] = {"PCM", "ADPCM", "MP3", "PCM",   "Nellymoser", "Nellymoser", "Nellymoser", "",
                                       "",    "",      "",    "Speex", "",           "",           "",           ""};
    constexpr double rates[] = {5512.5, 11025, 22050, 44100};
    const double rate = rates[tag.format.soundRate & 3], seconds = tag.soundSampleCount / rate;
    return {QLatin1String(formats[tag.format.soundFormat & 15]), QStringLiteral("%1 Hz").arg(qRound(rate)),
            tag.format.soundType != 0 ? QStringLiteral("stereo") : QStringLiteral("mono"),
            seconds < 1 ? QStringLiteral("%1 ms").arg(seconds * 1000, 0, 'g', 3)
                        : QStringLiteral("%1 s").arg(seconds, 0, 'f', 1)};
}

// Past the name and the id.
QStringList partsOf(const SwfTag& tag) {
    if (const auto* shape = dynamic_cast<const SwfShapeTag*>(&tag))
        return partsOf(*shape);
    if (const auto* morph = dynamic_cast<const SwfMorphShapeTag*>(&tag))
        return partsOf(*morph);
    if (const auto* text = dynamic_cast<const SwfTagDefineText*>(&tag))
        return partsOf(*text);
    if (const auto* field = dynamic_cast<const SwfTagDefineEditText*>(&tag))
        return partsOf(*field);
    if (const auto* font = dynamic_cast<const SwfGlyphFont*>(&tag))
        return partsOf(*font);
    if (const auto* sound = dynamic_cast<const SwfTagDefineSound*>(&tag))
        return partsOf(*sound);
    if (const auto* sprite = dynamic_cast<const SwfTagDefineSprite*>(&tag))
        return {number(sprite->tags.showFrames(), "frame", "frames"), number(sprite->tags.count(), "tag", "tags")};
    return {};
}

} // namespace

std::optional<uint16_t> characterId(const SwfTag& tag) {
    if (const auto* sprite = dynamic_cast<const SwfTagDefineSprite*>(&tag))
        return sprite->spriteId;
    if (const auto* button = dynamic_cast<const SwfTagDefineButton*>(&tag))
        return button->buttonId;
    if (const auto* button2 = dynamic_cast<const SwfTagDefineButton2*>(&tag))
        return button2->buttonId;
    return tag.isDefinition() ? std::optional(tag.definitionId()) : std::nullopt;
}

QString pixelWords(double width, double height) {
    const auto text = [](double value) {
        return QString::number(value < 10 ? qRound(value * 10) / 10.0 : qRound(value));
    };
    return QStringLiteral("%1 × %2 px").arg(text(width), text(height));
}

QString tagWords(const SwfTag& tag) {
    QString name = QString::fromStdString(tagName(tag.type));
    if (const auto id = characterId(tag))
        name += QStringLiteral(" %1").arg(*id);
    QStringList parts = partsOf(tag);
    parts.removeAll(QString());
    return (QStringList(name) + parts).join(QStringLiteral(" · "));
}

} // namespace zelk
