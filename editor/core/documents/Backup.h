// The files that saves replace, kept beside them.
//
// "a.swf.bak" is the file as it was before Zelk first wrote it. It is never written again: a later version that another
// program made becomes "a.swf.2.bak", then "a.swf.3.bak" and so on. A movie that is replaced may be the user's only
// copy of what a conversion lost.
#pragma once

#include <span>
#include <string>

#include "FileStamp.h"

namespace zelk {

/// [worker thread] Keeps what stands there, unless that is one of the `known` versions, empty, or kept already. Throws
/// FileSaveException, with `fileName` and the reason; nothing is changed then.
void backUp(const std::string& fileName, std::span<const FileStamp> known);

/// The file that a backup of this name belongs to; empty when it is no such name.
std::string backedUpName(const std::string& backup);

} // namespace zelk
