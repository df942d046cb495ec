// Movies that are only played.
#pragma once

#include "Session.h"
#include "SwfVector.h"

namespace zelk::guicommand {

/// Plays a movie from a temporary file, or says that there is no player. Throws PlayerException.
bool playMovie(Session& session, const libswf::SwfVector<uint8_t>& movie, int width, int height);

} // namespace zelk::guicommand
