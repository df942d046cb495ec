// Reading of blocks of ActionScript 3.
#include "SwfAbc.h"

namespace libswf {

namespace {

class AbcReader {
public:
    AbcReader(std::span<const uint8_t> bytes, SwfAbcBlock& block) : _in(bytes.data(), bytes.size()), _block(block) {}

    void read() {
        _block.minorVersion = _in.readUI16("MinorVersion");
        _block.majorVersion = _in.readUI16("MajorVersion");
        readPools();
        each("method_count", [this] { _block.methods.push_back(method()); });
        each("metadata_count", [this] { _block.metadata.push_back(metadata()); });
        each("class_count", [this] { _block.classes.push_back(instance()); });
        for (SwfAbcClass& entry : _block.classes) {
            entry.staticInitializer = u30("cinit");
            entry.staticTraits = traits();
        }
        each("script_count", [this] {
            SwfAbcScript& script = _block.scripts.emplace_back();
            script.initializer = u30("init");
            script.traits = traits();
        });
        each("method_body_count", [this] { _block.bodies.push_back(body()); });
        if (_in.bytesLeft() != 0)
            _in.fail(nullptr, "bytes are left over");
        if (_in.inexact() != nullptr)
            throw SwfException(SwfError::badData, _in.inexact());
    }

private:
    using Kind = SwfAbcMultinameKind;

    uint32_t u30(const char* field) { return _in.readEncodedU32(field); }

    // What is announced is read one by one: a count costs nothing before its entries have come.
    template <class Read>
    void each(const char* count, Read read) {
        for (uint32_t left = u30(count); left != 0; --left)
            read();
    }
    std::vector<uint32_t> indices(const char* count, const char* field) { return indices(u30(count), field); }
    std::vector<uint32_t> indices(uint32_t count, const char* field) {
        std::vector<uint32_t> result;
        for (; count != 0; --count)
            result.push_back(u30(field));
        return result;
    }

    template <class Read>
    void pool(SwfAbcBlock::Pool pool, const char* count, Read read) {
        const uint32_t entries = u30(count);
        if (entries == 1)
            _block.countedEmpty |= static_cast<uint8_t>(1u << static_cast<uint32_t>(pool));
        for (uint32_t i = 1; i < entries; ++i)
            read();
    }

    void readPools() {
        using Pool = SwfAbcBlock::Pool;
        pool(Pool::integers, "int_count", [this] { _block.integers.push_back(static_cast<int32_t>(u30("int"))); });
        pool(Pool::uintegers, "uint_count", [this] { _block.uintegers.push_back(u30("uint")); });
        pool(Pool::doubles, "double_count", [this] { _block.doubles.push_back(_in.readDouble("double")); });
        pool(Pool::strings, "string_count", [this] { _block.strings.push_back(string()); });
        pool(Pool::namespaces, "namespace_count", [this] {
            const uint8_t kind = _in.readUI8("namespace kind");
            if (!isNamespaceKind(kind))
                _in.fail("namespace kind", "no namespace is of this kind");
            _block.namespaces.push_back({kind, u30("namespace name")});
        });
        pool(Pool::namespaceSets, "ns_set_count",
             [this] { _block.namespaceSets.push_back(indices("ns_set size", "ns_set namespace")); });
        pool(Pool::multinames, "multiname_count", [this] { _block.multinames.push_back(multiname()); });
    }

    static bool isNamespaceKind(uint8_t kind) { return kind == 0x05 || kind == 0x08 || (kind >= 0x16 && kind <= 0x1A); }

    std::string_view string() {
        const std::span<const uint8_t> text = bytes("string length", "string");
        return {reinterpret_cast<const char*>(text.data()), text.size()};
    }

    std::span<const uint8_t> bytes(const char* length, const char* field) {
        const uint32_t count = u30(length);
        if (count > _in.bytesLeft())
            _in.fail(field, "data ends here");
        const uint8_t* start = _in.data() + _in.position();
        _in.seek(_in.position() + count);
        return {start, count};
    }

    SwfAbcMultiname multiname() {
        SwfAbcMultiname result;
        result.kind = static_cast<Kind>(_in.readUI8("multiname kind"));
        switch (result.kind) {
        case Kind::qName:
        case Kind::qNameA:
            result.space = u30("multiname namespace");
            result.name = u30("multiname name");
            break;
        case Kind::multiname:
        case Kind::multinameA:
            result.name = u30("multiname name");
            result.space = u30("multiname namespace set");
            break;
        case Kind::rtqName:
        case Kind::rtqNameA: result.name = u30("multiname name"); break;
        case Kind::rtqNameL:
        case Kind::rtqNameLA: break;
        case Kind::multinameL:
        case Kind::multinameLA: result.space = u30("multiname namespace set"); break;
        case Kind::typeName:
            result.name = u30("multiname type");
            result.types = indices("multiname parameters", "multiname parameter");
            break;
        default: _in.fail("multiname kind", "no multiname is of this kind");
        }
        return result;
    }

