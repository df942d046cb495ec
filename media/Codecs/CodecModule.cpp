#include "CodecModule.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string_view>

#include "ImageFiles.h"
#include "Mp3.h"
#include "SwfException.h"

namespace zelk {

namespace {

void give(const void* data, size_t size, uint32_t first, uint32_t second, ZelkCodecOutput& output) {
    output.data = std::malloc(size);
    if (output.data == nullptr)
        throw std::bad_alloc();
    std::memcpy(output.data, data, size);
    output.size = size;
    output.first = first;
    output.second = second;
}

void give(const Image& image, ZelkCodecOutput& output) {
    give(image.rgba.data(), image.rgba.size(), image.width, image.height, output);
}

void convert(ZelkCodec codec, const ZelkCodecInput& input, ZelkCodecOutput& output) {
    const std::span<const uint8_t> data(input.data, input.size);
    switch (codec) {
    case zelkFromJpeg: give(decodeJpeg(data), output); break;
    case zelkFromPng: give(decodePng(data), output); break;
    case zelkFromGif: give(decodeGif(data), output); break;
    case zelkFromMp3: {
        const Sound sound = decodeMp3(data);
        give(sound.samples.data(), sound.samples.size() * sizeof(int16_t), sound.rate, sound.channels, output);
        break;
    }
    case zelkToPng: {
        const std::vector<uint8_t> file = encodePng({input.width, input.height, {data.begin(), data.end()}});
        give(file.data(), file.size(), 0, 0, output);
    }
    }
}

void fail(uint32_t code, std::string_view reason, ZelkCodecOutput& output) {
    output.failure = code;
    std::snprintf(output.reason, sizeof output.reason, "%.*s", static_cast<int>(reason.size()), reason.data());
}

} // namespace

} // namespace zelk

extern "C" __attribute__((visibility("default"))) void zelkCodec(ZelkCodec codec, const ZelkCodecInput* input,
                                                                 ZelkCodecOutput* output) {
    *output = {};
    try {
        zelk::convert(codec, *input, *output);
    } catch (const libswf::SwfException& error) {
        const std::string_view text = error.what(); // with its code at the end, which whoever throws it again adds
        zelk::fail(error.code(), text.substr(0, text.rfind(" (code ")), *output);
    } catch (const std::exception& error) {
        zelk::fail(libswf::SwfError::doesNotFit, error.what(), *output);
    }
}
