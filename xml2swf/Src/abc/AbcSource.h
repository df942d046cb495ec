// A block with all that is worked out before its text is written.
#pragma once

#include "AbcMemberWriter.h"

namespace xml2swf {

struct AbcReadBlock {
    libswf::SwfAbcBlock block;
    AbcNames names;
    AbcPlan plan;
    AbcSource source{block, names, plan};

    /// Throws SwfException code 3 for a block that has no text.
    AbcReadBlock(std::span<const uint8_t> bytes, uint32_t threads)
        : block(bytes), names(block, bytes.size()), plan(block, names, bytes.size(), threads) {}
};

/// The pools, as a child of Abc.
void writeAbcConstants(XmlNode& abc, const AbcSource& source);

} // namespace xml2swf
