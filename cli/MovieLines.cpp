#include "MovieLines.h"

#include <atomic>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <unordered_set>

#include "Console.h"
#include "OnAllCores.h"
#include "SwfUtils.h"

namespace zelkc {

namespace fs = std::filesystem;

namespace {

using Json = nlohmann::ordered_json;

std::string dump(const Json& json) { return json.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n"; }

// The files of a run one by one, so that their number does not matter.
class FileQueue {
public:
    FileQueue(const MovieLines& lines, Console& console) : _lines(lines), _console(console) {}

    /// False when there are no more. [any thread]
    bool next(std::string& name) {
        const std::lock_guard lock(_mutex);
        while (_folder != fs::recursive_directory_iterator() || _next < _lines.inputs.size()) {
            if (_folder == fs::recursive_directory_iterator()) {
                name = _lines.inputs[_next++];
                std::error_code failure;
                if (!fs::is_directory(libswf::pathOf(name), failure))
                    return true;
                open(name);
                continue;
            }
            const fs::directory_entry entry = *_folder;
            std::error_code failure;
            _folder.increment(failure);
            if (failure)
                tell(nameOf(entry.path().parent_path()), failure);
            name = nameOf(entry.path());
            if (entry.is_regular_file(failure) && (!_lines.from.empty() || zelk::fileKind(name)))
                return true;
        }
        return false;
    }
    bool failed() const { return _failed; }

private:
    void open(const std::string& name) {
        std::error_code failure;
        _folder = fs::recursive_directory_iterator(libswf::pathOf(name), fs::directory_options::skip_permission_denied,
                                                   failure);
        if (failure)
            tell(name, failure);
    }
    void tell(const std::string& name, const std::error_code& failure) {
        _failed = true;
        _console.failure({name + ": " + failure.message()});
    }

    const MovieLines& _lines;
    Console& _console;
    std::mutex _mutex;
    size_t _next = 0;
    fs::recursive_directory_iterator _folder;
    bool _failed = false;
};

// The files that an earlier run told of. A line that was cut off tells of none.
std::unordered_set<std::string> doneFiles(const std::string& fileName) {
    std::unordered_set<std::string> names;
    std::ifstream file(libswf::pathOf(fileName), std::ios::binary);
    bool isWhole = true;
    for (std::string line; std::getline(file, line);) {
        isWhole = !file.eof();
        const Json json = Json::parse(line, nullptr, false);
        if (json.is_object() && json.contains("file") && json["file"].is_string())
            names.insert(json["file"].get<std::string>());
    }
    if (!isWhole)
        std::printf("\n"); // what is written now mostly goes behind that line
    return names;
}

std::string lineOf(const std::string& name, const MovieLines& lines, const MovieReport& report, bool& isGood) {
    Json line = {{"file", name}, {"ok", true}};
    try {
        const std::optional<FileKind> kind =
            lines.from.empty() ? zelk::fileKind(name) : zelk::kindOfExtension(lines.from);
        if (!kind)
            throw InputError("the name ends in none of .swf, .xml and .zelk; give --from");
        line.update(report({name, *kind}));
    } catch (...) {
        line["ok"] = false;
        line["failure"] = describeFailure(name);
    }
    isGood = line["ok"].get<bool>();
    return dump(line);
}

} // namespace

void addMovieLines(CLI::App& command, MovieLines& lines) {
    command
        .add_option("FILE", lines.inputs,
                    "A movie, its XML or a project; - is standard input. With --json-lines many, and folders")
        ->required();
    addKind(command, "--from", lines.from, "Kind of the file when its name does not say it: swf, xml or zelk");
    CLI::Option* wanted = command.add_flag("--json-lines", lines.wanted,
                                           "For machines and many files: a line of JSON for each as soon as it is "
                                           "done, on all cores");
    command.add_option("--skip-done", lines.skipDone, "Leave out the files that the lines in this file tell of")
        ->needs(wanted);
}

Input oneInput(const MovieLines& lines) {
    if (lines.inputs.size() != 1)
        throw CLI::ValidationError("FILE", "takes one file, or --json-lines for many");
    return {lines.inputs[0], lines.from};
}

int printMovieLines(const MovieLines& lines, const MovieReport& report) {
    Console console(false);
    const std::unordered_set<std::string> done =
        lines.skipDone.empty() ? std::unordered_set<std::string>() : doneFiles(lines.skipDone);
    FileQueue files(lines, console);
    std::mutex output;
    std::exception_ptr failure; // of the output: nothing is left to do then
    std::atomic<bool> allGood = true, stopped = false;
    onAllCores(SIZE_MAX, [&] {
        for (std::string name; !stopped && files.next(name);) {
            if (done.contains(name))
                continue;
            bool isGood = false;
            const std::string line = lineOf(name, lines, report, isGood);
            if (!isGood)
                allGood = false;
            const std::lock_guard lock(output);
            try {
                std::fwrite(line.data(), 1, line.size(), stdout);
                flushStandardOutput();
            } catch (...) {
                stopped = true;
                failure = std::current_exception();
            }
        }
    });
    if (failure)
        std::rethrow_exception(failure);
    return allGood && !files.failed() ? ExitStatus::done : ExitStatus::badInput;
}

} // namespace zelkc
