// Reading of elements straight from the text, without nodes, while they have the form in which they are written:
// scripts, a quarter faster than by nodes (README.md).
#pragma once

#include <cstring>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

#include "SwfBytes.h"
#include "XmlBytes.h"
#include "XmlDocument.h"
#include "XmlElement.h"
#include "XmlNameTable.h"
#include "XmlNumbers.h"
#include "XmlPlain.h"

namespace xml2swf {

/// A place in a piece of text that holds whole elements. Once anything is not of the usual form, nothing more is found.
class XmlQuickText {
public:
    XmlQuickText(std::string_view text, size_t start, size_t end)
        : _text(text.data()), _at(text.data() + start), _end(text.data() + end) {}

    size_t position() const { return static_cast<size_t>(_at - _text); }
    size_t offsetOf(const char* place) const { return static_cast<size_t>(place - _text); }
    bool isUsual() const { return _isUsual; }
    void giveUp() {
        _isUsual = false;
        _at = _end;
    }

    bool startsWith(std::string_view expected) const {
        return static_cast<size_t>(_end - _at) >= expected.size() &&
               std::memcmp(_at, expected.data(), expected.size()) == 0;
    }
    bool take(std::string_view expected) {
        const bool found = startsWith(expected);
        _at += found ? expected.size() : 0;
        return found;
    }
    void expect(std::string_view expected) {
        if (!take(expected)) [[unlikely]]
            giveUp();
    }
    void passBlanks() { _at = findFirst<NotBlank>(_at, _end); }
    /// A start tag up to behind its name; false at anything else.
    bool atElement() const { return _end - _at >= 2 && _at[0] == '<' && !NameEnd::test(_at[1]); }
    std::string_view takeStart() {
        prefetch(_at);
        const char* name = _at + 1;
        _at = findFirst<NameEnd>(name, _end);
        return {name, static_cast<size_t>(_at - name)};
    }
    XmlNameWords wordsOf(std::string_view name) const {
        const auto readable = static_cast<size_t>(_end - name.data());
        return readable >= XmlNameWords::most ? XmlNameWords::inText(name) : XmlNameWords(name);
    }
    /// Where the value of an attribute starts that stands here under this name; null when there is none.
    const char* valueOf(std::string_view name) const {
        const size_t length = name.size();
        if (static_cast<size_t>(_end - _at) < length + 4 || _at[0] != ' ' || _at[1] != name[0] ||
            std::memcmp(_at + 1, name.data(), length) != 0 || _at[length + 1] != '=' || _at[length + 2] != '"')
            return nullptr;
        return _at + length + 3;
    }
    /// That value, without references, up to behind its quote.
    std::optional<std::string_view> takeAttribute(std::string_view name) {
        const char* value = valueOf(name);
        if (value == nullptr)
            return {};
        _at = findFirst<QuoteOrReference>(value, _end);
        if (_at == _end || *_at != '"') [[unlikely]] {
            giveUp();
            return {};
        }
        return std::string_view(value, static_cast<size_t>(_at++ - value));
    }
    /// That value, which may hold references by name: these are resolved in `room`.
    std::optional<std::string_view> takeValue(std::string_view name, std::string& room) {
        const char* value = valueOf(name);
        if (value == nullptr)
            return {};
        const char* stop = findFirst<QuoteOrReference>(value, _end);
        if (stop != _end && *stop == '"') [[likely]] {
            _at = stop + 1;
            return std::string_view(value, static_cast<size_t>(stop - value));
        }
        room.clear();
        stop = appendResolved(value, _end, room);
        if (stop == nullptr)
            giveUp();
        else
            _at = stop + 1;
        return room;
    }
    /// That value as a string; empty when there is none.
    libswf::SwfString takeText(std::string_view name) {
        const char* value = valueOf(name);
        if (value == nullptr)
            return {};
        const char* stop = findFirst<QuoteOrReference>(value, _end);
        if (stop != _end && *stop == '"') [[likely]] {
            _at = stop + 1;
            return std::string_view(value, static_cast<size_t>(stop - value));
        }
        std::string text;
        stop = appendResolved(value, _end, text);
        if (stop == nullptr)
            giveUp();
        else
            _at = stop + 1;
        return text;
    }

private:
    const char* _text;
    const char* _at;
    const char* _end;
    bool _isUsual = true;
};

/// An element being read, for readers that ask for attributes and children in the order in which they are written: what
/// stands anywhere else, or is not asked for, is not of the usual form, and what was read of the text is worth nothing.
/// Otherwise all answers are those of XmlElement. Children are let go of before the element is asked for more.
class XmlQuickElement {
public:
    /// Stands at an element.
    XmlQuickElement(XmlReadContext& context, XmlQuickText& text)
        : _context(context), _text(text), _name(text.takeStart()) {}
    XmlQuickElement(const XmlQuickElement&) = delete;
    XmlQuickElement& operator=(const XmlQuickElement&) = delete;
    ~XmlQuickElement() { close(); }

