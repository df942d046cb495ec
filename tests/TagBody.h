// Tags and movies made by hand, as bytes.
#pragma once

#include <gtest/gtest.h>

#include "CaseFile.h"
#include "SwfTag.h"

/// The body of a tag as it is measured and written by itself.
inline Bytes bodyOf(libswf::SwfTag& tag, libswf::SwfContext context) {
    context.tagType = tag.type;
    tag.prepare();
    const uint32_t size = tag.getSize(context);
    libswf::SwfOStream stream(uint64_t(size) + tag.headerSize());
    stream.context = context;
    tag.write(stream);
    EXPECT_EQ(stream.size(), size + tag.headerSize()) << "other than measured";
    return {stream.begin() + tag.headerSize(), stream.end()};
}

/// The code of the SwfException that `act` throws; 0 for none.
template <class Act>
uint32_t codeOf(Act act) {
    try {
        act();
        return 0;
    } catch (const libswf::SwfException& error) {
        return error.code();
    }
}

/// A number as so many bytes, the lowest first.
inline std::string little(uint64_t value, int bytes) {
    std::string text;
    for (int i = 0; i < bytes; ++i)
        text += static_cast<char>(value >> (8 * i));
    return text;
}

/// An uncompressed movie file of these records, with an empty stage and no frames. Its length is not filled in.
inline Bytes movieFile(uint8_t version, std::span<const uint8_t> records) {
    return joined({'F', 'W', 'S', version, 0, 0, 0, 0, 0x10, 0, 0, 1, 0, 0}, records);
}