    SwfAbcMethod method() {
        SwfAbcMethod result;
        const uint32_t parameters = u30("param_count");
        result.returnType = u30("return_type");
        result.parameterTypes = indices(parameters, "param_type");
        result.name = u30("method name");
        result.flags = _in.readUI8("method flags");
        if ((result.flags & SwfAbcMethod::hasOptional) != 0) {
            each("option_count", [&] {
                const uint32_t index = u30("option value");
                result.optionals.push_back({index, _in.readUI8("option kind")});
            });
            if (result.optionals.size() > parameters)
                _in.fail("option_count", "more values than parameters");
        }
        if ((result.flags & SwfAbcMethod::hasParamNames) != 0)
            result.parameterNames = indices(parameters, "param_name");
        return result;
    }

    SwfAbcMetadata metadata() {
        SwfAbcMetadata result;
        result.name = u30("metadata name");
        each("item_count", [&] { result.items.push_back({u30("item key"), 0}); });
        for (SwfAbcMetadata::Item& item : result.items)
            item.value = u30("item value");
        return result;
    }

    SwfAbcClass instance() {
        SwfAbcClass result;
        result.name = u30("instance name");
        result.base = u30("super_name");
        result.flags = _in.readUI8("instance flags");
        if ((result.flags & SwfAbcClass::hasProtected) != 0)
            result.protectedNamespace = u30("protectedNs");
        result.interfaces = indices("intrf_count", "interface");
        result.constructor = u30("iinit");
        result.traits = traits();
        return result;
    }

    SwfAbcTraits traits() {
        SwfAbcTraits result;
        each("trait_count", [&] { result.push_back(trait()); });
        return result;
    }

    SwfAbcTrait trait() {
        SwfAbcTrait result;
        result.name = u30("trait name");
        const uint8_t kind = _in.readUI8("trait kind");
        result.kind = static_cast<SwfAbcTrait::Kind>(kind & 0x0F);
        result.flags = kind >> 4;
        if (result.kind > SwfAbcTrait::Kind::constant)
            _in.fail("trait kind", "no trait is of this kind");
        result.id = u30("trait id");
        if (result.holdsValue()) {
            result.type = u30("trait type");
            result.value.index = u30("trait value");
            if (result.value.index != 0)
                result.value.kind = _in.readUI8("trait value kind");
        } else {
            result.index = u30("trait index");
        }
        if ((result.flags & SwfAbcTrait::hasMetadata) != 0)
            result.metadata = indices("trait metadata count", "trait metadata");
        return result;
    }

    SwfAbcBody body() {
        SwfAbcBody result;
        result.method = u30("body method");
        result.maxStack = u30("max_stack");
        result.localCount = u30("local_count");
        result.initScopeDepth = u30("init_scope_depth");
        result.maxScopeDepth = u30("max_scope_depth");
        result.code = bytes("code_length", "code");
        each("exception_count", [&] {
            SwfAbcException& exception = result.exceptions.emplace_back();
            exception.from = u30("exception from");
            exception.to = u30("exception to");
            exception.target = u30("exception target");
            exception.type = u30("exception type");
            exception.name = u30("exception name");
        });
        result.traits = traits();
        return result;
    }

    SwfIStream _in;
    SwfAbcBlock& _block;
};

} // namespace

SwfAbcBlock::SwfAbcBlock(std::span<const uint8_t> bytes) { AbcReader(bytes, *this).read(); }

bool SwfAbcMultiname::isAttribute() const {
    using Kind = SwfAbcMultinameKind;
    return kind == Kind::qNameA || kind == Kind::rtqNameA || kind == Kind::rtqNameLA || kind == Kind::multinameA ||
           kind == Kind::multinameLA;
}

bool SwfAbcMultiname::hasName() const {
    using Kind = SwfAbcMultinameKind;
    return kind == Kind::qName || kind == Kind::qNameA || kind == Kind::rtqName || kind == Kind::rtqNameA ||
           kind == Kind::multiname || kind == Kind::multinameA;
}

bool SwfAbcMultiname::hasSpace() const {
    return kind == SwfAbcMultinameKind::qName || kind == SwfAbcMultinameKind::qNameA;
}

bool SwfAbcMultiname::hasSet() const {
    using Kind = SwfAbcMultinameKind;
    return kind == Kind::multiname || kind == Kind::multinameA || kind == Kind::multinameL || kind == Kind::multinameLA;
}

uint32_t SwfAbcMultiname::runtimeParts() const {
    if (kind == SwfAbcMultinameKind::typeName)
        return 0;
    return (hasName() ? 0 : 1) + (hasSpace() || hasSet() ? 0 : 1);
}

} // namespace libswf
