// zelkc replace: a file in place of a tag's picture, sound or other data.
#include "Commands.h"
#include "Console.h"
#include "Movies.h"
#include "SingleTag.h"
#include "SwfException.h"
#include "SwfUtils.h"
#include "SwfWarnings.h"
#include "TagPayload.h"

namespace zelkc {

using namespace libswf;

namespace {

struct Arguments {
    Input input;
    std::string payload, output, to;
    uint16_t tag = 0;
    MovieOptions options;
    bool quiet = false;
};

std::string textOf(const File& input, const MovieOptions& options) {
    if (input.isText())
        return readText(input);
    SwfMovieSafe movie;
    load(input, movie, options, true);
    return xml2swf::swfToXmlDocument(movie, options.conversion());
}

zelk::ImportedPayload imported(const zelk::TagPayload& old, const std::string& fileName) {
    const std::vector<uint8_t> content = readBytes({fileName, FileKind::swf}); // as it is, whatever it holds
    try {
        return zelk::importPayload(old.tag(), old.context(), content);
    } catch (const SwfException& error) {
        throw InputError(fileName + ": " + error.what());
    }
}

// The text with another element for the tag; the rest stays as it is.
std::string withPayload(std::string text, const Arguments& arguments, std::string& note) {
    const std::optional<zelk::PayloadElements> elements = zelk::payloadElementsOf(text, arguments.tag);
    if (!elements)
        throw InputError("no tag with the id " + std::to_string(arguments.tag) + " has a payload");
    const zelk::ImportedPayload result = imported(zelk::TagPayload(*elements), arguments.payload);
    note = result.note;
    if (result.tag == nullptr)
        return text;
    return text.replace(elements->start(), elements->element.size(), zelk::tagElement(result.tag, elements->layout));
}

int replace(const File& input, const File& output, const Arguments& arguments) {
    Console console(arguments.quiet);
    SwfWarnings warnings;
    MovieOptions options = arguments.options;
    options.warnings = &warnings;
    if (!input.isText() && options.original.empty())
        options.original = input.name;
    const std::string name = input.shownName(true);
    try {
        std::string note;
        const std::string text = withPayload(textOf(input, options), arguments, note);
        if (!note.empty())
            console.warning(name, "id " + std::to_string(arguments.tag) + ": " + note);
        if (output.isText()) {
            writeText(output, text);
        } else {
            SwfMovie movie;
            compile(input, text, movie, options);
            const SwfVector<uint8_t> bytes = movie.serialise(options.level, options.warnings, options.threads);
            writeBytes(output, {bytes.data(), bytes.size()});
        }
        console.warnings(name, warnings);
        return ExitStatus::done;
    } catch (...) {
        console.warnings(name, warnings);
        console.failure(name);
        return ExitStatus::badInput;
    }
}

} // namespace

void addReplace(CLI::App& app, Command& chosen) {
    CLI::App* command = app.add_subcommand("replace", "Put a file in place of a tag's picture, sound or other data");
    command->footer("A picture file may make another tag of a bitmap, with the same id; that is said as a warning. "
                    "Untouched tags of a movie keep their bytes.");
    auto arguments = std::make_shared<Arguments>();
    addInput(*command, arguments->input);
    command->add_option("PAYLOAD", arguments->payload, "PNG, JPEG or GIF for a bitmap, WAV or MP3 for a sound")
        ->required();
    command->add_option("OUTPUT", arguments->output, "The changed movie, XML or project")->required();
    command->add_option("--tag", arguments->tag, "Id of the character")->type_name("ID")->required();
    addKind(*command, "--to", arguments->to, "Kind of the output when its name does not say it: swf, xml or zelk");
    addForm(*command, arguments->options.fullForm, "Form of the XML that a movie becomes, classic or full");
    command->add_option("--original", arguments->options.original,
                        "The movie that an XML came from: tags that were not touched keep its bytes");
    command->add_option("--level", arguments->options.level, "Compression of a movie, 0 to 9")
        ->check(CLI::Range(0, 9))
        ->capture_default_str();
    addQuiet(*command, arguments->quiet);
    command->callback([arguments, &chosen] {
        const File input = arguments->input.file();
        if (!input.isText() && input.isStandard())
            throw CLI::ValidationError("replace", "a movie has to be a file: it is read twice");
        if (arguments->payload == "-")
            throw CLI::ValidationError("replace", "the payload has to be a file");
        chosen = [input, output = fileOf(arguments->output, arguments->to, "--to"), arguments] {
            return replace(input, output, *arguments);
        };
    });
}

} // namespace zelkc
