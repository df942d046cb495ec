// What the player program says, and how it ends. For the two failures it writes the reason to standard output, in one
// line.
#pragma once

namespace zelk::PlayerStatus {

enum : int { closed = 0, wrongUse = 2, cannotPlay = 3, noPlayer = 4 };

/// Begins the line on standard output by which a player that follows standard input tells that it plays a movie from
/// now on; the file's name follows. On standard input a line is a JSON array of file name and title.
inline constexpr char plays[] = "plays ";

} // namespace zelk::PlayerStatus
