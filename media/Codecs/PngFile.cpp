#include "ImageFiles.h"
#include "ImageSize.h"
#include "MediaError.h"

#ifdef ZELK_HAVE_CODECS

#include <png.h>

namespace zelk {

namespace {

// The library's simple interface, which keeps its jumps to itself.
class Png {
public:
    Png() { _png.version = PNG_IMAGE_VERSION; }
    ~Png() { png_image_free(&_png); }
    Png(const Png&) = delete;
    Png& operator=(const Png&) = delete;

    Image read(std::span<const uint8_t> file) {
        check(png_image_begin_read_from_memory(&_png, file.data(), file.size()));
        checkSize(_png.width, _png.height, file.size());
        Image image = blankImage(_png.width, _png.height);
        _png.format = PNG_FORMAT_RGBA;
        check(png_image_finish_read(&_png, nullptr, image.rgba.data(), 0, nullptr));
        return image;
    }

    std::vector<uint8_t> write(const Image& image, const std::vector<uint8_t>& pixels, uint32_t format) {
        _png.width = image.width;
        _png.height = image.height;
        _png.format = format;
        std::vector<uint8_t> file(PNG_IMAGE_PNG_SIZE_MAX(_png));
        png_alloc_size_t size = file.size();
        check(png_image_write_to_memory(&_png, file.data(), &size, 0, pixels.data(), 0, nullptr));
        file.resize(size);
        file.shrink_to_fit();
        return file;
    }

private:
    void check(int done) const {
        if (done == 0)
            badMedia(std::string("PNG: ") + _png.message);
    }

    png_image _png = {};
};

std::vector<uint8_t> withoutAlpha(const Image& image) {
    std::vector<uint8_t> rgb;
    rgb.reserve(image.rgba.size() / 4 * 3);
    for (size_t i = 0; i < image.rgba.size(); i += 4)
        rgb.insert(rgb.end(), &image.rgba[i], &image.rgba[i] + 3);
    return rgb;
}

} // namespace

Image decodePng(std::span<const uint8_t> file) { return Png().read(file); }

std::vector<uint8_t> encodePng(const Image& image) {
    return image.isOpaque() ? Png().write(image, withoutAlpha(image), PNG_FORMAT_RGB)
                            : Png().write(image, image.rgba, PNG_FORMAT_RGBA);
}

} // namespace zelk

#else

namespace zelk {

Image decodePng(std::span<const uint8_t>) { noCodec("PNG pictures"); }
std::vector<uint8_t> encodePng(const Image&) { noCodec("PNG pictures"); }

} // namespace zelk

#endif
