// Bit streams and the records made of bit fields.
#include "Tests.h"

#include "SwfStream.h"
#include "SwfStructs.h"

using namespace libswf;

namespace {

// A stream over bytes of its own.
struct Input {
    Bytes bytes;
    SwfIStream stream;
    explicit Input(std::string_view hex) : bytes(hexBytes(hex)), stream(bytes.data(), bytes.size()) {}
};

template <class Write>
std::string written(Write write, uint64_t capacity = 64) {
    SwfOStream stream(capacity);
    write(stream);
    return hexText({stream.data(), stream.size()});
}

// The code thrown by `read`, 0 when it returns; checks that a failing read moves nothing.
template <class Read>
uint32_t failureOf(SwfIStream& stream, Read read) {
    const uint64_t position = stream.position();
    const uint8_t mask = stream.bitMask(), byte = stream.bitByte();
    try {
        read(stream);
        return 0;
    } catch (const SwfException& error) {
        EXPECT_EQ(stream.position(), position);
        EXPECT_EQ(stream.bitMask(), mask);
        EXPECT_EQ(stream.bitByte(), byte);
        return error.code();
    }
}

TEST(SwfIStream, ReadsBitFields) {
    const struct {
        const char* bytes;
        uint32_t skip, n;
        uint32_t asUnsigned;
        int32_t asSigned;
        uint64_t position; // afterwards
    } rows[] = {
        {"80", 0, 0, 0, 0, 0},
        {"80", 0, 1, 1, -1, 1},
        {"40", 0, 1, 0, 0, 1},
        {"80", 0, 8, 0x80, -128, 1},
        {"7f", 0, 8, 0x7F, 127, 1},
        {"80 00", 0, 16, 0x8000, -32768, 2},
        {"a5 5a", 4, 8, 0x55, 0x55, 2},
        {"01 80", 7, 2, 3, -1, 2},
        {"fe 00 00 00 00", 7, 32, 0, 0, 5},
        {"01 ff ff ff fe", 7, 32, 0xFFFFFFFF, -1, 5},
        {"01 00 00 00 01", 7, 31, 0x40000000, -0x40000000, 5},
        {"80 00 00 00", 0, 32, 0x80000000, INT32_MIN, 4},
        {"80 00 00 01 80", 0, 33, 3, 3, 5}, // the low 32 bits
        {"ff*28 12 34 56 79", 0, 255, 0x891A2B3C, int32_t(0x891A2B3C), 32},
    };
    for (const auto& row : rows) {
        Input a(row.bytes), b(row.bytes);
        a.stream.readUB(row.skip);
        b.stream.readUB(row.skip);
        EXPECT_EQ(a.stream.readUB(row.n), row.asUnsigned) << row.bytes << ", " << row.n;
        EXPECT_EQ(b.stream.readSB(row.n), row.asSigned) << row.bytes << ", " << row.n;
        EXPECT_EQ(a.stream.position(), row.position) << row.bytes << ", " << row.n;
    }
    EXPECT_EQ(Input("ff ff 80 00").stream.readFB(32), -0.5f); // 16.16
}

TEST(EncodedU32, BothWays) {
    const struct {
        uint32_t value;
        const char* bytes;
    } rows[] = {
        {0, "00"},
        {127, "7f"},
        {128, "80 01"},
        {16383, "ff 7f"},
        {16384, "80 80 01"},
        {0x0FFFFFFF, "ff ff ff 7f"},
        {0x10000000, "80 80 80 80 01"},
        {0xFFFFFFFF, "ff ff ff ff 0f"},
    };
    for (const auto& row : rows) {
        Input in(row.bytes);
        EXPECT_EQ(in.stream.readEncodedU32(), row.value);
        EXPECT_EQ(in.stream.bytesLeft(), 0u);
        EXPECT_EQ(written([&](SwfOStream& out) { out.writeEncodedU32(row.value); }), row.bytes);
    }
    Input wide("ff ff ff ff ff 01"); // bits above 31 are dropped, and no sixth byte is read
    EXPECT_EQ(wide.stream.readEncodedU32(), 0xFFFFFFFF);
    EXPECT_EQ(wide.stream.position(), 5u);
}

TEST(SwfIStream, LeavesEverythingAsItWasWhenAReadFails) {
    uint8_t room[8];
    const std::function<void(SwfIStream&)> reads[] = {
        [](SwfIStream& s) { s.readUI32(); },
        [](SwfIStream& s) { s.readDouble(); },
        [](SwfIStream& s) { s.readEncodedU32(); },
        [](SwfIStream& s) { s.readUB(22); }, // 21 bits are there
        [](SwfIStream& s) { s.readSB(255); },
        [&](SwfIStream& s) { s.readBytes(3, room); },
        [&](SwfIStream& s) { s.readBytes(UINT64_MAX, room); },
        [](SwfIStream& s) { s.readPayload(0xFFFFFFFF); },
        [](SwfIStream& s) {
            SwfString text;
            s.readString(text);
        },
    };
    for (const auto& read : reads) {
        Input in("a5 ff ff");
        in.stream.readUB(3);
        EXPECT_EQ(failureOf(in.stream, read), 3u) << &read - reads;
    }
    Input past("01 02");
    past.stream.readBytes(UINT32_MAX, nullptr); // skips are not checked
    past.stream.readBytes(UINT64_MAX, nullptr);
    EXPECT_EQ(past.stream.bytesLeft(), 0u);
    EXPECT_EQ(failureOf(past.stream, [](SwfIStream& s) { s.readUI8(); }), 3u);
    EXPECT_EQ(failureOf(past.stream, reads[8]), 3u);
}

TEST(SwfIStream, NamesTheFieldThatFails) {
    Input in("01 02 03");
    in.stream.context.tagType = 39;
    in.stream.setBodyEnd(3);
    in.stream.skip(2);
    try {
        in.stream.readUI16("FrameCount");
        FAIL();
    } catch (const SwfException& error) {
        EXPECT_STREQ(error.what(), "offset 0x2: DefineSprite > FrameCount: data ends here (code 3)");
    }
}

TEST(SwfIStream, EndsStringsAtTheirNulOrTheBody) {
    const struct {
        const char* bytes;
        uint64_t bodyEnd;
        const char* text; // null: refused
        uint64_t position;
        bool exact;
    } rows[] = {
        {"41 00 00", SwfIStream::noEnd, "A", 2, true},
        {"00 00", SwfIStream::noEnd, "", 1, true},
        {"41 00", SwfIStream::noEnd, nullptr, 0, true}, // a NUL as the last byte of all, on purpose
        {"41 42", SwfIStream::noEnd, nullptr, 0, true},
        {"", SwfIStream::noEnd, nullptr, 0, true},
        {"41 00 00 00", 2, "A", 2, true},      // the NUL ends the body, not the data
        {"41 42 43 00 00", 2, "AB", 2, false}, // no NUL inside the body
        {"41 42 00 00", 0, "", 0, false},      // starts at the body's end
        {"41 00", 2, nullptr, 0, true},
    };
    for (const auto& row : rows) {
        Input in(row.bytes);
        in.stream.setBodyEnd(row.bodyEnd);
        SwfString text("before");
        const uint32_t code = failureOf(in.stream, [&](SwfIStream& s) { s.readString(text); });
        EXPECT_EQ(code, row.text == nullptr ? 3u : 0u) << row.bytes;
        EXPECT_EQ(text.view(), row.text == nullptr ? "before" : row.text);
        EXPECT_EQ(in.stream.position(), row.position) << row.bytes;
        EXPECT_EQ(in.stream.inexact() == nullptr, row.exact) << row.bytes;
    }
}

TEST(SwfOStream, WritesBitFields) {
    const struct {
        uint32_t n;
        int32_t value;
        const char* asSigned;
        const char* asUnsigned;
    } rows[] = {
        {0, -1, "80", "80"}, // nothing: only the marker bit that each row starts with
        {1, -1, "c0", "c0"},
        {7, 0x55, "d5", "d5"},
        {8, 0x1FF, "ff 80", "ff 80"}, // the low 8 bits
        {31, -1, "ff ff ff ff", "ff ff ff ff"},
        {32, INT32_MIN, "c0 00 00 00 00", "c0 00 00 00 00"},
        {33, INT32_MIN, "e0 00 00 00 00", "a0 00 00 00 00"}, // the bit above 31 is the sign, or 0
        {71, -2, "ff ff ff ff ff ff ff ff fe", "80 00 00 00 00 ff ff ff fe"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(written([&](SwfOStream& out) {
                      out.writeUB(1, 1);
                      out.writeSB(row.n, row.value);
                      out.flushBits();
                      out.flushBits();
                  }),
                  row.asSigned);
        EXPECT_EQ(written([&](SwfOStream& out) {
                      out.writeUB(1, 1);
                      out.writeUB(row.n, static_cast<uint32_t>(row.value));
                      out.flushBits();
                  }),
                  row.asUnsigned);
    }
    EXPECT_EQ(written([](SwfOStream& out) {
                  out.writeFB(32, -0.5f);
                  out.flushBits();
              }),
              "ff ff 80 00");
}

TEST(SwfOStream, NeverWritesPastItsCapacity) {
    const std::function<void(SwfOStream&)> writes[] = {
        [](SwfOStream& s) { s.writeUI8(1), s.writeUI8(1); },
        [](SwfOStream& s) { s.writeUI16(1); },
        [](SwfOStream& s) { s.writeDouble(1); },
        [](SwfOStream& s) { s.writeEncodedU32(128); },
        [](SwfOStream& s) { s.writeUB(17, 0); },
        [](SwfOStream& s) { s.writeUB(9, 0), s.flushBits(); },
        [](SwfOStream& s) { s.writeString("A"); },
        [](SwfOStream& s) { s.writeBytes(2, reinterpret_cast<const uint8_t*>("ab")); },
    };
    for (const auto& write : writes) {
        EXPECT_THROW(written(write, 1), SwfAssertionFailure) << &write - writes;
        SwfOStream exact(measure({}, write)); // a counter agrees with what is written
        EXPECT_NO_THROW(write(exact)) << &write - writes;
        EXPECT_EQ(exact.size(), exact.capacity()) << &write - writes;
    }
    EXPECT_THROW(SwfOStream(uint64_t(1) << 32), SwfException);
}

TEST(SwfBits, Widths) {
    const struct {
        int32_t v;
        uint32_t asUnsigned, asSigned;
    } rows[] = {
        {0, 1, 2},   {1, 1, 2},     {-1, 32, 2},  {2, 2, 3},           {-2, 32, 2},         {-3, 32, 3},
        {255, 8, 9}, {-256, 32, 9}, {256, 9, 10}, {INT32_MAX, 31, 32}, {INT32_MIN, 32, 32},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(bitsUnsigned(static_cast<uint32_t>(row.v)), row.asUnsigned) << row.v;
        EXPECT_EQ(bitsSigned(row.v), row.asSigned) << row.v;
        EXPECT_EQ(bitsSigned2(0, row.v), row.v == 0 ? 0 : row.asSigned) << row.v;
        const int32_t values[] = {0, row.v, -1};
        EXPECT_EQ(bitsSignedMax(values, 3), row.asSigned) << row.v;
    }
    EXPECT_EQ(bitsUnsignedMax(5, 8), 4u);
}

TEST(SwfBits, TruncatesToFixedPoint) {
    const float infinity = std::numeric_limits<float>::infinity();
    EXPECT_EQ(floatToFixed16(-0.99999f / 65536), 0);
    EXPECT_EQ(floatToFixed16(32767.998f), 0x7FFFFF80);
    for (float out : {32768.0f, -40000.0f, infinity, -infinity, std::nanf("")})
        EXPECT_EQ(floatToFixed16(out), INT32_MIN) << out;
    EXPECT_EQ(floatToFixed8(12.5f), 0x0C80);
    EXPECT_EQ(floatToFixed8(256.0f), 0x0000); // cut to 16 bits
    EXPECT_EQ(floatToFixed8(-1.0f), 0xFF00);
    EXPECT_EQ(fixed8ToFloat(0xFF00), 255.0f);
}

// Reads a record, checks that it takes all the bytes, and gives what it writes; the measure must agree.
template <class Record>
std::string rewritten(std::string_view hex, Record& record) {
    Input in(hex);
    record.read(in.stream);
    EXPECT_EQ(in.stream.bytesLeft(), 0u);
    EXPECT_EQ(in.stream.bitMask(), 0);
    return written([&](SwfOStream& out) {
        record.write(out);
        EXPECT_EQ(record.getSize(out.context), out.size());
    });
}

template <class Record>
uint32_t writeFailure(Record record) {
    SwfContext context;
    return codeOf([&] { record.getSize(context); });
}

TEST(SwfRect, FitsItsWidths) {
    SwfRect rect;
    EXPECT_EQ(rewritten("00", rect), "10 00"); // the width is never below 2
    EXPECT_EQ(writeFailure(SwfRect(0, 0, 0x3FFFFFFF, -0x40000000)), 0u);
    EXPECT_EQ(writeFailure(SwfRect(0, 0, 0x40000000, 0)), 2u); // 32 bits do not fit the width field
    EXPECT_EQ(writeFailure(SwfRect(0, INT32_MIN, 0, 0)), 2u);
}

TEST(SwfMatrix, FitsItsWidths) {
    SwfMatrix matrix;
    // Both pairs present but 0, translate (0, 1) in 2 bits: 1 00000 1 00000 00010 00 01 …
    EXPECT_EQ(rewritten("82 01 08", matrix), "82 01 08");
    auto failure = [](auto set) {
        SwfMatrix m;
        set(m);
        return writeFailure(std::move(m));
    };
    EXPECT_EQ(failure([](SwfMatrix& m) { m.hasScale = true, m.scaleX = 16383.9f; }), 0u);
    EXPECT_EQ(failure([](SwfMatrix& m) { m.hasScale = true, m.scaleY = 16384.0f; }), 2u);
    EXPECT_EQ(failure([](SwfMatrix& m) { m.hasRotate = true, m.rotateSkew0 = std::nanf(""); }), 2u);
    EXPECT_EQ(failure([](SwfMatrix& m) { m.translateX = 0x40000000; }), 2u);
    EXPECT_EQ(failure([](SwfMatrix& m) { m.scaleX = 99999.0f; }), 0u); // not present
}

TEST(SwfColorTransform, HasNoWidthWithoutTerms) {
    SwfColorTransform none;
    EXPECT_EQ(rewritten("3c", none), "00");
}

TEST(SwfColorTransform, CutsGreenAndBlueWhereOnlyAddTermsWithAlphaStand) {
    SwfColorTransform tint;
    tint.hasAddTerms = true;
    tint.greenAdd = 1000;
    auto bytes = [&](bool alpha) {
        return written([&](SwfOStream& out) {
            out.context.alpha = alpha;
            tint.write(out);
            EXPECT_EQ(tint.getSize(out.context), out.size());
        });
    };
    EXPECT_EQ(bytes(true), "88 00");           // 10 0010 and four fields of 2 bits
    EXPECT_EQ(bytes(false), "ac 00 3e 80 00"); // 10 1011, 11 bits: 0, 1000, 0
    tint.greenAdd = -16385;                    // 16 bits, whose width is cut to 0
    EXPECT_EQ(bytes(false), "80 00 02 ff fc 00 00");
}

} // namespace
