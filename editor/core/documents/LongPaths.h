// Paths that are longer than programs of old could take.
#pragma once

namespace zelk {

/// To be called once when a program starts. Windows refuses paths of more than 259 characters to a program unless the
/// program says that it can take them and the machine's owner has switched them on; from here on the program has them
/// all the same. Elsewhere there is no such limit.
void takeLongPaths();

} // namespace zelk
