// One line of JSON for each of many movies.
#pragma once

#include <functional>
#include <optional>

#include <nlohmann/json.hpp>

#include "Commands.h"

namespace zelkc {

struct MovieLines {
    std::vector<std::string> inputs; ///< files, and folders with all that is in them
    std::string from;                ///< kind of all of them; by their names when empty: others in folders are left out
    std::string skipDone;            ///< a file of such lines: the files that it tells of are left out; may be missing
    bool wanted = false;
};

/// The options of a command that shows one file, or with --json-lines many.
void addMovieLines(CLI::App& command, MovieLines& lines);
/// The one file of a command without --json-lines. Throws CLI::ValidationError for several.
Input oneInput(const MovieLines& lines);

/// What is known of one file. A failure is an exception. [worker threads]
using MovieReport = std::function<nlohmann::ordered_json(const File& file)>;

/// Prints a line with "file", "ok" and what `report` says, or "failure" with the reason, on all cores and in the order
/// in which they are done. Memory does not grow with the number of files. Gives the exit status.
int printMovieLines(const MovieLines& lines, const MovieReport& report);

} // namespace zelkc
