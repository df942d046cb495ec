#include "SwfTag.h"

#include <algorithm>
#include <iterator>

#include "SwfTagCodes.h"

namespace libswf {

uint32_t SwfTag::getSize(SwfContext& context) {
    size = measure(context, [&](SwfOStream& stream) { writeBody(stream); });
    if (lacksNul && size != 0)
        --size;
    return size += static_cast<uint32_t>(trailing.size());
}

void SwfTag::writeHeader(SwfOStream& stream) const {
    const uint32_t codeWord = (uint32_t(type) * 64) & 0xFFFF;
    if (!hasLongHeader()) {
        stream.writeUI16(static_cast<uint16_t>(codeWord | size));
        return;
    }
    stream.writeUI16(static_cast<uint16_t>(codeWord | 63));
    stream.writeUI32(size);
}

size_t SwfTag::headerSize(std::span<const uint8_t> record) {
    const bool isLong = !record.empty() && (record[0] & 63) == 63;
    return std::min<size_t>(isLong ? longHeaderSize : shortHeaderSize, record.size());
}

void SwfTag::write(SwfOStream& stream) {
    writeHeader(stream);
    if (lacksNul)
        writeWithoutNul(stream);
    else
        writeBody(stream);
    if (!trailing.empty()) {
        stream.flushBits();
        stream.writeBytes(trailing.span());
    }
}

void SwfTag::writeWithoutNul(SwfOStream& stream) {
    const uint32_t length = size - static_cast<uint32_t>(trailing.size());
    SwfOStream whole(uint64_t(length) + 1);
    whole.context = stream.context;
    writeBody(whole);
    whole.flushBits();
    if (whole.size() != length + 1 || whole[length] != 0)
        throw SwfException(SwfError::doesNotFit, "a tag that does not end in a text can lack no NUL there");
    stream.writeBytes(length, whole.data());
}

bool SwfTag::mayEndInText(uint16_t code) {
    switch (code) {
    case SwfTagCode::Protect:
    case SwfTagCode::PlaceObject2:
    case SwfTagCode::DefineEditText:
    case SwfTagCode::NameCharacter:
    case SwfTagCode::FrameLabel:
    case SwfTagCode::ExportAssets:
    case SwfTagCode::ImportAssets:
    case SwfTagCode::EnableDebugger:
    case SwfTagCode::EnableDebugger2:
    case SwfTagCode::PlaceObject3:
    case SwfTagCode::PlaceObject4:
    case SwfTagCode::ImportAssets2:
    case SwfTagCode::SymbolClass:
    case SwfTagCode::Metadata:
    case SwfTagCode::DefineSceneAndFrameLabelData:
    case SwfTagCode::DefineFontName:
    case SwfTagCode::DefineFont4: return true;
    default: return false;
    }
}

bool SwfTagUnknown::carriesCharacterId(uint16_t code) {
    static constexpr uint16_t codes[] = {2,  6,  7,  10, 11, 13, 14, 17, 20, 21, 22, 23, 32, 33, 34, 35,
                                         36, 37, 39, 46, 48, 60, 62, 73, 75, 78, 83, 84, 86, 87, 88};
    return std::binary_search(std::begin(codes), std::end(codes), code);
}

SwfTagUnknown::SwfTagUnknown(SwfIStream& stream, uint16_t code, bool takeWhatIsThere) : SwfDefinitionTag(code) {
    uint64_t length = stream.context.tagSize;
    if (takeWhatIsThere)
        length = std::min(length, stream.bodyLeft());
    else if (length > stream.bodyLeft()) // what follows belongs to other tags
        stream.fail("data", "data ends here");
    data = stream.readPayload(length, "data");
    splitCharacterId();
}

SwfTagUnknown::SwfTagUnknown(uint16_t code, SwfBytes body) : SwfDefinitionTag(code), data(std::move(body)) {
    splitCharacterId();
}

void SwfTagUnknown::splitCharacterId() {
    hasCharacterId = carriesCharacterId(type) && data.size() >= 2;
    if (!hasCharacterId)
        return;
    characterId = static_cast<uint16_t>(data.data()[0] | data.data()[1] << 8);
    data = data.part(2, data.size() - 2);
}

void SwfTagUnknown::writeBody(SwfOStream& stream) {
    if (hasCharacterId)
        stream.writeUI16(characterId);
    stream.writeBytes(data.span());
}

SwfTagRecord::SwfTagRecord(SwfBytes record) : SwfTag(0) {
    const uint8_t* header = record.data();
    type = static_cast<uint16_t>((header[0] | header[1] << 8) >> 6);
    const size_t headerBytes = headerSize(record.span());
    longHeader = headerBytes == longHeaderSize;
    size = static_cast<uint32_t>(record.size() - headerBytes);
    source = std::move(record);
}

void SwfTagRecord::writeBody(SwfOStream& stream) {
    stream.writeBytes(source.span().subspan(headerSize(source.span())));
}

} // namespace libswf
