// zelkc check: does a file read, convert and compile, and what is wrong with it?
#include <cinttypes>
#include <cstdio>

#include <nlohmann/json.hpp>

#include "Commands.h"
#include "Console.h"
#include "MovieLines.h"
#include "Movies.h"
#include "Problems.h"
#include "SwfWarnings.h"

namespace zelkc {

using namespace libswf;

namespace {

using Json = nlohmann::ordered_json;

struct Checked {
    uint32_t tags = 0;  ///< of the main list
    uint64_t bytes = 0; ///< of what the file turns into
    zelk::Problems problems;
    std::vector<std::string> failure; ///< in lines for the user: why it does not read or compile; empty when it does
};

void checkText(const File& file, uint32_t threads, Checked& result) {
    const std::string text = readText(file);
    MovieOptions options;
    options.threads = threads;
    SwfMovie movie;
    try {
        compile(file, text, movie, options);
        result.bytes = movie.serialise(options.level, nullptr, threads).size();
        result.tags = movie.tags.count();
    } catch (...) {
        result.failure = describeFailure(file.shownName(true));
    }
    try {
        result.problems = zelk::problemsOfText(text);
    } catch (const xml2swf::XmlSyntaxError&) { // which compiling has told
    }
}

void checkMovie(const File& file, const std::optional<bool>& fullForm, uint32_t threads, Checked& result) {
    SwfWarnings warnings;
    MovieOptions options;
    options.warnings = &warnings;
    options.fullForm = fullForm;
    options.threads = threads;
    try {
        SwfMovieSafe movie;
        load(file, movie, options, true);
        const std::string text = xml2swf::swfToXmlDocument(movie, options.conversion());
        result.tags = movie.tags.count();
        result.bytes = text.size();
        result.problems = zelk::problemsOfMovie(text, warnings);
    } catch (...) {
        result.problems.add(warnings);
        result.failure = describeFailure(file.shownName(true));
    }
}

Checked checkFile(const File& file, const std::optional<bool>& fullForm, uint32_t threads) {
    Checked result;
    try {
        if (file.isText())
            checkText(file, threads, result);
        else
            checkMovie(file, fullForm, threads, result);
    } catch (...) {
        result.failure = describeFailure(file.shownName(true));
    }
    return result;
}

Json jsonOf(const zelk::Problem& problem, bool isText) {
    Json json = {{"severity", severityName(problem.severity)}, {"kind", kindName(problem.kind)}};
    if (isText && problem.row != 0) {
        json["row"] = problem.row;
        json["column"] = problem.column;
    }
    if (!problem.path.empty())
        json["index"] = problem.path;
    if (!problem.tag.empty())
        json["tag"] = problem.tag;
    if (problem.id)
        json["id"] = *problem.id;
    json["reason"] = problem.reason;
    return json;
}

Json jsonOf(const File& file, const Checked& checked, bool isGood) {
    Json json = {{"file", file.name},
                 {"ok", isGood},
                 {"tags", checked.tags},
                 {"bytes", checked.bytes},
                 {"errors", checked.problems.errors},
                 {"warnings", checked.problems.warnings}};
    if (!checked.failure.empty())
        json["failure"] = checked.failure;
    json["problems"] = Json::array();
    for (const zelk::Problem& problem : checked.problems.items)
        json["problems"].push_back(jsonOf(problem, file.isText()));
    return json;
}

struct CheckArguments {
    MovieLines lines;
    std::optional<bool> fullForm;
    bool quiet = false, json = false, strict = false;

    bool areGood(const Checked& checked) const {
        return checked.failure.empty() && checked.problems.errors == 0 && (!strict || checked.problems.warnings == 0);
    }
};

int check(const File& file, const CheckArguments& arguments) {
    Console console(arguments.quiet);
    const std::string name = file.shownName(true);
    const Checked checked = checkFile(file, arguments.fullForm, 0);
    const zelk::Problems& problems = checked.problems;
    const bool isGood = arguments.areGood(checked);
    if (arguments.json) {
        std::printf("%s\n", jsonOf(file, checked, isGood).dump(2, ' ', false, Json::error_handler_t::replace).c_str());
    } else {
        console.problems(name, problems, !file.isText());
        console.failure(checked.failure);
        if (checked.failure.empty())
            std::printf("%s: %s (tags %" PRIu32 ", bytes of %s %" PRIu64 ", warnings %" PRIu64 ", errors %" PRIu64
                        ")\n",
                        name.c_str(), isGood ? "ok" : "not ok", checked.tags, file.isText() ? "SWF" : "XML",
                        checked.bytes, problems.warnings, problems.errors);
    }
    flushStandardOutput();
    return isGood ? ExitStatus::done : ExitStatus::badInput;
}

} // namespace

void addCheck(CLI::App& app, Command& chosen) {
    CLI::App* command = app.add_subcommand("check", "Say whether a file reads and compiles, and what is wrong with it");
    auto arguments = std::make_shared<CheckArguments>();
    addMovieLines(*command, arguments->lines);
    command->add_flag("--json", arguments->json, "For machines: one JSON object")->excludes("--json-lines");
    command->add_flag("--strict", arguments->strict, "Let warnings fail, too");
    addForm(*command, arguments->fullForm, "Form in which a movie is shown, classic or full");
    addQuiet(*command, arguments->quiet);
    command->callback([arguments, &chosen] {
        if (arguments->lines.wanted)
            chosen = [arguments] {
                return printMovieLines(arguments->lines, [&](const File& file) {
                    const Checked checked = checkFile(file, arguments->fullForm, 1);
                    return jsonOf(file, checked, arguments->areGood(checked));
                });
            };
        else
            chosen = [file = oneInput(arguments->lines).file(), arguments] { return check(file, *arguments); };
    });
}

} // namespace zelkc
