#include "FileTypes.h"

namespace zelk {

bool canSetFileTypes() { return false; }

bool hasFileTypes() { return false; }

void setFileTypes(bool) {}

} // namespace zelk
