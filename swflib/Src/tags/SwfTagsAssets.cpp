#include "SwfTagsAssets.h"

namespace libswf {

namespace {

void readAssets(SwfIStream& stream, SwfAssets& assets) {
    for (uint32_t left = stream.readUI16("Count"); left != 0; --left) {
        if (stream.bodyLeft() == 0)
            stream.fail("Count", "more entries than the body holds");
        SwfAsset& asset = assets.append({});
        asset.id = stream.readUI16("Tag");
        stream.readString(asset.name, "Name");
    }
}

void writeAssets(SwfOStream& stream, const SwfAssets& assets) {
    if (assets.size() > UINT16_MAX)
        throw SwfException(SwfError::doesNotFit, "more than 65,535 entries in a list of assets");
    stream.writeUI16(static_cast<uint16_t>(assets.size()));
    for (const SwfAsset& asset : assets) {
        stream.writeUI16(asset.id);
        asset.name.write(stream, true);
    }
}

} // namespace

SwfTagExportAssets::SwfTagExportAssets(SwfIStream& stream) : SwfTagExportAssets() { readAssets(stream, assets); }

void SwfTagExportAssets::writeBody(SwfOStream& stream) { writeAssets(stream, assets); }

SwfTagImportAssets::SwfTagImportAssets(SwfIStream& stream) : SwfTagImportAssets() {
    stream.readString(url, "URL");
    readAssets(stream, assets);
}

void SwfTagImportAssets::writeBody(SwfOStream& stream) {
    url.write(stream, true);
    writeAssets(stream, assets);
}

SwfTagImportAssets2::SwfTagImportAssets2(SwfIStream& stream) : SwfTagImportAssets2() {
    stream.readString(url, "URL");
    reserved = stream.readUI8("Reserved");
    if (reserved != 1 && !stream.context.fullForm)
        stream.markInexact("its first reserved byte is not 1");
    if (stream.readUI8("Reserved") != 0)
        stream.fail("Reserved", "the second reserved byte is not 0");
    readAssets(stream, assets);
}

void SwfTagImportAssets2::writeBody(SwfOStream& stream) {
    url.write(stream, true);
    stream.writeUI8(stream.context.fullForm ? reserved : 1);
    stream.writeUI8(0);
    writeAssets(stream, assets);
}

SwfTagSymbolClass::SwfTagSymbolClass(SwfIStream& stream) : SwfTagSymbolClass() { readAssets(stream, symbols); }

void SwfTagSymbolClass::writeBody(SwfOStream& stream) { writeAssets(stream, symbols); }

SwfTagFreeCharacter::SwfTagFreeCharacter(SwfIStream& stream) : SwfTagFreeCharacter() {
    characterId = stream.readUI16("CharacterId");
}

void SwfTagFreeCharacter::writeBody(SwfOStream& stream) { stream.writeUI16(characterId); }

SwfTagNameCharacter::SwfTagNameCharacter(SwfIStream& stream) : SwfTagNameCharacter() {
    characterId = stream.readUI16("CharacterId");
    stream.readString(name, "Name");
}

void SwfTagNameCharacter::writeBody(SwfOStream& stream) {
    stream.writeUI16(characterId);
    name.write(stream, true);
}

SwfTagDefineScalingGrid::SwfTagDefineScalingGrid(SwfIStream& stream) : SwfTagDefineScalingGrid() {
    characterId = stream.readUI16("CharacterId");
    splitter.read(stream);
}

void SwfTagDefineScalingGrid::writeBody(SwfOStream& stream) {
    stream.writeUI16(characterId);
    splitter.write(stream);
}

SwfTagDoABC::SwfTagDoABC(SwfIStream& stream) : SwfTagDoABC() {
    flags = stream.readUI32("Flags");
    stream.readString(name, "Name");
    abcData = stream.readRest("ABCData");
}

void SwfTagDoABC::writeBody(SwfOStream& stream) {
    stream.writeUI32(flags);
    name.write(stream, true);
    stream.writeBytes(abcData.span());
}

SwfTagDoABCDefine::SwfTagDoABCDefine(SwfIStream& stream) : SwfTagDoABCDefine() { abcData = stream.readRest("ABCData"); }

void SwfTagDoABCDefine::writeBody(SwfOStream& stream) { stream.writeBytes(abcData.span()); }

SwfTagDefineBinaryData::SwfTagDefineBinaryData(SwfIStream& stream) : SwfTagDefineBinaryData() {
    characterId = stream.readUI16("Tag");
    reserved = stream.readUI32("Reserved");
    if (reserved != 0 && !stream.context.fullForm)
        stream.markInexact("its reserved field is not 0");
    data = stream.readRest("Data");
}

void SwfTagDefineBinaryData::writeBody(SwfOStream& stream) {
    stream.writeUI16(characterId);
    stream.writeUI32(stream.context.fullForm ? reserved : 0);
    stream.writeBytes(data.span());
}

} // namespace libswf
