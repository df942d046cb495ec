// Finding an element's name among many.
#pragma once

#include <array>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace xml2swf {

/// The first and the last bytes of a name as words, which overlap in a short one. Names of one length, up to `most`
/// bytes, are equal when their words are.
struct XmlNameWords {
    static constexpr size_t most = 16;

    uint64_t first = 0, last = 0;

    /// Of a name of 1 byte or more.
    explicit XmlNameWords(std::string_view name) {
        const char* text = name.data();
        const size_t n = name.size();
        if (n >= 8) {
            first = load<uint64_t>(text);
            last = load<uint64_t>(text + n - 8);
        } else if (n >= 4) {
            first = load<uint32_t>(text);
            last = load<uint32_t>(text + n - 4);
        } else {
            first = load<uint8_t>(text) | load<uint8_t>(text + n / 2) << 8;
            last = load<uint8_t>(text + n - 1);
        }
    }
    bool operator==(const XmlNameWords&) const = default;

private:
    template <class Word>
    static Word load(const char* at) {
        Word word;
        std::memcpy(&word, at, sizeof word);
        return word;
    }
};

/// Up to 256 names and what they stand for, of which the first of two equal ones counts. Names are not copied.
template <class Value>
class XmlNameTable {
public:
    void add(std::string_view name, const Value* value) {
        Slot& slot = find(name);
        if (slot.value == nullptr)
            slot = {XmlNameWords(name), name, value};
    }
    /// Null for a name that is not in the table.
    const Value* operator[](std::string_view name) const { return const_cast<XmlNameTable*>(this)->find(name).value; }

private:
    struct Slot {
        XmlNameWords words{" "};
        std::string_view name;
        const Value* value = nullptr;

        bool is(const XmlNameWords& otherWords, std::string_view other) const {
            return name.size() == other.size() && words == otherWords &&
                   (other.size() <= XmlNameWords::most || name == other);
        }
    };
    static constexpr size_t sizeBits = 9;

    // The slot of the name, or the empty one where it belongs.
    Slot& find(std::string_view name) {
        if (name.empty())
            return _none;
        const XmlNameWords words(name);
        const uint64_t mixed = (words.first * 31 + words.last + name.size()) * 0x9E3779B97F4A7C15;
        size_t at = mixed >> (64 - sizeBits);
        while (_slots[at].value != nullptr && !_slots[at].is(words, name))
            at = (at + 1) % _slots.size();
        return _slots[at];
    }

    std::array<Slot, size_t(1) << sizeBits> _slots;
    Slot _none; // never filled: elements have names
};

} // namespace xml2swf
