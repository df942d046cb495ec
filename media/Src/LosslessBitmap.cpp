#include "LosslessBitmap.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <unordered_map>

#include "Alpha.h"
#include "ImageSize.h"
#include "MediaError.h"
#include "ZlibData.h"

namespace zelk {

using namespace libswf;

namespace {

constexpr uint8_t indexed = SwfTagDefineBitsLossless::paletteFormat, rgb15 = 4, rgb32 = 5;

constexpr uint64_t paddedRow(uint64_t bytes) { return (bytes + 3) / 4 * 4; }

void putColor(uint8_t* to, const uint8_t* rgb, uint8_t alpha) {
    for (int i = 0; i < 3; ++i)
        to[i] = straight(rgb[i], alpha);
    to[3] = alpha;
}

// The format of one tag and its inflated data.
struct Source {
    const SwfTagDefineBitsLossless& tag;
    bool hasAlpha;
    std::vector<uint8_t> data = {};

    size_t colors() const { return size_t(tag.bitmapColorTableSize) + 1; }
    size_t tableSize() const { return tag.bitmapFormat == indexed ? colors() * (hasAlpha ? 4 : 3) : 0; }
    uint64_t rowSize() const {
        switch (tag.bitmapFormat) {
        case indexed: return paddedRow(tag.bitmapWidth);
        case rgb15: return paddedRow(2 * tag.bitmapWidth);
        default: return 4 * uint64_t(tag.bitmapWidth);
        }
    }
    const uint8_t* row(uint32_t y) const { return data.data() + tableSize() + y * rowSize(); }
};

void readIndexed(const Source& source, Image& image) {
    // An index without a colour: black, or nothing where there is alpha.
    std::vector<uint8_t> table(256 * 4, 0);
    const size_t entry = source.hasAlpha ? 4 : 3;
    for (size_t i = 0; i < 256; ++i) {
        const uint8_t* color = source.data.data() + i * entry;
        if (i < source.colors())
            putColor(&table[4 * i], color, source.hasAlpha ? color[3] : 255);
        else
            table[4 * i + 3] = source.hasAlpha ? 0 : 255;
    }
    uint8_t* to = image.rgba.data();
    for (uint32_t y = 0; y < image.height; ++y) {
        const uint8_t* row = source.row(y);
        for (uint32_t x = 0; x < image.width; ++x, to += 4)
            std::memcpy(to, &table[size_t(4) * row[x]], 4);
    }
}

void readRgb15(const Source& source, Image& image) {
    const auto widened = [](unsigned five) { return static_cast<uint8_t>(five << 3 | five >> 2); };
    uint8_t* to = image.rgba.data();
    for (uint32_t y = 0; y < image.height; ++y) {
        const uint8_t* row = source.row(y);
        for (uint32_t x = 0; x < image.width; ++x, to += 4) {
            const unsigned color = unsigned(row[2 * x]) << 8 | row[2 * x + 1];
            for (unsigned i = 0; i < 3; ++i)
                to[i] = widened(color >> (10 - 5 * i) & 31);
            to[3] = 255;
        }
    }
}

void readRgb32(const Source& source, Image& image) {
    const uint8_t* from = source.data.data();
    uint8_t* const end = image.rgba.data() + image.rgba.size();
    for (uint8_t* to = image.rgba.data(); to != end; to += 4, from += 4)
        putColor(to, from + 1, source.hasAlpha ? from[0] : uint8_t(255));
}

using Pixel = uint32_t; // as in Image, the first byte lowest

std::vector<Pixel> multipliedPixels(const Image& image) {
    std::vector<Pixel> pixels(size_t(image.width) * image.height);
    const uint8_t* from = image.rgba.data();
    for (Pixel& pixel : pixels) {
        pixel = Pixel(from[3]) << 24;
        for (int i = 0; i < 3; ++i)
            pixel |= Pixel(multiplied(from[i], from[3])) << (8 * i);
        from += 4;
    }
    return pixels;
}

// Index by colour in the order of their first use; none for more than 256.
std::optional<std::unordered_map<Pixel, uint8_t>> paletteOf(const std::vector<Pixel>& pixels,
                                                            std::vector<Pixel>& palette) {
    std::unordered_map<Pixel, uint8_t> indices;
    for (Pixel pixel : pixels) {
        if (indices.contains(pixel))
            continue;
        if (palette.size() == 256)
            return std::nullopt;
        indices.emplace(pixel, static_cast<uint8_t>(palette.size()));
        palette.push_back(pixel);
    }
    return indices;
}

std::vector<uint8_t> indexedData(const Image& image, bool withAlpha, const std::vector<Pixel>& pixels,
                                 const std::vector<Pixel>& palette, const std::unordered_map<Pixel, uint8_t>& indices) {
    std::vector<uint8_t> data;
    for (Pixel color : palette) {
        for (int i = 0; i < (withAlpha ? 4 : 3); ++i)
            data.push_back(static_cast<uint8_t>(color >> (8 * i)));
    }
    const size_t row = paddedRow(image.width), start = data.size();
    data.resize(start + row * image.height);
    for (size_t i = 0; i < pixels.size(); ++i)
        data[start + i / image.width * row + i % image.width] = indices.at(pixels[i]);
    return data;
}

std::vector<uint8_t> directData(const std::vector<Pixel>& pixels, bool withAlpha) {
    std::vector<uint8_t> data;
    data.reserve(4 * pixels.size());
    for (Pixel pixel : pixels) {
        data.push_back(withAlpha ? static_cast<uint8_t>(pixel >> 24) : uint8_t(0));
        for (int i = 0; i < 3; ++i)
            data.push_back(static_cast<uint8_t>(pixel >> (8 * i)));
    }
    return data;
}

} // namespace

Image decodeLossless(const SwfTagDefineBitsLossless& tag) {
    Source source{tag, dynamic_cast<const SwfTagDefineBitsLossless2*>(&tag) != nullptr};
    const uint8_t format = tag.bitmapFormat;
    if (format != indexed && format != rgb32 && (format != rgb15 || source.hasAlpha))
        unsupportedMedia("a lossless bitmap of format " + std::to_string(format));
    checkSize(tag.bitmapWidth, tag.bitmapHeight);
    source.data =
        inflated(tag.pngData.span(), source.tableSize() + source.rowSize() * tag.bitmapHeight, "lossless bitmap");
    Image image = blankImage(tag.bitmapWidth, tag.bitmapHeight);
    if (format == indexed)
        readIndexed(source, image);
    else if (format == rgb15)
        readRgb15(source, image);
    else
        readRgb32(source, image);
    return image;
}

std::shared_ptr<SwfTagDefineBitsLossless> encodeLossless(const Image& image, uint16_t characterId, bool withAlpha) {
    std::shared_ptr<SwfTagDefineBitsLossless> tag;
    if (withAlpha)
        tag = std::make_shared<SwfTagDefineBitsLossless2>();
    else
        tag = std::make_shared<SwfTagDefineBitsLossless>();
    tag->characterId = characterId;
    tag->bitmapWidth = static_cast<uint16_t>(image.width);
    tag->bitmapHeight = static_cast<uint16_t>(image.height);
    const std::vector<Pixel> pixels = multipliedPixels(image);
    std::vector<Pixel> palette;
    const auto indices = paletteOf(pixels, palette);
    tag->bitmapFormat = indices ? indexed : rgb32;
    if (indices)
        tag->bitmapColorTableSize = static_cast<uint8_t>(palette.size() - 1);
    tag->pngData = SwfBytes::adopt(
        deflated(indices ? indexedData(image, withAlpha, pixels, palette, *indices) : directData(pixels, withAlpha)));
    return tag;
}

} // namespace zelk
