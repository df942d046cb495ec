#include "TagPreview.h"

#include <QCoreApplication>
#include <algorithm>

#include "DocumentFonts.h"
#include "ImageCodec.h"
#include "Messages.h"
#include "PreviewWorker.h"
#include "SingleTag.h"
#include "SwfTagDefineEditText.h"
#include "SwfTagDefineMorphShape.h"
#include "SwfTagDefineText.h"
#include "SwfTags.h"
#include "TagWords.h"
#include "Waveform.h"

namespace zelk {

using namespace libswf;

namespace {

constexpr size_t mostBytes = 64 << 20; // XML of the characters that the tag uses

QString tr(const char* text) { return QCoreApplication::translate("zelk::TagPreview", text); }

QRectF rectOf(const SwfRect& rect) { return QRectF(QPointF(rect.Xmin, rect.Ymin), QPointF(rect.Xmax, rect.Ymax)); }

} // namespace

TagPreview::TagPreview(const PreviewRequest& request)
    : _request(&request), _bytesLeft(mostBytes), _drawing(std::make_shared<Drawing>()) {
    try {
        build();
    } catch (const PreviewDropped&) {
        throw;
    } catch (...) {
        const Failure failure = describeFailure();
        _problem = QString::fromStdString(failure.reason.empty() ? failure.message.text : failure.reason);
    }
    _request = nullptr;
    _definitions.clear();
}

void TagPreview::build() {
    _tag = compiled(_request->element);
    if (_tag == nullptr) {
        _problem = tr("This element is no tag.");
        return;
    }
    _words = tagWords(*_tag);
    measure();
    if (_tag->type == SwfTagCode::DefineSound)
        drawSound();
    else if (const auto font = std::dynamic_pointer_cast<SwfGlyphFont>(_tag))
        drawGlyphs(font);
    else
        drawTree();
    const QRectF own = ownBounds().normalized();
    _area = _area.united(_drawing->bounds()).united(own);
    if (_drawing->isEmpty() && own.isNull() && _problem.isEmpty())
        _problem = isDrawable(*_tag) ? tr("Nothing is drawn.") : tr("There is no picture of this kind of tag.");
}

void TagPreview::measure() {
    constexpr int64_t endOfList = 2;
    SwfTags tags;
    tags.append(_tag);
    SwfContext context;
    context.version = _request->layout.version;
    context.fullForm = _request->layout.fullForm;
    context.tags = &tags;
    _bytes = int64_t(tags.getSize(context)) - endOfList;
}

void TagPreview::drawSound() {
    Sound sound = decodeSound(static_cast<const SwfTagDefineSound&>(*_tag));
    if (sound.frames() == 0) {
        _problem = tr("There is nothing to be heard.");
        return;
    }
    _sound = std::make_shared<const Sound>(std::move(sound));
    _drawing = std::make_shared<const Drawing>(waveform(_sound->samples, _sound->channels));
}

void TagPreview::drawGlyphs(const std::shared_ptr<const SwfGlyphFont>& font) {
    GlyphTable table = glyphTable(font);
    _drawing = std::make_shared<const Drawing>(std::move(table.drawing));
    _glyphs = std::move(table.cells);
}

void TagPreview::drawTree() {
    if (isBitmap(*_tag)) { // Of several with one id it is this one.
        const QImage image = decoded(*_tag);
        _bitmaps[_tag->definitionId()] = image;
        addSize(image.size());
    }
    Characters characters;
    characters.definition = [this](uint16_t id) { return definition(id); };
    characters.bitmap = [this](uint16_t id) { return loadedBitmap(id); };
    if (isMorph())
        _area = drawTag(*_tag, characters, 1).bounds();
    _drawing = std::make_shared<const Drawing>(drawTag(*_tag, characters, 0));
    loadBitmaps(*_drawing);
    if (_tag->type == SwfTagCode::DefineSprite || _tag->type == SwfTagCode::DefineButton ||
        _tag->type == SwfTagCode::DefineButton2)
        addSize(_drawing->bounds().size() / 20);
}

void TagPreview::addSize(const QSizeF& size) {
    if (!size.isEmpty())
        _words += QStringLiteral(" · ") + pixelWords(size.width(), size.height());
}

void TagPreview::loadBitmaps(const Drawing& drawing) {
    for (const DrawnPath& piece : drawing.pieces()) {
        for (const Paint* paint : {&piece.paint, piece.stroke ? &piece.stroke->paint : nullptr}) {
            if (paint != nullptr && paint->kind == Paint::Kind::bitmap)
                loadedBitmap(paint->bitmapId);
        }
    }
}

std::shared_ptr<const Drawing> TagPreview::drawing(double ratio) const {
    return isMorph() && ratio > 0 ? std::make_shared<const Drawing>(drawTag(*_tag, {}, ratio)) : _drawing;
}

QImage TagPreview::bitmap(uint16_t characterId) const {
    const auto found = _bitmaps.find(characterId);
    return found == _bitmaps.end() ? QImage() : found->second;
}

std::shared_ptr<SwfTag> TagPreview::definition(uint16_t id) {
    const auto [found, isNew] = _definitions.try_emplace(id);
    if (!isNew || !_request->definition)
        return found->second;
    const std::string element = _request->definition(id);
    if (element.empty() || element.size() > _bytesLeft)
        return nullptr;
    _bytesLeft -= element.size();
    try {
        return found->second = compiled(element);
    } catch (const std::exception&) { // It counts as missing; its own preview tells why.
        return nullptr;
    }
}

std::shared_ptr<SwfTag> TagPreview::compiled(const std::string& element) {
    for (const uint16_t id : spelledFonts(element, _request->layout.fullForm)) {
        if (_fontsAsked.insert(id).second && _request->definition)
            addFonts(_fonts, _request->definition(id), _request->layout);
    }
    return compileTag(element, _request->layout, nullptr, &_fonts);
}

QImage TagPreview::loadedBitmap(uint16_t id) {
    const auto [found, isNew] = _bitmaps.try_emplace(id);
    if (!isNew)
        return found->second;
    const auto tag = definition(id);
    if (tag == nullptr || !isBitmap(*tag))
        return {};
    try {
        return found->second = decoded(*tag);
    } catch (const std::exception&) {
        return {};
    }
}

QImage TagPreview::decoded(const SwfTag& tag) {
    if (_jpegTables == nullptr && !_request->jpegTables.empty() && tag.type == SwfTagCode::DefineBits)
        _jpegTables = compileTag(_request->jpegTables, _request->layout, nullptr);
    return _images.imageOf(tag, dynamic_cast<const SwfTagJPEGTables*>(_jpegTables.get()));
}

bool TagPreview::isMorph() const { return dynamic_cast<const SwfMorphShapeTag*>(_tag.get()) != nullptr; }

QRectF TagPreview::ownBounds() const {
    if (const auto* text = dynamic_cast<const SwfTagDefineText*>(_tag.get()))
        return transformOf(text->matrix).mapRect(rectOf(text->bounds));
    if (const auto* field = dynamic_cast<const SwfTagDefineEditText*>(_tag.get()))
        return rectOf(field->bounds);
    return {};
}

} // namespace zelk
