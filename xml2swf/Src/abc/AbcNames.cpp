#include "AbcNames.h"

#include <algorithm>

#include "SwfException.h"
#include "XmlNumbers.h"

namespace xml2swf {

using namespace libswf;

std::string_view abcKindWord(uint8_t kind) {
    switch (static_cast<SwfAbcNamespaceKind>(kind)) {
    case SwfAbcNamespaceKind::privateNamespace: return "private";
    case SwfAbcNamespaceKind::plain: return "namespace";
    case SwfAbcNamespaceKind::package: return "package";
    case SwfAbcNamespaceKind::packageInternal: return "internal";
    case SwfAbcNamespaceKind::protectedNamespace: return "protected";
    case SwfAbcNamespaceKind::explicitNamespace: return "explicit";
    default: return "staticProtected";
    }
}

bool isAbcPackageWord(std::string_view text) {
    for (const std::string_view word : {"", "public", "true", "false", "null", "undefined"}) {
        if (text == word)
            return false;
    }
    for (const char c : text) {
        const bool isPlain = (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '.' ||
                             c == '_' || c == '$' || c == '-';
        if (!isPlain)
            return false;
    }
    return true;
}

class AbcNaming {
public:
    AbcNaming(const SwfAbcBlock& block, AbcNames& names, size_t bytes)
        : _block(block), _names(names), _room(bytes * 24 + 65536) {}

    void nameAll() {
        nameNumbers(_block.integers, _names.integers, [](int32_t value) { return formatInteger(value); });
        nameNumbers(_block.uintegers, _names.uintegers, [](uint32_t value) { return formatInteger(value); });
        nameNumbers(_block.doubles, _names.doubles, [](double value) { return formatReal(value); });
        nameStrings();
        nameNamespaces();
        nameSets();
        nameMultinames();
        escape();
    }

private:
    using Texts = AbcNames::Texts;

    // The text, or with a number behind it when others have it already.
    std::string_view unique(AbcTextTable& table, std::string text, std::string_view mark, std::string_view end = {}) {
        if (text.size() > _room)
            throw SwfException(SwfError::badData, "its names are too long");
        const size_t length = text.size();
        text += end;
        std::string_view kept = _names._arena.keep(text);
        uint32_t* copies = nullptr;
        for (uint32_t copy = 2; !table.add(kept, static_cast<uint32_t>(_copies.size())); ++copy) {
            if (copies == nullptr)
                copies = &_copies[table.find(kept)]; // the next free number; the first of many need not be tried again
            copy = std::max(copy, *copies);
            *copies = copy + 1;
            text.resize(length);
            text.append(mark).append(formatInteger(copy).view()).append(end);
            kept = _names._arena.keep(text);
        }
        _copies.push_back(0);
        _room -= std::min(_room, kept.size());
        return kept;
    }

    template <class Values, class Format>
    void nameNumbers(const Values& values, Texts& texts, Format format) {
        AbcTextTable table = fresh(values.size());
        texts.resize(1);
        for (size_t i = 1; i < values.size(); ++i)
            texts.push_back(unique(table, std::string(format(values[i]).view()), "#"));
    }

    AbcTextTable fresh(size_t count) {
        AbcTextTable table;
        table.reserve(count);
        _copies.clear();
        return table;
    }

    void nameStrings() {
        AbcTextTable table = fresh(_block.strings.size());
        _names.strings.resize(1);
        _copyMarks.resize(1);
        for (size_t i = 1; i < _block.strings.size(); ++i) {
            std::string text;
            appendAbcText(text, _block.strings[i], AbcTextPlace::value);
            const size_t length = text.size();
            _names.strings.push_back(unique(table, std::move(text), "\\="));
            _copyMarks.push_back(_names.strings.back().substr(length));
        }
    }

    std::string_view stringOf(uint32_t index, const char* what) const {
        if (index >= _block.strings.size())
            throw SwfException(SwfError::badData, std::string(what) + " names a string that is not there");
        return _block.strings[index];
    }
    void nameNamespaces() {
        const std::vector<std::string> owners = abcOwners(_block);
        AbcTextTable table = fresh(_block.namespaces.size());
        _names.namespaces.assign(1, "*");
        _names.isLabelled.assign(1, false);
        table.add("*", 0);
        _copies.push_back(0);
        for (size_t i = 1; i < _block.namespaces.size(); ++i) {
            const SwfAbcNamespace& entry = _block.namespaces[i];
            const std::string_view name = stringOf(entry.name, "a namespace");
            const bool isPackage = entry.kind == uint8_t(SwfAbcNamespaceKind::package);
            std::string text;
            if (isPackage && name.empty()) {
                text = "public";
            } else if (isPackage && isAbcPackageWord(name)) {
                text = name;
            } else {
                text.append(abcKindWord(entry.kind)).append("(");
                appendAbcText(text, owners[i].empty() ? name : owners[i], AbcTextPlace::inside);
                text += ')';
            }
            const size_t length = text.size();
            const std::string_view kept = unique(table, std::move(text), "#");
            _names.namespaces.push_back(kept);
            _names.isLabelled.push_back(kept.size() != length || !owners[i].empty() || entry.name == 0 ||
                                        !_copyMarks[entry.name].empty());
        }
    }

    std::string_view spaceOf(uint32_t index) const {
        if (index >= _names.namespaces.size())
            throw SwfException(SwfError::badData, "a name or a set has a namespace that is not there");
        return _names.namespaces[index];
    }

    // What is between the brackets of a namespace's text.
    static std::string_view inside(std::string_view space) {
        const size_t open = space.find('('), close = space.rfind(')');
        return open == space.npos || close == space.npos ? space.substr(0, space.find('#'))
                                                         : space.substr(open + 1, close - open - 1);
    }

    // A set is called by its only member, or by whom its private or protected one belongs to, or its package.
    std::string_view setLabel(const std::vector<uint32_t>& set) const {
        if (set.size() == 1)
            return spaceOf(set[0]);
        std::string_view label;
        int best = 0;
        for (const uint32_t index : set) {
            const std::string_view space = spaceOf(index);
            const auto kind = static_cast<SwfAbcNamespaceKind>(_block.namespaces[index].kind);
            const int rank = index == 0                                        ? 0
                             : kind == SwfAbcNamespaceKind::protectedNamespace ? 4
                             : kind == SwfAbcNamespaceKind::privateNamespace   ? 3
                             : kind == SwfAbcNamespaceKind::packageInternal    ? 2
                                                                               : 1;
            if (rank > best) {
                best = rank;
                label = inside(space);
            }
        }
        return label;
    }

    void nameSets() {
        AbcTextTable table = fresh(_block.namespaceSets.size());
        _names.namespaceSets.assign(1, "{*}");
        table.add("{*}", 0);
        _copies.push_back(0);
        for (size_t i = 1; i < _block.namespaceSets.size(); ++i) {
            std::string text("{");
            text += setLabel(_block.namespaceSets[i]);
            _names.namespaceSets.push_back(unique(table, std::move(text), "#", "}"));
        }
    }

    void nameMultinames() {
        AbcTextTable table = fresh(_block.multinames.size());
        _names.multinames.assign(_block.multinames.size(), {});
        _names.multinames[0] = "*";
        table.add("*", 0);
        _copies.push_back(0);
        bool hasTypes = false;
        for (size_t i = 1; i < _block.multinames.size(); ++i) {
            const SwfAbcMultiname& entry = _block.multinames[i];
            if (entry.kind == SwfAbcMultinameKind::typeName)
                hasTypes = true;
            else
                _names.multinames[i] = unique(table, textOf(entry), "#");
        }
        for (size_t i = 1; hasTypes && i < _block.multinames.size(); ++i)
            nameType(table, static_cast<uint32_t>(i), 0);
    }

    std::string textOf(const SwfAbcMultiname& entry) const {
        std::string text;
        if (entry.isAttribute())
            text += '@';
        if (entry.hasSet()) {
            if (entry.space >= _names.namespaceSets.size())
                throw SwfException(SwfError::badData, "a name has a set of namespaces that is not there");
            text.append(_names.namespaceSets[entry.space]).append("::");
        } else if (!entry.hasSpace()) {
            text += "[]::";
        } else if (spaceOf(entry.space) != "public") {
            text.append(spaceOf(entry.space)).append("::");
        }
        if (!entry.hasName())
            return text += "[]";
        const std::string_view name = stringOf(entry.name, "a name");
        if (text.empty() && (entry.name == 0 || name.empty()))
            text += "public::";
        if (entry.name == 0)
            return text += '*';
        appendLocal(text, name);
        return text.append(_copyMarks[entry.name]);
    }

    // A space at an end of a name is written as its byte: in a list of names those around the commas do not count.
    static void appendLocal(std::string& text, std::string_view name) {
        const size_t start = text.size();
        appendAbcText(text, name, AbcTextPlace::name);
        if (name.starts_with(' '))
            text.replace(start, 1, "\\x20");
        if (text.ends_with(' '))
            text.replace(text.size() - 1, 1, "\\x20");
    }

    // A type with parameters has the texts of others in it, which may come later in the pool.
    void nameType(AbcTextTable& table, uint32_t index, uint32_t depth) {
        constexpr uint32_t deepest = 16;
        if (index >= _names.multinames.size())
            throw SwfException(SwfError::badData, "a type has a name that is not there");
        if (_names.multinames[index].data() != nullptr)
            return;
        if (depth > deepest)
            throw SwfException(SwfError::badData, "types are nested too deep, or in themselves");
        const SwfAbcMultiname& entry = _block.multinames[index];
        nameType(table, entry.name, depth + 1);
        std::string text(_names.multinames[entry.name]);
        if (entry.types.empty() && text.ends_with("::")) // It would read like a name that comes from the stack.
            throw SwfException(SwfError::badData, "a type without parameters is of a name without characters");
        const char* separator = "[";
        for (const uint32_t type : entry.types) {
            nameType(table, type, depth + 1);
            if (text.size() > _room)
                break;
            text.append(separator).append(_names.multinames[type]);
            separator = ", ";
        }
        text += entry.types.empty() ? "[]" : "]";
        _names.multinames[index] = unique(table, std::move(text), "#");
    }

    // From here on the texts are those of attributes.
    void escape() {
        for (Texts* texts : {&_names.strings, &_names.namespaces, &_names.namespaceSets, &_names.multinames}) {
            for (std::string_view& text : *texts) {
                if (!needsReferences(text))
                    continue;
                std::string escaped;
                appendAttributeText(escaped, text);
                text = _names._arena.keep(escaped);
            }
        }
    }

    const SwfAbcBlock& _block;
    AbcNames& _names;
    size_t _room;                  // for characters of all names together
    Texts _copyMarks;              // by string: what tells it from others of its text
    std::vector<uint32_t> _copies; // by entry of the pool: numbers up to this one stand behind its text
};

AbcNames::AbcNames(const SwfAbcBlock& block, size_t bytes) { AbcNaming(block, *this, bytes).nameAll(); }

} // namespace xml2swf
