// Reading of XML elements.
#pragma once

#include <algorithm>
#include <concepts>
#include <exception>
#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "SwfBytes.h"
#include "SwfStructs.h"
#include "SwfWarnings.h"
#include "XmlErrors.h"
#include "XmlReadObserver.h"
#include "XmlWindow.h"

namespace libswf {
class SwfTag;
}

namespace xml2swf {

class ActionBytes;
class IScriptListener;
class ScriptNotes;
class SpelledTexts;

/// What the readers of one document share.
struct XmlReadContext {
    XmlDocument* document = nullptr;
    XmlPlaces places;                        ///< of the document's text; of no text, places are found later
    libswf::SwfWarnings* warnings = nullptr; ///< may be null
    std::vector<uint32_t> tagPath;           ///< indices of the tag being read
    bool fullForm = false;                   ///< of the document: SwfContext::fullForm
    uint16_t spriteDepth = 0;
    uint16_t actionDepth = 0;
    uint32_t threads = 1;               ///< for an element that can be read in parts
    ActionBytes* actionBytes = nullptr; ///< where actions become bytes; null: they stay objects
    SpelledTexts* spelled = nullptr;    ///< texts that wait for their fonts; null: glyphs by character stay 0
    ScriptNotes* script = nullptr;      ///< whose actions are being read; null outside of scripts
    /// The original record of the tag whose element's name stands at an offset; null when its text is not as it was.
    /// Empty when there is no original.
    std::function<std::shared_ptr<libswf::SwfTag>(size_t)> untouched;
    XmlReadObserver* observer = nullptr;               ///< hears what the readers ask for; may be null
    IScriptListener* scripts = nullptr;                ///< hears of scripts; may be null
    const int exceptions = std::uncaught_exceptions(); ///< more of them: an element is let go because of an error

    /// The movie is only to be written: what a reader need not keep apart may become bytes.
    bool isToWrite() const { return actionBytes != nullptr; }

    void warn(libswf::SwfWarning::Kind kind, std::string_view element, size_t offset, std::string reason);
    /// The same for a warning that says more; it gets its place.
    void warn(libswf::SwfWarning warning, size_t offset);
};

/// The name of a value; empty when it has none.
std::string_view findName(XmlNames names, uint32_t value);
/// The name of a value; throws SwfException code 3 when it has none.
std::string_view nameOf(XmlNames names, uint32_t value, const char* field);

/// Takes children of a big element straight from the text: for records that come in millions.
class XmlQuickReader {
public:
    /// Reads whole elements from `start` on, up to `end` or to the first one that is not of the form in which it is
    /// mostly written. Gives the place behind the last one read.
    virtual size_t read(std::string_view text, size_t start, size_t end) = 0;

    virtual ~XmlQuickReader() = default;
    /// A reader of its own for what stands further behind, which another thread may use; null when there is no such
    /// thing.
    virtual std::unique_ptr<XmlQuickReader> another() const { return nullptr; }
    /// Takes over what `another` read, behind what was read here.
    virtual void join(XmlQuickReader&) {}
};

/// An element being read. Attributes may come in any order; a missing one reads as 0, 0.0, false or "". When the reader
/// is done with the element, attributes and children that it never asked for become warnings.
class XmlElement {
public:
    /// `block` for a big element, whose `node` is its start tag only; its children are parsed as they are asked for.
    XmlElement(XmlReadContext& context, XmlWindowPtr window, const XmlItem* node, XmlBlock* block = nullptr)
        : _context(&context), _window(std::move(window)), _node(node), _block(block),
          _attributes(_window->attributes(*node)) {}
    XmlElement(XmlElement&& other) noexcept = default;
    XmlElement& operator=(XmlElement&&) = delete;
    ~XmlElement() {
        if (_window && hasUnread())
            warnOfUnread();
    }

    std::string_view name() const { return _node->text; }
    bool is(std::string_view name) const {
        if (this->name() == name)
            return true;
        if (_context->observer != nullptr) [[unlikely]]
            _context->observer->comparedName(*this, name);
        return false;
    }
    /// Byte of the element's name in the text.
    size_t offset() const { return _window->offsetOf(_node->text.data()); }
    XmlReadContext& context() const { return *_context; }
    /// The text is in the full form.
    bool fullForm() const { return _context->fullForm; }

