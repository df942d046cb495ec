// Tags whose payload is a file as it stands.
#pragma once

#include <memory>

#include "SwfTag.h"

namespace zelk {

/// Null for a tag of another kind.
const libswf::SwfBytes* rawPayload(const libswf::SwfTag& tag);
/// The same tag with other bytes; null for a tag of another kind.
std::shared_ptr<libswf::SwfTag> withRawPayload(const libswf::SwfTag& tag, libswf::SwfBytes bytes);

} // namespace zelk
