#include "Document.h"

#include "Conversion.h"

namespace zelk {

std::string UntitledNames::next() {
    const uint32_t n = _count++;
    return n == 0 ? "Untitled.swf" : "Untitled-" + std::to_string(n) + ".swf";
}

Document newDocument(UntitledNames& names) {
    Document document;
    document.fileName = names.next();
    libswf::SwfMovieSafe movie;
    document.text = xml2swf::swfToXmlDocument(movie, {});
    return document;
}

} // namespace zelk
