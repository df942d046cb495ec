// The codecs for programs that start without them.
#include <dlfcn.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>

#include "CodecModule.h"
#include "ImageFiles.h"
#include "MediaError.h"
#include "Mp3.h"

namespace zelk {

namespace {

// Stays loaded: the program ends soon.
ZelkCodecFunction* load() {
    std::error_code failure;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", failure);
    const std::string path = (program.parent_path() / ZELK_CODEC_MODULE).lexically_normal().string();
    void* module = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    void* function = module == nullptr ? nullptr : dlsym(module, "zelkCodec");
    if (function == nullptr)
        unsupportedMedia(std::string("the codecs cannot be loaded: ") + dlerror());
    return reinterpret_cast<ZelkCodecFunction*>(function);
}

struct Output : ZelkCodecOutput {
    Output(ZelkCodec codec, std::span<const uint8_t> data, uint32_t width = 0, uint32_t height = 0) {
        static ZelkCodecFunction* const function = load();
        const ZelkCodecInput input = {data.data(), data.size(), width, height};
        function(codec, &input, this);
        if (failure != 0)
            throw libswf::SwfException(failure, reason);
    }
    ~Output() { std::free(data); }
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    template <class T>
    std::vector<T> values() const {
        std::vector<T> copy(size / sizeof(T));
        if (!copy.empty())
            std::memcpy(copy.data(), data, copy.size() * sizeof(T));
        return copy;
    }
};

Image imageFrom(ZelkCodec codec, std::span<const uint8_t> file) {
    const Output output(codec, file);
    return {output.first, output.second, output.values<uint8_t>()};
}

} // namespace

Image decodeJpeg(std::span<const uint8_t> file) { return imageFrom(zelkFromJpeg, file); }
Image decodePng(std::span<const uint8_t> file) { return imageFrom(zelkFromPng, file); }
Image decodeGif(std::span<const uint8_t> file) { return imageFrom(zelkFromGif, file); }

Sound decodeMp3(std::span<const uint8_t> data) {
    const Output output(zelkFromMp3, data);
    return {output.first, static_cast<uint16_t>(output.second), output.values<int16_t>()};
}

std::vector<uint8_t> encodePng(const Image& image) {
    return Output(zelkToPng, image.rgba, image.width, image.height).values<uint8_t>();
}

} // namespace zelk
