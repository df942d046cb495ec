// Movies that are only played.
#pragma once

#include "Session.h"
#include "SwfVector.h"

namespace zelk::guicommand {

/// Plays a movie from a temporary file, of which the request gets the name; what goes wrong later is reported then.
/// Throws NoPlayerException, PlayerException.
void playMovie(Session& session, const libswf::SwfVector<uint8_t>& movie, PlayRequest request);

} // namespace zelk::guicommand
