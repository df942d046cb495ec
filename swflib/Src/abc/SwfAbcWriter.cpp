// Writing of blocks of ActionScript 3.
#include "SwfAbc.h"

namespace libswf {

namespace {

class AbcWriter {
public:
    AbcWriter(const SwfAbcBlock& block, SwfOStream& out) : _block(block), _out(out) {}

    void write() {
        _out.writeUI16(_block.minorVersion);
        _out.writeUI16(_block.majorVersion);
        writePools();
        each(_block.methods, [this](const SwfAbcMethod& method) { write(method); });
        each(_block.metadata, [this](const SwfAbcMetadata& metadata) { write(metadata); });
        each(_block.classes, [this](const SwfAbcClass& entry) { writeInstance(entry); });
        for (const SwfAbcClass& entry : _block.classes) {
            u30(entry.staticInitializer);
            write(entry.staticTraits);
        }
        each(_block.scripts, [this](const SwfAbcScript& script) {
            u30(script.initializer);
            write(script.traits);
        });
        each(_block.bodies, [this](const SwfAbcBody& body) { write(body); });
    }

private:
    using Kind = SwfAbcMultinameKind;

    void u30(uint32_t value) { _out.writeEncodedU32(value); }
    void count(size_t entries) {
        if (entries > UINT32_MAX)
            throw SwfException(SwfError::doesNotFit, "a list of more than 4 billion entries");
        u30(static_cast<uint32_t>(entries));
    }
    template <class Entries, class Write>
    void each(const Entries& entries, Write write) {
        count(entries.size());
        for (const auto& entry : entries)
            write(entry);
    }
    void indices(const std::vector<uint32_t>& list) {
        for (uint32_t index : list)
            u30(index);
    }
    void countedIndices(const std::vector<uint32_t>& list) {
        count(list.size());
        indices(list);
    }

    template <class Entries, class Write>
    void pool(SwfAbcBlock::Pool pool, const Entries& entries, Write write) {
        const bool countsNone = (_block.countedEmpty >> static_cast<uint32_t>(pool) & 1) != 0;
        count(entries.size() > 1 || countsNone ? entries.size() : 0);
        for (size_t i = 1; i < entries.size(); ++i)
            write(entries[i]);
    }

    void writePools() {
        using Pool = SwfAbcBlock::Pool;
        pool(Pool::integers, _block.integers, [this](int32_t value) { u30(static_cast<uint32_t>(value)); });
        pool(Pool::uintegers, _block.uintegers, [this](uint32_t value) { u30(value); });
        pool(Pool::doubles, _block.doubles, [this](double value) { _out.writeDouble(value); });
        pool(Pool::strings, _block.strings, [this](std::string_view text) {
            count(text.size());
            _out.writeBytes(text.size(), reinterpret_cast<const uint8_t*>(text.data()));
        });
        pool(Pool::namespaces, _block.namespaces, [this](const SwfAbcNamespace& entry) {
            _out.writeUI8(entry.kind);
            u30(entry.name);
        });
        pool(Pool::namespaceSets, _block.namespaceSets, [this](const auto& set) { countedIndices(set); });
        pool(Pool::multinames, _block.multinames, [this](const SwfAbcMultiname& name) { write(name); });
    }

    void write(const SwfAbcMultiname& name) {
        _out.writeUI8(static_cast<uint8_t>(name.kind));
        if (name.kind == Kind::typeName) {
            u30(name.name);
            countedIndices(name.types);
            return;
        }
        if (name.hasSpace())
            u30(name.space);
        if (name.hasName())
            u30(name.name);
        if (name.hasSet())
            u30(name.space);
    }

    void write(const SwfAbcMethod& method) {
        count(method.parameterTypes.size());
        u30(method.returnType);
        indices(method.parameterTypes);
        u30(method.name);
        _out.writeUI8(method.flags);
        if ((method.flags & SwfAbcMethod::hasOptional) != 0) {
            each(method.optionals, [this](const SwfAbcValue& value) {
                u30(value.index);
                _out.writeUI8(value.kind);
            });
        }
        if ((method.flags & SwfAbcMethod::hasParamNames) != 0)
            indices(method.parameterNames);
    }

    void write(const SwfAbcMetadata& metadata) {
        u30(metadata.name);
        each(metadata.items, [this](const SwfAbcMetadata::Item& item) { u30(item.key); });
        for (const SwfAbcMetadata::Item& item : metadata.items)
            u30(item.value);
    }

    void writeInstance(const SwfAbcClass& entry) {
        u30(entry.name);
        u30(entry.base);
        _out.writeUI8(entry.flags);
        if ((entry.flags & SwfAbcClass::hasProtected) != 0)
            u30(entry.protectedNamespace);
        countedIndices(entry.interfaces);
        u30(entry.constructor);
        write(entry.traits);
    }

    void write(const SwfAbcTraits& traits) {
        each(traits, [this](const SwfAbcTrait& trait) { write(trait); });
    }

    void write(const SwfAbcTrait& trait) {
        u30(trait.name);
        _out.writeUI8(static_cast<uint8_t>(trait.flags << 4 | static_cast<uint8_t>(trait.kind)));
        u30(trait.id);
        if (trait.holdsValue()) {
            u30(trait.type);
            u30(trait.value.index);
            if (trait.value.index != 0)
                _out.writeUI8(trait.value.kind);
        } else {
            u30(trait.index);
        }
        if ((trait.flags & SwfAbcTrait::hasMetadata) != 0)
            countedIndices(trait.metadata);
    }

    void write(const SwfAbcBody& body) {
        u30(body.method);
        u30(body.maxStack);
        u30(body.localCount);
        u30(body.initScopeDepth);
        u30(body.maxScopeDepth);
        count(body.code.size());
        _out.writeBytes(body.code);
        each(body.exceptions, [this](const SwfAbcException& exception) {
            u30(exception.from);
            u30(exception.to);
            u30(exception.target);
            u30(exception.type);
            u30(exception.name);
        });
        write(body.traits);
    }

    const SwfAbcBlock& _block;
    SwfOStream& _out;
};

} // namespace

void SwfAbcBlock::write(SwfOStream& stream) const { AbcWriter(*this, stream).write(); }

std::vector<uint8_t> SwfAbcBlock::bytes() const {
    std::vector<uint8_t> result(measure({}, [this](SwfOStream& stream) { write(stream); }));
    SwfOStream stream{std::span<uint8_t>(result)};
    write(stream);
    return result;
}

} // namespace libswf
