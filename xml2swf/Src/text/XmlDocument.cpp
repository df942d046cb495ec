#include "XmlDocument.h"

#include <algorithm>
#include <cstring>

#include "Conversion.h"
#include "XmlErrors.h"

namespace xml2swf {

XmlDocument::XmlDocument(std::string_view text, std::vector<ElementSpan>* spans, uint32_t threads)
    : _text(text), _structure(std::make_shared<XmlStructure>(scanXml(text, maxDepth, spans, threads))) {
    if (_structure->regular)
        return;
    // Something does not close as it opens: the parser sees the whole and says what.
    _structure->blocks.clear();
    top().pieces.assign(1, {0, text.size(), XmlPiece::small, 0});
    validate();
}

XmlDocument::XmlDocument(std::string_view text, std::shared_ptr<XmlStructure> structure)
    : _text(text), _structure(std::move(structure)) {}

std::unique_ptr<XmlDocument> XmlDocument::another() const {
    return std::unique_ptr<XmlDocument>(new XmlDocument(_text, _structure));
}

XmlDocument::~XmlDocument() = default;

XmlWindowPtr XmlDocument::parseContent(XmlPiece& piece, bool topLevel, size_t start) {
    XmlWindowPtr window = parse(start, piece.end, topLevel ? XmlWindow::Form::document : XmlWindow::Form::content);
    piece.parsed = true;
    return window;
}

XmlWindowPtr XmlDocument::parseStartTag(const XmlBlock& block) {
    return parse(block.start, block.tagEnd, XmlWindow::Form::startTag);
}

XmlWindowPtr XmlDocument::parseElement(const XmlBlock& block) {
    return parse(block.start, block.end, XmlWindow::Form::document);
}

XmlWindowPtr XmlDocument::parse(size_t start, size_t end, XmlWindow::Form form) {
    XmlWindowPtr window(takeWindow().release());
    if (!window->readPlain(_text, start, end, form, _readScript))
        window->parse(_text, start, end, form);
    return window;
}

std::unique_ptr<XmlWindow> XmlDocument::takeWindow() {
    if (_free.empty()) {
        auto window = std::make_unique<XmlWindow>();
        window->_owner = this;
        return window;
    }
    std::unique_ptr<XmlWindow> window = std::move(_free.back());
    _free.pop_back();
    return window;
}

void XmlDocument::giveBack(XmlWindow* window) {
    constexpr size_t kept = 4;
    std::unique_ptr<XmlWindow> owned(window);
    if (owned->reuse() && _free.size() < kept)
        _free.push_back(std::move(owned));
}

void XmlWindowPtr::release() { _window->_owner->giveBack(_window); }

void XmlDocument::validate(IProgressReporter* progress) { validate(top(), true, progress); }

void XmlDocument::validate(XmlBlock& element, bool topLevel, IProgressReporter* progress) {
    for (XmlPiece& piece : element.pieces) {
        if (progress != nullptr)
            progress->report(static_cast<double>(piece.start) / static_cast<double>(_text.size()));
        if (piece.block == XmlPiece::small) {
            if (!piece.parsed)
                parseContent(piece, topLevel, piece.start);
            continue;
        }
        XmlBlock& child = block(piece.block);
        parseStartTag(child);
        if (child.children != 0)
            validate(child, false, progress);
        else if (!onlySection(child))
            parseElement(child);
    }
}

std::optional<std::string_view> XmlDocument::onlySection(const XmlBlock& block) const {
    constexpr std::string_view start = "<![CDATA[", end = "]]>", blanks = " \t\r\n";
    std::string_view text = _text.substr(block.tagEnd, block.contentEnd - block.tagEnd);
    text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
    text = text.substr(0, text.find_last_not_of(blanks) + 1);
    if (!text.starts_with(start) || text.find(end) != text.size() - end.size())
        return {};
    return text.substr(start.size(), text.size() - start.size() - end.size());
}

} // namespace xml2swf
