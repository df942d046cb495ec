#include "ImageCodec.h"

#include <algorithm>
#include <string_view>

#include "Alpha.h"
#include "ImageFiles.h"
#include "LosslessBitmap.h"
#include "MediaError.h"
#include "ZlibData.h"

namespace zelk {

using namespace libswf;

namespace {

void applyAlpha(Image& image, std::span<const uint8_t> zlibData) {
    const std::vector<uint8_t> alpha = inflated(zlibData, image.rgba.size() / 4, "alpha data");
    uint8_t* pixel = image.rgba.data();
    for (uint8_t a : alpha) {
        for (int i = 0; i < 3; ++i)
            pixel[i] = straight(pixel[i], a);
        pixel[3] = a;
        pixel += 4;
    }
}

// Alpha data counts for a JPEG only: the other kinds of file have an alpha of their own.
Image decodeFile(std::span<const uint8_t> tables, std::span<const uint8_t> data, std::span<const uint8_t> alpha) {
    const ImageKind kind = imageKind(data);
    if (kind == ImageKind::png || kind == ImageKind::gif)
        return decodeImage(data);
    Image image = decodeJpeg(joinedJpeg(tables, data));
    if (!alpha.empty())
        applyAlpha(image, alpha);
    return image;
}

} // namespace

ImageKind imageKind(std::span<const uint8_t> file) {
    const std::string_view text(reinterpret_cast<const char*>(file.data()), file.size());
    if (text.starts_with("\x89PNG\r\n\x1A\n"))
        return ImageKind::png;
    if (text.starts_with("GIF89a") || text.starts_with("GIF87a"))
        return ImageKind::gif;
    // The second is how old encoders start.
    return text.starts_with("\xFF\xD8") || text.starts_with("\xFF\xD9\xFF\xD8") ? ImageKind::jpeg : ImageKind::none;
}

bool isBitmap(const SwfTag& tag) {
    return dynamic_cast<const SwfJpegBitmap*>(&tag) != nullptr ||
           dynamic_cast<const SwfTagDefineBitsJPEG3*>(&tag) != nullptr ||
           dynamic_cast<const SwfTagDefineBitsLossless*>(&tag) != nullptr;
}

Image decodeBitmap(const SwfTag& tag, const SwfTagJPEGTables* tables) {
    if (const auto* lossless = dynamic_cast<const SwfTagDefineBitsLossless*>(&tag))
        return decodeLossless(*lossless);
    if (const auto* bitmap = dynamic_cast<const SwfTagDefineBitsJPEG3*>(&tag))
        return decodeFile({}, bitmap->jpegData.span(), bitmap->bitmapAlphaData.span());
    if (const auto* bitmap = dynamic_cast<const SwfTagDefineBits*>(&tag))
        return decodeFile(tables != nullptr ? tables->jpegData.span() : std::span<const uint8_t>(),
                          bitmap->jpegData.span(), {});
    if (const auto* bitmap = dynamic_cast<const SwfTagDefineBitsJPEG2*>(&tag))
        return decodeFile({}, bitmap->jpegData.span(), {});
    unsupportedMedia(tagName(tag.type) + " is no bitmap");
}

Image decodeImage(std::span<const uint8_t> file) {
    switch (imageKind(file)) {
    case ImageKind::jpeg: return decodeJpeg(joinedJpeg({}, file));
    case ImageKind::png: return decodePng(file);
    case ImageKind::gif: return decodeGif(file);
    default: unsupportedMedia("the data is no JPEG, PNG or GIF picture");
    }
}

} // namespace zelk
