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

// What tells whether two names mean one file.
std::string identityOf(const fs::path& path) {
    std::error_code failure;
    const fs::path whole = fs::weakly_canonical(path, failure);
    std::string text = nameOf(failure ? path : whole);
#if defined(_WIN32) || defined(__APPLE__) // names differ by more than the case of letters there
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
#endif
    return text;
}

struct Found {
    std::string name;
    fs::path folder; ///< of the output
};

// What a folder holds, in the order of the names, but for what an earlier run put into the folder of the outputs.
void addFolder(const ManyFiles& files, const std::string& name, std::vector<Found>& found) {
    const fs::path folder = libswf::pathOf(name), to = libswf::pathOf(files.folder);
    const std::string outputs = identityOf(to);
    std::vector<fs::path> paths;
    std::error_code failure;
    auto entry = fs::recursive_directory_iterator(folder, failure);
    for (; !failure && entry != fs::recursive_directory_iterator(); entry.increment(failure)) {
        const std::optional<FileKind> kind = zelk::fileKind(nameOf(entry->path()));
        std::error_code gone;
        if (entry->is_directory(gone) && identityOf(entry->path()) == outputs)
            entry.disable_recursion_pending();
        else if (entry->is_regular_file(gone) && (files.from || (kind && *kind != files.to)))
            paths.push_back(entry->path());
    }
    if (failure)
        throw InputError(name + ": " + failure.message());
    std::ranges::sort(paths);
    for (const fs::path& path : paths) {
        const fs::path below = path.parent_path().lexically_relative(folder);
        found.push_back({nameOf(path), below == "." ? to : to / below});
    }
}

std::vector<Found> findFiles(const ManyFiles& files) {
    std::vector<Found> found;
    for (const std::string& name : files.inputs) {
        std::error_code failure;
        if (fs::is_directory(libswf::pathOf(name), failure))
            addFolder(files, name, found);
        else
            found.push_back({name, libswf::pathOf(files.folder)});
    }
    return found;
}

std::vector<Task> planTasks(const ManyFiles& files) {
    const std::vector<Found> found = findFiles(files);
    std::set<std::string> inputs;
    for (const Found& file : found)
        inputs.insert(identityOf(libswf::pathOf(file.name)));
    std::map<std::string, std::string> outputs; // and the input of each
    std::vector<Task> tasks;
    for (const auto& [name, folder] : found) {
        const std::optional<FileKind> kind = files.from ? files.from : zelk::fileKind(name);
        fs::path output = folder / libswf::pathOf(name).stem();
        output += "." + std::string(zelk::extensionOf(files.to));
        Task task{{name, kind.value_or(FileKind::swf)}, {nameOf(output), files.to}, {}};
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

bool isDone(const Task& task) {
    std::error_code failure;
    const auto output = fs::last_write_time(libswf::pathOf(task.output.name), failure);
    if (failure)
        return false;
    const auto input = fs::last_write_time(libswf::pathOf(task.input.name), failure);
    return !failure && output >= input;
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
        makeFolder(nameOf(libswf::pathOf(task.output.name).parent_path()));
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
    Console console(quiet);
    std::vector<Task> tasks = planTasks(files);
    if (files.skipDone)
        std::erase_if(tasks, [](const Task& task) { return task.refusal.empty() && isDone(task); });
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
