// Filter lists that are too long for a case file.
#include "Tests.h"

#include "SwfFilters.h"

using namespace libswf;

TEST(FilterList, HoldsUpTo256AndCountsInOneByte) {
    SwfContext context;
    SwfFilterList list;
    list.filters.append(SwfFilter()); // without a filter: not written
    for (uint32_t count = 1; count <= 256; ++count) {
        list.filters.append(SwfFilter(std::make_shared<SwfBlurFilter>()));
        const uint32_t size = list.getSize(context);
        ASSERT_EQ(size, 1 + count * 10);
        SwfOStream stream(size);
        list.write(stream);
        ASSERT_EQ(stream.size(), size);
        ASSERT_EQ(stream[0], count & 0xFF);
    }
    list.filters.append(SwfFilter(std::make_shared<SwfBlurFilter>()));
    EXPECT_THROW(list.getSize(context), SwfException);
}
