// Movie files: header, compression, tag framing, tag lists.
#include "Tests.h"
#include <zlib.h>
#ifdef ZELK_HAVE_LZMA
#include <lzma.h>
#endif

using namespace libswf;

namespace {

constexpr const char* stage = "10 00  00 01  00 00"; // an empty RECT, 1 frame per second, 0 frames

Bytes fileOf(const std::string& records) { return movieFile(8, hexBytes(records)); }

struct Loaded {
    SwfMovieSafe movie;
    SwfWarnings warnings;

    explicit Loaded(const Bytes& file, bool keepRaw = false) {
        movie.parse(file, {.keepRaw = keepRaw, .warnings = &warnings});
    }

    uint32_t count() const { return movie.tags.count(); }
    SwfTag& tag(uint32_t index) const { return *movie.tags.at(index); }
    // The records that are saved, the closing End included.
    std::string saved() {
        movie.isCompressed = false;
        const SwfVector<uint8_t> file = movie.serialise(0);
        const size_t header = 12 + movie.frameSize.size;
        return hexText({file.data() + header, file.size() - header});
    }
};

uint32_t failureOf(const Bytes& file) {
    return codeOf([&] { Loaded loaded(file); });
}

std::string assertionOf(const std::function<void()>& act) {
    try {
        act();
        return {};
    } catch (const SwfAssertionFailure& failure) {
        return failure.what();
    }
}

Bytes zipped(const Bytes& body) {
    Bytes out(compressBound(static_cast<uLong>(body.size())));
    uLongf size = static_cast<uLongf>(out.size());
    compress(out.data(), &size, body.data(), static_cast<uLong>(body.size()));
    out.resize(size);
    return out;
}

TEST(MovieHeader, BothWays) {
    SwfMovieSafe movie;
    // RECT of 9 bits: 01001 000000000 001100100 000000000 001010000 …
    movie.parse(hexBytes("46 57 53 06 18000000 48 00 c8 00 28 00 80 0c 02 00 4000 4000 0000"), {});
    EXPECT_FALSE(movie.isCompressed);
    EXPECT_EQ(movie.version, 6);
    EXPECT_EQ(movie.frameSize.Xmax, 100);
    EXPECT_EQ(movie.frameSize.Ymax, 80);
    EXPECT_EQ(movie.frameRate, 12.5f);
    EXPECT_EQ(movie.frameCount, 2);
    // A narrower RECT (8 bits, 01000 00000000 01100100 00000000 01010000) and the length that goes with it.
    auto saved = [&] {
        const SwfVector<uint8_t> file = movie.serialise(9);
        return hexText({file.data(), file.size()});
    };
    EXPECT_EQ(saved(), "46 57 53 06 17 00 00 00 40 03 20 02 80 80 0c 02 00 40 00 40 00 00 00");
    movie.frameRate = 255.999f; // truncated to 8.8
    EXPECT_EQ(saved().substr(39, 5), "ff ff");

    SwfMovieSafe header;
    header.parse(fileOf("4000 0000"), {.headerOnly = true});
    EXPECT_EQ(header.frameRate, 1.0f);
    EXPECT_EQ(header.tags.count(), 0u);
}

TEST(MovieHeader, IsThatOfTheConstructor) {
    const SwfMovie movie(9, 3, 5, 1.5f, true);
    EXPECT_EQ(std::tuple(movie.version, movie.frameSize.Xmax, movie.frameSize.Ymax, movie.frameRate),
              std::tuple(9, 3, 5, 1.5f));
    const SwfMovieSafe safe;
    EXPECT_EQ(std::tuple(safe.version, safe.frameSize.Xmax, safe.frameSize.Ymax, safe.frameRate),
              std::tuple(7, 11000, 8000, 12.0f));
    EXPECT_TRUE(movie.isCompressed && safe.isCompressed);
}

TEST(MovieHeader, WhateverIsNotCompressedIsRead) {
    // The signature of an LZMA movie makes none.
    for (const char* start : {"465753 08", "000000 08", "464343 08", "5a5753 08", "5a5753 0d", "5a5753 ff"}) {
        for (const char* length : {"00000000", "12000000", "ff000000"}) {
            Loaded loaded(hexBytes(std::string(start) + length + stage + "4000 0000"));
            EXPECT_EQ(loaded.count(), 1u) << start << length;
            EXPECT_FALSE(loaded.movie.isCompressed) << start << length;
        }
    }
    for (const char* cut :
         {"", "46", "46 57 53 08 000000", "46 57 53 08 00000000", "46 57 53 08 00000000 10 00 00 01 00"})
        EXPECT_EQ(failureOf(hexBytes(cut)), 3u) << cut;
    EXPECT_EQ(failureOf(fileOf("")), 0u);
}

TEST(MovieHeader, FrameCountFitsItsField) {
    SwfMovie movie(8, 0, 0, 1, false);
    for (int i = 0; i < 65535; ++i)
        movie.tags.append(std::make_shared<SwfTagShowFrame>());
    EXPECT_NO_THROW(movie.serialise(0));
    EXPECT_EQ(movie.frameCount, 65535);
    movie.tags.append(std::make_shared<SwfTagShowFrame>());
    EXPECT_EQ(assertionOf([&] { movie.serialise(0); }), "frameCount <= 0xFFFF");
    auto sprite = std::make_shared<SwfTagDefineSprite>();
    sprite->tags = std::move(movie.tags);
    SwfMovie nested(8, 0, 0, 1, false);
    nested.tags.append(sprite);
    EXPECT_THROW(nested.serialise(0), SwfException);
}

// A compressed file whose header gives this length.
Bytes compressedFile(const Bytes& packed, uint32_t length) {
    Bytes file = {'C', 'W', 'S', 8};
    for (int shift = 0; shift < 32; shift += 8)
        file.push_back(static_cast<uint8_t>(length >> shift));
    return joined(std::move(file), packed);
}

TEST(Compression, BoundsTheBodyByItsHeader) {
    const Bytes body = hexBytes(std::string(stage) + "4000 4000 0000");
    const Bytes packed = zipped(body);
    const uint32_t length = 8 + static_cast<uint32_t>(body.size());
    Bytes cut = packed, corrupt = packed, withDictionary = packed;
    cut.pop_back();
    corrupt[4] ^= 0xFF;
    withDictionary[0] = 0x78, withDictionary[1] = 0xBB;
    const struct {
        Bytes packed;
        uint32_t length;
        uint32_t code;
    } rows[] = {
        {packed, length, 0},
        {packed, length + 100, 0}, // ends early
        {packed, UINT32_MAX, 0},   // costs no memory
        {joined(packed, Bytes{1, 2}), length, 0},
        {packed, length - 1, 3}, // gives more than it says
        {packed, 8, 3},
        {packed, 7, 3},
        {packed, 0, 3},
        {cut, length, 3},
        {cut, length + 100, 3},
        {corrupt, length, 3},
        {{}, length, 3},
        {Bytes(12, 0xAA), UINT32_MAX, 3},
        {withDictionary, length, 1}, // needs a dictionary: neither corrupt nor cut
    };
    for (const auto& row : rows)
        EXPECT_EQ(failureOf(compressedFile(row.packed, row.length)), row.code) << &row - rows;
    EXPECT_EQ(Loaded(compressedFile(packed, length)).count(), 2u);
    try {
        Loaded(compressedFile(packed, 7));
    } catch (const SwfException& error) {
        EXPECT_EQ(std::string(error.what()), "the header gives a file length below 8 (code 3)");
    }
}

TEST(Compression, BigBodiesAreDeflatedInParts) {
    constexpr size_t start = 8, period = 20000, part = 150000; // repeats only within zlib's window
    uint32_t noise = 1;
    Bytes file(start + 28 * part);
    for (size_t i = start; i < file.size(); ++i)
        file[i] =
            i < start + period ? static_cast<uint8_t>((noise = noise * 1664525 + 1013904223) >> 24) : file[i - period];
    for (size_t size : {size_t(0), size_t(100), 2 * part - 1, 2 * part, 3 * part + 5, file.size() - start}) {
        for (int level : {-1, 0, 1, 5, 6, 9}) {
            SwfOStream stream(start + size);
            stream.writeBytes(start + size, file.data());
            stream.compress(level);
            Bytes expected(compressBound(static_cast<uLong>(size)));
            uLongf length = expected.size(), inflated = size + 1;
            compress2(expected.data(), &length, file.data() + start, static_cast<uLong>(size), level);
            expected.resize(length);
            const Bytes packed(stream.begin() + start, stream.end());
            if (size < 2 * part) {
                EXPECT_TRUE(packed == expected) << size << " at level " << level;
            }
            EXPECT_LE(packed.size(), length + length / 100) << size << " at level " << level;
            Bytes back(size + 1);
            ASSERT_EQ(uncompress(back.data(), &inflated, packed.data(), static_cast<uLong>(packed.size())), Z_OK);
            ASSERT_EQ(inflated, size);
            EXPECT_TRUE(std::equal(back.begin(), back.end() - 1, file.begin() + start))
                << size << " at level " << level;
        }
    }
}

TEST(Compression, SavesWhatItReads) {
    Loaded loaded(fileOf("4000 027d aabb 4000 0000"));
    const std::string records = loaded.saved();
    for (int level : {0, 1, 9}) {
        loaded.movie.isCompressed = true;
        const SwfVector<uint8_t> file = loaded.movie.serialise(level);
        EXPECT_EQ(hexText({file.data(), 8}), "43 57 53 08 18 00 00 00"); // the inflated length
        Loaded again(Bytes(file.begin(), file.end()));
        EXPECT_TRUE(again.movie.isCompressed);
        EXPECT_EQ(again.saved(), records);
    }
}

#ifdef ZELK_HAVE_LZMA
Bytes lzmaFile(const Bytes& body, uint8_t version, uint32_t length, uint32_t dictionary = 1 << 16) {
    lzma_options_lzma options;
    lzma_lzma_preset(&options, 1);
    options.dict_size = dictionary;
    lzma_stream z = LZMA_STREAM_INIT;
    EXPECT_EQ(lzma_alone_encoder(&z, &options), LZMA_OK);
    Bytes packed(body.size() + 1000);
    z.next_in = body.data(), z.avail_in = body.size();
    z.next_out = packed.data(), z.avail_out = packed.size();
    EXPECT_EQ(lzma_code(&z, LZMA_FINISH), LZMA_STREAM_END);
    packed.resize(packed.size() - z.avail_out);
    lzma_end(&z);
    packed.erase(packed.begin() + 5, packed.begin() + 13); // a movie gives the length elsewhere
    const uint32_t packedLength = static_cast<uint32_t>(packed.size() - 5);
    Bytes file = {'Z', 'W', 'S', version};
    for (uint32_t number : {length, packedLength})
        for (int shift = 0; shift < 32; shift += 8)
            file.push_back(static_cast<uint8_t>(number >> shift));
    return joined(std::move(file), packed);
}

TEST(Compression, ReadsLzma) {
    const Bytes body = hexBytes(std::string(stage) + "4000 4000 0000 00*3000");
    const uint32_t length = 8 + static_cast<uint32_t>(body.size());
    const Bytes file = lzmaFile(body, 13, length);
    Loaded loaded(file);
    EXPECT_EQ(loaded.count(), 2u);
    EXPECT_TRUE(loaded.movie.isCompressed);
    EXPECT_EQ(loaded.movie.serialise(9)[0], 'C');
    EXPECT_EQ(failureOf(lzmaFile(body, 13, UINT32_MAX)), 0u);
    // A packed length that a movie of 64,000 bytes can reach makes it one that was cut; the next one says nothing.
    for (const auto& [packed, code] : {std::pair(64000 + 1000 + 64 - 17, 3u), {64000 + 1000 + 64 - 16, 0u}}) {
        std::string cut = "ZWS\r" + little(64000, 4) + little(packed, 4) + std::string("]\0\0\1\0", 5);
        cut.resize(40);
        EXPECT_EQ(failureOf(Bytes(cut.begin(), cut.end())), code) << packed;
    }
    EXPECT_EQ(failureOf(lzmaFile(body, 13, 7)), 3u);
    for (size_t cut : {13u, 16u, 17u, 25u})
        EXPECT_EQ(failureOf(Bytes(file.begin(), file.begin() + ptrdiff_t(cut))), 3u) << cut;
    Bytes corrupt = file;
    corrupt[20] ^= 0x55;
    EXPECT_EQ(failureOf(corrupt), 3u);
    corrupt = file;
    corrupt[12] = 0xFF; // coder properties
    EXPECT_EQ(failureOf(corrupt), 3u);
}

TEST(Compression, LzmaBodiesMayReferFarBack) {
    constexpr size_t distance = 9 << 20; // more than the dictionary that the decoder is given at first
    Bytes block(20'000);
    std::mt19937 random(1);
    std::generate(block.begin(), block.end(), [&] { return static_cast<uint8_t>(random()); });
    Bytes body = joined(hexBytes(std::string(stage) + "3ff9"), Bytes(4));
    const size_t bodyStart = body.size();
    body = joined(std::move(body), block);
    body.resize(bodyStart + distance);
    body = joined(std::move(body), block);
    const uint32_t length = static_cast<uint32_t>(body.size() - bodyStart);
    std::memcpy(body.data() + bodyStart - 4, &length, 4);
    const Bytes file = lzmaFile(body, 13, 8 + static_cast<uint32_t>(body.size()), 16 << 20);
    EXPECT_LT(file.size(), 2 * block.size()) << "the second block is no repetition";
    Loaded loaded(file);
    EXPECT_EQ(loaded.movie.body().size(), 8 + body.size());
    EXPECT_TRUE(std::equal(body.begin(), body.end(), loaded.movie.body().data() + 8));
}
#endif

TEST(TagFraming, KeepsHeadersAndPlaces) {
    const struct {
        const char* what;
        std::string records;
        uint32_t count, countKeptRaw; // tags read
        std::string saved, savedKeptRaw;
    } rows[] = {
        {"63 bytes take a long header", "3ff9 3f000000 aa*63 0000", 1, 1, "3ff9 3f000000 aa*63 0000", ""},
        {"a long header of 5 bytes stays", "3ff9 05000000 aa*5 0000", 1, 1, "3ff9 05000000 aa*5 0000", ""},
        {"a long header of 0 bytes stays", "7f00 00000000 0000", 1, 1, "7f00 00000000 0000", ""},
        {"no tags", "0000", 0, 0, "0000", ""},
        {"no End", "4000", 1, 1, "4000 0000", ""},
        {"half a record", "4000 40", 1, 1, "4000 0000", ""},
        {"End in the middle", "4000 0000 4000", 1, 1, "4000 0000", ""},
        {"End with a body", "4000 0200 0000 4000 0000", 1, 1, "4000 0000", ""},
        {"a long header without its length", "4000 3ff9 050000", 1, 1, "4000 0000", ""},
        {"a cut last tag", "4000 05f9 aabb", 1, 2, "4000 0000", "4000 02f9 aabb 0000"},
        {"a huge length", "4000 3ff9 ffffffff aabb", 1, 2, "4000 0000", "4000 3ff9 02000000 aabb 0000"},
        {"a huge length of a known tag", "7f00 ffffffff 4000", 1, 1, "7f00 00000000 0000", "7f00 02000000 4000 0000"},
        {"bytes left over", "4300 010203 4000 0000", 2, 2, "4000 4000 0000", "4300 010203 4000 0000"},
        {"zeros left over", "4300 000000 4000 0000", 2, 2, "4000 4000 0000", ""},
        {"more assets than the body holds", "060e 0200 0100 6100 4000 4000 0000", 2, 3, "4000 4000 0000",
         "060e 0200 0100 6100 4000 4000 0000"},
        {"a character id cut short", "8100 02 4000 0000", 1, 2, "4000 0000", "8100 02 4000 0000"},
    };
    for (const auto& row : rows) {
        Loaded plain(fileOf(row.records)), raw(fileOf(row.records), true);
        EXPECT_EQ(plain.count(), row.count) << row.what;
        EXPECT_EQ(raw.count(), row.countKeptRaw) << row.what;
        EXPECT_EQ(plain.saved(), hexText(hexBytes(row.saved))) << row.what;
        EXPECT_EQ(raw.saved(), hexText(hexBytes(row.savedKeptRaw.empty() ? row.saved : row.savedKeptRaw))) << row.what;
    }
}

TEST(TagFraming, TheFactoryKeepsLongHeaders) {
    for (const auto& [tagSize, isLong] : {std::pair(63u, false), std::pair(64u, true), std::pair(5u, true)}) {
        const Bytes body(64);
        SwfIStream stream(body.data(), body.size());
        stream.context.tagType = 500;
        stream.context.tagSize = tagSize;
        stream.context.tagLongHeader = isLong && tagSize < 63;
        EXPECT_EQ(readTag(stream)->longHeader, isLong) << tagSize;
    }
}

TEST(TagFraming, ListsEndWithTheirSprite) {
    const struct {
        const char* what;
        std::string records;
        std::string saved, savedKeptRaw;
    } rows[] = {
        {"no End in the sprite", "c609 01000000 4000 4000 0000", "c809 01000100 4000 0000 4000 0000",
         "c809 01000100 4000 0000 4000 0000"},
        {"an empty body list", "c409 01000000 4000 0000", "c609 01000000 0000 4000 0000",
         "c609 01000000 0000 4000 0000"},
        {"a child longer than the sprite", "c809 01000000 04f9 aabb 4000 0000", "c609 01000000 0000 4000 0000",
         "c809 01000000 04f9 aabb 4000 0000"}, // whole, since its list cannot give these bytes back
        {"a sprite too short", "c209 0100 4000 0000", "4000 0000", "c209 0100 4000 0000"},
        {"a corrupt child", "cd09 01000000 c109 01 4000 40 00 0000 4000 0000", "ca09 01000200 4000 4000 0000 4000 0000",
         "cd09 01000200 c109 01 4000 4000 0000 4000 0000"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Loaded(fileOf(row.records)).saved(), hexText(hexBytes(row.saved))) << row.what;
        EXPECT_EQ(Loaded(fileOf(row.records), true).saved(), hexText(hexBytes(row.savedKeptRaw))) << row.what;
    }
}

TEST(TagFraming, NamesWhatIsDropped) {
    const std::string records = "4000 cb09 01000000 c109 01 4000 0000 0000 aabb";
    Loaded plain(fileOf(records)), raw(fileOf(records), true);
    ASSERT_EQ(plain.warnings.total(), 2u);
    EXPECT_EQ(plain.warnings.items()[0].text(), "dropped: tag 1.0 (DefineSprite) at offset 0x1c: SpriteId: "
                                                "the body is shorter than 4 bytes (code 3)");
    EXPECT_EQ(plain.warnings.items()[1].kind, SwfWarning::Kind::ignored);
    ASSERT_EQ(raw.warnings.total(), 2u);
    EXPECT_EQ(raw.warnings.items()[0].kind, SwfWarning::Kind::keptRaw);
}

// 100,000 sprites inside each other: the deepest are kept as bytes, and nothing costs depth times size.
TEST(TagFraming, BoundsNesting) {
    Bytes file;
    for (int i = 0; i < 100000; ++i) {
        Bytes outer = hexBytes("ff09 00000000 0100 0000");
        const uint32_t length = 4 + static_cast<uint32_t>((99999 - i) * 10);
        for (size_t byte = 0; byte < 4; ++byte)
            outer[2 + byte] = static_cast<uint8_t>(length >> (8 * byte));
        file.insert(file.end(), outer.begin(), outer.end());
    }
    for (bool keepRaw : {false, true}) {
        Loaded loaded(joined(fileOf(""), file), keepRaw);
        uint32_t depth = 0;
        SwfTag* tag = &loaded.tag(0);
        for (; dynamic_cast<SwfTagDefineSprite*>(tag) != nullptr; ++depth)
            tag = &dynamic_cast<SwfTagDefineSprite*>(tag)->tags.at(0);
        EXPECT_TRUE(tag->isUnknown());
        EXPECT_EQ(depth, 255u);
        EXPECT_GT(loaded.movie.serialise(1).size(), file.size());
    }
}

TEST(SwfTags, AccessorsAssertAndLookUp) {
    // Two definitions of character 7 (DefineBits), and a longer one; FreeCharacter (3) defines nothing.
    Loaded loaded(fileOf("8201 0700 8301 0700aa c200 0700 8301 0900bb 0000"));
    SwfTagsSafe& safe = loaded.movie.tags;
    SwfTags& tags = safe.tags();
    EXPECT_EQ(tags.definition(7), safe.at(1)); // the last one
    EXPECT_EQ(safe.definition(7).get(), safe.at(1));
    EXPECT_EQ(safe.definitionIndex(9), 3u);
    EXPECT_EQ(safe.definitionIndex(8), safe.count());
    EXPECT_EQ(tags.definition(8), nullptr);
    EXPECT_EQ(assertionOf([&] { tags.at(4); }), "index < _tags.size()");
    EXPECT_EQ(assertionOf([&] { tags.sharedAt(UINT32_MAX); }), "index < _tags.size()");
    EXPECT_EQ(assertionOf([&] { safe.at(4); }), "tagIndex < _tags.size()");
    EXPECT_EQ(assertionOf([&] { safe.sharedAt(4); }), "tagIndex < _tags.size()");

    const Loaded sprite(fileOf("c609 01000000 0000 0000"));
    EXPECT_NE(dynamic_cast<SwfTagDefineSpriteSafe*>(&sprite.tag(0)), nullptr);
    for (const uint16_t code : {2, 39, 60, 88})
        EXPECT_TRUE(SwfTagUnknown::carriesCharacterId(code)) << code;
    for (const uint16_t code : {0, 9, 43, 89})
        EXPECT_FALSE(SwfTagUnknown::carriesCharacterId(code)) << code;
    const std::shared_ptr<SwfTag> kept = safe.sharedAt(3);
    safe = SwfTagsSafe();
    loaded.movie.parse(fileOf("0000"), {});
    EXPECT_EQ(dynamic_cast<SwfTagDefineBits&>(*kept).jpegData,
              SwfBytes::copyOf(Bytes{0xBB})); // outlives list and movie
}

TEST(SwfTags, ATagThatWritesMoreThanItMeasuredIsNoMovie) {
    struct Liar : SwfTagShowFrame {
        void writeBody(SwfOStream& stream) override { stream.isCounter() ? void() : stream.writeUI8(1); }
    };
    SwfMovie movie(8, 0, 0, 1, false);
    movie.tags.append(std::make_shared<Liar>());
    EXPECT_EQ(assertionOf([&] { movie.serialise(0); }), "written <= size");
}

TEST(SwfVector, OwnsGrowsAndAsserts) {
    SwfVector<uint8_t> vector;
    EXPECT_EQ(assertionOf([&] { vector[0]; }), "Data");
    vector.reserve(3);
    EXPECT_EQ(vector.capacity(), 3u);
    EXPECT_EQ(assertionOf([&] { vector[0]; }), "index < Size");
    EXPECT_EQ(assertionOf([&] { vector.reserve(uint64_t(1) << 32); }), "Size <= Capacity");
    uint8_t bytes[] = {1, 2};
    vector.attach(bytes, 2, SwfAttach::borrow);
    EXPECT_FALSE(vector.owned());
    vector.append(3); // moves to a buffer of its own
    EXPECT_EQ(hexText({vector.data(), vector.size()}), "01 02 03");
    EXPECT_TRUE(vector.owned());
    vector.attach(bytes, 2, SwfAttach::copy);
    EXPECT_NE(vector.data(), bytes);
    const std::unique_ptr<uint8_t[]> detached(vector.detach());
    EXPECT_TRUE(vector.empty());
}

} // namespace
