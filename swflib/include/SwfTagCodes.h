// Tag codes and names, and how a tag's place is said.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace libswf {

/// SwfTagCode::DefineShape and so on, from the one table of tags.
namespace SwfTagCode {
enum : uint16_t {
#define SWF_TAG(code, name) name = code,
#define SWF_FULL_TAG(code, name) name = code,
#define SWF_RAW_TAG(code, name) name = code,
#include "SwfTags.def"
};
} // namespace SwfTagCode

/// "DefineShape" for 2, "Tag 1000" for a code without a name.
std::string tagName(uint16_t code);
/// The name for errors and tables; null for a code without a name.
const char* knownTagName(uint16_t code);
/// "4.2" for the third tag inside the fifth.
std::string tagPathText(const std::vector<uint32_t>& path);

} // namespace libswf
