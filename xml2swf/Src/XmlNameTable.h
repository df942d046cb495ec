// Finding an element's name among many.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace xml2swf {

/// Up to 256 names and what they stand for, of which the first of two equal ones counts. Names are not copied.
template <class Value>
class XmlNameTable {
public:
    void add(std::string_view name, const Value* value) {
        Slot& slot = find(name);
        if (slot.value == nullptr)
            slot = {name, value};
    }
    /// Null for a name that is not in the table.
    const Value* operator[](std::string_view name) const { return const_cast<XmlNameTable*>(this)->find(name).value; }

private:
    struct Slot {
        std::string_view name;
        const Value* value = nullptr;
    };
    static constexpr size_t size = 512; // a power of two

    // The slot of the name, or the empty one where it belongs.
    Slot& find(std::string_view name) {
        if (name.empty())
            return _none;
        const size_t middle = static_cast<uint8_t>(name[name.size() / 2]);
        size_t at = name.size() * 151 + static_cast<uint8_t>(name.front()) * 37 + middle * 89 +
                    static_cast<uint8_t>(name.back()) * 7;
        for (at %= size; _slots[at].value != nullptr && _slots[at].name != name;)
            at = (at + 1) % size;
        return _slots[at];
    }

    std::array<Slot, size> _slots;
    Slot _none; // never filled: elements have names
};

} // namespace xml2swf
