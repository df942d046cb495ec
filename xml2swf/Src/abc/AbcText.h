// Strings of blocks of ActionScript 3 as text, and finding things by their text.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "AbcStrings.h"
#include "TextHash.h"

namespace xml2swf {

/// Whether a text holds something that is written as a reference in an attribute's value.
bool needsReferences(std::string_view text);

/// Texts that stay where they are as long as it lives.
class AbcArena {
public:
    std::string_view keep(std::string_view text) {
        if (text.size() > _left)
            makeRoom(text.size());
        char* place = _next;
        if (!text.empty())
            std::memcpy(place, text.data(), text.size());
        _next += text.size();
        _left -= text.size();
        return {place, text.size()};
    }
    /// Takes over the texts of another one.
    void join(AbcArena&& other) {
        for (auto& block : other._blocks)
            _blocks.push_back(std::move(block));
        other = AbcArena();
    }

private:
    void makeRoom(size_t size) {
        constexpr size_t least = 1024, most = 64 * 1024;
        const size_t usual = std::min(most, least << std::min<size_t>(_blocks.size(), 6));
        const size_t room = size > usual / 4 ? size : usual;
        _blocks.emplace_back(new char[room]);
        _next = _blocks.back().get();
        _left = room;
    }

    std::vector<std::unique_ptr<char[]>> _blocks;
    char* _next = nullptr;
    size_t _left = 0;
};

/// Numbers by text. Texts are not copied.
class AbcTextTable {
public:
    static constexpr uint32_t none = UINT32_MAX;

    uint32_t find(std::string_view text) const {
        const uint32_t entry = entryOf(text, hashOfText(text));
        return entry == none ? none : _entries[entry].value;
    }
    /// The same. Among many, looks first around the text that was found last, `near`: what is used together was mostly
    /// added together, and searching anywhere waits for memory.
    uint32_t find(std::string_view text, uint32_t& near) const {
        constexpr uint32_t many = 32 * 1024, reach = 32;
        const uint32_t hash = hashOfText(text);
        if (_entries.size() >= many) {
            const uint32_t first =
                std::min(near - std::min(near, reach), static_cast<uint32_t>(_entries.size()) - 2 * reach);
            uint32_t same = 0; // all are compared, so that it is done at once
            for (uint32_t i = 0; i < 2 * reach; ++i)
                same += _hashes[first + i] == hash;
            for (uint32_t i = first; same != 0 && i < first + 2 * reach; ++i) {
                if (_hashes[i] == hash && _entries[i].text == text)
                    return _entries[near = i].value;
            }
        }
        const uint32_t entry = entryOf(text, hash);
        if (entry == none)
            return none;
        near = entry;
        return _entries[entry].value;
    }
    /// False when the text is there already: its number stays.
    bool add(std::string_view text, uint32_t value) {
        if (2 * (_entries.size() + 1) > _slots.size())
            grow(_entries.size() + 1);
        const uint32_t hash = hashOfText(text);
        size_t at = hash & _mask;
        for (; _slots[at].entry != none; at = (at + 1) & _mask) {
            if (_slots[at].hash == hash && _entries[_slots[at].entry].text == text)
                return false;
        }
        _slots[at] = {hash, static_cast<uint32_t>(_entries.size())};
        _entries.push_back({text, value});
        _hashes.push_back(hash);
        return true;
    }
    /// Asks for the memory that a search for the text will look at.
    void prefetch(std::string_view text) const {
        if (!_slots.empty())
            __builtin_prefetch(&_slots[hashOfText(text) & _mask]);
    }
    void clear() {
        constexpr size_t kept = 4096; // more would take longer to clear than to make again
        if (_slots.size() > kept)
            _slots.clear();
        else if (!_entries.empty())
            std::fill(_slots.begin(), _slots.end(), Slot());
        _entries.clear();
        _hashes.clear();
    }
    void reserve(size_t count) {
        _entries.reserve(count);
        _hashes.reserve(count);
        if (2 * count > _slots.size())
            grow(count);
    }

private:
    // Small, so that a search among many mostly waits for memory once.
    struct Slot {
        uint32_t hash = 0;
        uint32_t entry = none;
    };
    struct Entry {
        std::string_view text;
        uint32_t value;
    };

    uint32_t entryOf(std::string_view text, uint32_t hash) const {
        if (_slots.empty())
            return none;
        for (size_t at = hash & _mask;; at = (at + 1) & _mask) {
            const Slot slot = _slots[at];
            if (slot.entry == none || (slot.hash == hash && _entries[slot.entry].text == text))
                return slot.entry;
        }
    }
    void grow(size_t count) {
        size_t size = 64;
        while (size < 3 * count)
            size *= 2;
        std::vector<Slot> old(size);
        old.swap(_slots);
        _mask = size - 1;
        for (const Slot& slot : old) {
            if (slot.entry == none)
                continue;
            size_t at = slot.hash & _mask;
            while (_slots[at].entry != none)
                at = (at + 1) & _mask;
            _slots[at] = slot;
        }
    }

    std::vector<Slot> _slots;
    std::vector<Entry> _entries;
    std::vector<uint32_t> _hashes; // of the entries
    size_t _mask = 0;
};

} // namespace xml2swf
