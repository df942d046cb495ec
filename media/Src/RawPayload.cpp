#include "RawPayload.h"

#include "SwfTagDefineFontInfo.h"
#include "SwfTagsAssets.h"

namespace zelk {

using namespace libswf;

const SwfBytes* rawPayload(const SwfTag& tag) {
    if (const auto* data = dynamic_cast<const SwfTagDefineBinaryData*>(&tag))
        return &data->data;
    if (const auto* script = dynamic_cast<const SwfTagDoABC*>(&tag))
        return &script->abcData;
    if (const auto* font = dynamic_cast<const SwfTagDefineFont4*>(&tag))
        return &font->fontData;
    if (const auto* unknown = dynamic_cast<const SwfTagUnknown*>(&tag))
        return &unknown->data;
    return nullptr;
}

std::shared_ptr<SwfTag> withRawPayload(const SwfTag& tag, SwfBytes bytes) {
    if (const auto* data = dynamic_cast<const SwfTagDefineBinaryData*>(&tag)) {
        auto result = std::make_shared<SwfTagDefineBinaryData>();
        result->characterId = data->characterId;
        result->data = std::move(bytes);
        return result;
    }
    if (const auto* script = dynamic_cast<const SwfTagDoABC*>(&tag)) {
        auto result = std::make_shared<SwfTagDoABC>();
        result->flags = script->flags;
        result->name = script->name;
        result->abcData = std::move(bytes);
        return result;
    }
    if (const auto* font = dynamic_cast<const SwfTagDefineFont4*>(&tag)) {
        auto result = std::make_shared<SwfTagDefineFont4>();
        result->characterId = font->characterId;
        result->bold = font->bold;
        result->italic = font->italic;
        result->fontName = font->fontName;
        result->hasFontData = true;
        result->fontData = std::move(bytes);
        return result;
    }
    if (const auto* unknown = dynamic_cast<const SwfTagUnknown*>(&tag)) {
        auto result = std::make_shared<SwfTagUnknown>(unknown->type);
        result->hasCharacterId = unknown->hasCharacterId;
        result->characterId = unknown->characterId;
        result->data = std::move(bytes);
        return result;
    }
    return nullptr;
}

} // namespace zelk
