#include "SwfTagCodes.h"

namespace libswf {

// clang-format off
const char* knownTagName(uint16_t code) {
    switch (code) {
#define SWF_TAG(code, name) case code: return #name;
#define SWF_FULL_TAG(code, name) case code: return #name;
#define SWF_RAW_TAG(code, name) case code: return #name;
#include "SwfTags.def"
    default: return nullptr;
    }
}
// clang-format on

std::string tagName(uint16_t code) {
    const char* name = knownTagName(code);
    return name != nullptr ? name : "Tag " + std::to_string(code);
}

std::string tagPathText(const std::vector<uint32_t>& path) {
    std::string text;
    for (uint32_t index : path)
        text += (text.empty() ? "" : ".") + std::to_string(index);
    return text;
}

} // namespace libswf
