// zelkc extract: the pictures, sounds and other data of a movie as files.
#include <cstdio>
#include <filesystem>
#include <set>

#include "Commands.h"
#include "Console.h"
#include "Movies.h"
#include "Payload.h"
#include "SwfException.h"
#include "SwfUtils.h"
#include "SwfWarnings.h"

namespace zelkc {

using namespace libswf;

namespace {

struct Arguments {
    Input input;
    std::string outDir;
    std::optional<uint16_t> tag;
    std::optional<bool> fullForm;
    bool unknown = false, list = false, force = false, quiet = false;
};

// Writes or lists one payload after the other; one that cannot be read does not keep the others back.
class Extraction {
public:
    Extraction(const Arguments& arguments, const std::string& file, Console& console)
        : _arguments(arguments), _file(file), _console(console) {}

    void take(const SwfTag& tag, const std::string& place, const zelk::PayloadContext& context) {
        if (!isWanted(tag))
            return;
        ++found;
        try {
            const zelk::Payload payload = zelk::exportPayload(tag, context);
            put(payload, freeName(tag, place, payload.extension));
            if (!payload.note.empty())
                warn(tag, place, payload.note);
        } catch (const SwfException& error) {
            ++failed;
            warn(tag, place, error.what());
        } catch (const InputError& error) {
            ++failed;
            warn(tag, place, error.what());
        }
    }

    size_t found = 0, failed = 0;

private:
    bool isWanted(const SwfTag& tag) const {
        if (_arguments.tag)
            return tag.isDefinition() && tag.definitionId() == *_arguments.tag;
        return _arguments.unknown || dynamic_cast<const SwfTagUnknown*>(&tag) == nullptr;
    }

    // Two tags may define the same character.
    std::string freeName(const SwfTag& tag, const std::string& place, const std::string& extension) {
        std::string name = zelk::payloadFileName(tag, place, extension);
        if (!_names.insert(name).second) {
            name.insert(name.size() - extension.size() - 1, "-" + place);
            _names.insert(name);
        }
        return name;
    }

    void put(const zelk::Payload& payload, const std::string& name) const {
        if (_arguments.list) {
            std::printf("%-40s %10zu\n", name.c_str(), payload.bytes.size());
            return;
        }
        const std::filesystem::path path = pathOf(_arguments.outDir) / pathOf(name);
        std::error_code unknown; // left to the writer, which says why
        if (!_arguments.force && std::filesystem::exists(path, unknown))
            throw InputError(name + " is there already; --force overwrites it");
        writeFile(nameOf(path), payload.bytes);
    }

    void warn(const SwfTag& tag, const std::string& place, const std::string& reason) {
        const std::string id = tag.isDefinition() ? ", id " + std::to_string(tag.definitionId()) : "";
        _console.warning(_file, "tag " + place + " (" + tagName(tag.type) + id + "): " + reason);
    }

    const Arguments& _arguments;
    const std::string& _file;
    Console& _console;
    std::set<std::string> _names;
};

int extract(const File& file, const Arguments& arguments) {
    Console console(arguments.quiet);
    SwfWarnings warnings;
    MovieOptions options;
    options.level = 0; // of a text: only its movie's inflated form is looked at
    options.warnings = &warnings;
    options.fullForm = arguments.fullForm;
    const std::string name = file.shownName(true);
    try {
        SwfMovieSafe movie;
        load(file, movie, options);
        console.warnings(name, warnings);
        if (!arguments.list)
            makeFolder(arguments.outDir);
        Extraction extraction(arguments, name, console);
        zelk::forEachPayload(movie.tags.tags(), [&](const auto&... payload) { extraction.take(payload...); });
        if (extraction.found == 0 && arguments.tag)
            throw InputError("no tag with the id " + std::to_string(*arguments.tag) + " has a payload");
        if (!arguments.list)
            std::printf("%s: %zu of %zu payloads extracted\n", name.c_str(), extraction.found - extraction.failed,
                        extraction.found);
        flushStandardOutput();
        return extraction.failed == 0 ? ExitStatus::done : ExitStatus::badInput;
    } catch (...) {
        console.failure(name);
        return ExitStatus::badInput;
    }
}

} // namespace

void addExtract(CLI::App& app, Command& chosen) {
    CLI::App* command = app.add_subcommand("extract", "Write the pictures, sounds and other data of a movie as files");
    command->footer("Files are named by the character's id, or the place of the tag, and the tag's name. One that "
                    "cannot be written is a warning, and the exit status 1.");
    auto arguments = std::make_shared<Arguments>();
    addInput(*command, arguments->input);
    CLI::Option* outDir = command->add_option("--out-dir", arguments->outDir, "The folder for the files");
    CLI::Option* list = command->add_flag("--list", arguments->list, "Only list the files with their sizes");
    list->excludes(outDir);
    command->add_option("--tag", arguments->tag, "Only the tag that defines this character")->type_name("ID");
    command->add_flag("--unknown", arguments->unknown, "Also the bodies of tags that are kept as bytes");
    command->add_flag("--force", arguments->force, "Overwrite files that are there");
    addForm(*command, arguments->fullForm, "Form in which the movie is read, classic or full");
    addQuiet(*command, arguments->quiet);
    command->callback([arguments, &chosen] {
        if (arguments->outDir.empty() && !arguments->list)
            throw CLI::ValidationError("extract", "takes --out-dir or --list");
        chosen = [file = arguments->input.file(), arguments] { return extract(file, *arguments); };
    });
}

} // namespace zelkc
