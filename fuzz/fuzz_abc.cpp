// Any bytes as a block of ActionScript 3: shown as code or as bytes, it comes back as it is. And any text as the code
// of a block: it is refused, or gives a block that comes back.
#include <algorithm>
#include <cstdio>
#include <span>

#include "Movies.h"
#include "SwfAllTags.h"

namespace {

using fuzz::Bytes;

libswf::SwfBytes compiled(const std::string& text) {
    xml2swf::MovieTarget target;
    xmlToSwf(text, target, {});
    if (target.movie.tags.count() == 0)
        return {};
    const auto* tag = dynamic_cast<const libswf::SwfTagDoABCDefine*>(&target.movie.tags.at(0));
    return tag == nullptr ? libswf::SwfBytes() : tag->abcData;
}

// A movie of nothing but the block.
Bytes movieOf(std::span<const uint8_t> block) {
    Bytes file = {'F', 'W', 'S', 10, 0, 0, 0, 0, 0x10, 0, 0, 12, 0, 0, 0x3F, 0x12, 0, 0, 0, 0};
    for (size_t i = 0; i < 4; ++i) {
        file[file.size() - 4 + i] = static_cast<uint8_t>(block.size() >> 8 * i);
        file[4 + i] = static_cast<uint8_t>((file.size() + block.size() + 2) >> 8 * i);
    }
    file.insert(file.end(), block.begin(), block.end());
    file.insert(file.end(), {0, 0});
    return file;
}

void expectKept(std::span<const uint8_t> block) {
    libswf::SwfMovieSafe movie;
    fuzz::parse(movie, movieOf(block), true, nullptr, false, true);
    const std::string text = fuzz::toXml(movie, true);
    const libswf::SwfBytes back = compiled(text);
    if (!std::ranges::equal(back.span(), block)) {
        std::fwrite(text.data(), 1, text.size(), stderr);
        __builtin_trap();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0)
        return 0;
    if (data[0] != '<') {
        expectKept({data, size});
        return 0;
    }
    const std::string text(reinterpret_cast<const char*>(data), size);
    libswf::SwfBytes block;
    fuzz::refusable([&] {
        block = compiled("<Movie Form=\"full\" SwfVersion=\"10\"><DoABCDefine><Abc>" + text +
                         "</Abc></DoABCDefine></Movie>");
    });
    if (!block.empty())
        expectKept(block.span());
    return 0;
}
