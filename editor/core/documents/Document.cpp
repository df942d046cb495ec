#include "Document.h"

#include "Backup.h"
#include "Conversion.h"

namespace zelk {

std::string UntitledNames::next() {
    const uint32_t n = _count++;
    return n == 0 ? "Untitled.swf" : "Untitled-" + std::to_string(n) + ".swf";
}

bool hasFileOfItsKind(const Document& document) {
    return document.hasFile && fileKind(document.fileName) == document.kind;
}

std::string proposedName(const Document& document) {
    const std::string& name = document.fileName;
    if (fileKind(name) == document.kind)
        return name;
    if (const std::string original = backedUpName(name); fileKind(original) == document.kind)
        return original;
    const size_t dot = name.find('.', name.find_last_of("/\\") + 1);
    return name.substr(0, dot) + '.' + std::string(extensionOf(document.kind));
}

Document newDocument(UntitledNames& names, bool fullForm) {
    Document document;
    document.fileName = names.next();
    libswf::SwfMovieSafe movie;
    movie.fullForm = fullForm;
    document.text = xml2swf::swfToXmlDocument(movie, {});
    return document;
}

} // namespace zelk
