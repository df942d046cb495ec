// The classes and methods of a tag with code of ActionScript 3, as a tree.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace zelk {

/// Knows only places, in 20 bytes an entry; names are read from the text when they are needed.
class CodeOutline {
public:
    /// What holds classes, and methods that are in none.
    static constexpr uint32_t top = UINT32_MAX;

    CodeOutline() = default;
    /// Of the tag from `start` to `end`. Takes time by its size, some 10 ms for 50 MB.
    CodeOutline(std::string_view text, size_t start, size_t end);

    uint32_t count() const { return static_cast<uint32_t>(_entries.size()); }
    size_t start(uint32_t entry) const { return _entries[entry].start; } ///< the element's "<"
    /// The class around a method, or `top`.
    uint32_t parent(uint32_t entry) const { return _entries[entry].parent; }
    uint32_t row(uint32_t entry) const { return _entries[entry].row; }
    bool isClass(uint32_t entry) const { return _entries[entry].isClass; }
    uint32_t childCount(uint32_t parent) const {
        return parent == top ? static_cast<uint32_t>(_top.size()) : _entries[parent].childCount;
    }
    /// The methods of a class stand behind it, in the order of the text.
    uint32_t child(uint32_t parent, uint32_t row) const { return parent == top ? _top[row] : parent + 1 + row; }

private:
    struct Entry { // texts have at most 1 GiB
        uint32_t start, parent, row, childCount;
        bool isClass;
    };

    void add(size_t start, uint32_t parent, bool isClass);

    std::vector<Entry> _entries;
    std::vector<uint32_t> _top;
};

/// Whether the tag that starts there shows its code, so that it may have an outline. Looks only at its beginning.
bool showsCode(std::string_view text, size_t start, size_t end);

} // namespace zelk
