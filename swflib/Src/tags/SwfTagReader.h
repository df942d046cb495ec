// The tolerant reader of tag lists, shared by movies and sprites.
#pragma once

#include <functional>
#include <memory>

#include "SwfTags.h"

namespace libswf {

/// Reads records up to `end`, or to the End record, and hands each tag to `append`.
void readTagList(SwfIStream& stream, uint64_t end, const std::function<void(std::unique_ptr<SwfTag>)>& append);

} // namespace libswf
