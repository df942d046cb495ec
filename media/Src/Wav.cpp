#include "Wav.h"

#include <algorithm>
#include <string_view>

#include "MediaError.h"

namespace zelk {

namespace {

constexpr size_t headerSize = 12, chunkHeaderSize = 8, formatSize = 16;
constexpr uint16_t pcm = 1, extensible = 0xFFFE;

std::string_view textOf(std::span<const uint8_t> bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

uint32_t little(std::span<const uint8_t> bytes, size_t at, int count) {
    uint32_t value = 0;
    for (int i = count; i-- > 0;)
        value = value << 8 | bytes[at + static_cast<size_t>(i)];
    return value;
}

void append(std::vector<uint8_t>& file, uint64_t value, int count) {
    for (int i = 0; i < count; ++i)
        file.push_back(static_cast<uint8_t>(value >> (8 * i)));
}

void append(std::vector<uint8_t>& file, std::string_view text) { file.insert(file.end(), text.begin(), text.end()); }

void readFormat(std::span<const uint8_t> chunk, Wav& wav) {
    if (chunk.size() < formatSize)
        badMedia("WAV: its format is cut");
    const uint32_t tag = little(chunk, 0, 2);
    // The longer form has the encoding further on.
    const uint32_t encoding = tag == extensible && chunk.size() >= 26 ? little(chunk, 24, 2) : tag;
    wav.channels = static_cast<uint16_t>(little(chunk, 2, 2));
    wav.rate = little(chunk, 4, 4);
    wav.bits = static_cast<uint16_t>(little(chunk, 14, 2));
    if (encoding != pcm)
        unsupportedMedia("WAV: only uncompressed samples (PCM) are taken, not encoding " + std::to_string(encoding));
    if ((wav.bits != 8 && wav.bits != 16) || wav.channels == 0 || wav.channels > 2)
        unsupportedMedia("WAV: " + std::to_string(wav.bits) + " bits and " + std::to_string(wav.channels) +
                         " channels; a sound has 8 or 16 bits and 1 or 2 channels");
}

} // namespace

bool isWav(std::span<const uint8_t> file) {
    return file.size() >= headerSize && textOf(file).starts_with("RIFF") && textOf(file.subspan(8)).starts_with("WAVE");
}

Wav readWav(std::span<const uint8_t> file) {
    Wav wav;
    std::span<const uint8_t> left = file.subspan(headerSize);
    while (left.size() >= chunkHeaderSize) {
        const std::string_view name = textOf(left.first(4));
        const size_t stated = little(left, 4, 4);
        left = left.subspan(chunkHeaderSize);
        const std::span<const uint8_t> chunk = left.first(std::min(stated, left.size()));
        if (name == "fmt ")
            readFormat(chunk, wav);
        else if (name == "data" && wav.bits != 0)
            wav.data = chunk;
        left = left.subspan(std::min(left.size(), chunk.size() + chunk.size() % 2));
    }
    if (wav.data.empty())
        badMedia("WAV: there are no samples in it");
    const size_t frame = size_t(wav.channels) * wav.bits / 8;
    wav.data = wav.data.first(wav.data.size() / frame * frame);
    return wav;
}

std::vector<uint8_t> writeWav(const Wav& wav) {
    if (wav.data.size() > UINT32_MAX - 64)
        unsupportedMedia("a sound of more than 4 GB does not fit into a WAV file");
    const size_t frame = size_t(wav.channels) * wav.bits / 8;
    const size_t size = wav.data.size(), padding = size % 2;
    std::vector<uint8_t> file;
    file.reserve(size + 64);
    append(file, "RIFF");
    append(file, headerSize - chunkHeaderSize + 2 * chunkHeaderSize + formatSize + size + padding, 4);
    append(file, "WAVEfmt ");
    append(file, formatSize, 4);
    append(file, pcm, 2);
    append(file, wav.channels, 2);
    append(file, wav.rate, 4);
    append(file, wav.rate * frame, 4);
    append(file, frame, 2);
    append(file, wav.bits, 2);
    append(file, "data");
    append(file, size, 4);
    file.insert(file.end(), wav.data.begin(), wav.data.end());
    append(file, 0, static_cast<int>(padding));
    return file;
}

} // namespace zelk