    // Attributes, each asked for once. A value that is not a number or outside the field's range throws XmlValueError.
    bool has(std::string_view name);
    /// The value as it stands; `form` says what the reader takes it for.
    std::optional<std::string_view> attribute(std::string_view name, const XmlValueForm& form = {}) {
        tell(name, form);
        const XmlAttribute* found = find(name);
        return found == nullptr ? std::optional<std::string_view>() : found->value;
    }
    /// The value, without asking for it.
    std::optional<std::string_view> peek(std::string_view name) const {
        const XmlAttribute* found = firstOf(name);
        return found == nullptr ? std::optional<std::string_view>() : found->value;
    }
    /// The value of the first attribute, whatever its name. It is written as `name`.
    std::optional<std::string_view> firstAttribute(std::string_view name, const XmlValueForm& form);
    /// Its name, where there is one.
    std::string_view firstName() const { return _attributes[0].name; }
    /// Names of places: what a `form` of these kinds says. They stand in the document, or as long as the element.
    std::string_view label(std::string_view name, XmlValueForm::Kind form, std::string&) {
        return attribute(name, {form}).value_or("");
    }
    /// A text; one with a NUL in it (written as a reference) is a bad value.
    libswf::SwfString string(std::string_view name);
    template <std::integral Int>
    Int integer(std::string_view name) {
        return static_cast<Int>(ranged(name, std::numeric_limits<Int>::min(), std::numeric_limits<Int>::max()));
    }
    /// An integer from `low` to `high`.
    int64_t ranged(std::string_view name, int64_t low, int64_t high) {
        const XmlAttribute* found = find(name);
        return found == nullptr ? missingInteger(name, low, high) : inRange(name, found->value, low, high);
    }
    uint8_t ui8(std::string_view name) { return integer<uint8_t>(name); }
    uint16_t ui16(std::string_view name) { return integer<uint16_t>(name); }
    uint32_t ui32(std::string_view name) { return integer<uint32_t>(name); }
    int16_t si16(std::string_view name) { return integer<int16_t>(name); }
    int32_t si32(std::string_view name) { return integer<int32_t>(name); }
    /// 32 bits, given as a signed or an unsigned number.
    uint32_t bits32(std::string_view name) { return static_cast<uint32_t>(ranged(name, INT32_MIN, UINT32_MAX)); }
    /// The low `bits` bits of a number of any size.
    uint32_t masked(std::string_view name, uint32_t bits) {
        return static_cast<uint32_t>(ranged(name, INT64_MIN, INT64_MAX)) & ((1u << bits) - 1);
    }
    /// True for "true" and for any non-zero integer.
    bool boolean(std::string_view name);
    static bool isTrue(std::string_view text);
    /// True for "true" and for any odd integer.
    bool lowBit(std::string_view name);
    float real(std::string_view name);
    double realDouble(std::string_view name);
    /// The fixed-point number nearest to a value, of 32 bits or, for a `one` of 256, of 16; one outside is a bad value.
    int32_t fixed(std::string_view name, uint32_t one);
    libswf::SwfColor color(std::string_view name);
    /// The value behind a name; `otherwise` for a text that matches none or is missing.
    uint32_t named(std::string_view name, XmlNames names, uint32_t otherwise = 0);
    static uint32_t valueOf(XmlNames names, std::string_view text, uint32_t otherwise);
    /// The value behind a name, or a number from 0 to `high`; 0 for any other text.
    uint32_t namedOrNumber(std::string_view name, XmlNames names, uint32_t high);
    static uint32_t valueOrNumber(XmlNames names, std::string_view text, uint32_t high);
    /// The same, but any other text is a bad value.
    uint32_t nameOrNumber(std::string_view name, XmlNames names, uint32_t high);
    /// Throws for a text that is not of this form.
    [[noreturn]] void badValue(std::string_view attribute, std::string_view value, const XmlValueForm& form) const;
    /// Throws XmlValueError with a reason of its own.
    [[noreturn]] void refuse(std::string_view attribute, std::string reason) const;

    // Children: elements only, comments and text between them are passed over.
    std::optional<XmlElement> child(std::string_view name);
    /// The child at a position, whatever its name. It is written as `name`, or under one of several names (empty).
    std::optional<XmlElement> childAt(uint32_t index, std::string_view name);
    uint32_t countChildren() const;
    /// Notes that nothing reads this element.
    void skip(std::string_view reason = notKnownHere);
    static constexpr std::string_view notKnownHere = "an element of this name is not known here";
    /// Whether no reader asks for some attributes or children does not matter: no warnings.
    void acceptAll() { _allChildren = _allAttributes = true; }

    class ChildIterator {
    public:
        ChildIterator() = default;
        /// The children of a node.
        ChildIterator(XmlReadContext& context, XmlWindowPtr window, const XmlItem* parent);
        /// The children of a big element, or the top-level elements.
        ChildIterator(XmlReadContext& context, XmlBlock& parent);
        /// Those in some of its pieces.
        ChildIterator(XmlReadContext& context, XmlBlock& parent, size_t firstPiece, size_t piecesEnd);
        /// Those from a place in the first piece on, without those that `quick` reads.
        ChildIterator(XmlReadContext& context, XmlBlock& parent, size_t firstPiece, size_t start,
                      XmlQuickReader& quick);
        /// Those in some of its pieces, without those that `quick` reads.
        ChildIterator(XmlReadContext& context, XmlBlock& parent, size_t firstPiece, size_t piecesEnd,
                      XmlQuickReader* quick);

        XmlElement operator*() const { return {*_context, _window, _node, _child}; }
        ChildIterator& operator++();
        bool operator!=(const ChildIterator& other) const { return _node != other._node; }
        std::string_view name() const { return _node->text; }
        size_t offset() const { return _window->offsetOf(_node->text.data()); }
        bool atEnd() const { return _node == nullptr; }

