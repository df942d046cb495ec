#include "TextDocument.h"

#include <Qsci/qsciscintillabase.h>

#include <cstddef>
#include <new>
#include <utility>

#ifdef _WIN32
#define ZELK_SCI_METHOD __stdcall
#else
#define ZELK_SCI_METHOD
#endif

/// What SCI_CREATELOADER gives. The control's own header for it is in no package.
class Scintilla::ILoader {
public:
    virtual int ZELK_SCI_METHOD Release() = 0;
    virtual int ZELK_SCI_METHOD AddData(const char* data, ptrdiff_t length) = 0;
    virtual void* ZELK_SCI_METHOD ConvertToDocument() = 0;
};

namespace zelk {

namespace {

using Sci = QsciScintillaBase;

// For one reference that the caller has.
TextDocument takeReference(QsciScintillaBase& control, void* document) {
    return {document, [&control](void* released) { control.SendScintilla(Sci::SCI_RELEASEDOCUMENT, 0UL, released); }};
}

} // namespace

TextDocument shownDocument(QsciScintillaBase& control) {
    void* document = control.SendScintillaPtrResult(Sci::SCI_GETDOCPOINTER);
    control.SendScintilla(Sci::SCI_ADDREFDOCUMENT, 0UL, document);
    return takeReference(control, document);
}

void showDocument(QsciScintillaBase& control, const TextDocument& document) {
    control.SendScintilla(Sci::SCI_SETDOCPOINTER, 0UL, document.get());
}

TextDocumentMaker::TextDocumentMaker(QsciScintillaBase& control)
    : _control(control),
      _loader(static_cast<Scintilla::ILoader*>(control.SendScintillaPtrResult(Sci::SCI_CREATELOADER))) {
    if (_loader == nullptr)
        throw std::bad_alloc();
}

TextDocumentMaker::~TextDocumentMaker() {
    if (_loader != nullptr)
        _loader->Release();
}

void TextDocumentMaker::add(std::string_view bytes) {
    if (_loader->AddData(bytes.data(), static_cast<ptrdiff_t>(bytes.size())) != Sci::SC_STATUS_OK)
        throw std::bad_alloc();
}

// The control leaves a sixth of what it holds already for more, so that is little when the rest comes.
void TextDocumentMaker::fill(std::string_view bytes) {
    const std::string_view first = bytes.substr(0, 6 * room);
    add(first);
    if (first.size() < bytes.size())
        add(bytes.substr(first.size()));
}

TextDocument TextDocumentMaker::take() {
    return takeReference(_control, std::exchange(_loader, nullptr)->ConvertToDocument());
}

} // namespace zelk
