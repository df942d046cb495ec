// zelkc check: does a file read, convert and compile?
#include <cstdio>

#include "Commands.h"
#include "Console.h"
#include "Movies.h"
#include "SwfWarnings.h"

namespace zelkc {

using namespace libswf;

namespace {

struct Outcome {
    uint32_t tags = 0;  ///< of the main list
    uint64_t bytes = 0; ///< of what the file turns into
};

Outcome checkText(const File& file, const MovieOptions& options) {
    SwfMovie movie;
    compile(file, readText(file), movie, options);
    return {movie.tags.count(), movie.serialise(options.level, options.warnings).size()};
}

Outcome checkMovie(const File& file, const MovieOptions& options) {
    SwfMovieSafe movie;
    load(file, movie, options, true);
    return {movie.tags.count(), xml2swf::swfToXmlDocument(movie, options.conversion()).size()};
}

int check(const File& file, std::optional<bool> fullForm, bool quiet) {
    Console console(quiet);
    SwfWarnings warnings;
    MovieOptions options;
    options.warnings = &warnings;
    options.fullForm = fullForm;
    const bool isText = file.isText();
    const std::string name = file.shownName(true);
    try {
        const Outcome outcome = isText ? checkText(file, options) : checkMovie(file, options);
        console.warnings(name, warnings, SwfWarnings::limit);
        std::printf("%s: ok (tags %u, bytes of %s %llu, warnings %llu)\n", name.c_str(), outcome.tags,
                    isText ? "SWF" : "XML", static_cast<unsigned long long>(outcome.bytes),
                    static_cast<unsigned long long>(warnings.total()));
        return ExitStatus::done;
    } catch (...) {
        console.warnings(name, warnings, SwfWarnings::limit);
        console.failure(name);
        return ExitStatus::badInput;
    }
}

} // namespace

void addCheck(CLI::App& app, Command& chosen) {
    struct Arguments {
        Input input;
        std::optional<bool> fullForm;
        bool quiet = false;
    };
    CLI::App* command = app.add_subcommand("check", "Say whether a file reads and compiles, with every warning");
    auto arguments = std::make_shared<Arguments>();
    addInput(*command, arguments->input);
    addForm(*command, arguments->fullForm, "Form in which a movie is shown, classic or full");
    addQuiet(*command, arguments->quiet);
    command->callback([arguments, &chosen] {
        chosen = [file = arguments->input.file(), arguments] {
            return check(file, arguments->fullForm, arguments->quiet);
        };
    });
}

} // namespace zelkc
