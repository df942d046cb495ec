// Bitmap tags as pixels, from and to files.

#include "ImageCodec.h"
#include "MediaSamples.h"
#include "Payload.h"

using namespace libswf;
using namespace samples;
using zelk::Image;

namespace {

std::shared_ptr<SwfTagDefineBitsLossless> lossless(bool withAlpha, uint8_t format, uint16_t width, uint16_t height,
                                                   uint8_t lastColor, const SwfBytes& data) {
    std::shared_ptr<SwfTagDefineBitsLossless> tag;
    if (withAlpha)
        tag = std::make_shared<SwfTagDefineBitsLossless2>();
    else
        tag = std::make_shared<SwfTagDefineBitsLossless>();
    tag->characterId = 3;
    tag->bitmapFormat = format;
    tag->bitmapWidth = width;
    tag->bitmapHeight = height;
    tag->bitmapColorTableSize = lastColor;
    tag->pngData = data;
    return tag;
}

struct LosslessCase {
    const char* what;
    bool withAlpha;
    uint8_t format;
    uint16_t width, height;
    uint8_t lastColor;
    const char* data; ///< inflated
    const char* pixels;
};

const LosslessCase losslessCases[] = {
    {"rows of indices end at four bytes; an index without a colour is black", false, 3, 3, 2, 1,
     "102030 405060  00 01 07 ee  01 00 01 ee", "102030ff 405060ff 000000ff  405060ff 102030ff 405060ff"},
    {"colours of a table are multiplied; without one there is nothing", true, 3, 1, 3, 1,
     "ff0000ff 20400080  00 eeeeee  01 eeeeee  02 eeeeee", "ff0000ff  40800080  00000000"},
    {"15 bits: the highest is nothing, five become eight", false, 4, 1, 2, 0, "fc00 eeee  0210 eeee",
     "ff0000ff  008484ff"},
    {"the first of four bytes is nothing", false, 5, 2, 1, 0, "00 010203 77 fffefd", "010203ff fffefdff"},
    {"or alpha; a colour above it is full, under none there is black", true, 5, 4, 1, 0,
     "80 804020  01 010002  00 123456  ff 0a0b0c", "ff804080 ff00ff01 00000000 0a0b0cff"},
};

TEST(ImageCodec, LosslessBitmapsAsPixels) {
    for (const LosslessCase& each : losslessCases) {
        const auto tag = lossless(each.withAlpha, each.format, each.width, each.height, each.lastColor,
                                  zlibData(hexBytes(each.data)));
        const Image image = zelk::decodeBitmap(*tag, nullptr);
        EXPECT_EQ(image.width, each.width) << each.what;
        EXPECT_EQ(image.height, each.height) << each.what;
        EXPECT_EQ(image.rgba, hexBytes(each.pixels)) << each.what;
        Bytes data = hexBytes(each.data);
        data.pop_back();
        const auto cut = lossless(each.withAlpha, each.format, each.width, each.height, each.lastColor, zlibData(data));
        EXPECT_THROW(zelk::decodeBitmap(*cut, nullptr), SwfException) << each.what;
    }
}

TEST(ImageCodec, RefusesLosslessBitmapsBeforeAllocating) {
    const SwfBytes data = zlibData(Bytes(64, 0));
    const struct {
        bool withAlpha;
        uint8_t format;
        uint16_t width, height;
        SwfBytes data;
        uint32_t code;
    } cases[] = {
        {false, 5, 0, 8, data, SwfError::badData},
        {false, 5, 65535, 65535, data, SwfError::doesNotFit},
        {false, 5, 8000, 8000, data, SwfError::badData},
        {false, 5, 2, 2, {}, SwfError::badData},
        {true, 4, 2, 2, data, SwfError::doesNotFit},
        {false, 9, 2, 2, data, SwfError::doesNotFit},
        {false, 5, 2, 2, swfBytes(Bytes(64, 0xAA)), SwfError::compression},
    };
    for (const auto& each : cases) {
        try {
            zelk::decodeBitmap(*lossless(each.withAlpha, each.format, each.width, each.height, 0, each.data), nullptr);
            ADD_FAILURE() << each.width << " x " << each.height;
        } catch (const SwfException& error) {
            EXPECT_EQ(error.code(), each.code) << error.what();
        }
    }
}

#ifdef ZELK_HAVE_CODECS

static size_t placeOf(const Bytes& bytes, const Bytes& part) {
    return static_cast<size_t>(std::search(bytes.begin(), bytes.end(), part.begin(), part.end()) - bytes.begin());
}

template <class Tag>
Tag& with(Tag& tag, const Bytes& data) {
    tag.characterId = 3;
    tag.jpegData = swfBytes(data);
    return tag;
}

// Pixels within what a JPEG loses.
void expectNear(const Image& image, const Bytes& pixel, const char* what) {
    ASSERT_EQ(image.rgba.size(), size_t(4) * image.width * image.height) << what;
    for (size_t i = 0; i < image.rgba.size(); ++i)
        ASSERT_NEAR(image.rgba[i], pixel[i % 4], 3) << what << " " << i;
}

TEST(ImageCodec, JpegOfEveryAgeOpensAnywhere) {
    const Jpeg jpeg = jpegOf(9, 5, 200, 100, 50);
    const Bytes strays = hexBytes("ffd9ffd8");
    SwfTagJPEGTables tables;
    tables.jpegData = swfBytes(jpeg.tables);
    SwfTagDefineBits bits;
    SwfTagDefineBitsJPEG2 bits2;
    SwfTagDefineBitsJPEG3 bits3;
    const struct {
        const char* what;
        const SwfTag& tag;
    } cases[] = {
        {"picture and tables apart", with(bits, jpeg.image)},
        {"one file", with(bits2, jpeg.file)},
        {"its alpha empty", with(bits3, jpeg.file)},
    };
    for (const auto& each : cases) {
        const Bytes file = zelk::exportPayload(each.tag, {&tables, {}}).bytes;
        for (const Image& image : {zelk::decodeBitmap(each.tag, &tables), zelk::decodeImage(file)}) {
            EXPECT_EQ(image.width, 9u);
            expectNear(image, {200, 100, 50, 255}, each.what);
        }
    }
    for (const Bytes& data : {strays + jpeg.file, jpeg.tables + jpeg.image, strays + jpeg.tables + jpeg.image}) {
        const zelk::Payload payload = zelk::exportPayload(with(bits2, data), {});
        EXPECT_EQ(payload.extension, "jpg");
        EXPECT_EQ(Bytes(payload.bytes.begin(), payload.bytes.begin() + 3), hexBytes("ffd8ff"));
        EXPECT_EQ(placeOf(payload.bytes, strays), payload.bytes.size());
        expectNear(zelk::decodeImage(payload.bytes), {200, 100, 50, 255}, "with strays");
    }
    EXPECT_EQ(zelk::exportPayload(with(bits2, jpeg.file), {}).bytes, jpeg.file) << "in order";
    EXPECT_THROW(zelk::decodeBitmap(bits, nullptr), SwfException) << "without its tables";
}

TEST(ImageCodec, AlphaOfItsOwn) {
    SwfTagDefineBitsJPEG3 bits;
    with(bits, jpegOf(2, 2, 100, 50, 0).file);
    bits.bitmapAlphaData = zlibData({255, 128, 0, 60});
    const Image image = zelk::decodeBitmap(bits, nullptr);
    const Bytes expected = {100, 50, 0, 255, 199, 100, 0, 128, 0, 0, 0, 0, 255, 212, 0, 60};
    for (size_t i = 0; i < expected.size(); ++i)
        EXPECT_NEAR(image.rgba[i], expected[i], 10) << i;
    const zelk::Payload payload = zelk::exportPayload(bits, {});
    EXPECT_EQ(payload.extension, "png");
    EXPECT_EQ(zelk::decodeImage(payload.bytes).rgba, image.rgba);
    bits.bitmapAlphaData = zlibData({255, 128, 0});
    EXPECT_THROW(zelk::decodeBitmap(bits, nullptr), SwfException);

    with(bits, gifFile());
    EXPECT_EQ(zelk::decodeBitmap(bits, nullptr).rgba, hexBytes("ff0000ff 00000000"));
    EXPECT_EQ(zelk::exportPayload(bits, {}).extension, "gif");
}

TEST(ImageCodec, CutAndHostileFilesAreRefused) {
    Image image{64, 64, Bytes(size_t(4) * 64 * 64)};
    for (size_t i = 0; i < image.rgba.size(); ++i)
        image.rgba[i] = static_cast<uint8_t>(i * i >> 3);
    Bytes huge = jpegOf(8, 8, 1, 2, 3).file;
    std::fill_n(huge.begin() + long(placeOf(huge, hexBytes("ffc0"))) + 5, 4, uint8_t(0xF0));
    EXPECT_THROW(zelk::decodeImage(huge), SwfException);
    const Bytes jpeg = jpegOf(64, 64, 200, 100, 50).file, png = zelk::encodePng(image), gif = gifFile();
    EXPECT_EQ(zelk::decodeImage(png).rgba, image.rgba);
    for (const Bytes* file : {&jpeg, &png, &gif}) {
        size_t refused = 0;
        for (size_t size = 0; size < file->size(); ++size) {
            try {
                zelk::decodeImage(std::span(*file).first(size));
            } catch (const SwfException&) {
                ++refused;
            }
        }
        EXPECT_GE(refused, file->size() - 20) << "only what ends the file may be missing";
        for (size_t at = 0; at < file->size(); ++at) {
            Bytes changed = *file;
            changed[at] ^= 0xFF;
            try {
                zelk::decodeImage(changed);
            } catch (const SwfException&) {
            }
        }
    }
}

TEST(ImageCodec, ImportedPicturesComeOutAgain) {
    const Jpeg red = jpegOf(2, 1, 250, 10, 10), wide = jpegOf(3, 1, 250, 10, 10);
    const Bytes opaque = zelk::encodePng({2, 1, hexBytes("112233ff 445566ff")});
    const Bytes clear = zelk::encodePng({2, 1, hexBytes("12223480 00000000")});
    Image many{20, 20, Bytes(1600, 255)}; // more colours than a table has
    for (size_t i = 0; i < 400; ++i)
        many.rgba[4 * i] = static_cast<uint8_t>(i), many.rgba[4 * i + 1] = static_cast<uint8_t>(i / 256);
    const Bytes big = zelk::encodePng(many);
    SwfTagDefineBits bits;
    SwfTagDefineBitsJPEG2 bits2, holdsPng;
    SwfTagDefineBitsJPEG3 bits3;
    SwfTagDefineBitsJPEG4 bits4;
    with(bits, red.image);
    with(bits2, red.file);
    with(holdsPng, opaque);
    with(bits3, red.file).bitmapAlphaData = zlibData({255, 7});
    with(bits4, wide.file).bitmapAlphaData = zlibData({9, 9, 9});
    const auto plain = lossless(false, 5, 1, 1, 0, zlibData(hexBytes("00010203")));
    const auto alpha = lossless(true, 5, 1, 1, 0, zlibData(hexBytes("ff010203")));
    const struct {
        const SwfTag& tag;
        const Bytes& file;
        uint16_t code;
        bool isNoted;
        const char* extension;
    } cases[] = {
        {bits, red.file, 21, true, "jpg"},   {bits, opaque, 20, true, "png"},     {bits2, wide.file, 21, false, "jpg"},
        {bits2, clear, 36, true, "png"},     {bits2, gifFile(), 36, true, "png"}, {holdsPng, clear, 21, false, "png"},
        {bits3, wide.file, 35, true, "png"}, {bits4, red.file, 90, true, "png"},  {bits4, opaque, 20, true, "png"},
        {*plain, opaque, 20, false, "png"},  {*plain, clear, 36, true, "png"},    {*plain, red.file, 21, true, "jpg"},
        {*alpha, opaque, 36, false, "png"},  {*alpha, clear, 36, false, "png"},   {*plain, big, 20, false, "png"},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(tagName(each.tag.type) + " to " + std::to_string(each.code));
        const zelk::ImportedPayload imported = zelk::importPayload(each.tag, {}, each.file);
        ASSERT_NE(imported.tag, nullptr);
        EXPECT_EQ(imported.tag->type, each.code);
        EXPECT_EQ(imported.tag->definitionId(), 3);
        EXPECT_EQ(imported.note.empty(), !each.isNoted) << imported.note;
        const zelk::Payload payload = zelk::exportPayload(*imported.tag, {});
        EXPECT_EQ(payload.extension, each.extension);
        EXPECT_EQ(zelk::decodeImage(payload.bytes).rgba, zelk::decodeImage(each.file).rgba);
        EXPECT_EQ(zelk::importPayload(*imported.tag, {}, payload.bytes).tag, nullptr) << "nothing to change";
    }
    const Bytes blue = jpegOf(2, 1, 10, 10, 250).file;
    const zelk::ImportedPayload kept = zelk::importPayload(bits3, {}, blue);
    EXPECT_EQ(zelk::decodeBitmap(*kept.tag, nullptr).rgba[7], 7) << "alpha stays where the size does";
    EXPECT_TRUE(kept.note.empty());
    EXPECT_THROW(zelk::importPayload(bits2, {}, Bytes(blue.begin(), blue.begin() + 300)), SwfException);
    EXPECT_THROW(zelk::importPayload(bits2, {}, hexBytes("00112233")), SwfException);
}

#endif

} // namespace
