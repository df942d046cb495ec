// zelkc info: the header of a movie and its tags.
#include <cinttypes>
#include <cstdio>
#include <map>

#include <nlohmann/json.hpp>

#include "Commands.h"
#include "Console.h"
#include "MovieLines.h"
#include "Movies.h"
#include "SwfException.h"
#include "SwfTagCodes.h"
#include "SwfTagDefineFont.h"
#include "SwfTagDefineFontInfo.h"
#include "SwfTagDefineSprite.h"
#include "SwfWarnings.h"
#include "XmlTags.h"

namespace zelkc {

using namespace libswf;

namespace {

using Json = nlohmann::ordered_json;

struct Row {
    std::string index;
    uint16_t code = 0;
    std::string name;
    size_t bytes = 0; ///< of the body
    std::optional<uint16_t> characterId;
    bool isRaw = false; ///< kept as bytes
    std::string reason; ///< why
};

// Where a body keeps the id of its character; none when it has none.
std::optional<size_t> idOffset(uint16_t code, std::span<const uint8_t> body) {
    switch (code) {
    case SwfTagCode::DefineSceneAndFrameLabelData: return std::nullopt; // counted among the definitions
    case SwfTagCode::PlaceObject:
    case SwfTagCode::RemoveObject:
    case SwfTagCode::StartSound:
    case SwfTagCode::DoInitAction:
    case SwfTagCode::VideoFrame:
    case SwfTagCode::CSMTextSettings:
    case SwfTagCode::DefineBitsJPEG4:
    case SwfTagCode::DefineFont4: return 0;
    case SwfTagCode::PlaceObject2: // flags, depth, character when flag 2
        return !body.empty() && (body[0] & 2) != 0 ? std::optional<size_t>(3) : std::nullopt;
    default: return SwfTagUnknown::carriesCharacterId(code) ? std::optional<size_t>(0) : std::nullopt;
    }
}

SwfContext contextOf(const SwfMovieSafe& movie) {
    SwfContext context;
    context.version = movie.version;
    context.fullForm = movie.fullForm;
    context.tags = &movie.tags.tags();
    return context;
}

// Tags whose readers take values that the XML form may have no name for: such a tag stands as Unknown there.
bool mayBeRefused(uint16_t code) {
    switch (code) {
    case SwfTagCode::DefineFontInfo:
    case SwfTagCode::DefineFontInfo2:
    case SwfTagCode::DefineMorphShape:
    case SwfTagCode::DefineMorphShape2:
    case SwfTagCode::DefineSound:
    case SwfTagCode::SoundStreamHead:
    case SwfTagCode::SoundStreamHead2:
    case SwfTagCode::DefineVideoStream: return true;
    default: return false;
    }
}

std::span<const uint8_t> bodyOf(const SwfTag& tag) {
    const std::span<const uint8_t> record = tag.source.span();
    return record.subspan(SwfTag::headerSize(record));
}

// Why the XML form has the tag as Unknown; nothing when it does not.
std::optional<std::string> reasonOf(const SwfTag& tag, const SwfContext& movie) {
    if (!tag.isUnknown() && !mayBeRefused(tag.type))
        return {};
    return xml2swf::reasonOfUnknown(tag.type, bodyOf(tag), movie);
}

Row rowOf(const SwfTag& tag, const std::vector<uint32_t>& path, const SwfContext& movie) {
    const std::span<const uint8_t> body = bodyOf(tag);
    Row row{tagPathText(path), tag.type, tagName(tag.type), body.size(), {}, tag.isUnknown(), {}};
    row.reason = reasonOf(tag, movie).value_or("");
    row.isRaw |= !row.reason.empty();
    const std::optional<size_t> at = idOffset(tag.type, body);
    if (at && *at + 2 <= body.size())
        row.characterId = static_cast<uint16_t>(body[*at] | body[*at + 1] << 8);
    return row;
}

template <class Act>
void forEachTag(const SwfTags& tags, std::vector<uint32_t>& path, const SwfContext& movie, const Act& act) {
    path.push_back(0);
    for (const auto& tag : tags.items()) {
        act(rowOf(*tag, path, movie));
        if (const auto* sprite = dynamic_cast<const SwfTagDefineSprite*>(tag.get()))
            forEachTag(sprite->tags, path, movie, act);
        ++path.back();
    }
    path.pop_back();
}

const char* compressionOf(const Signature& signature, const SwfMovieSafe& movie) {
    if (!movie.isCompressed)
        return "none";
    return signature.text.starts_with('Z') ? "lzma" : "zlib";
}

uint64_t bodyLength(const SwfMovieSafe& movie) {
    constexpr uint64_t fixedHeaderSize = 8; // stands before what may be compressed
    const uint64_t size = movie.body().size();
    return size - std::min(size, fixedHeaderSize);
}

void printTable(const File& file, const Signature& signature, const SwfMovieSafe& movie) {
    const SwfRect& stage = movie.frameSize;
    std::printf("File         %s\n", file.shownName(true).c_str());
    std::printf("Signature    %s, compression %s\n", signature.text.c_str(), compressionOf(signature, movie));
    std::printf("Version      %u\n", movie.version);
    std::printf("Frame size   %g x %g pixels (x %d to %d, y %d to %d twips)\n", (double(stage.Xmax) - stage.Xmin) / 20,
                (double(stage.Ymax) - stage.Ymin) / 20, stage.Xmin, stage.Xmax, stage.Ymin, stage.Ymax);
    std::printf("Frame rate   %g\n", double(movie.frameRate));
    std::printf("Frames       %u\n", movie.frameCount);
    std::printf("File length  %" PRIu64 " bytes, %" PRIu32 " inflated\n", signature.bytes, signature.fileLength);
    std::printf("Body length  %" PRIu64 " bytes\n\n", bodyLength(movie));
    std::printf("%-10s %5s  %-30s %10s  %s\n", "index", "code", "name", "bytes", "id");
    std::vector<uint32_t> path;
    forEachTag(movie.tags.tags(), path, contextOf(movie), [](const Row& row) {
        const std::string name = row.name + (row.isRaw ? " (raw)" : "");
        const std::string id = row.characterId ? "  " + std::to_string(*row.characterId) : "";
        const std::string reason = row.reason.empty() ? "" : "  kept raw: " + row.reason;
        std::printf("%-10s %5u  %-30s %10zu%s%s\n", row.index.c_str(), row.code, name.c_str(), row.bytes, id.c_str(),
                    reason.c_str());
    });
}

std::string dump(const Json& value, int indent) {
    return value.dump(indent, ' ', false, Json::error_handler_t::replace); // file names may be no UTF-8
}

Json headerOf(const File& file, const Signature& signature, const SwfMovieSafe& movie, const SwfWarnings& warnings) {
    const SwfRect& stage = movie.frameSize;
    Json header;
    header["file"] = file.name;
    header["kind"] = zelk::extensionOf(file.kind);
    header["signature"] = signature.text;
    header["compression"] = compressionOf(signature, movie);
    header["version"] = movie.version;
    header["width"] = (double(stage.Xmax) - stage.Xmin) / 20;
    header["height"] = (double(stage.Ymax) - stage.Ymin) / 20;
    header["frameSize"] = {{"xMin", stage.Xmin}, {"xMax", stage.Xmax}, {"yMin", stage.Ymin}, {"yMax", stage.Ymax}};
    header["frameRate"] = movie.frameRate;
    header["frameCount"] = movie.frameCount;
    header["fileSize"] = signature.bytes;
    header["fileLength"] = signature.fileLength;
    header["bodyLength"] = bodyLength(movie);
    header["warnings"] = warnings.total();
    return header;
}

// The tags are written one by one: as one value they would take many times the movie's memory.
void printJson(const File& file, const Signature& signature, const SwfMovieSafe& movie, const SwfWarnings& warnings) {
    const Json header = headerOf(file, signature, movie, warnings);
    std::string text = dump(header, 2);
    text.erase(text.rfind("\n}"));
    std::printf("%s,\n  \"tags\": [", text.c_str());
    const char* separator = "\n    ";
    std::vector<uint32_t> path;
    forEachTag(movie.tags.tags(), path, contextOf(movie), [&](const Row& row) {
        Json tag = {{"index", row.index}, {"code", row.code}, {"name", row.name}, {"bytes", row.bytes}};
        if (row.characterId)
            tag["id"] = *row.characterId;
        if (row.isRaw)
            tag["raw"] = true;
        if (!row.reason.empty())
            tag["reason"] = row.reason;
        std::printf("%s%s", separator, dump(tag, -1).c_str());
        separator = ",\n    ";
    });
    std::printf("\n  ]\n}\n");
}

// Names of fonts; those of movies up to version 5 may be no UTF-8.
std::optional<std::pair<uint16_t, std::string>> fontOf(const SwfTag& tag) {
    if (const auto* font2 = dynamic_cast<const SwfTagDefineFont2*>(&tag))
        return {{font2->characterId, std::string(font2->fontName.view())}};
    if (const auto* font4 = dynamic_cast<const SwfTagDefineFont4*>(&tag))
        return {{font4->characterId, std::string(font4->fontName.view())}};
    if (const auto* info = dynamic_cast<const SwfTagDefineFontInfo*>(&tag))
        return {{info->fontId, std::string(info->fontName.view())}};
    if (const auto* info2 = dynamic_cast<const SwfTagDefineFontInfo2*>(&tag))
        return {{info2->fontId, std::string(info2->fontName.view())}};
    return {};
}

struct Counts {
    std::map<std::string, uint32_t> tags;
    uint32_t all = 0, actions = 0, abc = 0, unreadable = 0;
    Json fonts = Json::array();

