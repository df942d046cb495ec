// The XML form of the records that the sound tags share.
#pragma once

#include "SwfSoundInfo.h"
#include "XmlElement.h"
#include "XmlElementWriter.h"

namespace xml2swf {

/// Attributes SoundFormat, SoundRate, SoundSize, SoundType by name on the enclosing element. A format without a name
/// throws SwfException code 3.
void writeXml(XmlNode& node, const libswf::SwfSoundFormat& format);
void readXml(XmlElement& element, libswf::SwfSoundFormat& format);

/// Attributes and children that are there decide the presence flags.
void writeXml(XmlNode& node, const libswf::SwfSoundInfo& info);
void readXml(XmlElement& element, libswf::SwfSoundInfo& info);

} // namespace xml2swf
