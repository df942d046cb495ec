// The codecs as a module that a program loads when it first needs one. What passes between the two is plain C: each may
// have a C++ runtime of its own, so no exception and no object of C++ crosses.
#pragma once

#include <cstddef>
#include <cstdint>

extern "C" {

enum ZelkCodec : int { zelkFromJpeg, zelkFromPng, zelkFromGif, zelkFromMp3, zelkToPng };

struct ZelkCodecInput {
    const uint8_t* data;
    size_t size;
    uint32_t width, height; ///< of the pixels, for zelkToPng
};

struct ZelkCodecOutput {
    uint32_t failure;       ///< 0, or the code of an SwfException
    char reason[256];       ///< its text, cut where it is longer
    uint32_t first, second; ///< width and height of pixels; rate and channels of samples
    void* data;             ///< pixels, samples or a file, to be given to free(); null after a failure
    size_t size;            ///< bytes
};

/// Never throws. The module exports it by this name.
using ZelkCodecFunction = void(ZelkCodec codec, const ZelkCodecInput* input, ZelkCodecOutput* output);
}
