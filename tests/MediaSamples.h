// Small tags and files for the tests of payloads.
#pragma once

#include <zlib.h>

#include <cstdio>

#include "Tests.h"

#ifdef ZELK_HAVE_CODECS
#include <jpeglib.h>
#endif

namespace samples {

/// Of "10 0101", the first bit highest, filled up with 0.
inline Bytes bits(std::string_view text) {
    Bytes bytes;
    size_t count = 0;
    for (char c : text) {
        if (c == ' ')
            continue;
        if (count++ % 8 == 0)
            bytes.push_back(0);
        if (c == '1')
            bytes.back() = static_cast<uint8_t>(bytes.back() | 0x80 >> (count - 1) % 8);
    }
    return bytes;
}

inline Bytes operator+(Bytes a, const Bytes& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

inline libswf::SwfBytes swfBytes(const Bytes& bytes) { return libswf::SwfBytes::copyOf(bytes); }

inline libswf::SwfBytes zlibData(const Bytes& bytes) {
    uLongf size = compressBound(static_cast<uLong>(bytes.size()));
    Bytes data(size);
    compress2(data.data(), &size, bytes.data(), static_cast<uLong>(bytes.size()), 9);
    return swfBytes({data.begin(), data.begin() + static_cast<std::ptrdiff_t>(size)});
}

/// A frame of silence: 417 bytes at 44.1 kHz, 128 kbit/s, stereo; the third byte says rate and bits.
inline Bytes mp3Frame(uint8_t third = 0x90, uint8_t fourth = 0, size_t size = 417) {
    Bytes frame(size, 0);
    frame[0] = 0xFF;
    frame[1] = 0xFB;
    frame[2] = third;
    frame[3] = fourth;
    return frame;
}

inline Bytes wavFile(uint16_t encoding, uint16_t channels, uint32_t rate, uint16_t bitsEach, const Bytes& data) {
    const std::string format = little(encoding, 2) + little(channels, 2) + little(rate, 4) +
                               little(rate * channels * bitsEach / 8, 4) + little(channels * bitsEach / 8, 2) +
                               little(bitsEach, 2);
    const std::string head = "RIFF" + little(36 + data.size() + data.size() % 2, 4) + "WAVEfmt " + little(16, 4) +
                             format + "data" + little(data.size(), 4);
    Bytes file = Bytes(head.begin(), head.end()) + data;
    if (data.size() % 2 != 0)
        file.push_back(0);
    return file;
}

/// Two pixels, the second of which is transparent: red, nothing.
inline Bytes gifFile() {
    return hexBytes(
        "47494638396102000100 80 00 00 ff0000 000000 21f9 04 01 0000 01 00 2c 00000000 02000100 00 02 02 440a "
        "00 3b");
}

#ifdef ZELK_HAVE_CODECS
/// One colour, without loss to speak of. A file, or the tables and the picture apart.
struct Jpeg {
    Bytes file, tables, image;
};

inline Jpeg jpegOf(uint32_t width, uint32_t height, uint8_t red, uint8_t green, uint8_t blue) {
    const auto run = [&](bool withTables, bool withImage) {
        jpeg_compress_struct jpeg = {};
        jpeg_error_mgr errors;
        jpeg.err = jpeg_std_error(&errors);
        jpeg_create_compress(&jpeg);
        unsigned char* data = nullptr;
        unsigned long size = 0;
        jpeg_mem_dest(&jpeg, &data, &size);
        jpeg.image_width = width;
        jpeg.image_height = height;
        jpeg.input_components = 3;
        jpeg.in_color_space = JCS_RGB;
        jpeg_set_defaults(&jpeg);
        jpeg_set_quality(&jpeg, 100, TRUE);
        if (!withImage) {
            jpeg_write_tables(&jpeg);
        } else {
            jpeg_suppress_tables(&jpeg, withTables ? FALSE : TRUE);
            jpeg_start_compress(&jpeg, withTables ? TRUE : FALSE);
            Bytes row;
            for (uint32_t x = 0; x < width; ++x)
                row = row + Bytes{red, green, blue};
            uint8_t* rows[] = {row.data()};
            for (uint32_t y = 0; y < height; ++y)
                jpeg_write_scanlines(&jpeg, rows, 1);
            jpeg_finish_compress(&jpeg);
        }
        const Bytes bytes(data, data + size);
        jpeg_destroy_compress(&jpeg);
        free(data);
        return bytes;
    };
    return {run(true, true), run(true, false), run(false, true)};
}
#endif

} // namespace samples
