// Sound tags as samples, from and to files.

#include "SoundCodec.h"
#include "MediaSamples.h"
#include "Payload.h"

using namespace libswf;
using namespace samples;

namespace {

using Samples = std::vector<int16_t>;

SwfSoundFormat formatOf(uint8_t encoding, uint8_t rate, uint8_t size, uint8_t type) {
    SwfSoundFormat format;
    format.soundFormat = encoding;
    format.soundRate = rate;
    format.soundSize = size;
    format.soundType = type;
    return format;
}

std::unique_ptr<SwfTagDefineSound> soundOf(const SwfSoundFormat& format, uint32_t count, const Bytes& data) {
    auto tag = std::make_unique<SwfTagDefineSound>();
    tag->characterId = 5;
    tag->format = format;
    tag->soundSampleCount = count;
    tag->soundData = swfBytes(data);
    return tag;
}

const std::string zero16(16, '0'), zero6(6, '0');

TEST(SoundCodec, SamplesOfEveryEncoding) {
    const std::string start = zero16 + zero6;
    const std::string plus100 = "0000000001100100", minus100 = "1111111110011100";
    std::string packets = "00" + start; // 2 bits: 4,095 codes, then another whole sample
    for (int i = 1; i < 4096; ++i)
        packets += i % 2 == 0 ? "00" : "10";
    packets += plus100 + zero6;
    const struct {
        const char* what;
        SwfSoundFormat format;
        uint32_t count;
        Bytes data;
        Samples first, last;
        size_t total;
    } cases[] = {
        {"8 bits", formatOf(0, 1, 0, 0), 3, {0, 128, 255}, {-32768, 0, 32512}, {}, 3},
        {"16 bits, half a frame left over",
         formatOf(3, 3, 1, 1),
         0,
         hexBytes("0100ff7f 0080ffff 01"),
         {1, 32767, -32768, -1},
         {},
         4},
        {"2 bits", formatOf(1, 0, 1, 0), 4, bits("00" + start + "01 11 00"), {0, 10, -3, 2}, {}, 4},
        {"3 bits", formatOf(1, 0, 1, 0), 3, bits("01" + start + "011 100"), {0, 11, 9}, {}, 3},
        {"4 bits", formatOf(1, 0, 1, 0), 3, bits("10" + start + "0111 1001"), {0, 11, 5}, {}, 3},
        {"5 bits", formatOf(1, 0, 1, 0), 3, bits("11" + start + "01111 00000"), {0, 11, 13}, {}, 3},
        {"both sides",
         formatOf(1, 2, 1, 1),
         2,
         bits("00" + plus100 + zero6 + minus100 + zero6 + "01 11"),
         {100, -100, 110, -110},
         {},
         4},
        {"the highest step clips",
         formatOf(1, 0, 1, 0),
         2,
         bits("00 0111111111111110 111111 01"),
         {32766, 32767},
         {},
         2},
        {"without a count the filling bits count too",
         formatOf(1, 0, 1, 0),
         0,
         bits("00" + start + "01 11 00"),
         {0, 10, -3, 2},
         {},
         5},
        {"another packet", formatOf(1, 3, 1, 0), 4097, bits(packets), {0, -3, 0, -3}, {0, -3, 100}, 4097},
    };
    for (const auto& each : cases) {
        const zelk::Sound sound = zelk::decodeSound(*soundOf(each.format, each.count, each.data));
        EXPECT_EQ(sound.rate, 44100u >> (3 - each.format.soundRate)) << each.what;
        ASSERT_EQ(sound.samples.size(), each.total) << each.what;
        EXPECT_TRUE(std::equal(each.first.begin(), each.first.end(), sound.samples.begin())) << each.what;
        EXPECT_TRUE(std::equal(each.last.rbegin(), each.last.rend(), sound.samples.rbegin())) << each.what;
    }
    for (const auto& [encoding, data] :
         {std::pair<uint8_t, Bytes>{1, {0x80, 0}}, {2, {0}}, {2, {0, 0, 1}}, {6, {1, 2}}, {11, {1, 2}}, {9, {1}}})
        EXPECT_THROW(zelk::decodeSound(*soundOf(formatOf(encoding, 2, 1, 0), 1, data)), SwfException) << int(encoding);
}

TEST(SoundCodec, Mp3WithoutWhatTheTagPutsAround) {
    const Bytes frames = mp3Frame() + mp3Frame() + mp3Frame();
    const auto sound = soundOf(formatOf(2, 3, 1, 1), 2000, hexBytes("6400") + frames);
    const zelk::Payload payload = zelk::exportPayload(*sound, {});
    EXPECT_EQ(payload.bytes, frames);
    EXPECT_EQ(payload.extension, "mp3");
    SwfTagSoundStreamHead head;
    head.streamFormat = formatOf(2, 3, 1, 1);
    SwfTagSoundStreamBlock first, empty, second;
    first.streamSoundData = swfBytes(hexBytes("80040000") + mp3Frame());
    second.streamSoundData = swfBytes(hexBytes("00090000") + mp3Frame() + mp3Frame());
    const zelk::PayloadContext context{nullptr, {&first, &empty, &second}};
    EXPECT_EQ(zelk::exportPayload(head, context).bytes, frames);
    EXPECT_FALSE(zelk::hasPayload(head, {nullptr, {&empty}}));
#ifdef ZELK_HAVE_CODECS
    const zelk::Sound decoded = zelk::decodeSound(*sound);
    EXPECT_EQ(decoded.rate, 44100u);
    EXPECT_EQ(decoded.samples, Samples(4000, 0));
    sound->soundSampleCount = 0;
    EXPECT_EQ(zelk::decodeSound(*sound).frames(), 3u * 1152 - 100);
    EXPECT_EQ(zelk::decodeStream(head, context.blocks).frames(), 3u * 1152);
#endif
}

TEST(SoundCodec, StreamsAreJoined) {
    SwfTagSoundStreamHead2 head;
    SwfTagSoundStreamBlock one, two;
    head.streamFormat = formatOf(1, 1, 1, 0); // every block starts anew
    one.streamSoundData = swfBytes(bits("00" + zero16 + zero6 + "01"));
    two.streamSoundData = swfBytes(bits("11" + zero16 + zero6 + "01111"));
    const zelk::Sound sound = zelk::decodeStream(head, {&one, &two});
    EXPECT_EQ(Samples(sound.samples.begin(), sound.samples.begin() + 2), (Samples{0, 10}));
    EXPECT_EQ(sound.samples.back(), 11);
    head.streamFormat = formatOf(3, 1, 0, 1);
    one.streamSoundData = swfBytes({1, 2});
    two.streamSoundData = swfBytes({3, 4});
    EXPECT_EQ(zelk::exportPayload(head, {nullptr, {&one, &two}}).bytes, wavFile(1, 2, 11025, 8, {1, 2, 3, 4}));
    head.streamFormat = formatOf(6, 1, 1, 0);
    const zelk::Payload raw = zelk::exportPayload(head, {nullptr, {&one, &two}});
    EXPECT_EQ(raw.bytes, (Bytes{1, 2, 3, 4}));
    EXPECT_FALSE(raw.note.empty());
}

TEST(SoundCodec, ImportedSoundsComeOutAgain) {
    const auto old = soundOf(formatOf(1, 2, 1, 0), 1, bits("00" + zero16 + zero6));
    const Bytes frames = mp3Frame() + mp3Frame();
    const Bytes titled = hexBytes("494433 0300 00 00000003 aabbcc") + frames + Bytes{'T', 'A', 'G', 0};
    Bytes odd = wavFile(1, 1, 5513, 8, {1, 2, 3});
    const struct {
        Bytes file;
        uint8_t encoding, rate, size, type;
        uint32_t count;
        Bytes out;
    } cases[] = {
        {wavFile(1, 2, 44100, 16, Bytes(8, 1)), 3, 3, 1, 1, 2, wavFile(1, 2, 44100, 16, Bytes(8, 1))},
        {odd, 3, 0, 0, 0, 3, wavFile(1, 1, 5512, 8, {1, 2, 3})},
        {titled, 2, 3, 1, 1, 2304, frames},
        {mp3Frame(0x90, 0xC0), 2, 3, 1, 0, 1152, mp3Frame(0x90, 0xC0)},
    };
    for (const auto& each : cases) {
        const zelk::ImportedPayload imported = zelk::importPayload(*old, {}, each.file);
        const auto* tag = dynamic_cast<const SwfTagDefineSound*>(imported.tag.get());
        ASSERT_NE(tag, nullptr);
        EXPECT_EQ(tag->characterId, 5);
        EXPECT_EQ(tag->soundSampleCount, each.count);
        const SwfSoundFormat& format = tag->format;
        EXPECT_EQ((Bytes{format.soundFormat, format.soundRate, format.soundSize, format.soundType}),
                  (Bytes{each.encoding, each.rate, each.size, each.type}));
        EXPECT_EQ(zelk::exportPayload(*tag, {}).bytes, each.out);
    }
    const Bytes refused[] = {wavFile(1, 1, 48000, 16, {1, 2}),
                             wavFile(1, 1, 44100, 24, {1, 2, 3}),
                             wavFile(2, 1, 44100, 8, {1}),
                             wavFile(1, 6, 44100, 16, Bytes(12, 1)),
                             wavFile(1, 1, 44100, 16, {}),
                             mp3Frame(0x94, 0, 384), // 48 kHz
                             hexBytes("fffb9000"),
                             hexBytes("0011"),
                             {}};
    for (const Bytes& file : refused)
        EXPECT_THROW(zelk::importPayload(*old, {}, file), SwfException) << file.size();
    SwfTagSoundStreamHead head;
    EXPECT_THROW(zelk::importPayload(head, {}, frames), SwfException);
    EXPECT_TRUE(zelk::importKinds(head).empty());
}

} // namespace
