// What is read of one part of a block's text, before it is known what its names stand for.
#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include "AbcPools.h"
#include "SwfAbcCode.h"
#include "SwfWarnings.h"

namespace xml2swf {

/// Something by its text, for which there is no index yet: what no pool lists, methods, classes, exceptions.
struct AbcReference {
    enum class Kind : uint8_t { entry, method, classIndex, caught };

    Kind kind = Kind::entry;
    AbcPools::Pool pool = AbcPools::Pool::multinames; ///< of an entry
    std::string_view text;
    std::string_view element, attribute; ///< where it stands
    size_t offset = 0;                   ///< of the element in the document
};

/// An index with this bit is the number of a reference of its part.
constexpr uint32_t abcIsReference = 0x80000000;
/// The kind of a value whose index is a reference: that of the namespace that it turns out to be.
constexpr uint8_t abcKindOfNamespace = 0xFF;
/// What has no place of its own comes behind the one before it.
constexpr uint32_t abcNoPlace = UINT32_MAX;

struct AbcMethodText {
    libswf::SwfAbcMethod method;
    uint32_t place = abcNoPlace;
    std::string_view id;
    size_t offset = 0; ///< of its element in the document
};

/// Where an operand is missing in code, because it is not known how many bytes it takes.
struct AbcMissingOperand {
    uint32_t at;    ///< in the code without it
    uint32_t value; ///< may be a reference
};

/// 3 bytes that lead to a place, both in code without its missing operands.
struct AbcBranch {
    uint32_t at, base, target;
    size_t offset; ///< of its element in the document
};

struct AbcBodyText {
    libswf::SwfAbcBody body; ///< its method by number in the part; exceptions in code without missing operands
    uint32_t place = abcNoPlace;
    size_t codeStart = 0, codeEnd = 0; ///< in the part's code
    size_t offset = 0;                 ///< of its element in the document
    bool isBytes = false;
    bool isMeasured = false;
    libswf::SwfAbcLimits needed;
    bool givesStack = false, givesLocals = false, givesScopes = false; ///< the text says these limits
    std::vector<AbcMissingOperand> operands;
    std::vector<AbcBranch> branches; ///< only with missing operands: the others are in the code
};

struct AbcMetadataText {
    libswf::SwfAbcMetadata metadata;
    uint32_t copy = 1;
};

/// Members of classes and scripts: method numbers are those of the part, metadata too.
struct AbcClassText {
    libswf::SwfAbcClass entry;
    std::string_view id;
    bool continues = false; ///< members of the class that the part before began
    bool hasConstructor = false, hasInitializer = false;
    size_t offset = 0;

    struct Mark {
        size_t traits, staticTraits, interfaces;
        bool hasConstructor, hasInitializer;
    };
    Mark mark() const {
        return {entry.traits.size(), entry.staticTraits.size(), entry.interfaces.size(), hasConstructor,
                hasInitializer};
    }
    void rollBack(const Mark& mark) {
        entry.traits.resize(mark.traits);
        entry.staticTraits.resize(mark.staticTraits);
        entry.interfaces.resize(mark.interfaces);
        hasConstructor = mark.hasConstructor;
        hasInitializer = mark.hasInitializer;
    }
};

struct AbcScriptText {
    libswf::SwfAbcScript entry;
    bool continues = false;
    bool hasInitializer = false;
    size_t offset = 0;

    struct Mark {
        size_t traits;
        bool hasInitializer;
    };
    Mark mark() const { return {entry.traits.size(), hasInitializer}; }
    void rollBack(const Mark& mark) {
        entry.traits.resize(mark.traits);
        hasInitializer = mark.hasInitializer;
    }
};

struct AbcPart {
    AbcArena arena;
    std::vector<AbcReference> references;
    std::vector<AbcMethodText> methods;
    std::vector<AbcBodyText> bodies;
    std::vector<uint8_t> code;
    std::vector<AbcMetadataText> metadata;
    std::vector<AbcClassText> classes;
    std::vector<AbcScriptText> scripts;

    struct Mark {
        size_t references, methods, bodies, code, metadata, classes, scripts;
    };
    Mark mark() const {
        return {references.size(), methods.size(), bodies.size(), code.size(),
                metadata.size(),   classes.size(), scripts.size()};
    }
    /// Of what the block has by now: all but code and texts, which it refers to.
    void letGoOfTaken() {
        references = {};
        methods = {};
        bodies = {};
        metadata = {};
        classes = {};
        scripts = {};
    }
    void rollBack(const Mark& mark) {
        references.resize(mark.references);
        methods.resize(mark.methods);
        bodies.resize(mark.bodies);
        code.resize(mark.code);
        metadata.resize(mark.metadata);
        classes.resize(mark.classes);
        scripts.resize(mark.scripts);
    }
};

/// Throws XmlValueError about an attribute, or without one about an element.
[[noreturn]] void refuseAbcText(std::string_view element, std::string_view attribute, std::string reason,
                                size_t offset);

/// Registers that a method's code finds filled.
uint32_t registersOf(const libswf::SwfAbcMethod& method);

/// Puts missing operands, whose values are known by now, into code and lets its branches lead to their targets. Moves
/// exceptions along. Throws XmlValueError for a branch that leads too far.
std::vector<uint8_t> completeAbcCode(std::span<const uint8_t> code, const std::vector<AbcMissingOperand>& operands,
                                     const std::vector<AbcBranch>& branches,
                                     std::vector<libswf::SwfAbcException>& exceptions);
/// The 3 bytes of a branch.
void putAbcBranch(uint8_t* at, const AbcBranch& branch);

} // namespace xml2swf
