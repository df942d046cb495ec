// What the command line costs as a whole process.
#pragma once

#include <set>
#include <string>

namespace bench {

/// Start-up and many small movies in one call, when all cases are named, and the peak memory of those named; prints a
/// table. `self` is this program: a process's peak
/// memory begins with that of its parent, so this one stays small and has the movies written by a run of its own.
void measureProcesses(const char* self, const std::set<std::string>& names);

/// Writes the movie file of a case.
void writeCase(const char* name, const char* fileName);

} // namespace bench
