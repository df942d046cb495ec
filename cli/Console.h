// Standard error: failures, warnings, progress.
#pragma once

#include <cstddef>
#include <mutex>
#include <string>
#include <vector>

#include "Problems.h"
#include "SwfWarnings.h"

namespace zelkc {

/// The exception being handled in lines for the user, the first of which names the file.
std::vector<std::string> describeFailure(const std::string& file);

/// Values from files may be long and may hold anything: without control characters, cut when very long.
std::string printable(std::string text);

/// Standard error, shared by the threads of a command. What comes from a file is shown without control characters.
class Console {
public:
    static constexpr size_t mostWarnings = 20;

    explicit Console(bool quiet) : _quiet(quiet) {}

    /// Shows the exception being handled: a line per fact, or all in one line.
    void failure(const std::string& file, bool inOneLine = false);
    /// The same, of one that describeFailure told.
    void failure(const std::vector<std::string>& lines);
    /// One line each, and a line with the number of those that are not shown. Nothing when quiet.
    void warnings(const std::string& file, const libswf::SwfWarnings& warnings, size_t most = mostWarnings);
    /// One line each; only errors when quiet. Rows are left out where the file has none.
    void problems(const std::string& file, const zelk::Problems& problems, bool isOfMovie);
    /// Nothing when quiet.
    void warning(const std::string& file, const std::string& text);
    /// A bar, drawn on a terminal only.
    void progress(size_t done, size_t total);

private:
    void line(const std::string& text);

    std::mutex _mutex;
    bool _quiet;
    bool _barShown = false;
};

} // namespace zelkc
