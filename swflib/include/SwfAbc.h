// A block of ActionScript 3: what the data of a DoABC holds.
#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "SwfBytes.h"
#include "SwfStream.h"

namespace libswf {

enum class SwfAbcNamespaceKind : uint8_t {
    privateNamespace = 0x05,
    plain = 0x08,
    package = 0x16,
    packageInternal = 0x17,
    protectedNamespace = 0x18,
    explicitNamespace = 0x19,
    staticProtected = 0x1A
};

struct SwfAbcNamespace {
    uint8_t kind = 0;  ///< one of SwfAbcNamespaceKind
    uint32_t name = 0; ///< string
};

/// The kinds of multinames. An odd number of each pair is that of an attribute's name ("@x"), which `isAttribute`
/// tells.
enum class SwfAbcMultinameKind : uint8_t {
    qName = 0x07,
    qNameA = 0x0D,
    rtqName = 0x0F, ///< its namespace comes from the stack
    rtqNameA = 0x10,
    rtqNameL = 0x11, ///< so do namespace and name
    rtqNameLA = 0x12,
    multiname = 0x09, ///< a namespace of a set
    multinameA = 0x0E,
    multinameL = 0x1B, ///< of a set, with a name from the stack
    multinameLA = 0x1C,
    typeName = 0x1D ///< a type with parameters
};

struct SwfAbcMultiname {
    SwfAbcMultinameKind kind = SwfAbcMultinameKind::qName;
    uint32_t name = 0;                ///< string; of a type name the multiname of the type
    uint32_t space = 0;               ///< namespace, or namespace set
    std::vector<uint32_t> types = {}; ///< multinames: the parameters of a type name

    bool operator==(const SwfAbcMultiname&) const = default;
    bool isAttribute() const;
    bool hasName() const;  ///< a string
    bool hasSpace() const; ///< one namespace
    bool hasSet() const;   ///< a set of them
    /// How many of its parts an instruction takes from the stack.
    uint32_t runtimeParts() const;
};

/// What a value's index is looked up in: 0x01 strings, 0x03 integers, 0x04 unsigned ones, 0x06 doubles, the kinds of
/// namespaces; 0x00 undefined, 0x0A false, 0x0B true and 0x0C null stand for themselves.
struct SwfAbcValue {
    uint32_t index = 0;
    uint8_t kind = 0;

    bool operator==(const SwfAbcValue&) const = default;
};

struct SwfAbcMethod {
    enum Flag : uint8_t {
        needArguments = 0x01,
        needActivation = 0x02,
        needRest = 0x04,
        hasOptional = 0x08,
        ignoreRest = 0x10,
        native = 0x20,
        setDxns = 0x40,
        hasParamNames = 0x80
    };
    uint32_t returnType = 0; ///< multiname
    uint32_t name = 0;       ///< string, for debuggers
    uint8_t flags = 0;
    std::vector<uint32_t> parameterTypes; ///< multinames
    std::vector<SwfAbcValue> optionals;   ///< of the last parameters; none without the flag
    std::vector<uint32_t> parameterNames; ///< strings; one per parameter with the flag, else none
};

struct SwfAbcMetadata {
    struct Item {
        uint32_t key = 0, value = 0; ///< strings
        bool operator==(const Item&) const = default;
    };
    uint32_t name = 0; ///< string
    std::vector<Item> items;

    bool operator==(const SwfAbcMetadata&) const = default;
};

/// A member of a class or script, or a variable of an activation object.
struct SwfAbcTrait {
    enum class Kind : uint8_t { slot, method, getter, setter, classSlot, function, constant };
    enum Flag : uint8_t { isFinal = 0x1, isOverride = 0x2, hasMetadata = 0x4, reserved = 0x8 };

    uint32_t name = 0; ///< multiname
    Kind kind = Kind::slot;
    uint8_t flags = 0;
    uint32_t id = 0;    ///< slot id; disp id of methods, getters and setters
    uint32_t type = 0;  ///< multiname; of slots and constants
    SwfAbcValue value;  ///< of slots and constants; index 0 for none
    uint32_t index = 0; ///< of the method or class that the others stand for
    std::vector<uint32_t> metadata;

    bool holdsValue() const { return kind == Kind::slot || kind == Kind::constant; }
};

using SwfAbcTraits = std::vector<SwfAbcTrait>;

struct SwfAbcClass {
    enum Flag : uint8_t { isSealed = 0x01, isFinal = 0x02, isInterface = 0x04, hasProtected = 0x08 };

    uint32_t name = 0, base = 0; ///< multinames
    uint8_t flags = 0;
    uint32_t protectedNamespace = 0;  ///< only with the flag
    std::vector<uint32_t> interfaces; ///< multinames
    uint32_t constructor = 0;         ///< method
    SwfAbcTraits traits;
    uint32_t staticInitializer = 0; ///< method
    SwfAbcTraits staticTraits;
};

struct SwfAbcScript {
    uint32_t initializer = 0; ///< method
    SwfAbcTraits traits;
};

/// A range of code whose exceptions are caught. Places count bytes from the start of the code.
struct SwfAbcException {
    uint32_t from = 0, to = 0, target = 0;
    uint32_t type = 0, name = 0; ///< multinames
};

struct SwfAbcBody {
    uint32_t method = 0;
    uint32_t maxStack = 0, localCount = 0, initScopeDepth = 0, maxScopeDepth = 0;
    std::span<const uint8_t> code;
    std::vector<SwfAbcException> exceptions;
    SwfAbcTraits traits; ///< of the activation object
};

/// A whole block. Index 0 of a pool is not stored and stands for nothing, or for any; the vectors have it as an entry
/// of no meaning. Indices are kept as they are: they are checked when they are used. Strings and code refer to the
/// bytes that were read, or to what the maker of the block keeps.
class SwfAbcBlock {
public:
    enum class Pool : uint8_t { integers, uintegers, doubles, strings, namespaces, namespaceSets, multinames };
    static constexpr size_t pools = 7;

    static constexpr uint16_t usualMinor = 16, usualMajor = 46;

    uint16_t minorVersion = usualMinor, majorVersion = usualMajor;
    std::vector<int32_t> integers{0};
    std::vector<uint32_t> uintegers{0};
    std::vector<double> doubles{0};
    std::vector<std::string_view> strings{{}};
    std::vector<SwfAbcNamespace> namespaces{{}};
    std::vector<std::vector<uint32_t>> namespaceSets{{}};
    std::vector<SwfAbcMultiname> multinames{{}};
    /// Pools without entries whose count is 1 instead of 0: bit 1 << Pool.
    uint8_t countedEmpty = 0;

    std::vector<SwfAbcMethod> methods;
    std::vector<SwfAbcMetadata> metadata;
    std::vector<SwfAbcClass> classes;
    std::vector<SwfAbcScript> scripts;
    std::vector<SwfAbcBody> bodies;

    SwfAbcBlock() = default;
    /// Reads a whole block. Throws code 3 when it ends early, is of an unknown kind, or would not be written as it
    /// stands (a number that takes more bytes than it needs, bytes left over). The bytes outlive the block.
    explicit SwfAbcBlock(std::span<const uint8_t> bytes);

    void write(SwfOStream& stream) const;
    std::vector<uint8_t> bytes() const;
};

} // namespace libswf
