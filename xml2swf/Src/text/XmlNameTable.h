// Finding an element's name among many.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace xml2swf {

/// The first 16 bytes of a name as words, with zeros behind a shorter one.
struct XmlNameWords {
    static constexpr size_t most = 16;

    uint64_t first = 0, second = 0;

    XmlNameWords() = default;
    explicit XmlNameWords(std::string_view name) { std::memcpy(this, name.data(), std::min(name.size(), most)); }
    /// Of a name with at least 16 bytes from its start on that can be read: no branch depends on its length.
    static XmlNameWords inText(std::string_view name) {
        static constexpr auto masks = [] {
            std::array<uint64_t, most + most / 2 + 1> result{}; // [i]: of the second word of a name of i bytes
            for (size_t i = 9; i < result.size(); ++i)
                result[i] = i >= most ? UINT64_MAX : (uint64_t(1) << 8 * (i - 8)) - 1;
            return result;
        }();
        const size_t length = std::min(name.size(), most);
        XmlNameWords words;
        std::memcpy(&words, name.data(), most);
        words.first &= masks[length + 8];
        words.second &= masks[length];
        return words;
    }
    bool operator==(const XmlNameWords&) const = default;
};

/// Up to 256 names and what they stand for, of which the first of two equal ones counts. Names are not copied.
template <class Value>
class XmlNameTable {
public:
    void add(std::string_view name, const Value* value) {
        const XmlNameWords words(name);
        Slot& slot = slotOf(name, words);
        if (slot.value == nullptr)
            slot = {words, name, value};
    }
    /// Null for a name that is not in the table.
    const Value* find(std::string_view name, const XmlNameWords& words) const {
        return const_cast<XmlNameTable*>(this)->slotOf(name, words).value;
    }

private:
    struct Slot {
        XmlNameWords words;
        std::string_view name;
        const Value* value = nullptr;

        bool is(const XmlNameWords& otherWords, std::string_view other) const {
            return name.size() == other.size() && words == otherWords &&
                   (other.size() <= XmlNameWords::most || name == other);
        }
    };
    static constexpr size_t sizeBits = 9;

    // The slot of the name, or the empty one where it belongs.
    Slot& slotOf(std::string_view name, const XmlNameWords& words) {
        size_t at = (words.first * 31 + words.second) * 0x9E3779B97F4A7C15 >> (64 - sizeBits);
        while (_slots[at].value != nullptr && !_slots[at].is(words, name))
            at = (at + 1) % _slots.size();
        return _slots[at];
    }

    std::array<Slot, size_t(1) << sizeBits> _slots;
};

} // namespace xml2swf
