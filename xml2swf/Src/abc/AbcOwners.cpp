// Whom private namespaces without a name belong to.
#include <unordered_map>

#include "AbcNames.h"

namespace xml2swf {

using namespace libswf;

namespace {

// A string, if it can be the name of a class or package: a long one, named again and again, would take too long.
std::string_view textOf(const SwfAbcBlock& block, uint32_t string) {
    constexpr size_t longest = 512;
    const std::string_view text = string < block.strings.size() ? block.strings[string] : std::string_view();
    return text.size() <= longest ? text : std::string_view();
}

class Owners {
public:
    explicit Owners(const SwfAbcBlock& block) : _block(block), _owners(block.namespaces.size()) {}

    std::vector<std::string> find() {
        for (const SwfAbcClass& entry : _block.classes) {
            const std::string name = abcPlainName(_block, entry.name);
            _hasPrivate.try_emplace(name, false);
            take(entry.traits, name);
            take(entry.staticTraits, name);
        }
        for (const SwfAbcScript& script : _block.scripts) {
            if (!script.traits.empty())
                take(script.traits, "script " + abcPlainName(_block, script.traits[0].name));
        }
        for (const std::vector<uint32_t>& set : _block.namespaceSets)
            takeSet(set);
        return std::move(_owners);
    }

private:
    bool isOpen(uint32_t space) const {
        return space != 0 && space < _owners.size() && _owners[space].empty() &&
               _block.namespaces[space].kind == uint8_t(SwfAbcNamespaceKind::privateNamespace) &&
               isUnnamed(_block.namespaces[space].name);
    }

    bool isUnnamed(uint32_t string) const { return string < _block.strings.size() && _block.strings[string].empty(); }

    void give(uint32_t space, const std::string& owner) {
        _owners[space] = owner;
        const auto found = _hasPrivate.find(owner);
        if (found != _hasPrivate.end())
            found->second = true;
    }

    // Members stand in the private namespace of their class, and what is private to a file in its scripts.
    void take(const SwfAbcTraits& traits, const std::string& owner) {
        for (const SwfAbcTrait& trait : traits) {
            if (trait.name < _block.multinames.size() && _block.multinames[trait.name].hasSpace() &&
                isOpen(_block.multinames[trait.name].space))
                give(_block.multinames[trait.name].space, owner);
        }
    }

    // What is looked up together with a class's protected members is its own, then its file's.
    void takeSet(const std::vector<uint32_t>& set) {
        const std::string owner = ownerOf(set);
        for (const uint32_t space : set) {
            if (!isOpen(space))
                continue;
            const auto found = _hasPrivate.find(owner);
            const bool isOwn = found != _hasPrivate.end() && !found->second;
            give(space, isOwn ? owner : owner.empty() ? std::string() : "script " + owner);
        }
    }

    std::string ownerOf(const std::vector<uint32_t>& set) const {
        std::string package;
        for (const uint32_t space : set) {
            if (space >= _block.namespaces.size())
                continue;
            const SwfAbcNamespace& entry = _block.namespaces[space];
            const std::string name(textOf(_block, entry.name));
            if (entry.kind == uint8_t(SwfAbcNamespaceKind::protectedNamespace) && _hasPrivate.count(name) != 0)
                return name;
            if (entry.kind == uint8_t(SwfAbcNamespaceKind::packageInternal))
                package = name;
        }
        return package;
    }

    const SwfAbcBlock& _block;
    std::vector<std::string> _owners;
    std::unordered_map<std::string, bool> _hasPrivate; // by class: its private namespace is known
};

} // namespace

std::string abcPlainName(const SwfAbcBlock& block, uint32_t multiname) {
    if (multiname == 0 || multiname >= block.multinames.size())
        return {};
    const SwfAbcMultiname& name = block.multinames[multiname];
    if (!name.hasName())
        return {};
    std::string result;
    if (name.hasSpace() && name.space != 0 && name.space < block.namespaces.size())
        result = textOf(block, block.namespaces[name.space].name);
    if (!result.empty())
        result += ':';
    return result.append(textOf(block, name.name));
}

std::vector<std::string> abcOwners(const SwfAbcBlock& block) { return Owners(block).find(); }

} // namespace xml2swf
