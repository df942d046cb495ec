// Embedded video as XML.
#include "XmlNames.h"
#include "XmlTagForms.h"

namespace xml2swf {

using namespace libswf;

using VideoStream = SwfTagDefineVideoStream;

static constexpr XmlName codecs[] = {
    {"Unknown0", 0}, {"Unknown1", 1}, {"H263", 2}, {"ScreenVideo", 3}, {"VP6Alpha", 5}};
// Of the full form, where a codec without a name is a number.
static constexpr XmlName fullCodecs[] = {
    {"H263", 2}, {"ScreenVideo", 3}, {"VP6", 4}, {"VP6Alpha", 5}, {"ScreenVideo2", 6}};
static constexpr XmlName fullDeblocking[] = {{"UseVideo", 0}, {"Off", 1},    {"Level1", 2},
                                             {"Level2", 3},   {"Level3", 4}, {"Level4", 5}};
static constexpr XmlName deblockingLevels[] = {{"Level1", 2}, {"Level2", 3}, {"Level3", 4}, {"Level4", 5}};

// In the classic form the deblocking number is spread over three attributes, since only its levels have names:
// Deblocking for a level, UseVideo for 0 and its absence for 1 (off), Reserved1 for 6 and 7.
static void writeDeblocking(XmlNode& flags, uint8_t deblocking) {
    const std::string_view level = findName(deblockingLevels, deblocking);
    if (!level.empty())
        flags.attribute("Deblocking", level);
    flags.attribute("UseVideo", deblocking == VideoStream::useVideo);
    flags.attribute("Reserved1", deblocking > VideoStream::level4 ? deblocking : uint8_t(0));
}

static uint8_t readDeblocking(XmlElement& flags) {
    constexpr uint32_t noLevel = UINT32_MAX;
    const uint32_t level = flags.named("Deblocking", deblockingLevels, noLevel);
    const bool useVideo = flags.boolean("UseVideo");
    const uint8_t reserved = flags.ui8("Reserved1");
    if (level != noLevel)
        return static_cast<uint8_t>(level);
    if (reserved == 6 || reserved == 7)
        return reserved;
    return useVideo ? VideoStream::useVideo : VideoStream::off;
}

static void writeFullRest(XmlNode& node, const SwfTagDefineVideoStream& tag) {
    writeNameOrNumber(node, "CodecId", fullCodecs, tag.codecId);
    XmlNode flags(node, "BitsField");
    flags.attribute("Smoothing", tag.smoothing);
    writeNameOrNumber(flags, "Deblocking", fullDeblocking, tag.deblocking);
    if (tag.reserved != 0)
        flags.attribute("Reserved", tag.reserved);
}

static void readFullRest(XmlElement& element, SwfTagDefineVideoStream& tag) {
    tag.codecId = static_cast<uint8_t>(element.nameOrNumber("CodecId", fullCodecs, UINT8_MAX));
    if (auto flags = element.child("BitsField")) {
        tag.smoothing = flags->boolean("Smoothing");
        tag.deblocking = static_cast<uint8_t>(flags->nameOrNumber("Deblocking", fullDeblocking, 7));
        tag.reserved = static_cast<uint8_t>(flags->ranged("Reserved", 0, 15));
    }
}

void writeXml(XmlNode& node, const SwfTagDefineVideoStream& tag) {
    node.attribute("CharacterId", tag.characterId);
    node.attribute("NumFrames", tag.numFrames);
    node.attribute("Width", tag.width);
    node.attribute("Height", tag.height);
    if (node.fullForm())
        return writeFullRest(node, tag);
    node.attribute("CodecId", nameOf(codecs, tag.codecId, "CodecId"));
    XmlNode flags(node, "BitsField");
    flags.attribute("Smoothing", tag.smoothing);
    writeDeblocking(flags, tag.deblocking);
    flags.attribute("Reserved2", tag.reserved);
}

void readXml(XmlElement& element, SwfTagDefineVideoStream& tag) {
    tag.characterId = element.ui16("CharacterId");
    tag.numFrames = element.ui16("NumFrames");
    tag.width = element.ui16("Width");
    tag.height = element.ui16("Height");
    if (element.fullForm())
        return readFullRest(element, tag);
    tag.codecId = static_cast<uint8_t>(element.named("CodecId", codecs));
    tag.deblocking = VideoStream::off;
    auto flags = element.child("BitsField");
    if (!flags)
        return;
    tag.smoothing = flags->boolean("Smoothing");
    tag.deblocking = readDeblocking(*flags);
    tag.reserved = static_cast<uint8_t>(flags->ranged("Reserved2", 0, 15)); // 4 bits
    if (!element.has("CodecId"))                                            // may stand here as well
        tag.codecId = static_cast<uint8_t>(flags->named("CodecId", codecs));
}

void writeXml(XmlNode& node, const SwfTagVideoFrame& tag) {
    node.attribute("StreamId", tag.streamId);
    node.attribute("FrameNum", tag.frameNum);
    writePayload(node, "Data", tag.data.span());
}

void readXml(XmlElement& element, SwfTagVideoFrame& tag) {
    tag.streamId = element.ui16("StreamId");
    tag.frameNum = element.ui16("FrameNum");
    tag.data = element.payload("Data");
}

} // namespace xml2swf
