// Any bytes as a block of ActionScript 3: shown as code or as bytes, it comes back as it is. And any text as the code
// of a block: it is refused, or gives a block that comes back.
#include "Movies.h"
#include "SwfAllTags.h"

namespace {

using fuzz::Bytes;

libswf::SwfBytes compiled(const std::string& text) {
    xml2swf::MovieTarget target;
    xmlToSwf(text, target, {});
    if (target.movie.tags.count() == 0)
        return {};
    const auto* tag = dynamic_cast<const libswf::SwfTagDoABC*>(&target.movie.tags.at(0));
    return tag == nullptr ? libswf::SwfBytes() : tag->abcData;
}

void expectKept(const libswf::SwfBytes& block) {
    libswf::SwfMovie movie(10, 0, 0, 12, false);
    auto tag = std::make_shared<libswf::SwfTagDoABC>();
    tag->abcData = block;
    movie.tags.append(tag);
    const libswf::SwfVector<uint8_t> file = movie.serialise(0);
    libswf::SwfMovieSafe read;
    read.parse({file.begin(), file.end()}, {.fullForm = true, .keepRaw = true});
    if (!(compiled(swfToXml(read, {.keepRaw = true})) == block))
        __builtin_trap();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0)
        return 0;
    if (data[0] != '<') {
        expectKept(libswf::SwfBytes::copyOf({data, size}));
        return 0;
    }
    const std::string text(reinterpret_cast<const char*>(data), size);
    libswf::SwfBytes block;
    fuzz::refusable([&] {
        block = compiled("<Movie Form=\"full\" SwfVersion=\"10\"><DoABC><Abc>" + text + "</Abc></DoABC></Movie>");
    });
    if (!block.empty())
        expectKept(block);
    return 0;
}
