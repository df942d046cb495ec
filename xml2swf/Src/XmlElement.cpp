#include "XmlElement.h"

#include <exception>

#include "Base64.h"
#include "SwfException.h"
#include "XmlDocument.h"
#include "XmlNumbers.h"

namespace xml2swf {

using libswf::SwfWarning;

void XmlReadContext::warn(SwfWarning::Kind kind, std::string_view element, size_t offset, std::string reason) {
    if (warnings == nullptr)
        return;
    SwfWarning warning;
    warning.kind = kind;
    warning.tagName = element;
    for (uint32_t index : tagPath)
        warning.path += (warning.path.empty() ? "" : ".") + std::to_string(index);
    const XmlPlace place = warnings->total() < libswf::SwfWarnings::limit ? places.at(offset) : XmlPlace();
    warning.offset = offset;
    warning.row = place.row;
    warning.column = place.column;
    warning.reason = std::move(reason);
    warnings->add(std::move(warning));
}

std::string_view findName(XmlNames names, uint32_t value) {
    for (const XmlName& entry : names) {
        if (entry.value == value)
            return entry.name;
    }
    return {};
}

std::string_view nameOf(XmlNames names, uint32_t value, const char* field) {
    const std::string_view name = findName(names, value);
    if (name.empty())
        throw libswf::SwfException(libswf::SwfError::badData,
                                   std::string(field) + ": the value " + std::to_string(value) + " has no name");
    return name;
}

static RawNode* elementFrom(RawNode* node) {
    while (node != nullptr && node->type() != rapidxml::node_element)
        node = node->next_sibling();
    return node;
}

static std::string_view nameOf(const rapidxml::xml_base<char>& item) { return {item.name(), item.name_size()}; }
static std::string_view valueOf(const rapidxml::xml_base<char>& item) { return {item.value(), item.value_size()}; }

XmlElement::XmlElement(XmlReadContext& context, XmlWindowPtr window, RawNode* node, XmlBlock* block)
    : _context(&context), _window(std::move(window)), _node(node), _block(block), _next(node->first_attribute()),
      _exceptions(std::uncaught_exceptions()) {}

XmlElement::XmlElement(XmlElement&& other) noexcept = default;

XmlElement::~XmlElement() {
    if (!_window || _context->warnings == nullptr || std::uncaught_exceptions() != _exceptions)
        return;
    try {
        warnOfUnread();
    } catch (const rapidxml::parse_error&) {
        // Found again, and reported, when the document is validated.
    }
}

size_t XmlElement::offset() const { return _window->offsetOf(_node->name()); }

const RawAttribute* XmlElement::find(std::string_view name) {
    auto take = [&](const RawAttribute* attribute, uint32_t index) {
        if (index < 64)
            _usedAttributes |= uint64_t(1) << index;
        _next = attribute->next_attribute();
        _nextIndex = index + 1;
        return attribute;
    };
    // Only a first match may be taken from the middle, since the first of two attributes of one name wins; readers ask
    // once per name, so looking on from the last hit finds the first.
    uint32_t index = _nextIndex;
    for (const RawAttribute* a = _next; a != nullptr; a = a->next_attribute(), ++index) {
        if (nameOf(*a) == name)
            return take(a, index);
    }
    index = 0;
    for (const RawAttribute* a = _node->first_attribute(); a != _next; a = a->next_attribute(), ++index) {
        if (nameOf(*a) == name)
            return take(a, index);
    }
    return nullptr;
}

bool XmlElement::has(std::string_view name) {
    for (const RawAttribute* a = _node->first_attribute(); a != nullptr; a = a->next_attribute()) {
        if (nameOf(*a) == name)
            return true;
    }
    return false;
}

std::optional<std::string_view> XmlElement::attribute(std::string_view name) {
    const RawAttribute* found = find(name);
    if (found == nullptr)
        return {};
    return valueOf(*found);
}

std::optional<std::string_view> XmlElement::firstAttribute() {
    const RawAttribute* first = _node->first_attribute();
    if (first == nullptr)
        return {};
    _usedAttributes |= 1;
    return valueOf(*first);
}

void XmlElement::badValue(std::string_view attribute, std::string_view value) const {
    throw XmlValueError(name(), attribute, value, offset());
}

int64_t XmlElement::ranged(std::string_view name, int64_t low, int64_t high) {
    const auto text = attribute(name);
    if (!text)
        return 0;
    const auto value = parseInteger(*text);
    if (!value || *value < low || *value > high)
        badValue(name, *text);
    return *value;
}

libswf::SwfString XmlElement::string(std::string_view name) {
    const std::string_view text = attribute(name).value_or("");
    if (text.find('\0') != text.npos)
        badValue(name, text);
    return libswf::SwfString(text);
}

bool XmlElement::boolean(std::string_view name) {
    const std::string_view text = attribute(name).value_or("");
    return text == "true" || parseInteger(text).value_or(0) != 0;
}

float XmlElement::real(std::string_view name) {
    const auto text = attribute(name);
    const auto value = text ? parseFloat(*text) : 0.0f;
    if (!value)
        badValue(name, *text);
    return *value;
}

double XmlElement::realDouble(std::string_view name) {
    const auto text = attribute(name);
    const auto value = text ? parseDouble(*text) : 0.0;
    if (!value)
        badValue(name, *text);
    return *value;
}

libswf::SwfColor XmlElement::color(std::string_view name) {
    const auto text = attribute(name);
    const auto value = text ? parseHex(*text) : 0u;
    if (!value)
        badValue(name, *text);
    return libswf::SwfColor::fromPacked(*value);
}

uint32_t XmlElement::named(std::string_view name, XmlNames names, uint32_t otherwise) {
    const std::string_view text = attribute(name).value_or("");
    for (const XmlName& entry : names) {
        if (entry.name == text)
            return entry.value;
    }
    return otherwise;
}

XmlElement::ChildIterator::ChildIterator(XmlReadContext& context, XmlWindowPtr window, RawNode* parent)
    : _context(&context), _window(std::move(window)), _node(parent->first_node()) {
    findElement();
}

XmlElement::ChildIterator::ChildIterator(XmlReadContext& context, XmlBlock& parent)
    : _context(&context), _parent(&parent), _nextPiece(parent.children == 0 ? parent.pieces.size() : 0) {
    findElement();
}

void XmlElement::ChildIterator::findElement() {
    for (;;) {
        _node = elementFrom(_node);
        if (_node != nullptr || _parent == nullptr || _nextPiece == _parent->pieces.size())
            return;
        XmlDocument& document = *_context->document;
        XmlPiece& piece = _parent->pieces[_nextPiece++];
        const bool isBig = piece.block != XmlPiece::small;
        _child = isBig ? &document.block(piece.block) : nullptr;
        _window = XmlWindowPtr(); // the next one can use its memory
        _window = isBig ? document.parseStartTag(*_child) : document.parseContent(piece, _parent == &document.top());
        _node = _window->container()->first_node();
    }
}

XmlElement::ChildIterator& XmlElement::ChildIterator::operator++() {
    _node = _node->next_sibling();
    findElement();
    return *this;
}

XmlElement::ChildIterator XmlElement::firstChild() const {
    if (_block != nullptr)
        return {*_context, *_block};
    return {*_context, _window, _node};
}

XmlElement XmlElement::takeChild(const ChildIterator& child) {
    if (_usedCount < maxUsed)
        _used[_usedCount++] = child.offset();
    else
        _allChildren = true;
    return *child;
}

std::optional<XmlElement> XmlElement::child(std::string_view name) {
    for (ChildIterator child = firstChild(); !child.atEnd(); ++child) {
        if (child.name() == name)
            return takeChild(child);
    }
    return {};
}

std::optional<XmlElement> XmlElement::childAt(uint32_t index) {
    ChildIterator child = firstChild();
    for (; !child.atEnd() && index != 0; --index)
        ++child;
    if (child.atEnd())
        return {};
    return takeChild(child);
}

uint32_t XmlElement::countChildren() const {
    if (_block != nullptr)
        return _block->children;
    uint32_t count = 0;
    for (RawNode* node = elementFrom(_node->first_node()); node != nullptr; node = elementFrom(node->next_sibling()))
        ++count;
    return count;
}

XmlElement::Children XmlElement::children() {
    _allChildren = true;
    return {firstChild()};
}

void XmlElement::skip() {
    acceptAll();
    _context->warn(SwfWarning::Kind::skipped, name(), offset(), "an element of this name is not known here");
}

void XmlElement::warnOfUnread() {
    uint32_t index = 0;
    for (const RawAttribute* a = _node->first_attribute(); !_allAttributes && a != nullptr && index < 64;
         a = a->next_attribute(), ++index) {
        if ((_usedAttributes >> index & 1) == 0)
            _context->warn(SwfWarning::Kind::skipped, name(), _window->offsetOf(a->name()),
                           "the attribute " + std::string(nameOf(*a)) + " is not known here");
    }
    if (_allChildren)
        return;
    for (ChildIterator child = firstChild(); !child.atEnd(); ++child) {
        if (std::find(_used, _used + _usedCount, child.offset()) == _used + _usedCount)
            (*child).skip();
    }
}

static std::string contentOf(RawNode* element) {
    std::string text, plain;
    bool hasCData = false;
    for (RawNode* node = element->first_node(); node != nullptr; node = node->next_sibling()) {
        if (node->type() == rapidxml::node_cdata) {
            hasCData = true;
            text += valueOf(*node);
        } else if (node->type() == rapidxml::node_data) {
            plain += valueOf(*node);
        }
    }
    return hasCData ? text : plain;
}

std::string XmlElement::content() {
    if (const auto section = onlySection())
        return std::string(*section);
    if (_block == nullptr)
        return contentOf(_node);
    const XmlWindowPtr whole = _context->document->parseElement(*_block);
    return contentOf(whole->container()->first_node());
}

std::optional<std::string_view> XmlElement::onlySection() const {
    if (_block != nullptr)
        return _context->document->onlySection(*_block);
    RawNode* only = _node->first_node();
    if (only == nullptr || only->next_sibling() != nullptr || only->type() != rapidxml::node_cdata)
        return {};
    return valueOf(*only);
}

libswf::SwfBytes XmlElement::base64() {
    const auto section = onlySection(); // the form that is written is decoded where it stands
    const std::string joined = section ? std::string() : content();
    try {
        return libswf::SwfBytes::adopt(decodeBase64(section.value_or(joined)));
    } catch (Base64Error& error) {
        if (!section)
            error.place.offset = offset();
        else if (_block != nullptr)
            error.place.offset += static_cast<size_t>(section->data() - _context->document->text().data());
        else
            error.place.offset += _window->offsetOf(section->data());
        throw;
    }
}

libswf::SwfBytes XmlElement::payload(std::string_view childName) {
    auto holder = child(childName);
    return holder ? holder->base64() : libswf::SwfBytes();
}

} // namespace xml2swf
