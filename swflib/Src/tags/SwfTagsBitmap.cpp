#include "SwfTagsBitmap.h"

namespace libswf {

SwfTagJPEGTables::SwfTagJPEGTables(SwfIStream& stream) : SwfTagJPEGTables() { jpegData = stream.readRest("JPEGData"); }

void SwfTagJPEGTables::writeBody(SwfOStream& stream) { stream.writeBytes(jpegData.span()); }

void SwfJpegBitmap::read(SwfIStream& stream) {
    characterId = stream.readUI16("CharacterId");
    jpegData = stream.readRest("JPEGData");
}

void SwfJpegBitmap::writeBody(SwfOStream& stream) {
    stream.writeUI16(characterId);
    stream.writeBytes(jpegData.span());
}

SwfTagDefineBitsJPEG3::SwfTagDefineBitsJPEG3(SwfIStream& stream) : SwfTagDefineBitsJPEG3() {
    characterId = stream.readUI16("CharacterId");
    readData(stream, stream.readUI32("AlphaDataOffset"));
}

void SwfTagDefineBitsJPEG3::readData(SwfIStream& stream, uint32_t alphaDataOffset) {
    if (alphaDataOffset > stream.bodyLeft())
        stream.markInexact("the offset of the alpha data points past the tag's end");
    jpegData = stream.readPayload(std::min<uint64_t>(alphaDataOffset, stream.bodyLeft()), "JPEGData");
    bitmapAlphaData = stream.readRest("BitmapAlphaData");
}

void SwfTagDefineBitsJPEG3::writeBody(SwfOStream& stream) {
    stream.writeUI16(characterId);
    stream.writeUI32(static_cast<uint32_t>(jpegData.size()));
    stream.writeBytes(jpegData.span());
    stream.writeBytes(bitmapAlphaData.span());
}

SwfTagDefineBitsJPEG4::SwfTagDefineBitsJPEG4(SwfIStream& stream) : SwfTagDefineBitsJPEG4() {
    characterId = stream.readUI16("CharacterId");
    const uint32_t alphaDataOffset = stream.readUI32("AlphaDataOffset");
    deblockParam = stream.readUI16("DeblockParam");
    readData(stream, alphaDataOffset);
}

void SwfTagDefineBitsJPEG4::writeBody(SwfOStream& stream) {
    stream.writeUI16(characterId);
    stream.writeUI32(static_cast<uint32_t>(jpegData.size()));
    stream.writeUI16(deblockParam);
    stream.writeBytes(jpegData.span());
    stream.writeBytes(bitmapAlphaData.span());
}

void SwfTagDefineBitsLossless::read(SwfIStream& stream) {
    characterId = stream.readUI16("CharacterId");
    bitmapFormat = stream.readUI8("BitmapFormat");
    bitmapWidth = stream.readUI16("BitmapWidth");
    bitmapHeight = stream.readUI16("BitmapHeight");
    if (bitmapFormat == paletteFormat)
        bitmapColorTableSize = stream.readUI8("BitmapColorTableSize");
    pngData = stream.readRest("PngData");
}

void SwfTagDefineBitsLossless::writeBody(SwfOStream& stream) {
    stream.writeUI16(characterId);
    stream.writeUI8(bitmapFormat);
    stream.writeUI16(bitmapWidth);
    stream.writeUI16(bitmapHeight);
    if (bitmapFormat == paletteFormat)
        stream.writeUI8(bitmapColorTableSize);
    stream.writeBytes(pngData.span());
}

} // namespace libswf
