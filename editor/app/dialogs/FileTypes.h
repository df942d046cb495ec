// What the system's file manager knows of the kinds of file that Zelk opens.
#pragma once

namespace zelk {

/// False where an installed package says it, and not the program.
bool canSetFileTypes();

/// Whether Zelk is among the programs that the user is offered for movies and projects.
bool hasFileTypes();

/// For this user alone. Which program opens a movie stays the user's choice; projects are no other program's.
void setFileTypes(bool isOffered);

} // namespace zelk
