#include "XmlElement.h"

#include <cmath>

#include "Base64.h"
#include "SwfException.h"
#include "XmlDocument.h"
#include "XmlNumbers.h"
#include "XmlQuickParts.h"

namespace xml2swf {

using libswf::SwfWarning;

void XmlReadContext::warn(SwfWarning::Kind kind, std::string_view element, size_t offset, std::string reason) {
    if (warnings == nullptr)
        return;
    SwfWarning warning;
    warning.kind = kind;
    warning.tagName = element;
    warning.reason = std::move(reason);
    warn(std::move(warning), offset);
}

void XmlReadContext::warn(SwfWarning warning, size_t offset) {
    if (warnings == nullptr)
        return;
    const bool isKept = warnings->total() < libswf::SwfWarnings::limit;
    for (uint32_t index : tagPath)
        warning.path += (warning.path.empty() ? "" : ".") + std::to_string(index);
    const XmlPlace place = isKept ? places.at(offset) : XmlPlace();
    warning.offset = offset;
    warning.row = place.row;
    warning.column = place.column;
    if (warning.targetOffset != SwfWarning::noOffset && isKept)
        warning.targetRow = places.at(static_cast<size_t>(warning.targetOffset)).row;
    warnings->add(std::move(warning));
}

std::string XmlValueForm::fitting(std::string_view attribute) const {
    std::string text(attribute);
    switch (kind) {
    case Kind::integer:
        if (low == INT64_MIN && high == INT64_MAX)
            return text + ": a whole number";
        return text + ": " + std::to_string(low) + " to " + std::to_string(high);
    case Kind::real: return text + ": a number";
    case Kind::color: return text + ": red, green, blue and alpha as hexadecimal digits, like ff8000ff";
    default: return text + ": a text"; // Every text is taken; what it says may mean nothing.
    }
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

const XmlAttribute* XmlElement::findElsewhere(std::string_view name) {
    const XmlAttribute* found = firstOf(name);
    return found == nullptr ? nullptr : take(static_cast<uint32_t>(found - _attributes));
}

const XmlAttribute* XmlElement::firstOf(std::string_view name) const {
    const XmlAttribute* end = _attributes + _node->attributeCount;
    const XmlAttribute* found =
        std::find_if(_attributes, end, [&](const XmlAttribute& attribute) { return attribute.name == name; });
    return found == end ? nullptr : found;
}

bool XmlElement::has(std::string_view name) {
    const bool found = firstOf(name) != nullptr;
    if (_context->observer != nullptr)
        _context->observer->askedForPresence(*this, name);
    return found;
}

std::optional<std::string_view> XmlElement::firstAttribute(std::string_view name, const XmlValueForm& form) {
    tell(name, form);
    if (_node->attributeCount == 0)
        return {};
    _usedAttributes |= 1;
    return _attributes[0].value;
}

void XmlElement::badValue(std::string_view attribute, std::string_view value, const XmlValueForm& form) const {
    refuse(attribute, "\"" + std::string(value) + "\" is not a value that fits (" + form.fitting(attribute) + ")");
}

void XmlElement::refuse(std::string_view attribute, std::string reason) const {
    throw XmlValueError(name(), attribute, std::move(reason), offset());
}

int64_t XmlElement::missingInteger(std::string_view name, int64_t low, int64_t high) const {
    tell(name, XmlValueForm::integer(low, high));
    return 0;
}

int64_t XmlElement::inRange(std::string_view name, std::string_view text, int64_t low, int64_t high) {
    int64_t value = 0;
    if (!readInteger(text, value) || value < low || value > high) [[unlikely]] {
        const XmlValueForm form = XmlValueForm::integer(low, high);
        tell(name, form);
        badValue(name, text, form);
    }
    return value;
}

libswf::SwfString XmlElement::string(std::string_view name) {
    const std::string_view text = attribute(name).value_or("");
    if (text.find('\0') != text.npos)
        refuse(name, "a text cannot hold a NUL");
    return libswf::SwfString(text);
}

bool XmlElement::boolean(std::string_view name) {
    return isTrue(attribute(name, {XmlValueForm::Kind::boolean}).value_or(""));
}

bool XmlElement::isTrue(std::string_view text) { return text == "true" || parseInteger(text).value_or(0) != 0; }

bool XmlElement::lowBit(std::string_view name) {
    const std::string_view text = attribute(name, {XmlValueForm::Kind::boolean}).value_or("");
    return text == "true" || (parseInteger(text).value_or(0) & 1) != 0;
}

float XmlElement::real(std::string_view name) {
    const XmlValueForm form{XmlValueForm::Kind::real};
    const auto text = attribute(name, form);
    const auto value = text ? parseFloat(*text) : 0.0f;
    if (!value)
        badValue(name, *text, form);
    return *value;
}

double XmlElement::realDouble(std::string_view name) {
    const XmlValueForm form{XmlValueForm::Kind::real};
    const auto text = attribute(name, form);
    const auto value = text ? parseDouble(*text) : 0.0;
    if (!value)
        badValue(name, *text, form);
    return *value;
}

int32_t XmlElement::fixed(std::string_view name, uint32_t one) {
    const double value = std::floor(realDouble(name) * one + 0.5);
    const double limit = one == 256 ? 1 << 15 : double(1u << 31);
    if (!(value >= -limit && value < limit))
        refuse(name, "it is outside the range of its field");
    return static_cast<int32_t>(value);
}

libswf::SwfColor XmlElement::color(std::string_view name) {
    const XmlValueForm form{XmlValueForm::Kind::color};
    const auto text = attribute(name, form);
    const auto value = text ? parseHex(*text) : 0u;
    if (!value)
        badValue(name, *text, form);
    return libswf::SwfColor::fromPacked(*value);
}

static const XmlName* findValue(XmlNames names, std::string_view text) {
    const auto found =
        std::find_if(names.begin(), names.end(), [&](const XmlName& entry) { return entry.name == text; });
    return found == names.end() ? nullptr : &*found;
}

uint32_t XmlElement::named(std::string_view name, XmlNames names, uint32_t otherwise) {
    return valueOf(names, attribute(name, {XmlValueForm::Kind::name, 0, 0, names}).value_or(""), otherwise);
}

uint32_t XmlElement::valueOf(XmlNames names, std::string_view text, uint32_t otherwise) {
    const XmlName* found = findValue(names, text);
    return found == nullptr ? otherwise : found->value;
}

uint32_t XmlElement::namedOrNumber(std::string_view name, XmlNames names, uint32_t high) {
    return valueOrNumber(names, attribute(name, {XmlValueForm::Kind::nameOrInteger, 0, high, names}).value_or(""),
                         high);
}

uint32_t XmlElement::valueOrNumber(XmlNames names, std::string_view text, uint32_t high) {
    if (const XmlName* found = findValue(names, text))
        return found->value;
    const int64_t number = parseInteger(text).value_or(0);
    return number >= 0 && number <= high ? static_cast<uint32_t>(number) : 0;
}

uint32_t XmlElement::nameOrNumber(std::string_view name, XmlNames names, uint32_t high) {
    const auto text = attribute(name, {XmlValueForm::Kind::nameOrInteger, 0, high, names});
    if (!text)
        return 0;
    if (const XmlName* found = findValue(names, *text))
        return found->value;
    return static_cast<uint32_t>(inRange(name, *text, 0, high));
}

XmlElement::ChildIterator::ChildIterator(XmlReadContext& context, XmlWindowPtr window, const XmlItem* parent)
    : _context(&context), _window(std::move(window)), _node(parent + 1), _last(_window->after(parent)) {
    findElement();
}

XmlElement::ChildIterator::ChildIterator(XmlReadContext& context, XmlBlock& parent)
    : ChildIterator(context, parent, 0, parent.children == 0 ? 0 : parent.pieces.size()) {}

XmlElement::ChildIterator::ChildIterator(XmlReadContext& context, XmlBlock& parent, size_t firstPiece, size_t piecesEnd)
    : _context(&context), _parent(&parent), _nextPiece(firstPiece), _piecesEnd(piecesEnd) {
    findElement();
}

XmlElement::ChildIterator::ChildIterator(XmlReadContext& context, XmlBlock& parent, size_t firstPiece, size_t start,
                                         XmlQuickReader& quick)
    : _context(&context), _parent(&parent), _nextPiece(firstPiece), _piecesEnd(parent.pieces.size()), _start(start),
      _quick(&quick) {
    findElement();
}

XmlElement::ChildIterator::ChildIterator(XmlReadContext& context, XmlBlock& parent, size_t firstPiece, size_t piecesEnd,
                                         XmlQuickReader* quick)
    : _context(&context), _parent(&parent), _nextPiece(firstPiece), _piecesEnd(piecesEnd), _quick(quick) {
    findElement();
}

void XmlElement::ChildIterator::findElement() {
    for (;;) {
        for (; _node != _last; _node = _window->after(_node)) {
            if (_node->kind == XmlItem::Kind::element)
                return;
        }
        if (_nextPiece == _piecesEnd) {
            _node = nullptr;
            return;
        }
        nextPiece();
    }
}

void XmlElement::ChildIterator::nextPiece() {
    XmlDocument& document = *_context->document;
    XmlPiece& piece = _parent->pieces[_nextPiece++];
    const bool isBig = piece.block != XmlPiece::small;
    _child = isBig ? &document.block(piece.block) : nullptr;
    _window = XmlWindowPtr(); // the next one can use its memory
    size_t start = std::max(piece.start, _start);
    if (_quick != nullptr && !isBig)
        start = _quick->read(document.text(), start, piece.end);
    _window = isBig ? document.parseStartTag(*_child) : document.parseContent(piece, _parent == &document.top(), start);
    _node = _window->items();
    _last = _window->end();
}

XmlElement::ChildIterator& XmlElement::ChildIterator::operator++() {
    _node = _window->after(_node);
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
    if (_context->observer != nullptr)
        _context->observer->missedChild(*this, name);
    return {};
}

std::optional<XmlElement> XmlElement::childAt(uint32_t index, std::string_view name) {
    if (_context->observer != nullptr)
        _context->observer->askedForChildAt(*this, index, name);
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
    for (const XmlItem* node = _node + 1; node != _window->after(_node); node = _window->after(node))
        count += node->kind == XmlItem::Kind::element;
    return count;
}

XmlElement::Children XmlElement::children() {
    _allChildren = true;
    return {firstChild()};
}

XmlElement::Children XmlElement::anyChildren(std::string_view name) {
    if (_context->observer != nullptr)
        _context->observer->askedForAll(*this, name);
    return children();
}

XmlElement::Children XmlElement::children(const XmlNameGroup& names) {
    if (_context->observer != nullptr)
        _context->observer->askedForGroup(*this, names);
    return children();
}

XmlElement::Children XmlElement::children(XmlQuickReader& quick) {
    if (_block == nullptr || _block->children == 0 || _context->observer != nullptr)
        return children();
    _allChildren = true;
    const XmlQuickEnd read = readInParts(*_context, *_block, quick);
    return {ChildIterator(*_context, *_block, read.piece, read.at, quick)};
}

XmlElement::Children XmlElement::children(const XmlNameGroup& names, XmlQuickReader& quick) {
    if (_context->observer != nullptr)
        _context->observer->askedForGroup(*this, names);
    return children(quick);
}

void XmlElement::skip(std::string_view reason) {
    acceptAll();
    if (_context->observer != nullptr)
        _context->observer->skipped(*this);
    _context->warn(SwfWarning::Kind::skipped, name(), offset(), std::string(reason));
}

void XmlElement::warnOfUnread() {
    if ((_context->warnings == nullptr && _context->observer == nullptr) ||
        std::uncaught_exceptions() != _context->exceptions)
        return;
    try {
        warnOfUnreadAttributes();
        if (_allChildren)
            return;
        for (ChildIterator child = firstChild(); !child.atEnd(); ++child) {
            if (std::find(_used, _used + _usedCount, child.offset()) == _used + _usedCount)
                (*child).skip();
        }
    } catch (const rapidxml::parse_error&) {
        // Found again, and reported, when the document is validated.
    }
}

void XmlElement::warnOfUnreadAttributes() {
    if (_allAttributes)
        return;
    for (uint32_t i = 0; i < std::min(_node->attributeCount, maxAttributes); ++i) {
        if ((_usedAttributes >> i & 1) != 0)
            continue;
        if (_context->observer != nullptr)
            _context->observer->skippedAttribute(*this, _attributes[i].name);
        const bool isFirst = firstOf(_attributes[i].name) == &_attributes[i];
        _context->warn(SwfWarning::Kind::skipped, name(), _window->offsetOf(_attributes[i].name.data()),
                       "the attribute " + std::string(_attributes[i].name) +
                           (isFirst ? " is not known here" : " stands here more than once"));
    }
}

static std::string contentOf(const XmlWindow& window, const XmlItem* element) {
    std::string text, plain;
    bool hasCData = false;
    for (const XmlItem* node = element + 1; node != window.after(element); node = window.after(node)) {
        if (node->kind == XmlItem::Kind::cdata) {
            hasCData = true;
            text += node->text;
        } else if (node->kind == XmlItem::Kind::data) {
            plain += node->text;
        }
    }
    return hasCData ? text : plain;
}

std::string XmlElement::content() {
    if (_context->observer != nullptr)
        _context->observer->askedForContent(*this, XmlContent::text);
    std::string text = joinedContent();
    if (text.find('\0') != text.npos)
        refuse({}, "a text cannot hold a NUL");
    return text;
}

std::string XmlElement::joinedContent() {
    if (const auto section = onlySection())
        return std::string(*section);
    if (_block == nullptr)
        return contentOf(*_window, _node);
    const XmlWindowPtr whole = _context->document->parseElement(*_block);
    return contentOf(*whole, whole->items());
}

std::optional<std::string_view> XmlElement::onlySection() const {
    if (_block != nullptr)
        return _context->document->onlySection(*_block);
    const XmlItem* only = _node + 1;
    if (_window->after(_node) != only + 1 || only->kind != XmlItem::Kind::cdata)
        return {};
    return only->text;
}

libswf::SwfBytes XmlElement::base64() {
    if (_context->observer != nullptr)
        _context->observer->askedForContent(*this, XmlContent::base64);
    const auto section = onlySection(); // the form that is written is decoded where it stands
    const std::string joined = section ? std::string() : joinedContent();
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
