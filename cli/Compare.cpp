// zelkc compare: what differs between two movies?
#include <cinttypes>
#include <cstdio>

#include <nlohmann/json.hpp>

#include "Commands.h"
#include "Console.h"
#include "MovieCompare.h"
#include "Movies.h"
#include "SwfException.h"
#include "SwfWarnings.h"

namespace zelkc {

using namespace libswf;
using namespace xml2swf;

namespace {

using Json = nlohmann::ordered_json;

struct Arguments {
    std::string a, b, from;
    std::optional<bool> fullForm;
    bool all = false, json = false, quiet = false;
};

// A name that says its kind says it; --from is for the others.
File inputFile(const std::string& name, const std::string& from) {
    const std::optional<FileKind> told = name == "-" ? std::nullopt : zelk::fileKind(name);
    return told ? File{name, *told} : fileOf(name, from, "--from");
}

bool isShown(const TagComparison& tag, bool all) { return all || tag.relation != TagRelation::identical; }

std::string fieldText(const FieldDifference& field) {
    return printable(field.path + ": " + field.a.value_or("(none)") + " / " + field.b.value_or("(none)"));
}

std::string detailText(const TagComparison& tag) {
    if (tag.field)
        return fieldText(*tag.field);
    std::string text = std::to_string(tag.pathA.empty() ? tag.sizeB : tag.sizeA);
    if (!tag.pathA.empty() && !tag.pathB.empty() && tag.sizeA != tag.sizeB)
        text += " / " + std::to_string(tag.sizeB);
    return text + " bytes";
}

void printText(const MovieComparison& comparison, bool all) {
    for (const FieldDifference& field : comparison.header)
        std::printf("header        %s\n", fieldText(field).c_str());
    for (const TagComparison& tag : comparison.tags) {
        if (!isShown(tag, all))
            continue;
        auto place = [](const std::string& path) { return path.empty() ? "-" : path.c_str(); };
        std::printf("%-12s  %-10s %-10s %-22s %s\n", relationText(tag.relation), place(tag.pathA), place(tag.pathB),
                    tagName(tag.code).c_str(), detailText(tag).c_str());
    }
    const auto counts = comparison.counts();
    for (size_t i = 0; i < tagRelations; ++i)
        std::printf("%s%" PRIu64 " %s", i == 0 ? "" : ", ", counts[i], relationText(static_cast<TagRelation>(i)));
    std::printf("; %zu header fields differ\n", comparison.header.size());
}

std::string dump(const Json& value, int indent) {
    return value.dump(indent, ' ', false, Json::error_handler_t::replace); // texts of old movies may be no UTF-8
}

Json jsonOf(const FieldDifference& field) {
    const auto value = [](const std::optional<std::string>& text) { return text ? Json(*text) : Json(); };
    return {{"path", field.path}, {"a", value(field.a)}, {"b", value(field.b)}};
}

Json jsonOf(const TagComparison& tag) {
    Json row = {{"relation", relationText(tag.relation)}, {"code", tag.code}, {"name", tagName(tag.code)}};
    if (!tag.pathA.empty())
        row["a"] = {{"index", tag.pathA}, {"bytes", tag.sizeA}};
    if (!tag.pathB.empty())
        row["b"] = {{"index", tag.pathB}, {"bytes", tag.sizeB}};
    if (tag.field)
        row["field"] = jsonOf(*tag.field);
    return row;
}

// The tags are written one by one: as one value they would take many times the memory of the comparison.
void printJson(const File& a, const File& b, const MovieComparison& comparison, bool all) {
    Json start = {{"a", a.name}, {"b", b.name}, {"same", comparison.same()}, {"header", Json::array()}};
    const auto counts = comparison.counts();
    for (size_t i = 0; i < tagRelations; ++i)
        start["counts"][relationText(static_cast<TagRelation>(i))] = counts[i];
    for (const FieldDifference& field : comparison.header)
        start["header"].push_back(jsonOf(field));
    std::string text = dump(start, 2);
    text.erase(text.rfind("\n}"));
    std::printf("%s,\n  \"tags\": [", text.c_str());
    const char* separator = "\n    ";
    for (const TagComparison& tag : comparison.tags) {
        if (!isShown(tag, all))
            continue;
        std::printf("%s%s", separator, dump(jsonOf(tag), -1).c_str());
        separator = ",\n    ";
    }
    std::printf("\n  ]\n}\n");
}

// False, with the failure shown, for an input that is no movie.
template <class Act>
bool tryWith(const File& file, Console& console, Act act) {
    SwfWarnings warnings;
    MovieOptions options;
    options.level = 0; // of a text: only its movie's inflated form is looked at
    options.warnings = &warnings;
    const std::string name = file.shownName(true);
    try {
        act(options);
        console.warnings(name, warnings);
        return true;
    } catch (...) {
        console.warnings(name, warnings);
        console.failure(name);
        return false;
    }
}

// Reads both in the same form: the full one if the text of either has it.
bool loadBoth(const File& a, const File& b, std::optional<bool> fullForm, SwfMovieSafe& movieA, SwfMovieSafe& movieB,
              Console& console) {
    MovieFile contentA, contentB;
    const auto read = [&](const File& file, MovieFile& content) {
        return tryWith(file, console, [&](const MovieOptions& options) { content = readMovie(file, options); });
    };
    const auto parse = [&](const File& file, MovieFile& content, SwfMovieSafe& movie) {
        return tryWith(file, console, [&](MovieOptions& options) {
            options.fullForm = fullForm;
            load(file, std::move(content), movie, options);
        });
    };
    const bool readA = read(a, contentA), readB = read(b, contentB);
    if (!fullForm)
        fullForm = contentA.fullForm || contentB.fullForm;
    const bool loadedA = readA && parse(a, contentA, movieA);
    return readB && parse(b, contentB, movieB) && loadedA;
}

int compare(const File& a, const File& b, const Arguments& arguments) {
    Console console(arguments.quiet);
    SwfMovieSafe movieA, movieB;
    if (!loadBoth(a, b, arguments.fullForm, movieA, movieB, console))
        return ExitStatus::badInput;
    try {
        const MovieComparison comparison = compareMovies(movieA, movieB);
        if (arguments.json)
            printJson(a, b, comparison, arguments.all);
        else
            printText(comparison, arguments.all);
        flushStandardOutput();
        return comparison.same() ? ExitStatus::done : ExitStatus::differ;
    } catch (...) {
        console.failure(a.shownName(true) + ", " + b.shownName(true));
        return ExitStatus::badInput;
    }
}

} // namespace

void addCompare(CLI::App& app, Command& chosen) {
    CLI::App* command = app.add_subcommand("compare", "Tell what differs between two movies, tag by tag");
    command->footer("Exit status: 0 nothing differs in what the XML says, 1 something does or a file cannot be read, "
                    "2 wrong use.");
    auto arguments = std::make_shared<Arguments>();
    command->add_option("A", arguments->a, "A movie, its XML or a project; - is standard input")->required();
    command->add_option("B", arguments->b, "Another one")->required();
    addKind(*command, "--from", arguments->from, "Kind of a file when its name does not say it: swf, xml or zelk");
    command->add_flag("--all", arguments->all, "Show identical tags too");
    command->add_flag("--json", arguments->json, "For machines: one JSON object");
    addForm(*command, arguments->fullForm, "Form in which they are compared, classic or full");
    addQuiet(*command, arguments->quiet);
    command->callback([arguments, &chosen] {
        if (arguments->a == "-" && arguments->b == "-")
            throw CLI::ValidationError("compare", "standard input is one file only");
        chosen = [a = inputFile(arguments->a, arguments->from), b = inputFile(arguments->b, arguments->from),
                  arguments] { return compare(a, b, *arguments); };
    });
}

} // namespace zelkc
