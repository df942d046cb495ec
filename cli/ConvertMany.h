// Conversion of many files at once.
#pragma once

#include "Movies.h"

namespace zelkc {

struct ManyFiles {
    std::vector<std::string> inputs; ///< files, and folders with all that is in them, which keep their tree
    /// Of all inputs; by their names when missing: in folders, files of other kinds and of `to` are left out then.
    std::optional<FileKind> from;
    std::string folder; ///< made when missing; outputs keep the names of their inputs up to the extension
    FileKind to = FileKind::xml;
    bool skipDone = false; ///< leave out inputs whose output is there and not older
};

/// Converts on all cores, with one line for each file that fails. Neither an output of the same run nor one of the
/// inputs is overwritten. Gives the exit status.
int convertMany(const ManyFiles& files, const MovieOptions& options, bool quiet);

} // namespace zelkc
