// Where the program keeps what it has to know at its next start and nobody looks for.
#pragma once

#include <QString>

namespace zelk {

/// A full path; the folder may not be there yet.
QString stateFolder();

} // namespace zelk
