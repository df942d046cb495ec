#include "TagDrawing.h"

#include <algorithm>
#include <map>
#include <optional>
#include <utility>

#include "DrawLimits.h"
#include "Glyphs.h"
#include "Shapes.h"
#include "SwfTagDefineButton.h"
#include "SwfTagDefineSprite.h"
#include "SwfTagPlaceObject.h"
#include "SwfTagRemoveObject.h"
#include "SwfTagsBitmap.h"
#include "Texts.h"

namespace zelk {

using namespace libswf;

namespace {

// A character on a display list.
struct Placed {
    uint16_t characterId = 0;
    QTransform transform;
    SwfColorTransform color;
    double ratio = 0; // 0 to 1
    bool isMask = false;
};
using DisplayList = std::map<uint16_t, Placed>; // by depth

void place(DisplayList& list, const SwfTagPlaceObject& tag) {
    Placed placed{tag.characterId, transformOf(tag.matrix), {}, 0, false};
    if (tag.hasColorTransform)
        placed.color = tag.colorTransform;
    placed.color.alphaMult = 256; // The tag has none.
    placed.color.alphaAdd = 0;
    list[tag.depth] = placed;
}

void place(DisplayList& list, const SwfTagPlaceObject2& tag) {
    if (!tag.move)
        list[tag.depth] = {};
    Placed& placed = list[tag.depth];
    if (tag.hasCharacter)
        placed.characterId = tag.characterId;
    if (tag.hasMatrix)
        placed.transform = transformOf(tag.matrix);
    if (tag.hasColorTransform)
        placed.color = tag.colorTransform;
    if (tag.hasRatio)
        placed.ratio = tag.ratio / 65535.0;
    placed.isMask = placed.isMask || tag.hasClipDepth;
}

void place(DisplayList& list, const SwfTagPlaceObject3& tag) {
    if (!tag.hasPlace(SwfPlaceFlag::move))
        list[tag.depth] = {};
    Placed& placed = list[tag.depth];
    if (tag.hasPlace(SwfPlaceFlag::character))
        placed.characterId = tag.characterId;
    if (tag.hasPlace(SwfPlaceFlag::matrix))
        placed.transform = transformOf(tag.matrix);
    if (tag.hasPlace(SwfPlaceFlag::colorTransform))
        placed.color = tag.colorTransform;
    if (tag.hasPlace(SwfPlaceFlag::ratio))
        placed.ratio = tag.ratio / 65535.0;
    placed.isMask = placed.isMask || tag.hasPlace(SwfPlaceFlag::clipDepth);
}

// False for a tag of another kind.
bool placeBy(DisplayList& list, const SwfTag& tag) {
    if (const auto* place1 = dynamic_cast<const SwfTagPlaceObject*>(&tag))
        place(list, *place1);
    else if (const auto* place2 = dynamic_cast<const SwfTagPlaceObject2*>(&tag))
        place(list, *place2);
    else if (const auto* place3 = dynamic_cast<const SwfTagPlaceObject3*>(&tag))
        place(list, *place3);
    else
        return false;
    return true;
}

bool removeBy(DisplayList& list, const SwfTag& tag) {
    if (const auto* remove = dynamic_cast<const SwfTagRemoveObject*>(&tag))
        return list.erase(remove->depth) != 0;
    if (const auto* remove2 = dynamic_cast<const SwfTagRemoveObject2*>(&tag))
        return list.erase(remove2->depth) != 0;
    return false;
}

DisplayList firstFrame(const SwfTags& tags) {
    DisplayList list;
    for (const auto& tag : tags.items()) {
        if (tag->type == SwfTagCode::ShowFrame)
            break;
        placeBy(list, *tag);
    }
    return list;
}

DisplayList upState(const SwfButtonRecords& button) {
    DisplayList list;
    for (const SwfButtonRecord& record : button.records) {
        if (record.stateUp)
            list[record.depth] = {record.characterId, transformOf(record.matrix), record.colorTransform, 0, false};
    }
    return list;
}

std::optional<ColorChange> changeOf(const SwfColorTransform& color) {
    if (!color.hasAddTerms && !color.hasMultTerms)
        return std::nullopt;
    ColorChange change;
    if (color.hasMultTerms)
        change.mult = {color.redMult / 256.0, color.greenMult / 256.0, color.blueMult / 256.0, color.alphaMult / 256.0};
    if (color.hasAddTerms)
        change.add = {double(color.redAdd), double(color.greenAdd), double(color.blueAdd), double(color.alphaAdd)};
    return change;
}

class TagDrawer {
public:
    explicit TagDrawer(const Characters& characters)
        : _characters(characters),
          _fonts([this](uint16_t id) { return std::dynamic_pointer_cast<SwfGlyphFont>(definition(id)); }) {}

