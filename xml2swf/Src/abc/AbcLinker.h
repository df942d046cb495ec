// Puts the parts of a block's text together.
#pragma once

#include "AbcPart.h"
#include "XmlElement.h"

namespace xml2swf {

/// Gives the methods, bodies, classes and scripts of all parts their order and lets what is referred to by text refer
/// to it. Throws XmlValueError for what is missing.
class AbcLinker {
public:
    AbcLinker(XmlReadContext& context, AbcPools& pools, libswf::SwfAbcBlock& block,
              std::vector<std::unique_ptr<AbcPart>>& parts)
        : _context(context), _pools(pools), _block(block), _parts(parts) {}

    void link();

private:
    using Pool = AbcPools::Pool;

    void listMethods();
    void listClasses();
    void resolve(AbcPart& part, size_t firstMethod);
    uint32_t resolve(const AbcReference& reference);
    void resolveMetadata(AbcPart& part);

    void settle(uint32_t& index) const;
    void settleMethod(uint32_t& index) const;
    void settle(libswf::SwfAbcValue& value) const;
    void settle(libswf::SwfAbcMethod& method) const;
    void settle(libswf::SwfAbcTraits& traits) const;
    void settle(AbcBodyText& body);

    void takeMethods(AbcPart& part);
    void takeClasses(AbcPart& part);
    void takeScripts(AbcPart& part);
    void takeBodies(AbcPart& part);
    void orderBodies();
    std::span<const uint8_t> keep(std::vector<uint8_t> code) {
        _completed.push_back(std::move(code));
        return _completed.back();
    }
    void checkLimits(const AbcBodyText& text, libswf::SwfAbcBody& body);
    void need(bool isThere, std::string_view element, size_t offset, const char* what) const;

    XmlReadContext& _context;
    AbcPools& _pools;
    libswf::SwfAbcBlock& _block;
    std::vector<std::unique_ptr<AbcPart>>& _parts;

    AbcTextTable _methodIds, _classIds;
    std::vector<uint32_t> _methodIndices; // by number, those of one part behind those of the part before
    std::vector<size_t> _firstMethods;    // by part
    // Of the part that is being settled:
    std::vector<uint32_t> _resolved; // by reference
    std::vector<uint32_t> _metadata;
    size_t _firstMethod = 0;

    std::vector<std::vector<uint8_t>> _completed; // code
    struct Place {
        uint32_t place; // abcNoPlace: behind the one before
        uint32_t index;
    };
    static std::vector<uint32_t> orderOf(std::vector<Place> places);
    std::vector<Place> _bodyPlaces; // by body, with its method as index
    struct ClassOffset {
        bool hasConstructor, hasInitializer;
        size_t offset;
    };
    std::vector<ClassOffset> _classes, _scripts;
};

} // namespace xml2swf
