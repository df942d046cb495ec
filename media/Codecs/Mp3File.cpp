#include "Mp3.h"

#include "MediaError.h"

#ifdef ZELK_HAVE_CODECS

#include <mpg123.h>

#include <algorithm>
#include <array>
#include <memory>
#include <string>

namespace zelk {

namespace {

constexpr size_t chunkSize = 16 * 1024; // of input

struct Close {
    void operator()(mpg123_handle* handle) const { mpg123_delete(handle); }
};
using Handle = std::unique_ptr<mpg123_handle, Close>;

Handle openDecoder() {
    mpg123_init();
    Handle handle(mpg123_new(nullptr, nullptr));
    if (handle == nullptr)
        unsupportedMedia("MP3: the decoder does not start");
    mpg123_param(handle.get(), MPG123_ADD_FLAGS, MPG123_QUIET | MPG123_IGNORE_INFOFRAME, 0);
    mpg123_param(handle.get(), MPG123_REMOVE_FLAGS, MPG123_GAPLESS, 0); // tags say themselves what to skip
    mpg123_format_none(handle.get());
    const long* rates = nullptr;
    size_t count = 0;
    mpg123_rates(&rates, &count);
    for (size_t i = 0; i < count; ++i)
        mpg123_format(handle.get(), rates[i], MPG123_MONO | MPG123_STEREO, MPG123_ENC_SIGNED_16);
    if (mpg123_open_feed(handle.get()) != MPG123_OK)
        unsupportedMedia("MP3: the decoder does not start");
    return handle;
}

void takeFormat(mpg123_handle* handle, Sound& sound) {
    long rate = 0;
    int channels = 0, encoding = 0;
    mpg123_getformat(handle, &rate, &channels, &encoding);
    const bool isOther = sound.rate != static_cast<uint32_t>(rate) || sound.channels != channels;
    if (!sound.samples.empty() && isOther)
        badMedia("MP3: rate or channels change in the middle");
    sound.rate = static_cast<uint32_t>(rate);
    sound.channels = static_cast<uint16_t>(channels);
}

} // namespace

Sound decodeMp3(std::span<const uint8_t> data) {
    const Handle handle = openDecoder();
    Sound sound;
    std::array<int16_t, 8192> out;
    while (!data.empty()) {
        const auto chunk = data.first(std::min(chunkSize, data.size()));
        data = data.subspan(chunk.size());
        if (mpg123_feed(handle.get(), chunk.data(), chunk.size()) != MPG123_OK)
            badMedia(std::string("MP3: ") + mpg123_strerror(handle.get()));
        for (int result = MPG123_OK; result != MPG123_NEED_MORE;) {
            size_t bytes = 0;
            result = mpg123_read(handle.get(), reinterpret_cast<unsigned char*>(out.data()), sizeof out, &bytes);
            if (result == MPG123_NEW_FORMAT)
                takeFormat(handle.get(), sound);
            else if (result != MPG123_OK && result != MPG123_NEED_MORE)
                badMedia(std::string("MP3: ") + mpg123_strerror(handle.get()));
            sound.samples.insert(sound.samples.end(), out.data(), out.data() + bytes / sizeof(int16_t));
        }
    }
    if (sound.samples.empty())
        badMedia("MP3: there is no whole frame in it");
    return sound;
}

} // namespace zelk

#else

namespace zelk {

Sound decodeMp3(std::span<const uint8_t>) { noCodec("MP3 sounds"); }

} // namespace zelk

#endif
