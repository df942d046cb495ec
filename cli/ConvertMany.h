// Conversion of many files at once.
#pragma once

#include "Movies.h"

namespace zelkc {

struct ManyFiles {
    std::vector<std::string> inputs;
    std::optional<FileKind> from; ///< of all inputs; by their names when missing
    std::string folder;           ///< made when missing; outputs keep the names of their inputs up to the extension
    FileKind to = FileKind::xml;
};

/// Converts on all cores, with one line for each file that fails. Neither an output of the same run nor one of the
/// inputs is overwritten. Gives the exit status.
int convertMany(const ManyFiles& files, const MovieOptions& options, bool quiet);

} // namespace zelkc
