// Sounds as XML.
#include "XmlNames.h"
#include "XmlSound.h"
#include "XmlTagForms.h"

namespace xml2swf {

using namespace libswf;

static constexpr XmlName soundFormats[] = {{"PCM", 0}, {"ADPCM", 1}, {"MP3", 2}, {"NativePCM", 3}, {"Nellymoser", 6}};
// Of the full form. NativePCM says the wrong thing: it is format 0 that has the byte order of the machine.
static constexpr XmlName fullSoundFormats[] = {
    {"PCM", 0},        {"ADPCM", 1}, {"MP3", 2}, {"LittleEndianPCM", 3}, {"Nellymoser16kHz", 4}, {"Nellymoser8kHz", 5},
    {"Nellymoser", 6}, {"Speex", 11}};
static constexpr XmlName soundRates[] = {{"5500Hz", 0}, {"11025Hz", 1}, {"22050Hz", 2}, {"44100Hz", 3}};
static constexpr XmlName soundSizes[] = {{"8Bit", 0}, {"16Bit", 1}};
static constexpr XmlName soundTypes[] = {{"Mono", 0}, {"Stereo", 1}};

void writeXml(XmlNode& node, const SwfSoundFormat& format) {
    if (node.fullForm())
        writeNameOrNumber(node, "SoundFormat", fullSoundFormats, format.soundFormat);
    else
        node.attribute("SoundFormat", nameOf(soundFormats, format.soundFormat, "SoundFormat"));
    node.attribute("SoundRate", nameOf(soundRates, format.soundRate, "SoundRate"));
    node.attribute("SoundSize", nameOf(soundSizes, format.soundSize, "SoundSize"));
    node.attribute("SoundType", nameOf(soundTypes, format.soundType, "SoundType"));
}

void readXml(XmlElement& element, SwfSoundFormat& format) {
    if (element.fullForm())
        format.soundFormat = static_cast<uint8_t>(element.nameOrNumber("SoundFormat", fullSoundFormats, 15));
    else
        format.soundFormat = static_cast<uint8_t>(element.named("SoundFormat", soundFormats));
    format.soundRate = static_cast<uint8_t>(element.named("SoundRate", soundRates));
    format.soundSize = static_cast<uint8_t>(element.named("SoundSize", soundSizes));
    format.soundType = static_cast<uint8_t>(element.named("SoundType", soundTypes));
}

void writeXml(XmlNode& node, const SwfSoundInfo& info) {
    if (info.has(SwfSoundInfo::hasInPoint))
        node.attribute("InPoint", info.inPoint);
    if (info.has(SwfSoundInfo::hasOutPoint))
        node.attribute("OutPoint", info.outPoint);
    if (info.has(SwfSoundInfo::hasLoops))
        node.attribute("LoopCount", info.loopCount);
    {
        XmlNode flags(node, "BitsField");
        flags.attribute("SyncStop", info.has(SwfSoundInfo::syncStop));
        flags.attribute("SyncNoMultiple", info.has(SwfSoundInfo::syncNoMultiple));
        if (const uint32_t reserved = info.flags & SwfSoundInfo::reservedBits; node.fullForm() && reserved != 0)
            flags.attribute("Reserved", reserved >> SwfSoundInfo::reservedShift);
    }
    if (node.fullForm() && info.has(SwfSoundInfo::hasEnvelope) && info.envelope.empty())
        node.attribute("HasEnvelope", true);
    for (const SwfSoundEnvelope& point : info.envelope) {
        XmlNode child(node, "SoundEnvelope");
        child.attribute("Pos44", point.pos44);
        child.attribute("LeftLevel", point.leftLevel);
        child.attribute("RightLevel", point.rightLevel);
    }
}

void readXml(XmlElement& element, SwfSoundInfo& info) {
    info.set(SwfSoundInfo::hasInPoint, element.has("InPoint"));
    info.set(SwfSoundInfo::hasOutPoint, element.has("OutPoint"));
    info.set(SwfSoundInfo::hasLoops, element.has("LoopCount"));
    info.inPoint = element.ui32("InPoint");
    info.outPoint = element.ui32("OutPoint");
    info.loopCount = element.ui16("LoopCount");
    if (element.fullForm())
        info.set(SwfSoundInfo::hasEnvelope, element.boolean("HasEnvelope"));
    for (XmlElement child : element.children()) {
        if (child.is("BitsField")) {
            info.set(SwfSoundInfo::syncStop, child.boolean("SyncStop"));
            info.set(SwfSoundInfo::syncNoMultiple, child.boolean("SyncNoMultiple"));
            if (child.fullForm())
                info.flags |= static_cast<uint8_t>(child.ranged("Reserved", 0, 3) << SwfSoundInfo::reservedShift);
        } else if (child.is("SoundEnvelope")) {
            info.set(SwfSoundInfo::hasEnvelope, true);
            SwfSoundEnvelope& point = info.envelope.append({});
            point.pos44 = child.ui32("Pos44");
            point.leftLevel = child.ui16("LeftLevel");
            point.rightLevel = child.ui16("RightLevel");
        } else {
            child.skip();
        }
    }
}

void writeXml(XmlNode& node, const SwfTagDefineSound& tag) {
    node.attribute("SoundId", tag.characterId);
    writeXml(node, tag.format);
    node.attribute("SoundSampleCount", tag.soundSampleCount);
    writePayload(node, "SoundData", tag.soundData.span());
}

void readXml(XmlElement& element, SwfTagDefineSound& tag) {
    tag.characterId = element.ui16("SoundId");
    readXml(element, tag.format);
    tag.soundSampleCount = element.ui32("SoundSampleCount");
    tag.soundData = element.payload("SoundData");
}

void writeXml(XmlNode& node, const SwfTagStartSound& tag) {
    node.attribute("SoundId", tag.soundId);
    writeChild(node, "SoundInfo", tag.soundInfo);
}

void readXml(XmlElement& element, SwfTagStartSound& tag) {
    tag.soundId = element.ui16("SoundId");
    readChild(element, "SoundInfo", tag.soundInfo);
}

void writeXml(XmlNode& node, const SwfTagStartSound2& tag) {
    node.attribute("SoundClassName", tag.soundClassName);
    writeChild(node, "SoundInfo", tag.soundInfo);
}

void readXml(XmlElement& element, SwfTagStartSound2& tag) {
    tag.soundClassName = element.string("SoundClassName");
    readChild(element, "SoundInfo", tag.soundInfo);
}

void writeXml(XmlNode& node, const SwfTagSoundStreamHead& tag) {
    node.attribute("SampleCount", tag.sampleCount);
    if (!node.fullForm() || tag.hasLatencySeek)
        node.attribute("LatencySeek", tag.latencySeek);
    writeChild(node, "PlaybackInfo", tag.playbackFormat);
    writeChild(node, "StreamInfo", tag.streamFormat);
}

void readXml(XmlElement& element, SwfTagSoundStreamHead& tag) {
    tag.sampleCount = element.ui16("SampleCount");
    tag.hasLatencySeek = element.fullForm() && element.has("LatencySeek");
    tag.latencySeek = element.si16("LatencySeek");
    readChild(element, "PlaybackInfo", tag.playbackFormat);
    readChild(element, "StreamInfo", tag.streamFormat);
}

void writeXml(XmlNode& node, const SwfTagSoundStreamHead2& tag) {
    writeXml(node, static_cast<const SwfTagSoundStreamHead&>(tag));
}

void readXml(XmlElement& element, SwfTagSoundStreamHead2& tag) {
    readXml(element, static_cast<SwfTagSoundStreamHead&>(tag));
}

void writeXml(XmlNode& node, const SwfTagSoundStreamBlock& tag) {
    writePayload(node, "StreamSoundData", tag.streamSoundData.span());
}

void readXml(XmlElement& element, SwfTagSoundStreamBlock& tag) {
    tag.streamSoundData = element.payload("StreamSoundData");
}

} // namespace xml2swf
