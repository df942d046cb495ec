// Where the editor's conversions put what they give.
#pragma once

#include "Conversion.h"
#include "Document.h"

namespace zelk {

/// Makes the text of a movie that of a document.
class Swf2XmlConversionTarget : public xml2swf::ISwf2XmlConversionTarget {
public:
    explicit Swf2XmlConversionTarget(Document& document) : _document(document) {}
    void documentText(std::string text) override { _document.text = std::move(text); }

private:
    Document& _document;
};

/// A document compiles into a movie as any text does.
using Xml2SwfConvertionTarget = xml2swf::MovieTarget;

} // namespace zelk