    Drawing draw(const SwfTag& tag, double ratio, int depth) {
        Drawing drawing;
        DisplayList list;
        if (const auto* shape = dynamic_cast<const SwfShapeTag*>(&tag))
            addShape(drawing, *shape, _edges);
        else if (const auto* morph = dynamic_cast<const SwfMorphShapeTag*>(&tag))
            addMorphShape(drawing, *morph, std::clamp(ratio, 0.0, 1.0), _edges);
        else if (const auto* text = dynamic_cast<const SwfTagDefineText*>(&tag))
            addText(drawing, *text, _fonts, _edges);
        else if (const auto* field = dynamic_cast<const SwfTagDefineEditText*>(&tag))
            addTextField(drawing, *field, _fonts, _edges);
        else if (const auto* sprite = dynamic_cast<const SwfTagDefineSprite*>(&tag))
            addPlaced(drawing, firstFrame(sprite->tags), depth);
        else if (const auto* button = dynamic_cast<const SwfTagDefineButton*>(&tag))
            addPlaced(drawing, upState(button->records), depth);
        else if (const auto* button2 = dynamic_cast<const SwfTagDefineButton2*>(&tag))
            addPlaced(drawing, upState(button2->records), depth);
        else if (const auto* bitmap = dynamic_cast<const SwfDefinitionTag*>(&tag); bitmap && isBitmap(tag))
            addBitmap(drawing, bitmap->characterId);
        else if (placeBy(list, tag))
            addPlaced(drawing, list, depth);
        return drawing;
    }

    Drawing drawMovie(const SwfTags& tags) {
        DisplayList list;
        bool isChanged = false;
        int frames = 0;
        for (const auto& tag : tags.items()) {
            if (tag->type != SwfTagCode::ShowFrame) {
                const bool isPlaced = placeBy(list, *tag);
                isChanged = isPlaced || removeBy(list, *tag) || isChanged;
                continue;
            }
            Drawing drawing;
            if (std::exchange(isChanged, false))
                addPlaced(drawing, list, 0);
            if (!drawing.isEmpty() || ++frames == DrawLimits::frames)
                return drawing;
        }
        return {};
    }

    static bool isBitmap(const SwfTag& tag) {
        return dynamic_cast<const SwfJpegBitmap*>(&tag) != nullptr ||
               dynamic_cast<const SwfTagDefineBitsJPEG3*>(&tag) != nullptr ||
               dynamic_cast<const SwfTagDefineBitsLossless*>(&tag) != nullptr;
    }

private:
    std::shared_ptr<SwfTag> definition(uint16_t id) const {
        return _characters.definition ? _characters.definition(id) : nullptr;
    }

    // A mask would hide what it is to show.
    void addPlaced(Drawing& drawing, const DisplayList& list, int depth) {
        if (depth >= DrawLimits::depth)
            return;
        for (const auto& [ignored, placed] : list) {
            if (_left == 0 || _edges == 0)
                return;
            --_left;
            const auto tag = placed.isMask ? nullptr : definition(placed.characterId);
            if (tag != nullptr)
                drawing.add(draw(*tag, placed.ratio, depth + 1), placed.transform, changeOf(placed.color));
        }
    }

    void addBitmap(Drawing& drawing, uint16_t id) {
        const QImage image = _characters.bitmap ? _characters.bitmap(id) : QImage();
        if (image.isNull())
            return;
        Paint paint;
        paint.kind = Paint::Kind::bitmap;
        paint.bitmapId = id;
        paint.matrix = QTransform::fromScale(20, 20);
        QPainterPath path;
        path.addRect(0, 0, image.width() * 20.0, image.height() * 20.0);
        drawing.add({path, paint, {}});
    }

    const Characters& _characters;
    FontLookup _fonts;
    size_t _edges = DrawLimits::edges;
    size_t _left = DrawLimits::characters;
};

} // namespace

Drawing drawTag(const SwfTag& tag, const Characters& characters, double ratio) {
    if (const auto* font = dynamic_cast<const SwfGlyphFont*>(&tag))
        return glyphTable({std::shared_ptr<void>(), font}).drawing;
    return TagDrawer(characters).draw(tag, ratio, 0);
}

Drawing drawMovie(const SwfTags& tags, const Characters& characters) { return TagDrawer(characters).drawMovie(tags); }

bool isDrawable(const SwfTag& tag) {
    DisplayList list;
    return placeBy(list, tag) || dynamic_cast<const SwfShapeTag*>(&tag) != nullptr ||
           dynamic_cast<const SwfMorphShapeTag*>(&tag) != nullptr ||
           dynamic_cast<const SwfTagDefineText*>(&tag) != nullptr ||
           dynamic_cast<const SwfTagDefineEditText*>(&tag) != nullptr ||
           dynamic_cast<const SwfTagDefineSprite*>(&tag) != nullptr ||
           dynamic_cast<const SwfTagDefineButton*>(&tag) != nullptr ||
           dynamic_cast<const SwfTagDefineButton2*>(&tag) != nullptr ||
           dynamic_cast<const SwfGlyphFont*>(&tag) != nullptr || TagDrawer::isBitmap(tag);
}

} // namespace zelk
