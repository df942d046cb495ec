#include "Console.h"

#include <algorithm>
#include <cstdio>
#include <new>
#include <stdexcept>

#ifdef _WIN32
#include <windows.h>
#else
#include <unistd.h>
#endif

#include "Files.h"
#include "Messages.h"
#include "Movies.h"
#include "SwfException.h"
#include "SwfVector.h"

namespace zelkc {

namespace {

using Lines = std::vector<std::string>;

bool isTerminal() {
#ifdef _WIN32
    // Asks for the escape sequences that the bar needs; consoles older than Windows 10 have none.
    static const bool terminal = [] {
        const HANDLE console = GetStdHandle(STD_ERROR_HANDLE);
        DWORD mode = 0;
        return GetConsoleMode(console, &mode) != 0 &&
               SetConsoleMode(console, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
    }();
#else
    static const bool terminal = isatty(fileno(stderr)) != 0;
#endif
    return terminal;
}

Lines placed(Lines lines, uint32_t row, uint32_t column) {
    if (row != 0) {
        lines.push_back("Row: " + std::to_string(row));
        lines.push_back("Col: " + std::to_string(column));
    }
    return lines;
}

Lines badXml(const std::string& start, const char* description, uint32_t row, uint32_t column) {
    return placed({start + "The XML has incorrect format.", std::string("Error description: ") + description}, row,
                  column);
}

} // namespace

std::string printable(std::string text) {
    constexpr size_t most = 2000;
    if (text.size() > most) {
        size_t end = most;
        while ((static_cast<uint8_t>(text[end]) & 0xC0) == 0x80 && end > most - 4)
            --end;
        text.replace(end, text.npos, "...");
    }
    auto isControl = [](char c) { return static_cast<uint8_t>(c) < 0x20 || c == 0x7F; };
    std::replace_if(text.begin(), text.end(), isControl, '?');
    return text;
}

std::vector<std::string> describeFailure(const std::string& file) {
    const std::string start = file + ": ";
    try {
        throw;
    } catch (const zelk::FileXmlException& error) {
        return badXml(error.fileName() + ": ", error.what(), error.row, error.column);
    } catch (const zelk::XmlException& error) {
        return badXml(start, error.what(), error.row, error.column);
    } catch (const xml2swf::XmlSyntaxError& error) {
        return badXml(start, error.what(), error.place.row, error.place.column);
    } catch (const xml2swf::XmlValueError& error) {
        return placed({start + error.description()}, error.place.row, error.place.column);
    } catch (const xml2swf::MovieAttributeError& error) {
        return placed({start + error.what(), error.fitting}, error.place.row, error.place.column);
    } catch (const xml2swf::Base64Error& error) {
        return placed({start + error.what()}, error.place.row, error.place.column);
    } catch (const zelk::FileLoadException& error) {
        return {"Unable to open " + error.fileName(), error.what()};
    } catch (const zelk::FileSaveException& error) {
        return {error.fileName() + ": " + error.what()};
    } catch (const libswf::SwfFileException& error) {
        return {error.fileName() + ": " + error.problem()};
    } catch (const libswf::SwfException& error) {
        return {start + error.what()};
    } catch (const zelk::NotMovieException& error) {
        return {start + error.what()};
    } catch (const InputError& error) {
        return {start + error.what()};
    } catch (const libswf::SwfAssertionFailure& error) {
        return {start + zelk::brokenInvariant(error)};
    } catch (const std::out_of_range& error) { // a count that the records do not bear out
        return {start + error.what()};
    } catch (const std::bad_alloc&) {
        return {start + "There is not enough memory."};
    } catch (const std::exception& error) {
        return {start + "Unexpected Error", error.what()};
    } catch (...) {
        return {start + "Unexpected Error"};
    }
}

void Console::line(const std::string& text) {
    if (_barShown)
        std::fputs("\r\x1b[K", stderr);
    _barShown = false;
    std::fprintf(stderr, "%s\n", printable(text).c_str());
}

void Console::failure(const std::string& file, bool inOneLine) {
    const Lines lines = describeFailure(file);
    const std::lock_guard lock(_mutex);
    if (!inOneLine) {
        for (const std::string& text : lines)
            line(text);
        return;
    }
    std::string all;
    for (const std::string& text : lines)
        all += (all.empty() ? "" : "; ") + text;
    line(all);
}

void Console::failure(const std::vector<std::string>& lines) {
    const std::lock_guard lock(_mutex);
    for (const std::string& text : lines)
        line(text);
}

void Console::warnings(const std::string& file, const libswf::SwfWarnings& warnings, size_t most) {
    if (_quiet || warnings.empty())
        return;
    const std::lock_guard lock(_mutex);
    const size_t shown = std::min(most, warnings.items().size());
    for (size_t i = 0; i < shown; ++i)
        line("warning: " + file + ": " + warnings.items()[i].text());
    if (shown < warnings.total())
        line("warning: " + file + ": " + "and " + std::to_string(warnings.total() - shown) + " more");
}

void Console::problems(const std::string& file, const zelk::Problems& problems, bool isOfMovie) {
    const std::lock_guard lock(_mutex);
    for (const zelk::Problem& problem : problems.items) {
        if (!_quiet || problem.severity == zelk::Problem::Severity::error)
            line(std::string(severityName(problem.severity)) + ": " + file + ": " + lineOf(problem, isOfMovie));
    }
    if (problems.more != 0 && !_quiet)
        line("warning: " + file + ": and " + std::to_string(problems.more) + " more");
}

void Console::warning(const std::string& file, const std::string& text) {
    const std::lock_guard lock(_mutex);
    if (!_quiet)
        line("warning: " + file + ": " + text);
}

void Console::progress(size_t done, size_t total) {
    if (_quiet || !isTerminal() || total == 0)
        return;
    constexpr size_t width = 40;
    const size_t filled = done * width / total;
    const std::string bar = std::string(filled, '#') + std::string(width - filled, '.');
    const std::lock_guard lock(_mutex);
    std::fprintf(stderr, "\r[%s] %zu/%zu%s", bar.c_str(), done, total, done == total ? "\n" : "");
    _barShown = done != total;
}

} // namespace zelkc
