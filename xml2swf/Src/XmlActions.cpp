#include "XmlActions.h"
namespace xml2swf {
void writeActions(XmlNode&, const libswf::SwfActions&) {}
void readActions(XmlElement&, libswf::SwfActions&) {}
}
