// What the entries of a block's pools are called in XML.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "AbcText.h"
#include "SwfAbc.h"

namespace xml2swf {

/// Texts of all entries, each one different from all others of its pool, as they stand in attributes. Those of index 0
/// are empty; of names and namespaces they are "*".
class AbcNames {
public:
    /// Throws SwfException code 3 for a block whose pools cannot be named: an index out of range, a type name in
    /// itself, names that take much more room than its `bytes`.
    AbcNames(const libswf::SwfAbcBlock& block, size_t bytes);
    AbcNames(const AbcNames&) = delete;
    AbcNames& operator=(const AbcNames&) = delete;

    using Texts = std::vector<std::string_view>;
    Texts strings, integers, uintegers, doubles, namespaces, namespaceSets, multinames;
    /// Namespaces whose text does not say which string they are called by.
    std::vector<bool> isLabelled;

private:
    friend class AbcNaming;
    AbcArena _arena;
};

/// The word before the brackets of a namespace's text: "private" of "private(Test)".
std::string_view abcKindWord(uint8_t kind);
/// Whether a package can stand in text by its name alone.
bool isAbcPackageWord(std::string_view text);

/// "pkg:Name" for the name of a class or script's member; empty for names of other kinds and bad indices.
std::string abcPlainName(const libswf::SwfAbcBlock& block, uint32_t multiname);

/// For each private namespace without a name of its own whom it belongs to; empty where that cannot be told.
std::vector<std::string> abcOwners(const libswf::SwfAbcBlock& block);

} // namespace xml2swf
