// What the command line costs as a whole process.
#pragma once

namespace bench {

/// Start-up, many small movies in one call, and peak memory; prints a table.
void measureProcesses();

} // namespace bench
