#include "ConvertMany.h"

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <map>
#include <set>
#include <system_error>

#include "Commands.h"
#include "Console.h"
#include "OnAllCores.h"
#include "SwfUtils.h"
#include "SwfWarnings.h"

namespace zelkc {

namespace fs = std::filesystem;

namespace {

struct Task {
    File input, output;
    std::string refusal; ///< why the file is not converted; empty when it is
};

std::string textOf(const fs::path& path) {
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

// What tells whether two names mean one file.
std::string identityOf(const fs::path& path) {
    std::error_code failure;
    const fs::path whole = fs::weakly_canonical(path, failure);
    std::string text = textOf(failure ? path : whole);
#if defined(_WIN32) || defined(__APPLE__) // names differ by more than the case of letters there
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
#endif
    return text;
}

std::vector<Task> planTasks(const ManyFiles& files) {
    std::set<std::string> inputs;
    for (const std::string& name : files.inputs)
        inputs.insert(identityOf(libswf::pathOf(name)));
    std::map<std::string, std::string> outputs; // and the input of each
    std::vector<Task> tasks;
    for (const std::string& name : files.inputs) {
        const std::optional<FileKind> kind = files.from ? files.from : zelk::fileKind(name);
        fs::path output = libswf::pathOf(files.folder) / libswf::pathOf(name).stem();
        output += "." + std::string(zelk::extensionOf(files.to));
        Task task{{name, kind.value_or(FileKind::swf)}, {textOf(output), files.to}, {}};
        const std::string identity = identityOf(output);
        if (!kind)
            task.refusal = "the name ends in none of .swf, .xml and .zelk; give --from";
        else if (inputs.contains(identity))
            task.refusal = "the output " + task.output.name + " is one of the inputs";
        else if (const auto [first, isNew] = outputs.emplace(identity, name); !isNew)
            task.refusal = "the output " + task.output.name + " is already that of " + first->second;
        tasks.push_back(std::move(task));
    }
    return tasks;
}

// [worker thread]
bool runTask(const Task& task, MovieOptions options, Console& console) {
    libswf::SwfWarnings warnings;
    options.warnings = &warnings;
    options.threads = 1; // every core has a file of its own
    bool done = false;
    try {
        if (!task.refusal.empty())
            throw InputError(task.refusal);
        convert(task.input, task.output, options);
        done = true;
    } catch (...) {
        console.failure(task.input.name, true);
    }
    console.warnings(task.input.name, warnings);
    return done;
}

} // namespace

int convertMany(const ManyFiles& files, const MovieOptions& options, bool quiet) {
    makeFolder(files.folder);
    const std::vector<Task> tasks = planTasks(files);
    Console console(quiet);
    std::atomic<size_t> next = 0, done = 0, failed = 0;
    console.progress(0, tasks.size());
    onAllCores(tasks.size(), [&] {
        for (size_t i; (i = next++) < tasks.size();) {
            failed += runTask(tasks[i], options, console) ? 0 : 1;
            console.progress(++done, tasks.size());
        }
    });
    flushFolder(files.folder); // once for all of them
    return failed == 0 ? ExitStatus::done : ExitStatus::badInput;
}

} // namespace zelkc
