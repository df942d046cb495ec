// Which frame of a movie plays: the emulator does not tell, but the movie can.
#pragma once

#include <QByteArray>
#include <QStringList>
#include <optional>

namespace zelk {

/// The movie of a file with an action at the end of each frame of its main timeline that traces the frame's number.
/// Empty when no movie is read or these actions mean nothing to it: before version 4, and with ActionScript 3.
QByteArray withFrameMarks(const QString& fileName);

/// Takes the traces of those actions out of what a movie traced. The last frame among them, from 1.
std::optional<int> takeFrameMarks(QStringList& lines);

} // namespace zelk