    std::string_view name() const { return _name; }
    /// Byte of the name in the text.
    size_t offset() const { return _text.offsetOf(_name.data()); }
    XmlNameWords nameWords() const { return _text.wordsOf(_name); }
    bool is(std::string_view name) const { return _name == name; }
    XmlReadContext& context() const { return _context; }

    bool has(std::string_view name) const { return _text.valueOf(name) != nullptr; }
    libswf::SwfString string(std::string_view name) { return _text.takeText(name); }
    std::string_view label(std::string_view name, XmlValueForm::Kind, std::string& room) {
        return _text.takeValue(name, room).value_or("");
    }
    std::optional<std::string_view> attribute(std::string_view name, std::string& room) {
        return _text.takeValue(name, room);
    }
    template <std::integral Int>
    Int integer(std::string_view name) {
        return static_cast<Int>(ranged(name, std::numeric_limits<Int>::min(), std::numeric_limits<Int>::max()));
    }
    int64_t ranged(std::string_view name, int64_t low, int64_t high) {
        const auto text = _text.takeAttribute(name);
        int64_t value = 0;
        if (text && (!readInteger(*text, value) || value < low || value > high)) [[unlikely]]
            _text.giveUp();
        return value;
    }
    uint8_t ui8(std::string_view name) { return integer<uint8_t>(name); }
    uint16_t ui16(std::string_view name) { return integer<uint16_t>(name); }
    int16_t si16(std::string_view name) { return integer<int16_t>(name); }
    uint32_t bits32(std::string_view name) { return static_cast<uint32_t>(ranged(name, INT32_MIN, UINT32_MAX)); }
    bool boolean(std::string_view name) {
        return XmlElement::isTrue(_text.takeAttribute(name).value_or(std::string_view()));
    }
    double realDouble(std::string_view name) {
        const auto text = _text.takeAttribute(name);
        const auto value = text ? parseDouble(*text) : 0.0;
        if (!value)
            _text.giveUp();
        return value.value_or(0);
    }
    uint32_t named(std::string_view name, XmlNames names) {
        return XmlElement::valueOf(names, _text.takeAttribute(name).value_or(std::string_view()), 0);
    }
    uint32_t namedOrNumber(std::string_view name, XmlNames names, uint32_t high) {
        return XmlElement::valueOrNumber(names, _text.takeAttribute(name).value_or(std::string_view()), high);
    }

    /// The next child, if it has this name.
    std::optional<XmlQuickElement> child(std::string_view name) {
        if (!toChild())
            return {};
        XmlQuickText ahead = _text;
        if (ahead.takeStart() != name)
            return {};
        return std::optional<XmlQuickElement>(std::in_place, _context, _text);
    }
    void skip() { _text.giveUp(); }
    libswf::SwfBytes payload(std::string_view) {
        _text.giveUp();
        return {};
    }

    class ChildIterator {
    public:
        ChildIterator() = default;
        explicit ChildIterator(XmlQuickElement* parent) : _parent(parent), _isAtChild(parent->toChild()) {}
        XmlQuickElement operator*() const { return {_parent->_context, _parent->_text}; }
        /// The child before was let go of, so that the text stands behind it.
        ChildIterator& operator++() {
            _isAtChild = _parent->toChild();
            return *this;
        }
        bool operator!=(const ChildIterator& other) const { return _isAtChild != other._isAtChild; }

    private:
        XmlQuickElement* _parent = nullptr;
        bool _isAtChild = false;
    };
    struct Children {
        ChildIterator first;
        const ChildIterator& begin() const { return first; }
        ChildIterator end() const { return {}; }
    };
    /// The children that are left.
    Children children() { return {ChildIterator(this)}; }
    Children children(const XmlNameGroup&) { return children(); }
    Children anyChildren(std::string_view) { return children(); }

private:
    enum class State : uint8_t { inStartTag, inContent, closed };

    bool toChild() {
        if (_state == State::inStartTag)
            endStartTag();
        if (_state == State::closed)
            return false;
        _text.passBlanks();
        return _text.atElement();
    }
    void endStartTag() {
        if (_text.take(">")) {
            _state = State::inContent;
        } else {
            _text.expect(" />");
            _state = State::closed;
        }
    }
    void close() {
        if (_state == State::inStartTag) {
            _text.expect(" />");
        } else if (_state == State::inContent) {
            _text.passBlanks();
            _text.expect("</");
            _text.expect(_name);
            _text.expect(">");
        }
    }

    XmlReadContext& _context;
    XmlQuickText& _text;
    const std::string_view _name;
    State _state = State::inStartTag;
};

inline XmlNameWords nameWords(const XmlElement& element) { return XmlNameWords(element.name()); }
inline XmlNameWords nameWords(const XmlQuickElement& element) { return element.nameWords(); }

} // namespace xml2swf
