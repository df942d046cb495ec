// What is too long for a case file.
#include <gtest/gtest.h>

#include "SwfTagsAssets.h"

using namespace libswf;

TEST(Assets, CountFitsItsField) {
    SwfContext context;
    SwfTagSymbolClass tag;
    for (uint32_t i = 0; i < 65535; ++i)
        tag.symbols.append({});
    EXPECT_EQ(tag.getSize(context), 2 + 65535 * 3);
    tag.symbols.append({});
    try {
        tag.getSize(context);
        FAIL() << "65,536 entries are written";
    } catch (const SwfException& error) {
        EXPECT_EQ(error.code(), SwfError::doesNotFit);
    }
}
