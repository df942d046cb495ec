#include "XmlDocument.h"

#include <algorithm>
#include <cstring>

#include "XmlErrors.h"

namespace xml2swf {

namespace {

// Content is parsed inside an element, where text may stand between the children.
constexpr std::string_view wrapperStart = "<w>", wrapperEnd = "</w>";

} // namespace

XmlDocument::XmlDocument(std::string_view text, std::vector<ElementSpan>* spans)
    : _text(text), _structure(scanXml(text, maxDepth, spans)) {
    if (_structure.regular)
        return;
    // Something does not close as it opens: the parser sees the whole and says what.
    _structure.blocks.clear();
    _structure.document.pieces.assign(1, {0, text.size(), XmlPiece::small});
    validate();
}

XmlDocument::~XmlDocument() = default;

XmlWindowPtr XmlDocument::parseContent(XmlPiece& piece, bool topLevel) {
    piece.parsed = true; // or it throws
    if (topLevel)
        return parse(piece.start, piece.end, {}, {});
    XmlWindowPtr window = parse(piece.start, piece.end, wrapperStart, wrapperEnd);
    window->_container = window->_container->first_node();
    return window;
}

XmlWindowPtr XmlDocument::parseStartTag(const XmlBlock& block) {
    return parse(block.start, block.tagEnd - 1, {}, "/>");
}

XmlWindowPtr XmlDocument::parseElement(const XmlBlock& block) { return parse(block.start, block.end, {}, {}); }

XmlWindowPtr XmlDocument::parse(size_t start, size_t end, std::string_view before, std::string_view after) {
    const size_t length = end - start;
    std::unique_ptr<XmlWindow> window = takeWindow(before.size() + length + after.size() + 1);
    char* place = window->_copy.get();
    place = std::copy(before.begin(), before.end(), place);
    if (length != 0)
        std::memcpy(place, _text.data() + start, length);
    place = std::copy(after.begin(), after.end(), place + length);
    *place = '\0';
    window->_origin = start;
    window->_before = before.size();
    try {
        window->_document.parse<rapidxml::parse_full>(window->_copy.get());
    } catch (const rapidxml::parse_error& error) {
        const size_t at = std::clamp<size_t>(window->offsetOf(error.where<char>()), start, end);
        throw XmlSyntaxError(error.what(), at);
    }
    window->_container = &window->_document;
    return XmlWindowPtr(window.release());
}

std::unique_ptr<XmlWindow> XmlDocument::takeWindow(size_t room) {
    std::unique_ptr<XmlWindow> window;
    if (_free.empty()) {
        window = std::make_unique<XmlWindow>();
        window->_owner = this;
    } else {
        window = std::move(_free.back());
        _free.pop_back();
    }
    if (window->_capacity < room) {
        window->_copy.reset(new char[room]);
        window->_capacity = room;
    }
    return window;
}

void XmlDocument::giveBack(XmlWindow* window) {
    constexpr size_t kept = 4;
    std::unique_ptr<XmlWindow> owned(window);
    owned->_document.clear();
    if (_free.size() < kept && window->_capacity <= 4 * windowSize)
        _free.push_back(std::move(owned));
}

void XmlWindowPtr::release() { _window->_owner->giveBack(_window); }

void XmlDocument::validate() { validate(_structure.document, true); }

void XmlDocument::validate(XmlBlock& element, bool topLevel) {
    for (XmlPiece& piece : element.pieces) {
        if (piece.block == XmlPiece::small) {
            if (!piece.parsed)
                parseContent(piece, topLevel);
            continue;
        }
        XmlBlock& child = block(piece.block);
        parseStartTag(child);
        if (child.children != 0)
            validate(child, false);
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
