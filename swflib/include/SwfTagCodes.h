// Tag codes by name.
#pragma once

#include <cstdint>

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

} // namespace libswf
