// Filter lists that are too long for a case file.
#include <gtest/gtest.h>

#include "SwfFilters.h"

using namespace libswf;

namespace {

SwfFilterList blurs(uint32_t count) {
    SwfFilterList list;
    for (uint32_t i = 0; i < count; ++i)
        list.filters.append(SwfFilter(std::make_shared<SwfBlurFilter>()));
    return list;
}

} // namespace

TEST(FilterList, CountByteIsTheLowByteOf256) {
    for (const uint32_t count : {255u, 256u}) {
        SwfFilterList list = blurs(count);
        list.filters.append(SwfFilter()); // without a filter: not written
        SwfContext context;
        const uint32_t size = list.getSize(context);
        EXPECT_EQ(size, 1 + count * 10);
        SwfOStream stream(size);
        list.write(stream);
        EXPECT_EQ(stream.size(), size);
        EXPECT_EQ(stream[0], count & 0xFF);
        EXPECT_EQ(stream[1 + (count - 1) * 10], 1) << "FilterId of the last filter";
    }
}

TEST(FilterList, MoreThan256AreRefused) {
    SwfFilterList list = blurs(257);
    SwfContext context;
    try {
        list.getSize(context);
        ADD_FAILURE() << "measured";
    } catch (const SwfException& error) {
        EXPECT_EQ(error.code(), SwfError::doesNotFit);
    }
}
