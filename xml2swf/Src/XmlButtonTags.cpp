// Buttons as XML.
#include "XmlSound.h"
#include "XmlTagForms.h"

namespace xml2swf {

using namespace libswf;

void writeXml(XmlNode& node, const SwfTagDefineButtonCxform& tag) {
    node.attribute("ButtonId", tag.buttonId);
    writeChild(node, "ColorTransform", tag.colorTransform);
}

void readXml(XmlElement& element, SwfTagDefineButtonCxform& tag) {
    tag.buttonId = element.ui16("ButtonId");
    readChild(element, "ColorTransform", tag.colorTransform);
}

void writeXml(XmlNode& node, const SwfTagDefineButtonSound& tag) {
    node.attribute("ButtonId", tag.buttonId);
    node.attribute("SoundIdRollOut", tag.rollOut.soundId);
    node.attribute("SoundIdRollOver", tag.rollOver.soundId);
    node.attribute("SoundIdPress", tag.press.soundId);
    node.attribute("SoundIdRelease", tag.release.soundId);
    auto writeInfo = [&](const char* name, const SwfButtonSound& sound) {
        if (sound.soundId != 0) writeChild(node, name, sound.soundInfo);
    };
    writeInfo("SoundInfoRollOut", tag.rollOut);
    writeInfo("SoundInfoRollOver", tag.rollOver);
    writeInfo("SoundInfoPress", tag.press);
    writeInfo("SoundInfoRelease", tag.release);
}

// A SoundInfo without a sound id is read and not written.
void readXml(XmlElement& element, SwfTagDefineButtonSound& tag) {
    tag.buttonId = element.ui16("ButtonId");
    tag.rollOut.soundId = element.ui16("SoundIdRollOut");
    tag.rollOver.soundId = element.ui16("SoundIdRollOver");
    tag.press.soundId = element.ui16("SoundIdPress");
    tag.release.soundId = element.ui16("SoundIdRelease");
    readChild(element, "SoundInfoRollOut", tag.rollOut.soundInfo);
    readChild(element, "SoundInfoRollOver", tag.rollOver.soundInfo);
    readChild(element, "SoundInfoPress", tag.press.soundInfo);
    readChild(element, "SoundInfoRelease", tag.release.soundInfo);
}

} // namespace xml2swf
