#include <algorithm>
#include <string_view>

#include "ImageCodec.h"
#include "MediaError.h"
#include "Mp3.h"
#include "Payload.h"
#include "RawPayload.h"
#include "SoundData.h"
#include "SwfTagsAssets.h"
#include "Wav.h"

namespace zelk {

using namespace libswf;

namespace {

constexpr const char* anyBytes = "bin";

std::vector<uint8_t> copyOf(std::span<const uint8_t> bytes) { return {bytes.begin(), bytes.end()}; }

const char* extensionOf(std::span<const uint8_t> bytes) {
    struct Row {
        std::string_view start;
        const char* extension;
    };
    static constexpr Row rows[] = {
        {"FWS", "swf"},  {"CWS", "swf"}, {"ZWS", "swf"},     {"<?xml", "xml"},     {"\xEF\xBB\xBF<?xml", "xml"},
        {"OTTO", "otf"}, {"ID3", "mp3"}, {"FLV\x01", "flv"}, {"PK\x03\x04", "zip"}};
    switch (imageKind(bytes)) {
    case ImageKind::jpeg: return "jpg";
    case ImageKind::png: return "png";
    case ImageKind::gif: return "gif";
    default: break;
    }
    if (isWav(bytes))
        return "wav";
    const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    const auto* row = std::ranges::find_if(rows, [text](const Row& each) { return text.starts_with(each.start); });
    return row == std::end(rows) ? anyBytes : row->extension;
}

Payload rawFile(std::span<const uint8_t> bytes) { return {copyOf(bytes), extensionOf(bytes), {}}; }

Payload pngOf(const SwfTag& tag) { return {encodePng(decodeBitmap(tag, nullptr)), "png", {}}; }

Payload pictureFile(std::span<const uint8_t> tables, std::span<const uint8_t> data) {
    switch (tables.empty() ? imageKind(data) : ImageKind::jpeg) {
    case ImageKind::jpeg: return {joinedJpeg(tables, data), "jpg", {}};
    case ImageKind::none: return {copyOf(data), anyBytes, "the data is no JPEG, PNG or GIF picture"};
    default: return rawFile(data);
    }
}

Payload bitmapFile(const SwfTag& tag, const SwfTagJPEGTables* tables) {
    if (const auto* bitmap = dynamic_cast<const SwfTagDefineBits*>(&tag)) {
        const bool hasTables = tables != nullptr && !tables->jpegData.empty();
        return pictureFile(hasTables ? tables->jpegData.span() : std::span<const uint8_t>(), bitmap->jpegData.span());
    }
    if (const auto* bitmap = dynamic_cast<const SwfJpegBitmap*>(&tag))
        return pictureFile({}, bitmap->jpegData.span());
    if (const auto* bitmap = dynamic_cast<const SwfTagDefineBitsJPEG3*>(&tag)) {
        const std::span<const uint8_t> data = bitmap->jpegData.span();
        if (bitmap->bitmapAlphaData.empty() || imageKind(data) != ImageKind::jpeg)
            return pictureFile({}, data);
    }
    return pngOf(tag);
}

Payload wavOf(const Sound& sound) {
    std::vector<uint8_t> bytes;
    bytes.reserve(2 * sound.samples.size());
    for (int16_t sample : sound.samples) {
        bytes.push_back(static_cast<uint8_t>(sample));
        bytes.push_back(static_cast<uint8_t>(sample >> 8));
    }
    return {writeWav({sound.rate, sound.channels, 16, bytes}), "wav", {}};
}

Payload pcmFile(const SwfSoundFormat& format, std::span<const uint8_t> data) {
    Wav wav{soundRate(format), channelsOf(format), static_cast<uint16_t>(format.soundSize == 0 ? 8 : 16), data};
    const size_t frame = size_t(wav.channels) * wav.bits / 8;
    wav.data = data.first(data.size() / frame * frame);
    return {writeWav(wav), "wav", {}};
}

Payload undecoded(const SwfSoundFormat& format, std::span<const uint8_t> data) {
    switch (encodingOf(format)) {
    case SoundEncoding::nellymoser16:
    case SoundEncoding::nellymoser8:
    case SoundEncoding::nellymoser:
        return {copyOf(data), "nelly", "Nellymoser sound as it stands in the movie, without a file's header"};
    case SoundEncoding::speex:
        return {copyOf(data), "speex", "Speex sound as it stands in the movie, without a file's header"};
    default:
        return {copyOf(data), anyBytes,
                "sound of format " + std::to_string(format.soundFormat) + " as it stands in the movie"};
    }
}

Payload soundFile(const SwfTagDefineSound& tag) {
    const std::span<const uint8_t> data = tag.soundData.span();
    if (isPcm(tag.format))
        return pcmFile(tag.format, data);
    switch (encodingOf(tag.format)) {
    case SoundEncoding::adpcm: return wavOf(decodeSound(tag));
    case SoundEncoding::mp3: return {copyOf(mp3OfSound(data)), "mp3", {}};
    default: return undecoded(tag.format, data);
    }
}

Payload streamFile(const SwfTagSoundStreamHead& head, const SoundBlocks& blocks) {
    const SwfSoundFormat& format = head.streamFormat;
    if (encodingOf(format) == SoundEncoding::adpcm)
        return wavOf(decodeStream(head, blocks));
    const std::vector<uint8_t> bytes = joinedBlocks(format, blocks);
    if (isPcm(format))
        return pcmFile(format, bytes);
    return encodingOf(format) == SoundEncoding::mp3 ? Payload{bytes, "mp3", {}} : undecoded(format, bytes);
}

bool isEmptyBitmap(const SwfTag& tag) {
    if (const auto* bitmap = dynamic_cast<const SwfJpegBitmap*>(&tag))
        return bitmap->jpegData.empty();
    if (const auto* bitmap = dynamic_cast<const SwfTagDefineBitsJPEG3*>(&tag))
        return bitmap->jpegData.empty();
    return false;
}

} // namespace

bool hasPayload(const SwfTag& tag, const PayloadContext& context) {
    if (isBitmap(tag))
        return !isEmptyBitmap(tag);
    if (const auto* sound = dynamic_cast<const SwfTagDefineSound*>(&tag))
        return !sound->soundData.empty();
    if (dynamic_cast<const SwfTagSoundStreamHead*>(&tag) != nullptr)
        return std::ranges::any_of(context.blocks, [](const auto* block) { return !block->streamSoundData.empty(); });
    const SwfBytes* raw = rawPayload(tag);
    return raw != nullptr && !raw->empty();
}

Payload exportPayload(const SwfTag& tag, const PayloadContext& context) {
    if (!hasPayload(tag, context))
        unsupportedMedia(tagName(tag.type) + " has no data that could be a file");
    if (isBitmap(tag))
        return bitmapFile(tag, context.tables);
    if (const auto* sound = dynamic_cast<const SwfTagDefineSound*>(&tag))
        return soundFile(*sound);
    if (const auto* head = dynamic_cast<const SwfTagSoundStreamHead*>(&tag))
        return streamFile(*head, context.blocks);
    const bool isScript = dynamic_cast<const SwfTagDoABC*>(&tag) != nullptr;
    const std::span<const uint8_t> bytes = rawPayload(tag)->span();
    return {copyOf(bytes), isScript ? "abc" : extensionOf(bytes), {}};
}

std::string payloadFileName(const SwfTag& tag, const std::string& place, const std::string& extension) {
    std::string name = tagName(tag.type);
    std::erase(name, ' ');
    return (tag.isDefinition() ? std::to_string(tag.definitionId()) : place) + "-" + name + "." + extension;
}

} // namespace zelk
