// Placement of characters on the display list.
#pragma once

#include <optional>

#include "SwfClipActions.h"
#include "SwfFilters.h"
#include "SwfTag.h"

namespace libswf {

/// PlaceObject (4). The colour transform has no alpha terms; it is present when bytes are left after the matrix.
class SwfTagPlaceObject : public SwfTag {
public:
    uint16_t characterId = 0;
    uint16_t depth = 0;
    SwfMatrix matrix;
    bool hasColorTransform = false;
    SwfColorTransform colorTransform;

    SwfTagPlaceObject() : SwfTag(4) {}
    explicit SwfTagPlaceObject(SwfIStream& stream);

protected:
    void writeBody(SwfOStream& stream) override;
};

/// The flag byte that PlaceObject2 and PlaceObject3 share.
namespace SwfPlaceFlag {
constexpr uint8_t move = 0x01;
constexpr uint8_t character = 0x02;
constexpr uint8_t matrix = 0x04;
constexpr uint8_t colorTransform = 0x08;
constexpr uint8_t ratio = 0x10;
constexpr uint8_t name = 0x20;
constexpr uint8_t clipDepth = 0x40;
constexpr uint8_t clipActions = 0x80;
} // namespace SwfPlaceFlag

/// PlaceObject2 (26). Colour transforms carry alpha terms.
/// Up to SWF version 4 the flag of the clip actions is kept, but their data is neither read nor written.
class SwfTagPlaceObject2 : public SwfTag {
public:
    bool move = false; ///< changes or replaces what stands at the depth
    bool hasCharacter = false, hasMatrix = false, hasColorTransform = false, hasRatio = false, hasName = false;
    bool hasClipDepth = false, hasClipActions = false;
    uint16_t depth = 0;
    uint16_t characterId = 0;
    SwfMatrix matrix;
    SwfColorTransform colorTransform;
    uint16_t ratio = 0; ///< of a morph shape, from 0 to 65,535
    SwfString name;
    uint16_t clipDepth = 0; ///< the last depth that the character masks
    SwfClipActions clipActions;

    SwfTagPlaceObject2() : SwfTag(26) {}
    explicit SwfTagPlaceObject2(SwfIStream& stream);

protected:
    void writeBody(SwfOStream& stream) override;

private:
    uint8_t flags() const;
    void setFlags(uint8_t flags);
    bool holdsClipActions(const SwfContext& context) const { return hasClipActions && context.version > 4; }
};

/// The second flag byte of PlaceObject3.
namespace SwfPlaceFlag3 {
constexpr uint8_t filters = 0x01;
constexpr uint8_t blendMode = 0x02;
constexpr uint8_t cacheAsBitmap = 0x04;
constexpr uint8_t className = 0x08;
constexpr uint8_t image = 0x10;
constexpr uint8_t visible = 0x20;
constexpr uint8_t opaqueBackground = 0x40;
constexpr uint8_t reserved = 0x80;
/// Those whose fields the classic form does not know.
constexpr uint8_t withoutField = cacheAsBitmap | image | visible | opaqueBackground;
} // namespace SwfPlaceFlag3

/// PlaceObject3 (70). Colour transforms carry alpha terms.
/// The flag bytes stand as they are and decide which fields are read and written, whatever the fields hold; clip
/// actions are written in any version. Departures of the classic form, kept on purpose: flags of
/// SwfPlaceFlag3::withoutField bring no field with them, and of the ratio only the low 8 bits reach XML.
class SwfTagPlaceObject3 : public SwfTag {
public:
    uint8_t placeFlags = 0;    ///< SwfPlaceFlag
    uint8_t extendedFlags = 0; ///< SwfPlaceFlag3
    uint16_t depth = 0;
    SwfString className; ///< in the full form also of an image without a character
    uint16_t characterId = 0;
    SwfMatrix matrix;
    SwfColorTransform colorTransform;
    uint16_t ratio = 0;
    SwfString name;
    uint16_t clipDepth = 0;
    SwfFilterList filters;
    uint8_t blendMode = 0; ///< 0 and 1 normal, 2 layer to 14 hard light
    // Full form, with their flags.
    std::optional<uint8_t> bitmapCache; ///< real files may lack it in spite of the flag
    uint8_t visible = 0;                ///< 0 hidden, 1 shown
    SwfColor backgroundColor;           ///< RGBA
    SwfClipActions clipActions;

    SwfTagPlaceObject3() : SwfTag(70) {}
    explicit SwfTagPlaceObject3(SwfIStream& stream) : SwfTagPlaceObject3() { read(stream); }

    bool hasPlace(uint8_t flag) const { return (placeFlags & flag) != 0; }
    bool hasExtended(uint8_t flag) const { return (extendedFlags & flag) != 0; }
    bool hasClassName(const SwfContext& context) const;

protected:
    using SwfTag::SwfTag;
    void read(SwfIStream& stream);
    void writeBody(SwfOStream& stream) override;

private:
    void readDisplay(SwfIStream& stream);
    void writeDisplay(SwfOStream& stream) const;
};

/// PlaceObject4 (94): a PlaceObject3 and data about it. Full form only.
class SwfTagPlaceObject4 : public SwfTagPlaceObject3 {
public:
    SwfBytes metadata; ///< AMF, kept as bytes

    SwfTagPlaceObject4() : SwfTagPlaceObject3(94) {}
    explicit SwfTagPlaceObject4(SwfIStream& stream);

protected:
    void writeBody(SwfOStream& stream) override;
};

} // namespace libswf