    void add(const SwfTags& list, const SwfContext& movie) {
        for (const auto& tag : list.items()) {
            ++all;
            ++tags[tagName(tag->type)];
            actions += tag->type == SwfTagCode::DoAction || tag->type == SwfTagCode::DoInitAction;
            abc += tag->type == SwfTagCode::DoABC || tag->type == SwfTagCode::DoABCDefine;
            unreadable += reasonOf(*tag, movie) ? 1 : 0;
            if (const auto font = fontOf(*tag))
                fonts.push_back({{"id", font->first}, {"name", font->second}});
            if (const auto* sprite = dynamic_cast<const SwfTagDefineSprite*>(tag.get()))
                add(sprite->tags, movie);
        }
    }
};

// [worker thread]
Json lineOf(const File& file, std::optional<bool> fullForm) {
    SwfWarnings warnings;
    MovieOptions options;
    options.level = 0;
    options.warnings = &warnings;
    options.fullForm = fullForm.value_or(true); // in which nothing is kept as bytes that players can read
    options.threads = 1;
    SwfMovieSafe movie;
    const Signature signature = load(file, movie, options, true);
    Counts counts;
    counts.add(movie.tags.tags(), contextOf(movie));
    Json line = headerOf(file, signature, movie, warnings);
    line["tags"] = counts.all;
    line["unreadable"] = counts.unreadable;
    line["scripts"] = {{"actions", counts.actions}, {"abc", counts.abc}};
    line["fonts"] = std::move(counts.fonts);
    line["tagCounts"] = counts.tags;
    line["problems"] = Json::array();
    for (const SwfWarning& warning : warnings.items())
        line["problems"].push_back(warning.text());
    return line;
}

int info(const File& file, std::optional<bool> fullForm, bool asJson, bool quiet) {
    Console console(quiet);
    SwfWarnings warnings;
    MovieOptions options;
    options.level = 0; // of a text: only its movie's inflated form is looked at
    options.warnings = &warnings;
    options.fullForm = fullForm;
    const std::string name = file.shownName(true);
    try {
        SwfMovieSafe movie;
        const Signature signature = load(file, movie, options);
        if (asJson)
            printJson(file, signature, movie, warnings);
        else
            printTable(file, signature, movie);
        flushStandardOutput();
        console.warnings(name, warnings);
        return ExitStatus::done;
    } catch (...) {
        console.warnings(name, warnings);
        console.failure(name);
        return ExitStatus::badInput;
    }
}

} // namespace

void addInfo(CLI::App& app, Command& chosen) {
    struct Arguments {
        MovieLines lines;
        std::optional<bool> fullForm;
        bool json = false, quiet = false;
    };
    CLI::App* command = app.add_subcommand("info", "Show the header of a movie and a table of its tags");
    auto arguments = std::make_shared<Arguments>();
    addMovieLines(*command, arguments->lines);
    command->add_flag("--json", arguments->json, "For machines: one JSON object")->excludes("--json-lines");
    addForm(*command, arguments->fullForm, "Form in which the movie is read, classic or full");
    addQuiet(*command, arguments->quiet);
    command->callback([arguments, &chosen] {
        if (arguments->lines.wanted) {
            chosen = [arguments] {
                return printMovieLines(arguments->lines,
                                       [&](const File& file) { return lineOf(file, arguments->fullForm); });
            };
            return;
        }
        chosen = [file = oneInput(arguments->lines).file(), arguments] {
            return info(file, arguments->fullForm, arguments->json, arguments->quiet);
        };
    });
}

} // namespace zelkc
