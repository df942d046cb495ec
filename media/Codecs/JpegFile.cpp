#include "ImageFiles.h"
#include "ImageSize.h"
#include "MediaError.h"

#ifdef ZELK_HAVE_CODECS

#include <csetjmp>
#include <cstdio>

#include <jpeglib.h>

#include <jerror.h>

namespace zelk {

namespace {

constexpr int mostScans = 200; // each costs a walk over the whole picture, however short it is

// The library's errors end in a jump: an exception must not pass through its frames.
struct Errors : jpeg_error_mgr {
    std::jmp_buf jump;
    char text[JMSG_LENGTH_MAX];
};

void leave(j_common_ptr jpeg) {
    auto& errors = static_cast<Errors&>(*jpeg->err);
    errors.format_message(jpeg, errors.text);
    std::longjmp(errors.jump, 1);
}

// Warnings that tell of missing pixels are errors here.
void onMessage(j_common_ptr jpeg, int level) {
    const int code = jpeg->err->msg_code;
    if (level < 0 && (code == JWRN_HIT_MARKER || code == JWRN_HUFF_BAD_CODE || code == JWRN_ARITH_BAD_CODE))
        leave(jpeg);
}

void onProgress(j_common_ptr jpeg) {
    if (reinterpret_cast<j_decompress_ptr>(jpeg)->input_scan_number <= mostScans)
        return;
    auto& errors = static_cast<Errors&>(*jpeg->err);
    std::snprintf(errors.text, sizeof errors.text, "more than %d scans", mostScans);
    std::longjmp(errors.jump, 1);
}

class Decoder {
public:
    explicit Decoder(std::span<const uint8_t> file) : _file(file) {
        _jpeg.err = jpeg_std_error(&_errors);
        _errors.error_exit = leave;
        _errors.emit_message = onMessage;
        _progress.progress_monitor = onProgress;
    }
    ~Decoder() { jpeg_destroy_decompress(&_jpeg); }
    Decoder(const Decoder&) = delete;
    Decoder& operator=(const Decoder&) = delete;

    Image decode() {
        guarded([](Decoder& self) {
            jpeg_create_decompress(&self._jpeg);
            self._jpeg.progress = &self._progress;
            jpeg_mem_src(&self._jpeg, self._file.data(), static_cast<unsigned long>(self._file.size()));
            jpeg_read_header(&self._jpeg, TRUE);
        });
        if (_jpeg.num_components == 4)
            unsupportedMedia("a JPEG picture in CMYK");
        checkSize(_jpeg.image_width, _jpeg.image_height, _file.size());
        _image = blankImage(_jpeg.image_width, _jpeg.image_height);
        guarded([](Decoder& self) {
            self._jpeg.out_color_space = JCS_EXT_RGBA;
            jpeg_start_decompress(&self._jpeg);
            while (self._jpeg.output_scanline < self._jpeg.output_height) {
                uint8_t* row = self._image.rgba.data() + size_t(4) * self._jpeg.output_scanline * self._image.width;
                jpeg_read_scanlines(&self._jpeg, &row, 1);
            }
        });
        return std::move(_image);
    }

private:
    // A step has no objects with destructors: the jump passes over it.
    void guarded(void (*step)(Decoder&)) {
        if (setjmp(_errors.jump) != 0)
            badMedia(std::string("JPEG: ") + _errors.text);
        step(*this);
    }

    std::span<const uint8_t> _file;
    jpeg_decompress_struct _jpeg = {};
    Errors _errors = {};
    jpeg_progress_mgr _progress = {};
    Image _image;
};

} // namespace

Image decodeJpeg(std::span<const uint8_t> file) { return Decoder(file).decode(); }

} // namespace zelk

#else

namespace zelk {

Image decodeJpeg(std::span<const uint8_t>) { noCodec("JPEG pictures"); }

} // namespace zelk

#endif
