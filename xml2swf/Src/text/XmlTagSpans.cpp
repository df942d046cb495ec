#include "XmlTagSpans.h"

#include <algorithm>

#include "XmlDocument.h"
#include "XmlErrors.h"

namespace xml2swf {

XmlTagSpans findTagSpans(std::string_view text, IProgressReporter* progress) {
    XmlTagSpans result;
    try {
        XmlDocument document(text, &result.spans);
        document.validate(progress);
        result.movie = document.movie();
    } catch (XmlSyntaxError& error) {
        error.place.locate(text);
        throw;
    }
    return result;
}

} // namespace xml2swf
