#include "ImageSize.h"

#include <string>

#include "MediaError.h"
#include "ZlibData.h"

namespace zelk {

namespace {

// A PNG of one bit a pixel; no JPEG or GIF has more.
constexpr uint64_t mostPixelsPerByte = 8 * mostInflated;

std::string sizeText(uint64_t width, uint64_t height) {
    return "a picture of " + std::to_string(width) + " x " + std::to_string(height) + " pixels";
}

} // namespace

void checkSize(uint64_t width, uint64_t height) {
    if (width == 0 || height == 0)
        badMedia(sizeText(width, height));
    if (width > UINT16_MAX || height > UINT16_MAX || width * height > Image::mostPixels)
        unsupportedMedia(sizeText(width, height) + " is too big");
}

void checkSize(uint64_t width, uint64_t height, size_t fileSize) {
    checkSize(width, height);
    if (width * height > fileSize * mostPixelsPerByte)
        badMedia(sizeText(width, height) + " in " + std::to_string(fileSize) + " bytes");
}

bool Image::isOpaque() const {
    for (size_t i = 3; i < rgba.size(); i += 4) {
        if (rgba[i] != 255)
            return false;
    }
    return true;
}

Image blankImage(uint32_t width, uint32_t height) {
    Image image{width, height, {}};
    image.rgba.resize(size_t(4) * width * height);
    return image;
}

} // namespace zelk
