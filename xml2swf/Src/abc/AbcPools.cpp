#include "AbcPools.h"

#include "AbcNames.h"
#include "SwfInOrder.h"
#include "XmlNumbers.h"

namespace xml2swf {

using namespace libswf;

namespace {

[[noreturn]] void refuse(std::string_view text, const char* why) {
    throw AbcTextError("\"" + std::string(text.substr(0, 200)) + "\" " + why);
}

// A number without the mark of a copy.
std::string_view withoutMark(std::string_view number) { return number.substr(0, number.find('#')); }

int64_t integerIn(std::string_view text, int64_t low, int64_t high) {
    const auto value = parseInteger(withoutMark(text));
    if (!value || *value < low || *value > high)
        refuse(text, "is not a number in its range");
    return *value;
}

double doubleIn(std::string_view text) {
    const auto value = parseDouble(withoutMark(text));
    if (!value)
        refuse(text, "is not a number");
    return *value;
}

// Where a string's copy mark starts; npos without one.
size_t copyMarkIn(std::string_view text) {
    for (size_t at = 0; (at = text.find('\\', at)) != text.npos; at += 2) {
        if (at + 1 < text.size() && text[at + 1] == '=')
            return at;
    }
    return text.npos;
}

std::string bytesOf(std::string_view text) {
    auto bytes = abcBytes(text.substr(0, copyMarkIn(text)));
    if (!bytes)
        refuse(text, "has a \"\\\" before something that means nothing");
    return std::move(*bytes);
}

template <class Value>
void appendKey(std::string& key, Value value) {
    char bytes[sizeof value];
    std::memcpy(bytes, &value, sizeof value);
    key.append(bytes, sizeof value);
}

std::string keyOf(const SwfAbcNamespace& entry) {
    std::string key(1, static_cast<char>(entry.kind));
    appendKey(key, entry.name);
    return key;
}

std::string keyOf(const std::vector<uint32_t>& set) {
    std::string key;
    for (const uint32_t index : set)
        appendKey(key, index);
    return key;
}

std::string keyOf(const SwfAbcMultiname& name) {
    std::string key(1, static_cast<char>(name.kind));
    appendKey(key, name.name);
    appendKey(key, name.space);
    return key.append(keyOf(name.types));
}

std::string keyOf(const SwfAbcMetadata& metadata) {
    std::string key;
    appendKey(key, metadata.name);
    for (const SwfAbcMetadata::Item& item : metadata.items) {
        appendKey(key, item.key);
        appendKey(key, item.value);
    }
    return key;
}

template <class Values>
uint32_t lastOf(const Values& values) {
    return static_cast<uint32_t>(values.size() - 1);
}

} // namespace

AbcPools::AbcPools(SwfAbcBlock& block) : _block(block) {
    _texts[index(Pool::namespaces)].add("*", 0);
    _texts[index(Pool::namespaceSets)].add("{*}", 0);
    _texts[index(Pool::multinames)].add("*", 0);
}

uint32_t AbcPools::resolve(Pool pool, std::string_view text) {
    const uint32_t found = find(pool, text);
    if (found != none)
        return found;
    uint32_t made = 0;
    switch (pool) {
    case Pool::integers: made = makeInteger(text); break;
    case Pool::uintegers: made = makeUInteger(text); break;
    case Pool::doubles: made = makeDouble(text); break;
    case Pool::strings: made = makeString(text); break;
    case Pool::namespaces: made = makeNamespace(text); break;
    case Pool::namespaceSets: made = makeSet(text); break;
    case Pool::multinames: made = makeMultiname(text); break;
    }
    _texts[index(pool)].add(_arena.keep(text), made);
    return made;
}

// What is there already, by what it is: a text may say it in another way than the one that is written.
void AbcPools::buildKeys() {
    _hasKeys = true;
    auto add = [this](Pool pool, std::string key, size_t at) {
        _keys[index(pool)].try_emplace(std::move(key), static_cast<uint32_t>(at));
    };
    for (size_t i = 1; i < _block.namespaces.size(); ++i)
        add(Pool::namespaces, keyOf(_block.namespaces[i]), i);
    for (size_t i = 1; i < _block.namespaceSets.size(); ++i)
        add(Pool::namespaceSets, keyOf(_block.namespaceSets[i]), i);
    for (size_t i = 1; i < _block.multinames.size(); ++i)
        add(Pool::multinames, keyOf(_block.multinames[i]), i);
}

// The entry that is there; none, and the new one will be the next, when there is no such thing.
uint32_t AbcPools::findKey(Pool pool, const std::string& key, size_t nextIndex) {
    if (!_hasKeys)
        buildKeys();
    const auto [entry, isNew] = _keys[index(pool)].try_emplace(key, static_cast<uint32_t>(nextIndex));
    return isNew ? none : entry->second;
}

uint32_t AbcPools::makeString(std::string_view text) {
    const size_t mark = std::min(copyMarkIn(text), text.size());
    const std::string bytes = bytesOf(text);
    std::string written;
    appendAbcText(written, bytes, AbcTextPlace::value);
    const uint32_t found = find(Pool::strings, written.append(text.substr(mark)));
    if (found != none)
        return found;
    if (mark != text.size())
        refuse(text, "is a copy of a string that is not listed");
    _block.strings.push_back(_arena.keep(bytes));
    return lastOf(_block.strings);
}

template <class Values, class Value>
uint32_t AbcPools::makeNumber(Pool pool, Values& values, Value value, std::string_view written) {
    const uint32_t found = find(pool, written);
    if (found != none)
        return found;
    values.push_back(value);
    _texts[index(pool)].add(_arena.keep(written), lastOf(values));
    return lastOf(values);
}

uint32_t AbcPools::makeInteger(std::string_view text) {
    const auto value = static_cast<int32_t>(integerIn(text, INT32_MIN, INT32_MAX));
    return makeNumber(Pool::integers, _block.integers, value, formatInteger(value).view());
}

uint32_t AbcPools::makeUInteger(std::string_view text) {
    const auto value = static_cast<uint32_t>(integerIn(text, 0, UINT32_MAX));
    return makeNumber(Pool::uintegers, _block.uintegers, value, formatInteger(value).view());
}

uint32_t AbcPools::makeDouble(std::string_view text) {
    const double value = doubleIn(text);
    return makeNumber(Pool::doubles, _block.doubles, value, formatReal(value).view());
}

uint8_t AbcPools::kindOf(std::string_view text) const {
    const size_t open = text.find('(');
    if (open == text.npos)
        return static_cast<uint8_t>(SwfAbcNamespaceKind::package);
    for (const uint8_t kind : {0x05, 0x08, 0x16, 0x17, 0x18, 0x19, 0x1A}) {
        if (text.substr(0, open) == abcKindWord(kind))
            return kind;
    }
    refuse(text, "is of no kind of namespace");
}

SwfAbcNamespace AbcPools::parseNamespace(std::string_view text) {
    const uint8_t kind = kindOf(text);
    const size_t open = text.find('(');
    if (open != text.npos && text.back() == ')')
        return {kind, resolve(Pool::strings, text.substr(open + 1, text.size() - open - 2))};
    if (open == text.npos && text == "public")
        return {kind, resolve(Pool::strings, "")};
    if (!isAbcPackageWord(text))
        refuse(text, "is no namespace");
    return {kind, resolve(Pool::strings, text)};
}

uint32_t AbcPools::makeNamespace(std::string_view text) {
    const SwfAbcNamespace entry = parseNamespace(text);
    const uint32_t found = findKey(Pool::namespaces, keyOf(entry), _block.namespaces.size());
    if (found != none)
        return found;
    _block.namespaces.push_back(entry);
    return lastOf(_block.namespaces);
}

// Behind the part of a text that ends at one of `ends` outside of brackets; its length when none of them stands there.
static size_t endOfPart(std::string_view text, size_t at, std::string_view ends) {
    uint32_t depth = 0;
    for (; at < text.size(); ++at) {
        if (text[at] == '\\')
            ++at;
        else if (depth == 0 && ends.find(text[at]) != ends.npos)
            return at;
        else if (text[at] == '(' || text[at] == '[' || text[at] == '{')
            ++depth;
        else if ((text[at] == ')' || text[at] == ']' || text[at] == '}') && depth != 0)
            --depth;
    }
    return text.size();
}

template <class Take>
static void eachPart(std::string_view list, Take take) {
    for (size_t at = 0; at < list.size();) {
        const size_t end = endOfPart(list, at, ",");
        std::string_view part = list.substr(at, end - at);
        part.remove_prefix(std::min(part.find_first_not_of(' '), part.size()));
        take(part.substr(0, part.find_last_not_of(' ') + 1));
        at = end + 1;
    }
}

std::vector<uint32_t> AbcPools::parseSet(std::string_view members) {
    std::vector<uint32_t> set;
    eachPart(members, [&](std::string_view part) { set.push_back(resolve(Pool::namespaces, part)); });
    return set;
}

uint32_t AbcPools::makeSet(std::string_view text) {
    if (!text.starts_with('{') || !text.ends_with('}') || text.size() < 2)
        refuse(text, "is no set of namespaces");
    const std::string_view members = text.substr(1, text.size() - 2);
    const bool isWord = !members.empty() && members.find_first_of(",(") == members.npos;
    if (isWord && find(Pool::namespaces, members) == none && members != "public")
        refuse(text, "is a set of namespaces that is not there");
    std::vector<uint32_t> set = parseSet(members);
    const uint32_t found = findKey(Pool::namespaceSets, keyOf(set), _block.namespaceSets.size());
    if (found != none)
        return found;
    _block.namespaceSets.push_back(std::move(set));
    return lastOf(_block.namespaceSets);
}

// The bracket that opens the parameters of a type at the end of a name; npos when it has none.
static size_t openOfTypes(std::string_view text) {
    if (text.empty() || text.back() != ']')
        return text.npos;
    size_t open = text.npos;
    for (size_t at = 0; (at = endOfPart(text, at, "[")) < text.size(); at = endOfPart(text, at + 1, "]") + 1)
        open = at;
    if (open == text.npos || open == 0 || endOfPart(text, open + 1, "]") + 1 != text.size())
        return text.npos;
    const bool isRuntimeName = text.substr(open) == "[]" && text.substr(0, open).ends_with("::");
    return isRuntimeName ? text.npos : open;
}

// Where the number of a copy stands at the end of a name; its length when there is none.
static size_t markOf(std::string_view text) {
    const size_t mark = text.find_last_not_of("0123456789");
    const bool isMark = mark != text.npos && mark + 1 < text.size() && text[mark] == '#' && mark != 0;
    if (!isMark)
        return text.size();
    size_t escapes = 0;
    while (escapes < mark && text[mark - 1 - escapes] == '\\')
        ++escapes;
    return escapes % 2 == 0 ? mark : text.size();
}

// A name's own part, in which marks have a "\\" before them.
static std::string_view checkedLocal(std::string_view text, std::string_view local) {
    for (size_t at = 0; at < local.size(); ++at) {
        if (local[at] == '\\')
            ++at;
        else if (std::string_view("()[]{}#@*,:").find(local[at]) != std::string_view::npos)
            refuse(text, "has a mark without a \"\\\" before it, or is not listed");
    }
    return local;
}

// `resolve` gives the index of a text in another pool, or in this one.
template <class Resolve>
static SwfAbcMultiname parseMultiname(std::string_view text, Resolve resolve) {
    using Kind = SwfAbcMultinameKind;
    using Pool = SwfAbcBlock::Pool;
    if (text.empty())
        refuse(text, "is no name");
    SwfAbcMultiname name;
    if (const size_t open = openOfTypes(text); open != text.npos) {
        name.kind = Kind::typeName;
        name.name = resolve(Pool::multinames, text.substr(0, open));
        eachPart(text.substr(open + 1, text.size() - open - 2),
                 [&](std::string_view part) { name.types.push_back(resolve(Pool::multinames, part)); });
        return name;
    }
    std::string_view rest = text;
    const bool isAttribute = rest.starts_with('@');
    rest.remove_prefix(isAttribute);
    // What stands before "::" outside of brackets says where the name is looked for.
    const size_t colons = endOfPart(rest, 0, ":");
    const bool hasSpace = rest.substr(colons).starts_with("::");
    const std::string_view space = hasSpace ? rest.substr(0, colons) : "public";
    const std::string_view local = hasSpace ? rest.substr(colons + 2) : rest;
    const bool isRuntimeName = local == "[]";
    if (space == "[]") {
        name.kind = isRuntimeName ? (isAttribute ? Kind::rtqNameLA : Kind::rtqNameL)
                                  : (isAttribute ? Kind::rtqNameA : Kind::rtqName);
    } else if (space.starts_with('{') && space.ends_with('}')) {
        name.kind = isRuntimeName ? (isAttribute ? Kind::multinameLA : Kind::multinameL)
                                  : (isAttribute ? Kind::multinameA : Kind::multiname);
        name.space = resolve(Pool::namespaceSets, space);
    } else if (isRuntimeName) {
        refuse(text, "takes its name from the stack, but not out of a set of namespaces");
    } else {
        name.kind = isAttribute ? Kind::qNameA : Kind::qName;
        name.space = resolve(Pool::namespaces, space);
    }
    if (!isRuntimeName && local != "*")
        name.name = resolve(Pool::strings, checkedLocal(text, local));
    return name;
}

uint32_t AbcPools::makeMultiname(std::string_view text) {
    struct Level {
        uint32_t& depth;
        explicit Level(uint32_t& d) : depth(d) { ++depth; }
        ~Level() { --depth; }
    } level(_depth);
    constexpr uint32_t deepest = 32;
    if (_depth > deepest)
        refuse(text, "is nested too deep");
    SwfAbcMultiname name =
        parseMultiname(text, [this](Pool pool, std::string_view part) { return resolve(pool, part); });
    const uint32_t found = findKey(Pool::multinames, keyOf(name), _block.multinames.size());
    if (found != none)
        return found;
    _block.multinames.push_back(std::move(name));
    return lastOf(_block.multinames);
}

void AbcPools::list(const AbcListing& entries, size_t& place, uint32_t threads) {
    std::array<size_t, SwfAbcBlock::pools> places{};
    std::array<AbcArena, SwfAbcBlock::pools> arenas;
    workInOrder({SwfAbcBlock::pools,
                 [&](size_t i) { listFirst(static_cast<Pool>(i), entries[i], places[i], arenas[i]); },
                 [&](size_t i) {
                     place = places[i];
                     _arena.join(std::move(arenas[i]));
                 }},
                threads);
    // Entries refer to others by their texts, wherever these stand.
    for (const Pool pool : {Pool::namespaces, Pool::namespaceSets}) {
        uint32_t next = 0;
        for (const AbcListed& entry : entries[index(pool)]) {
            place = entry.offset;
            listParts(pool, entry, ++next);
        }
    }
    // Mostly all that a name refers to is there, and nothing need be added. What is not goes one after the other.
    constexpr size_t some = 4096;
    const std::vector<AbcListed>& names = entries[index(Pool::multinames)];
    std::vector<size_t> known((names.size() + some - 1) / some);
    const auto end = [&](size_t i) { return std::min((i + 1) * some, names.size()); };
    workInOrder({known.size(), [&](size_t i) { known[i] = listKnown(names, i * some, end(i)); }, [](size_t) {}},
                threads);
    for (size_t i = 0; i < known.size(); ++i) {
        for (size_t at = known[i]; at < end(i); ++at) {
            place = names[at].offset;
            listParts(Pool::multinames, names[at], static_cast<uint32_t>(at + 1));
        }
    }
    _hasKeys = false;
    for (auto& keys : _keys)
        keys.clear();
}

void AbcPools::listFirst(Pool pool, const std::vector<AbcListed>& entries, size_t& place, AbcArena& arena) {
    constexpr size_t ahead = 8;
    AbcTextTable& texts = _texts[index(pool)];
    texts.reserve(entries.size() + 1);
    for (size_t i = 0; i < entries.size(); ++i) {
        if (i + ahead < entries.size())
            texts.prefetch(entries[i + ahead].text);
        place = entries[i].offset;
        listFirst(pool, entries[i], arena);
    }
}

void AbcPools::listFirst(Pool pool, const AbcListed& entry, AbcArena& arena) {
    size_t at = 0;
    auto put = [&at](auto& values, auto value) {
        values.push_back(std::move(value));
        at = values.size() - 1;
    };
    switch (pool) {
    case Pool::integers: put(_block.integers, static_cast<int32_t>(integerIn(entry.text, INT32_MIN, INT32_MAX))); break;
    case Pool::uintegers: put(_block.uintegers, static_cast<uint32_t>(integerIn(entry.text, 0, UINT32_MAX))); break;
    case Pool::doubles: put(_block.doubles, doubleIn(entry.text)); break;
    case Pool::strings: {
        const bool isPlain = entry.text.find('\\') == entry.text.npos;
        put(_block.strings, isPlain ? entry.text : arena.keep(bytesOf(entry.text)));
        break;
    }
    case Pool::namespaces: put(_block.namespaces, SwfAbcNamespace()); break;
    case Pool::namespaceSets: put(_block.namespaceSets, std::vector<uint32_t>()); break;
    case Pool::multinames: put(_block.multinames, SwfAbcMultiname()); break;
    }
    _texts[index(pool)].add(entry.text, static_cast<uint32_t>(at)); // the first of two equal ones counts
}

static std::string_view nameOf(const AbcListed& entry) { return entry.text.substr(0, markOf(entry.text)); }

void AbcPools::listParts(Pool pool, const AbcListed& entry, uint32_t at) {
    if (pool == Pool::multinames) {
        SwfAbcMultiname name =
            parseMultiname(nameOf(entry), [this](Pool other, std::string_view part) { return resolve(other, part); });
        _block.multinames[at] = std::move(name);
    } else if (pool == Pool::namespaceSets) {
        std::vector<uint32_t> set = parseSet(entry.detail);
        _block.namespaceSets[at] = std::move(set);
    } else if (entry.isUnnamed) {
        _block.namespaces[at] = {kindOf(entry.text), 0};
    } else if (entry.hasDetail) {
        _block.namespaces[at] = {kindOf(entry.text), resolve(Pool::strings, entry.detail)};
    } else {
        _block.namespaces[at] = parseNamespace(entry.text);
    }
}

// [any thread] Names from `from` on, as far as all that they refer to is there. Gives the first one that was left.
size_t AbcPools::listKnown(const std::vector<AbcListed>& entries, size_t from, size_t to) {
    bool isKnown = true;
    const auto look = [&](Pool pool, std::string_view text) {
        const uint32_t found = find(pool, text);
        isKnown &= found != none;
        return found;
    };
    for (; from < to; ++from) {
        try {
            SwfAbcMultiname name = parseMultiname(nameOf(entries[from]), look);
            if (!isKnown)
                break;
            _block.multinames[from + 1] = std::move(name);
        } catch (const AbcTextError&) {
            break; // told in its turn
        }
    }
    return from;
}

uint32_t AbcPools::metadata(SwfAbcMetadata metadata, uint32_t copy) {
    std::vector<uint32_t>& copies = _metadata[keyOf(metadata)];
    if (copy <= copies.size())
        return copies[copy - 1];
    copies.push_back(static_cast<uint32_t>(_block.metadata.size()));
    _block.metadata.push_back(std::move(metadata));
    return copies.back();
}

} // namespace xml2swf
