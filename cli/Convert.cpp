// zelkc convert: one file, or many on all cores.
#include "Commands.h"
#include "Console.h"
#include "ConvertMany.h"
#include "Movies.h"
#include "SwfWarnings.h"

namespace zelkc {

namespace {

struct Arguments {
    std::vector<std::string> files;
    std::string outDir, from, to;
    bool skipDone = false;
    bool dropUnreadable = false;
    bool quiet = false;
    MovieOptions options;
};

int convertOne(const File& input, const File& output, MovieOptions options, bool quiet) {
    Console console(quiet);
    libswf::SwfWarnings warnings;
    options.warnings = &warnings;
    const std::string name = input.shownName(true);
    try {
        convert(input, output, options);
        console.warnings(name, warnings);
        return ExitStatus::done;
    } catch (...) {
        console.warnings(name, warnings);
        console.failure(name);
        return ExitStatus::badInput;
    }
}

Command plan(const Arguments& arguments) {
    const std::vector<std::string>& files = arguments.files;
    MovieOptions options = arguments.options;
    options.keepRaw = !arguments.dropUnreadable;
    if (arguments.outDir.empty()) {
        if (files.size() != 2)
            throw CLI::ValidationError("convert", "takes one input and one output, or --out-dir for many files");
        const File input = fileOf(files[0], arguments.from, "--from");
        const File output = fileOf(files[1], arguments.to, "--to");
        return [=, quiet = arguments.quiet] { return convertOne(input, output, options, quiet); };
    }
    if (std::find(files.begin(), files.end(), "-") != files.end())
        throw CLI::ValidationError("--out-dir", "standard input has no name to keep");
    return [=] {
        return convertMany({files, zelk::kindOfExtension(arguments.from), arguments.outDir,
                            *zelk::kindOfExtension(arguments.to), arguments.skipDone},
                           options, arguments.quiet);
    };
}

} // namespace

void addConvert(CLI::App& app, Command& chosen) {
    CLI::App* command = app.add_subcommand("convert", "Turn movies, their XML and projects into each other");
    auto arguments = std::make_shared<Arguments>();
    command
        ->add_option("FILE", arguments->files,
                     "Input and output, or with --out-dir all inputs; - is standard input or output")
        ->required();
    addKind(*command, "--from", arguments->from, "Kind of the input when its name does not say it: swf, xml or zelk");
    CLI::Option* to =
        addKind(*command, "--to", arguments->to, "Kind of the output when its name does not say it: swf, xml or zelk");
    CLI::Option* outDir = command->add_option("--out-dir", arguments->outDir,
                                              "Convert all files, and those of folders, into this folder, keeping "
                                              "their names");
    outDir->needs(to);
    command
        ->add_flag("--skip-done", arguments->skipDone,
                   "With --out-dir: leave out files whose output is there and not older")
        ->needs(outDir);
    command
        ->add_option("--original", arguments->options.original,
                     "The movie that the XML came from: tags that were not touched keep its bytes")
        ->excludes("--out-dir");
    addForm(*command, arguments->options.fullForm,
            "Form of the XML that is written, classic or full; by default that of the input");
    command
        ->add_option_function<std::string>(
            "--abc", [arguments](const std::string& how) { arguments->options.abcAsData = how == "data"; },
            "How the full form shows ActionScript 3: code (the default) or data, its bytes")
        ->type_name("HOW")
        ->check(CLI::IsMember({"code", "data"}));
    command->add_option("--level", arguments->options.level, "Compression of a movie, 0 to 9")
        ->check(CLI::Range(0, 9))
        ->capture_default_str();
    command->add_flag("--drop-unreadable", arguments->dropUnreadable,
                      "Leave out tags that cannot be read instead of keeping their bytes");
    addQuiet(*command, arguments->quiet);
    command->callback([arguments, &chosen] { chosen = plan(*arguments); });
}

} // namespace zelkc
