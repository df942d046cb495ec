// The pools of a block from XML.
#pragma once

#include "AbcTextReader.h"

namespace xml2swf {

/// Reads the children of Constants: what they list, and parts with the metadata, in order.
class AbcConstantsReader final : public XmlQuickReader, private AbcTextReader {
public:
    AbcConstantsReader(XmlReadContext& context, const AbcPools& pools, const libswf::SwfAbcBlock& block)
        : AbcConstantsReader(context, pools, block, std::make_unique<AbcPart>()) {}

    void readAll(XmlElement& constants);
    AbcListing listed;
    std::vector<std::unique_ptr<AbcPart>> parts;

    size_t read(std::string_view text, size_t start, size_t end) override;
    std::unique_ptr<XmlQuickReader> another() const override;
    void join(XmlQuickReader& other) override;

private:
    AbcConstantsReader(XmlReadContext& context, const AbcPools& pools, const libswf::SwfAbcBlock& block,
                       std::unique_ptr<AbcPart> part)
        : AbcTextReader(*part, pools, block), _context(context), _own(std::move(part)) {}

    template <class Element>
    void readEntry(Element& element);
    template <class Element>
    AbcListed listedAs(Element& element, std::string_view attribute);

    XmlReadContext& _context;
    std::unique_ptr<AbcPart> _own;
};

/// The pools that Constants has entries of, by their elements.
extern const XmlNames abcPoolNames;

} // namespace xml2swf