    private:
        void findElement(); // from _node on, through the following pieces
        void nextPiece();

        XmlReadContext* _context = nullptr;
        XmlWindowPtr _window;
        const XmlItem* _node = nullptr; // null at the end
        const XmlItem* _last = nullptr; // behind the last node in the window
        XmlBlock* _parent = nullptr;    // null when all children stand in one window
        size_t _nextPiece = 0, _piecesEnd = 0;
        size_t _start = 0; // what stands before it was read
        XmlQuickReader* _quick = nullptr;
        XmlBlock* _child = nullptr; // the current child when it is big
    };
    struct Children {
        ChildIterator first;
        const ChildIterator& begin() const { return first; }
        ChildIterator end() const { return {}; }
    };
    /// All child elements in order. The caller handles each, or calls its skip().
    Children children();
    /// The same for a caller that handles each whatever its name: `name` is only what they are written as.
    Children anyChildren(std::string_view name);
    /// The same for a caller that finds their names in a table.
    Children children(const XmlNameGroup& names);
    /// All but those that `quick` reads before their turn comes.
    Children children(XmlQuickReader& quick);
    Children children(const XmlNameGroup& names, XmlQuickReader& quick);
    /// The pieces of a big element's content; null for a small element.
    XmlBlock* pieces() const { return _block; }
    /// The children of a big element in pieces, for a caller who handles all of them; null for a small element.
    XmlBlock* takePieces() {
        _allChildren |= _block != nullptr;
        return _block;
    }

    /// The element's actions, if they were made bytes of; null when they are children.
    const libswf::SwfBytes* script() const { return _window->script(_node); }

    /// The text: all CDATA sections joined, or the plain text when there are none. One with a NUL in it is a bad value.
    std::string content();
    /// The bytes of a child that holds base64; none when the child is missing.
    libswf::SwfBytes payload(std::string_view childName);
    libswf::SwfBytes base64();

private:
    // Attributes mostly come in the order in which they are asked for. The first of two of one name counts: what stands
    // next is it when all before it were asked for.
    const XmlAttribute* find(std::string_view name) {
        if (_next < _node->attributeCount && _attributes[_next].name == name && allUsedBefore(_next))
            return take(_next);
        return findElsewhere(name);
    }
    bool allUsedBefore(uint32_t index) const {
        return index < maxAttributes && (~_usedAttributes & ((uint64_t(1) << index) - 1)) == 0;
    }
    const XmlAttribute* firstOf(std::string_view name) const;
    const XmlAttribute* findElsewhere(std::string_view name);
    const XmlAttribute* take(uint32_t index) {
        if (index < maxAttributes)
            _usedAttributes |= uint64_t(1) << index;
        _next = index + 1;
        return &_attributes[index];
    }
    int64_t missingInteger(std::string_view name, int64_t low, int64_t high) const;
    void tell(std::string_view name, const XmlValueForm& form) const {
        if (_context->observer != nullptr) [[unlikely]]
            _context->observer->askedForAttribute(*this, name, form);
    }
    int64_t inRange(std::string_view name, std::string_view text, int64_t low, int64_t high);
    ChildIterator firstChild() const;
    XmlElement takeChild(const ChildIterator& child);
    std::optional<std::string_view> onlySection() const;
    std::string joinedContent();
    bool hasUnread() const {
        const uint32_t counted = std::min(_node->attributeCount, maxAttributes);
        const uint64_t all = counted == 0 ? 0 : ~uint64_t(0) >> (maxAttributes - counted);
        return (!_allAttributes && _usedAttributes != all) || (!_allChildren && hasChildren());
    }
    bool hasChildren() const { return _block != nullptr || _window->after(_node) != _node + 1; }
    void warnOfUnread();
    void warnOfUnreadAttributes();

    static constexpr uint32_t maxAttributes = 64; // attributes past these count as used
    static constexpr uint32_t maxUsed = 12;

    XmlReadContext* _context;
    XmlWindowPtr _window;
    const XmlItem* _node;
    XmlBlock* _block;
    const XmlAttribute* _attributes;
    uint32_t _next = 0;           // index of the attribute behind the last one found
    uint64_t _usedAttributes = 0; // by index
    size_t _used[maxUsed];        // offsets of the children asked for
    uint32_t _usedCount = 0;
    bool _allChildren = false;
    bool _allAttributes = false;
};

/// A child element read by readXml(XmlElement&, T&). False when it is missing.
template <class T>
bool readChild(XmlElement& parent, std::string_view name, T& value) {
    auto child = parent.child(name);
    if (child)
        readXml(*child, value);
    return child.has_value();
}

/// Hands every child of a name to `read`, in order. Nothing reads the others.
template <class Element, class Read>
void readEach(Element& parent, std::string_view name, Read read) {
    for (Element child : parent.children()) {
        if (child.is(name))
            read(child);
        else
            child.skip();
    }
}

} // namespace xml2swf
