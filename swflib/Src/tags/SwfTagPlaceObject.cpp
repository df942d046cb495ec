#include "SwfTagPlaceObject.h"

#include "SwfTagCodes.h"
#include "SwfWarnings.h"

namespace libswf {

SwfTagPlaceObject::SwfTagPlaceObject(SwfIStream& stream) : SwfTagPlaceObject() {
    stream.context.alpha = false;
    characterId = stream.readUI16("CharacterId");
    depth = stream.readUI16("Depth");
    matrix.read(stream);
    hasColorTransform = stream.bodyLeft() != 0;
    if (hasColorTransform)
        colorTransform.read(stream);
}

void SwfTagPlaceObject::writeBody(SwfOStream& stream) {
    stream.context.alpha = false;
    stream.writeUI16(characterId);
    stream.writeUI16(depth);
    matrix.write(stream);
    if (hasColorTransform)
        colorTransform.write(stream);
}

namespace {

struct PlaceFlagMember {
    uint8_t flag;
    bool SwfTagPlaceObject2::*member;
};

constexpr PlaceFlagMember flagMembers[] = {
    {SwfPlaceFlag::move, &SwfTagPlaceObject2::move},
    {SwfPlaceFlag::character, &SwfTagPlaceObject2::hasCharacter},
    {SwfPlaceFlag::matrix, &SwfTagPlaceObject2::hasMatrix},
    {SwfPlaceFlag::colorTransform, &SwfTagPlaceObject2::hasColorTransform},
    {SwfPlaceFlag::ratio, &SwfTagPlaceObject2::hasRatio},
    {SwfPlaceFlag::name, &SwfTagPlaceObject2::hasName},
    {SwfPlaceFlag::clipDepth, &SwfTagPlaceObject2::hasClipDepth},
    {SwfPlaceFlag::clipActions, &SwfTagPlaceObject2::hasClipActions},
};

void warnOfLeftOut(const SwfOStream& stream) {
    if (!stream.isCounter())
        addWarning(stream.context, SwfWarning::Kind::cut,
                   "a movie of version 4 or below holds no clip actions: they are left out");
}

} // namespace

uint8_t SwfTagPlaceObject2::flags() const {
    uint32_t flags = 0;
    for (const PlaceFlagMember& entry : flagMembers)
        flags |= this->*entry.member ? entry.flag : 0;
    return static_cast<uint8_t>(flags);
}

void SwfTagPlaceObject2::setFlags(uint8_t flags) {
    for (const PlaceFlagMember& entry : flagMembers)
        this->*entry.member = (flags & entry.flag) != 0;
}

SwfTagPlaceObject2::SwfTagPlaceObject2(SwfIStream& stream) : SwfTagPlaceObject2() {
    stream.context.alpha = true;
    setFlags(stream.readUI8("Flags"));
    depth = stream.readUI16("Depth");
    if (hasCharacter)
        characterId = stream.readUI16("CharacterId");
    if (hasMatrix)
        matrix.read(stream);
    if (hasColorTransform)
        colorTransform.read(stream);
    if (hasRatio)
        ratio = stream.readUI16("Ratio");
    if (hasName)
        stream.readString(name, "Name");
    if (hasClipDepth)
        clipDepth = stream.readUI16("ClipDepth");
    if (holdsClipActions(stream.context))
        clipActions.read(stream);
}

void SwfTagPlaceObject2::writeBody(SwfOStream& stream) {
    stream.context.alpha = true;
    stream.writeUI8(flags());
    stream.writeUI16(depth);
    if (hasCharacter)
        stream.writeUI16(characterId);
    if (hasMatrix)
        matrix.write(stream);
    if (hasColorTransform)
        colorTransform.write(stream);
    if (hasRatio)
        stream.writeUI16(ratio);
    if (hasName)
        name.write(stream, true);
    if (hasClipDepth)
        stream.writeUI16(clipDepth);
    if (holdsClipActions(stream.context))
        clipActions.measureOrWrite(stream);
    else if (!clipActions.records.empty())
        warnOfLeftOut(stream);
}

// Players take the name of a class for an image that is no character of this movie.
bool SwfTagPlaceObject3::hasClassName(const SwfContext& context) const {
    const bool isImageOfClass = hasExtended(SwfPlaceFlag3::image) && !hasPlace(SwfPlaceFlag::character);
    return hasExtended(SwfPlaceFlag3::className) || (context.fullForm && isImageOfClass);
}

void SwfTagPlaceObject3::read(SwfIStream& stream) {
    stream.context.alpha = true;
    placeFlags = stream.readUI8("PlaceFlags");
    extendedFlags = stream.readUI8("ExtendedFlags");
    depth = stream.readUI16("Depth");
    if (hasClassName(stream.context))
        stream.readString(className, "ClassName");
    if (hasPlace(SwfPlaceFlag::character))
        characterId = stream.readUI16("CharacterId");
    if (hasPlace(SwfPlaceFlag::matrix))
        matrix.read(stream);
    if (hasPlace(SwfPlaceFlag::colorTransform))
        colorTransform.read(stream);
    if (hasPlace(SwfPlaceFlag::ratio))
        ratio = stream.readUI16("Ratio");
    if (hasPlace(SwfPlaceFlag::name))
        stream.readString(name, "Name");
    if (hasPlace(SwfPlaceFlag::clipDepth))
        clipDepth = stream.readUI16("ClipDepth");
    if (hasExtended(SwfPlaceFlag3::filters))
        filters.read(stream);
    if (hasExtended(SwfPlaceFlag3::blendMode))
        blendMode = stream.readUI8("BlendMode");
    const bool hasClipActions = hasPlace(SwfPlaceFlag::clipActions);
    if (stream.context.fullForm)
        readDisplay(stream);
    // The fields of these flags stand before the clip actions, or are left over, be they zero.
    else if (hasExtended(SwfPlaceFlag3::withoutField) && stream.bodyLeft() != 0)
        stream.markInexact("it has fields that this form does not hold");
    if (hasClipActions)
        clipActions.read(stream);
}

// What stands between blend mode and clip actions in the full form.
void SwfTagPlaceObject3::readDisplay(SwfIStream& stream) {
    if (hasExtended(SwfPlaceFlag3::cacheAsBitmap)) {
        const uint32_t behind =
            (hasExtended(SwfPlaceFlag3::visible) ? 1 : 0) + (hasExtended(SwfPlaceFlag3::opaqueBackground) ? 4 : 0);
        const bool endsBehind = type == SwfTagCode::PlaceObject3 && !hasPlace(SwfPlaceFlag::clipActions);
        if (!endsBehind || stream.bodyLeft() > behind)
            bitmapCache = stream.readUI8("BitmapCache");
    }
    if (hasExtended(SwfPlaceFlag3::visible))
        visible = stream.readUI8("Visible");
    if (hasExtended(SwfPlaceFlag3::opaqueBackground))
        backgroundColor.read(stream);
}

void SwfTagPlaceObject3::writeDisplay(SwfOStream& stream) const {
    if (hasExtended(SwfPlaceFlag3::cacheAsBitmap) && bitmapCache)
        stream.writeUI8(*bitmapCache);
    if (hasExtended(SwfPlaceFlag3::visible))
        stream.writeUI8(visible);
    if (hasExtended(SwfPlaceFlag3::opaqueBackground))
        backgroundColor.write(stream);
}

void SwfTagPlaceObject3::writeBody(SwfOStream& stream) {
    stream.context.alpha = true;
    stream.writeUI8(placeFlags);
    stream.writeUI8(extendedFlags);
    stream.writeUI16(depth);
    if (hasClassName(stream.context))
        className.write(stream, true);
    if (hasPlace(SwfPlaceFlag::character))
        stream.writeUI16(characterId);
    if (hasPlace(SwfPlaceFlag::matrix))
        matrix.write(stream);
    if (hasPlace(SwfPlaceFlag::colorTransform))
        colorTransform.write(stream);
    if (hasPlace(SwfPlaceFlag::ratio))
        stream.writeUI16(ratio);
    if (hasPlace(SwfPlaceFlag::name))
        name.write(stream, true);
    if (hasPlace(SwfPlaceFlag::clipDepth))
        stream.writeUI16(clipDepth);
    if (hasExtended(SwfPlaceFlag3::filters))
        filters.write(stream);
    if (hasExtended(SwfPlaceFlag3::blendMode))
        stream.writeUI8(blendMode);
    if (stream.context.fullForm)
        writeDisplay(stream);
    if (hasPlace(SwfPlaceFlag::clipActions))
        clipActions.measureOrWrite(stream);
}

SwfTagPlaceObject4::SwfTagPlaceObject4(SwfIStream& stream) : SwfTagPlaceObject4() {
    read(stream);
    metadata = stream.readRest("Metadata");
}

void SwfTagPlaceObject4::writeBody(SwfOStream& stream) {
    SwfTagPlaceObject3::writeBody(stream);
    stream.writeBytes(metadata.span());
}

} // namespace libswf
