#include <algorithm>

#include "ImageCodec.h"
#include "ImageSize.h"
#include "JpegMarkers.h"
#include "LosslessBitmap.h"
#include "MediaError.h"
#include "Mp3.h"
#include "Payload.h"
#include "RawPayload.h"
#include "SoundData.h"
#include "Wav.h"
#include "ZlibData.h"

namespace zelk {

using namespace libswf;

namespace {

constexpr const char* onlySounds = "the file is no WAV or MP3 sound";
constexpr const char* onlyPictures = "the file is no JPEG, PNG or GIF picture";

SwfBytes bytesOf(std::span<const uint8_t> file) { return SwfBytes::copyOf(file); }

std::string changeNote(const SwfTag& from, const SwfTag& to) {
    return from.type == to.type ? "" : tagName(from.type) + " has become " + tagName(to.type);
}

JpegSize checkedSize(std::span<const uint8_t> jpeg) {
    const std::optional<JpegSize> size = jpegSize(jpeg);
    if (!size)
        badMedia("JPEG: there is no picture in it");
    checkSize(size->width, size->height, jpeg.size());
#ifdef ZELK_HAVE_CODECS
    decodeImage(jpeg); // A damaged file is refused now, not when the movie plays.
#endif
    return *size;
}

// The old alpha where it fits, otherwise one that hides nothing.
std::string putAlpha(SwfTagDefineBitsJPEG3& to, const SwfTagDefineBitsJPEG3& from, const JpegSize& size) {
    const std::vector<uint8_t> old = joinedJpeg({}, from.jpegData.span());
    if (from.bitmapAlphaData.empty() || jpegSize(old) == size) {
        to.bitmapAlphaData = from.bitmapAlphaData;
        return {};
    }
    const std::vector<uint8_t> opaque(size_t(size.width) * size.height, 255);
    to.bitmapAlphaData = SwfBytes::adopt(deflated(opaque));
    return "the picture has another size than before, and no alpha now";
}

ImportedPayload importJpeg(const SwfTag& tag, std::span<const uint8_t> file) {
    const JpegSize size = checkedSize(file);
    if (const auto* old = dynamic_cast<const SwfTagDefineBitsJPEG3*>(&tag)) {
        std::shared_ptr<SwfTagDefineBitsJPEG3> result;
        if (const auto* old4 = dynamic_cast<const SwfTagDefineBitsJPEG4*>(&tag)) {
            auto result4 = std::make_shared<SwfTagDefineBitsJPEG4>();
            result4->deblockParam = old4->deblockParam;
            result = result4;
        } else {
            result = std::make_shared<SwfTagDefineBitsJPEG3>();
        }
        result->characterId = old->characterId;
        result->jpegData = bytesOf(file);
        std::string note = putAlpha(*result, *old, size);
        return {result, std::move(note)};
    }
    auto result = std::make_shared<SwfTagDefineBitsJPEG2>();
    result->characterId = tag.definitionId();
    result->jpegData = bytesOf(file);
    const bool hadAlpha = dynamic_cast<const SwfTagDefineBitsLossless2*>(&tag) != nullptr;
    return {result, changeNote(tag, *result) + (hadAlpha ? ", without alpha" : "")};
}

// A tag that holds a file of this kind already takes another one.
std::shared_ptr<SwfTag> withSameKind(const SwfTag& tag, ImageKind kind, std::span<const uint8_t> file) {
    const auto holds = [kind](const SwfBytes& data) { return imageKind(data.span()) == kind; };
    const auto put = [&](auto result) {
        result->characterId = tag.definitionId();
        result->jpegData = bytesOf(file);
        return result;
    };
    const auto* bitmap2 = dynamic_cast<const SwfTagDefineBitsJPEG2*>(&tag);
    if (bitmap2 != nullptr && holds(bitmap2->jpegData))
        return put(std::make_shared<SwfTagDefineBitsJPEG2>());
    const auto* bitmap3 = dynamic_cast<const SwfTagDefineBitsJPEG3*>(&tag);
    if (bitmap3 == nullptr || !holds(bitmap3->jpegData))
        return nullptr;
    if (tag.type == SwfTagDefineBitsJPEG3().type)
        return put(std::make_shared<SwfTagDefineBitsJPEG3>());
    return put(std::make_shared<SwfTagDefineBitsJPEG4>());
}

ImportedPayload importBitmap(const SwfTag& tag, std::span<const uint8_t> file) {
    const ImageKind kind = imageKind(file);
    if (kind == ImageKind::none)
        unsupportedMedia(onlyPictures);
    if (kind == ImageKind::jpeg)
        return importJpeg(tag, file);
    const Image image = decodeImage(file);
    if (std::shared_ptr<SwfTag> same = withSameKind(tag, kind, file))
        return {std::move(same), {}};
    const bool hadAlpha = dynamic_cast<const SwfTagDefineBitsLossless2*>(&tag) != nullptr;
    const auto result = encodeLossless(image, tag.definitionId(), hadAlpha || !image.isOpaque());
    return {result, changeNote(tag, *result)};
}

uint8_t rateIndex(uint32_t rate) {
    SwfSoundFormat format;
    for (format.soundRate = 0; format.soundRate < 4; ++format.soundRate) {
        const uint32_t known = soundRate(format);
        if (rate == known || (format.soundRate == 0 && (rate == 5500 || rate == known + 1)))
            return format.soundRate;
    }
    unsupportedMedia("a sound of " + std::to_string(rate) +
                     " Hz: movies have sounds of 5512, 11025, 22050 and 44100 Hz only");
}

uint32_t checkedCount(uint64_t count) {
    if (count > UINT32_MAX)
        unsupportedMedia("the sound is too long");
    return static_cast<uint32_t>(count);
}

ImportedPayload importWav(const SwfTagDefineSound& old, std::span<const uint8_t> file) {
    const Wav wav = readWav(file);
    auto result = std::make_shared<SwfTagDefineSound>();
    result->characterId = old.characterId;
    const bool keepsEncoding = isPcm(old.format);
    result->format.soundFormat =
        keepsEncoding ? old.format.soundFormat : static_cast<uint8_t>(SoundEncoding::littleEndianPcm);
    result->format.soundRate = rateIndex(wav.rate);
    result->format.soundSize = wav.bits == 8 ? 0 : 1;
    result->format.soundType = wav.channels == 1 ? 0 : 1;
    result->soundSampleCount = checkedCount(wav.data.size() / (wav.channels * wav.bits / 8));
    result->soundData = bytesOf(wav.data);
    return {result, keepsEncoding ? "" : "the sound is uncompressed now"};
}

ImportedPayload importMp3(const SwfTagDefineSound& old, std::span<const uint8_t> file) {
    const Mp3Info mp3 = mp3Info(file);
    auto result = std::make_shared<SwfTagDefineSound>();
    result->characterId = old.characterId;
    result->format.soundFormat = SwfSoundFormat::mp3;
    result->format.soundRate = rateIndex(mp3.rate);
    if (result->format.soundRate == 0)
        unsupportedMedia("an MP3 of 5512 Hz");
    result->format.soundSize = 1;
    result->format.soundType = mp3.channels == 1 ? 0 : 1;
    result->soundSampleCount = checkedCount(mp3.frames);
    std::vector<uint8_t> data = {0, 0}; // samples to skip
    data.insert(data.end(), mp3.audio.begin(), mp3.audio.end());
    result->soundData = SwfBytes::adopt(std::move(data));
    return {result, {}};
}

bool looksLikeMp3(std::span<const uint8_t> file) {
    return file.size() > 3 &&
           ((file[0] == 0xFF && (file[1] & 0xE0) == 0xE0) || std::equal(file.begin(), file.begin() + 3, "ID3"));
}

ImportedPayload importSound(const SwfTagDefineSound& old, std::span<const uint8_t> file) {
    if (isWav(file))
        return importWav(old, file);
    if (!looksLikeMp3(file))
        unsupportedMedia(onlySounds);
    return importMp3(old, file);
}

bool isSame(const SwfTag& tag, const PayloadContext& context, std::span<const uint8_t> file) {
    try {
        return hasPayload(tag, context) && std::ranges::equal(exportPayload(tag, context).bytes, file);
    } catch (const SwfException&) {
        return false; // A payload that cannot be taken out can still be replaced.
    }
}

} // namespace

std::vector<std::string> importKinds(const SwfTag& tag) {
    if (isBitmap(tag))
        return {"png", "jpg", "jpeg", "gif"};
    if (dynamic_cast<const SwfTagDefineSound*>(&tag) != nullptr)
        return {"wav", "mp3"};
    if (rawPayload(tag) != nullptr)
        return {"*"};
    return {};
}

ImportedPayload importPayload(const SwfTag& tag, const PayloadContext& context, std::span<const uint8_t> file) {
    if (importKinds(tag).empty())
        unsupportedMedia("the data of " + tagName(tag.type) + " cannot be replaced by a file");
    if (isSame(tag, context, file))
        return {nullptr, "the file holds what is there already"};
    if (isBitmap(tag))
        return importBitmap(tag, file);
    if (const auto* sound = dynamic_cast<const SwfTagDefineSound*>(&tag))
        return importSound(*sound, file);
    return {withRawPayload(tag, bytesOf(file)), {}};
}

} // namespace zelk
