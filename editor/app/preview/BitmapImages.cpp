#include "BitmapImages.h"

#include "ImageCodec.h"
#include "SwfException.h"

namespace zelk {

using namespace libswf;

QImage BitmapImages::imageOf(const SwfTag& tag, const SwfTagJPEGTables* tables) {
    if (const auto* lossless = dynamic_cast<const SwfTagDefineBitsLossless*>(&tag))
        checkRoom(lossless->bitmapWidth, lossless->bitmapHeight); // before anything is inflated
    const Image image = decodeBitmap(tag, tables);
    checkRoom(image.width, image.height);
    _pixelsLeft -= size_t(image.width) * image.height;
    const QImage straight(image.rgba.data(), static_cast<int>(image.width), static_cast<int>(image.height),
                          static_cast<qsizetype>(image.width) * 4, QImage::Format_RGBA8888);
    return straight.convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

void BitmapImages::checkRoom(size_t width, size_t height) const {
    if (width * height > _pixelsLeft)
        throw SwfException(2, "the bitmap is too big to be shown");
}

} // namespace zelk
