// What the command line costs as a whole process.
#pragma once

namespace bench {

/// Start-up, many small movies in one call, and peak memory; prints a table. `self` is this program: a process's peak
/// memory begins with that of its parent, so this one stays small and has the movies written by a run of its own.
void measureProcesses(const char* self);

/// Writes the movie file of a case.
void writeCase(const char* name, const char* fileName);

} // namespace bench
