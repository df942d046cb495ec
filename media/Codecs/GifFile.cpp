#include "ImageFiles.h"
#include "ImageSize.h"
#include "MediaError.h"

#ifdef ZELK_HAVE_CODECS

#include <gif_lib.h>

#include <algorithm>
#include <cstring>

namespace zelk {

namespace {

int readInput(GifFileType* gif, GifByteType* to, int size) {
    auto& left = *static_cast<std::span<const uint8_t>*>(gif->UserData);
    const size_t count = std::min(left.size(), static_cast<size_t>(std::max(size, 0)));
    if (count != 0)
        std::memcpy(to, left.data(), count);
    left = left.subspan(count);
    return static_cast<int>(count);
}

// Reads the first picture of a file.
class Gif {
public:
    explicit Gif(std::span<const uint8_t> file) : _left(file), _fileSize(file.size()) {
        int error = 0;
        _gif = DGifOpen(&_left, readInput, &error);
        if (_gif == nullptr)
            fail(error);
    }
    ~Gif() { DGifCloseFile(_gif, nullptr); }
    Gif(const Gif&) = delete;
    Gif& operator=(const Gif&) = delete;

    Image read() {
        for (GifRecordType type = UNDEFINED_RECORD_TYPE;;) {
            check(DGifGetRecordType(_gif, &type));
            if (type == IMAGE_DESC_RECORD_TYPE)
                return readPicture();
            if (type == EXTENSION_RECORD_TYPE)
                readExtension();
            else if (type == TERMINATE_RECORD_TYPE)
                badMedia("GIF: there is no picture in it");
        }
    }

private:
    [[noreturn]] static void fail(int error) {
        const char* reason = GifErrorString(error);
        badMedia(std::string("GIF: ") + (reason != nullptr ? reason : "the data is corrupt"));
    }
    void check(int result) const {
        if (result != GIF_OK)
            fail(_gif->Error);
    }

    void readExtension() {
        int code = 0;
        GifByteType* block = nullptr; // its length, then its bytes
        check(DGifGetExtension(_gif, &code, &block));
        while (block != nullptr) {
            GraphicsControlBlock control = {};
            if (code == GRAPHICS_EXT_FUNC_CODE && DGifExtensionToGCB(block[0], block + 1, &control) == GIF_OK)
                _transparent = control.TransparentColor;
            check(DGifGetExtensionNext(_gif, &block));
        }
    }

    Image readPicture() {
        check(DGifGetImageDesc(_gif));
        const GifImageDesc& picture = _gif->Image;
        checkSize(static_cast<uint64_t>(_gif->SWidth), static_cast<uint64_t>(_gif->SHeight), _fileSize);
        checkSize(static_cast<uint64_t>(picture.Width), static_cast<uint64_t>(picture.Height), _fileSize);
        const ColorMapObject* colors = picture.ColorMap != nullptr ? picture.ColorMap : _gif->SColorMap;
        if (colors == nullptr)
            badMedia("GIF: there is no table of colours");
        Image image = blankImage(static_cast<uint32_t>(_gif->SWidth), static_cast<uint32_t>(_gif->SHeight));
        std::vector<GifPixelType> line(static_cast<size_t>(picture.Width));
        constexpr int starts[] = {0, 4, 2, 1}, steps[] = {8, 8, 4, 2}; // of interlaced rows
        for (int pass = 0; pass < (picture.Interlace ? 4 : 1); ++pass) {
            const int step = picture.Interlace ? steps[pass] : 1;
            for (int y = starts[pass]; y < picture.Height; y += step) {
                check(DGifGetLine(_gif, line.data(), picture.Width));
                putLine(image, line, picture.Left, picture.Top + y, *colors);
            }
        }
        return image;
    }

    void putLine(Image& image, const std::vector<GifPixelType>& line, int left, int y, const ColorMapObject& colors) {
        if (y >= static_cast<int>(image.height))
            return;
        uint8_t* row = image.rgba.data() + size_t(4) * image.width * static_cast<size_t>(y);
        const size_t width = image.width - std::min<size_t>(image.width, static_cast<size_t>(left));
        for (size_t x = 0; x < std::min(line.size(), width); ++x) {
            const int index = line[x];
            if (index == _transparent || index >= colors.ColorCount)
                continue;
            const GifColorType& color = colors.Colors[index];
            const uint8_t rgba[] = {color.Red, color.Green, color.Blue, 255};
            std::memcpy(row + 4 * (x + static_cast<size_t>(left)), rgba, 4);
        }
    }

    std::span<const uint8_t> _left;
    size_t _fileSize;
    GifFileType* _gif = nullptr;
    int _transparent = NO_TRANSPARENT_COLOR;
};

} // namespace

Image decodeGif(std::span<const uint8_t> file) { return Gif(file).read(); }

} // namespace zelk

#else

namespace zelk {

Image decodeGif(std::span<const uint8_t>) { noCodec("GIF pictures"); }

} // namespace zelk

#endif
