// zelkc texts: the texts of a movie for translators, and their translations in the movie.
#include <cstdio>

#include "Commands.h"
#include "Console.h"
#include "MovieTexts.h"
#include "Movies.h"
#include "SwfWarnings.h"
#include "TextFiles.h"

namespace zelkc {

using namespace libswf;

namespace {

struct Arguments {
    Input input;
    std::string output, to;
    std::string translations; ///< to apply; empty: write the texts
    zelk::TextChoice choice;
    zelk::TextChangeOptions options;
    int level = 9;
    bool quiet = false;
};

zelk::TextFileKind kindOf(const std::string& name) {
    const std::optional<zelk::TextFileKind> kind = zelk::textFileKind(name);
    if (!kind)
        throw CLI::ValidationError(name, "the name ends in none of .po, .csv and .json");
    return *kind;
}

MovieOptions optionsFor(const Arguments& arguments, SwfWarnings& warnings) {
    MovieOptions options;
    options.fullForm = true; // the layouts that players read
    options.level = arguments.level;
    options.warnings = &warnings;
    return options;
}

int writeTextsOf(const File& input, const Arguments& arguments) {
    Console console(arguments.quiet);
    SwfWarnings warnings;
    const std::string name = input.shownName(true);
    try {
        SwfMovieSafe movie;
        load(input, movie, optionsFor(arguments, warnings));
        const zelk::MovieTexts texts = zelk::findTexts(movie, arguments.choice);
        writeText({arguments.output, FileKind::xml},
                  zelk::writeTexts(texts.texts, kindOf(arguments.output), input.name));
        for (const zelk::TextProblem& problem : texts.unreadable)
            console.warning(name, problem.key + ": " + problem.reason);
        console.warnings(name, warnings);
        return ExitStatus::done;
    } catch (...) {
        console.warnings(name, warnings);
        console.failure(name);
        return ExitStatus::badInput;
    }
}

std::vector<zelk::NewText> readChanges(const std::string& name) {
    const std::vector<uint8_t> content = readBytes({name, FileKind::swf}); // as it is, whatever it holds
    try {
        return zelk::readTexts({reinterpret_cast<const char*>(content.data()), content.size()}, kindOf(name));
    } catch (const zelk::TextFileError& error) {
        throw InputError(name + (error.line == 0 ? "" : ":" + std::to_string(error.line)) + ": " + error.what());
    }
}

// With nothing changed a movie file stays as it is, down to its compression.
void writeChanged(const File& output, zelk::ChangedTexts& changed, const std::vector<uint8_t>& before, bool fullForm,
                  MovieOptions options) {
    std::vector<uint8_t> bytes = before;
    if (changed.changed != 0) {
        const SwfVector<uint8_t> made = changed.movie.serialise(options.level, options.warnings);
        bytes.assign(made.begin(), made.end());
    }
    if (!output.isText()) {
        writeBytes(output, bytes);
        return;
    }
    SwfMovieSafe movie;
    options.fullForm = fullForm;
    load(output, {std::move(bytes), fullForm}, movie, options, true);
    writeText(output, xml2swf::swfToXmlDocument(movie, options.conversion()));
}

int applyTexts(const File& input, const File& output, const Arguments& arguments) {
    Console console(arguments.quiet);
    SwfWarnings warnings;
    const MovieOptions options = optionsFor(arguments, warnings);
    const std::string name = input.shownName(true);
    try {
        const std::vector<zelk::NewText> changes = readChanges(arguments.translations);
        const MovieFile file = readMovie(input, options);
        SwfMovieSafe movie;
        load(input, file, movie, options);
        zelk::ChangedTexts changed = zelk::changeTexts(movie, changes, arguments.options);
        writeChanged(output, changed, file.bytes, file.fullForm, options);
        for (const zelk::TextProblem& problem : changed.problems)
            console.warning(name, problem.key + ": " + problem.reason);
        console.warnings(name, warnings);
        if (!arguments.quiet)
            std::fprintf(stderr, "%s: %u texts changed, %zu left as they were\n", name.c_str(), changed.changed,
                         changed.problems.size());
        return changed.problems.empty() ? ExitStatus::done : ExitStatus::badInput;
    } catch (...) {
        console.warnings(name, warnings);
        console.failure(name);
        return ExitStatus::badInput;
    }
}

} // namespace

void addTexts(CLI::App& app, Command& chosen) {
    CLI::App* command =
        app.add_subcommand("texts", "Write the texts of a movie for translators, or put translations in");
    command->footer("Texts that cannot be put in are told with their keys and stay as they were; the exit status is 1 "
                    "then, and OUTPUT has the others. Tags without a change keep their bytes.");
    auto arguments = std::make_shared<Arguments>();
    addInput(*command, arguments->input);
    command->add_option("OUTPUT", arguments->output, "The texts as .po, .csv or .json; with --apply the changed movie")
        ->required();
    command->add_option("--apply", arguments->translations, "Put in what this .po, .csv or .json has as translations")
        ->type_name("TEXTS");
    command->add_flag("--scripts", arguments->choice.scripts,
                      "Also the strings that scripts push, but those that the code shows to be names");
    command->add_flag("--names", arguments->choice.names,
                      "Also frame labels, names of instances, exports, classes and variables");
    command->add_flag("--widen", arguments->options.widen,
                      "Let static texts become wider than their bounds, which grow then");
    addKind(*command, "--to", arguments->to, "Kind of the changed movie when its name does not say it");
    command->add_option("--level", arguments->level, "Compression of a movie, 0 to 9")
        ->check(CLI::Range(0, 9))
        ->capture_default_str();
    addQuiet(*command, arguments->quiet);
    command->callback([arguments, &chosen] {
        const File input = arguments->input.file();
        if (arguments->translations.empty()) {
            kindOf(arguments->output);
            chosen = [input, arguments] { return writeTextsOf(input, *arguments); };
            return;
        }
        kindOf(arguments->translations);
        chosen = [input, output = fileOf(arguments->output, arguments->to, "--to"), arguments] {
            return applyTexts(input, output, *arguments);
        };
    });
}

} // namespace zelkc
