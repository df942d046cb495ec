// How the player program ends. For the two failures it writes the reason to standard output, in one line.
#pragma once

namespace zelk::PlayerStatus {

enum : int { closed = 0, wrongUse = 2, cannotPlay = 3, noPlayer = 4 };

} // namespace zelk::PlayerStatus
