#include "XmlTagSpans.h"

#include "Conversion.h"
#include "XmlDocument.h"
#include "XmlScan.h"

namespace xml2swf {

XmlTagSpans findTagSpans(std::string_view text) {
    checkXml(text);
    XmlTagSpans result;
    scanXml(text, XmlDocument::maxDepth, &result.spans);
    return result;
}

} // namespace xml2swf
