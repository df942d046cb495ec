// The XML form of every action with a payload.
#pragma once

#include "SwfActionsPayload.h"
#include "XmlElement.h"
#include "XmlElementWriter.h"
#include "XmlQuickElement.h"

namespace xml2swf {

#define SWF_PAYLOAD_ACTION(code, name, type)                                                                           \
    void writeXml(XmlNode& node, const libswf::type& action);                                                          \
    void readXml(XmlElement& element, libswf::type& action);                                                           \
    void readXml(XmlQuickElement& element, libswf::type& action);
#include "SwfActions.def"

} // namespace xml2swf
