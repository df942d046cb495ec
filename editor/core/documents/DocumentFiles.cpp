#include "DocumentFiles.h"

#include <algorithm>
#include <fstream>

#include "Backup.h"
#include "ConversionTargets.h"
#include "Exceptions.h"
#include "Messages.h"
#include "MovieLayout.h"
#include "ProjectFile.h"
#include "SwfException.h"
#include "SwfUtils.h"
#include "TagIndex.h"
#include "TagText.h"
#include "XmlTags.h"

namespace zelk {

using namespace libswf;
using namespace xml2swf;

namespace {

constexpr int bestCompression = 9;

template <class Bytes>
std::string_view textOf(const Bytes& bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

SwfLoadOptions toBeShown(bool fullForm) {
    SwfLoadOptions options;
    options.fullForm = fullForm;
    options.keepRaw = true;
    options.readLater = true;
    return options;
}

void loadMovie(LoadParams& params) {
    SwfWarnings warnings;
    SwfMovieSafe movie;
    SwfLoadOptions load = toBeShown(params.fullForm);
    load.warnings = &warnings;
    std::vector<uint8_t> file = readFile(params.fileName);
    params.document.fileStamp->setContent(textOf(file));
    movie.parse(std::move(file), load);
    params.progress.checkCancelled();

    std::vector<TagText> texts;
    ConversionOptions options;
    options.keepRaw = true;
    options.progress = &params.progress;
    options.warnings = &warnings;
    options.tagTexts = &texts;
    options.formDifferences = &params.document.formDifferences;
    Document& document = params.document;
    Swf2XmlConversionTarget target(document);
    swfToXml(movie, target, options);
    document.original = std::make_shared<OriginalMovie>(movie, document.text, texts);
    document.warnings.loaded(warningsOfLoad(warnings, document.text, std::move(texts)));
}

void loadText(LoadParams& params) {
    std::string file = readTextFile(params.fileName);
    params.document.fileStamp->setContent(file);
    params.document.text = documentText(std::move(file));
}

void loadProject(LoadParams& params) {
    if (const auto stamp = stampOf(params.fileName))
        params.document.fileStamp = stamp;
    params.document.text = readProject(params.fileName);
}

void loadByKind(LoadParams& params) {
    const Document& document = params.document;
    params.document.fileStamp = stateOf(params.fileName);
    switch (document.kind) {
    case FileKind::xml: loadText(params); break;
    case FileKind::swf: loadMovie(params); break;
    case FileKind::project: loadProject(params); break;
    }
    params.document.textStamp = document.fileStamp;
    if (document.text.size() > maxTextSize)
        throw FileLoadException(params.fileName, "Its text has more than 1 GiB.");
}

// A file that is gone is written anew. The stamp seen now replaces the older one: by the next look its time may be
// old enough to be relied on.
void checkUnchanged(SaveParams& params) {
    if (!params.expected)
        return;
    const FileLook look = lookAgain(*params.expected, params.fileName);
    if (look.change == FileChange::changed)
        throw FileChangedException(params.fileName);
    if (look.change == FileChange::removed)
        return;
    params.expected = look.now;
    for (FileStamp& known : params.known) {
        if (known.sameContent(look.now))
            known = look.now;
    }
}

// The last steps of every save. Compiling took its time: the file is looked at once more.
void replaceFile(SaveParams& params, std::string_view content) {
    params.progress.checkCancelled();
    checkUnchanged(params);
    if (params.keepsBackup)
        backUp(params.fileName, params.known);
    writeTextFile(params.fileName, content);
    params.written = stateOf(params.fileName);
    params.written.setContent(content);
}

void saveByKind(SaveParams& params, FileKind kind) {
    checkUnchanged(params);
    switch (kind) {
    case FileKind::xml: replaceFile(params, params.text); break;
    case FileKind::swf: replaceFile(params, textOf(compileDocument(params))); break;
    case FileKind::project: replaceFile(params, textOf(projectOfText(params.text, params.fileName))); break;
    }
}

// The content tells; what says nothing (an empty text, a damaged movie) is what its name says.
std::optional<FileKind> kindOfFile(const std::string& fileName) {
    char start[kindBytes] = {};
    std::error_code ignored;
    if (std::filesystem::is_regular_file(pathOf(fileName), ignored)) {
        std::ifstream file(pathOf(fileName), std::ios::binary);
        file.read(start, sizeof start);
        if (const auto kind = kindOfContent({start, static_cast<size_t>(file.gcount())}))
            return kind;
    }
    return fileKind(fileName);
}

std::shared_ptr<const OriginalMovie> inForm(std::shared_ptr<const OriginalMovie> original, bool fullForm,
                                            JobProgress& progress) {
    if (original == nullptr || original->fullForm() == fullForm)
        return original;
    const std::span<const uint8_t> whole = original->wholeFile().span();
    std::vector<uint8_t> file(whole.begin(), whole.end());
    const bool isCompressed = file.front() != 'F';
    file.front() = 'F'; // It is inflated already.
    return originalMovie(std::move(file), isCompressed, fullForm, progress);
}

// The element at these positions. With `tagsOnly` they count only elements that are tags.
uint32_t tagOfError(const TagIndex& index, std::string_view text, const std::vector<uint32_t>& positions,
                    bool tagsOnly) {
    uint32_t tag = TagIndex::movie;
    const bool fullForm = layoutAtStart(text).fullForm;
    for (uint32_t position : positions) {
        uint32_t row = 0, count = 0;
        for (; row < index.childCount(tag); ++row) {
            const size_t start = index.start(index.child(tag, row));
            count += !tagsOnly || isTagElement(elementName(text.substr(start)), fullForm);
            if (count > position)
                break;
        }
        if (row == index.childCount(tag))
            break;
        tag = index.child(tag, row);
    }
    return tag;
}

// Says where the tag of an error stands in the text.
[[noreturn]] void throwPlaced(const std::string& reason, const std::vector<uint32_t>& tagPath, std::string_view text,
                              bool tagsOnly) {
    const TagIndex index(text);
    const uint32_t tag = tagOfError(index, text, tagPath, tagsOnly);
    XmlPlace place{tag == TagIndex::movie ? index.movieSpan().start : index.start(tag)};
    place.locate(text);
    throw TagException(reason, place.row, place.column);
}

// An invariant that the text broke comes without a place: that is the first tag which breaks one by itself.
[[noreturn]] void throwPlaced(const std::exception& error, const SwfMovie& movie, std::string_view text) {
    for (uint32_t i = 0; i < movie.tags.count(); ++i) {
        SwfMovie alone;
        alone.version = movie.version;
        alone.fullForm = movie.fullForm;
        alone.tags.append(movie.tags.sharedAt(i));
        try {
            alone.serialise(0);
        } catch (const std::logic_error&) {
            const std::string tag = "tag " + std::to_string(i) + " (" + tagName(movie.tags.sharedAt(i)->type) + "): ";
            throwPlaced(tag + brokenInvariant(error), {i}, text, true);
        } catch (const SwfException&) { // It needs other tags.
        }
    }
    throwPlaced(brokenInvariant(error), {}, text, true);
}

SwfVector<uint8_t> serialise(SwfMovie& movie, SwfWarnings& warnings, std::string_view text) {
    try {
        return movie.serialise(bestCompression, &warnings);
    } catch (const SwfException& error) {
        throwPlaced(error.what(), error.tagPath(), text, true);
    } catch (const SwfAssertionFailure& error) {
        throwPlaced(error, movie, text);
    } catch (const std::out_of_range& error) {
        throwPlaced(error, movie, text);
    }
}

} // namespace

void loadDocument(LoadParams& params) {
    const std::optional<FileKind> kind = kindOfFile(params.fileName);
    if (!kind)
        throw FileLoadException(params.fileName, "It holds no movie, no XML and no project, and its name ends in none "
                                                 "of .swf, .zelk and .xml.");
    params.document.fileName = params.fileName;
    params.document.kind = *kind;
    params.document.hasFile = true;
    try {
        loadByKind(params);
    } catch (const SwfFileException& error) {
        throw FileLoadException(error.fileName(), error.problem());
    } catch (const SwfException& error) {
        throw FileLoadException(params.fileName, error.what());
    }
}

std::shared_ptr<const OriginalMovie> originalMovie(std::vector<uint8_t> file, bool isCompressed, bool fullForm,
                                                   JobProgress& progress) {
    SwfMovieSafe movie;
    movie.parse(std::move(file), toBeShown(fullForm));
    movie.isCompressed = isCompressed;
    std::vector<TagText> texts;
    ConversionOptions options;
    options.keepRaw = true;
    options.progress = &progress;
    options.tagTexts = &texts;
    const std::string text = swfToXmlDocument(movie, options);
    return std::make_shared<OriginalMovie>(movie, text, texts);
}

void saveDocument(SaveParams& params) {
    const std::optional<FileKind> kind = fileKind(params.fileName);
    if (!kind)
        throw FileSaveException(params.fileName, "The name ends in none of .swf, .zelk and .xml.");
    try {
        saveByKind(params, *kind);
    } catch (const SwfFileException& error) {
        throw FileSaveException(error.fileName(), error.problem()); // The backup may be what fails.
    }
}

void changeForm(ChangeFormParams& params) {
    const SwfVector<uint8_t> compiled = compileDocument(params);
    SwfWarnings warnings;
    SwfLoadOptions load = toBeShown(params.fullForm);
    load.warnings = &warnings;
    SwfMovieSafe movie;
    movie.parse({compiled.begin(), compiled.end()}, load);
    params.progress.checkCancelled();
    std::vector<TagText> texts;
    ConversionOptions options;
    options.keepRaw = true;
    options.progress = &params.progress;
    options.warnings = &warnings;
    options.tagTexts = &texts;
    params.text = swfToXmlDocument(movie, options);
    params.original = inForm(params.original, params.fullForm, params.progress);
    params.warnings = warningsOfLoad(warnings, params.text, std::move(texts));
}

SwfVector<uint8_t> compileDocument(CompileParams& params) {
    SwfWarnings warnings;
    ConversionOptions options;
    options.keepRaw = true;
    options.progress = &params.progress;
    options.warnings = &warnings;
    options.toWrite = true;
    Xml2SwfConvertionTarget target;
    std::shared_ptr<const OriginalMovie> original;
    try {
        // Undo, or the user's hand, may have changed the form since.
        if (params.original != nullptr)
            original = inForm(params.original, isFullForm(params.text), params.progress);
        options.original = original.get();
        if (!xmlToSwf(params.text, target, options))
            throw NotMovieException::noMovie();
    } catch (const XmlSyntaxError& error) {
        throw XmlException(error.what(), error.place.row, error.place.column);
    } catch (const SwfException& error) {
        throwPlaced(error.what(), error.tagPath(), params.text, false);
    }
    params.progress.checkCancelled();
    SwfVector<uint8_t> bytes = serialise(target.movie, warnings, params.text);
    params.warnings = warningsOfCompile(warnings, params.text);
    params.keepsOriginal = target.movie.source.has_value();
    const auto& items = warnings.items();
    const auto noTag = std::ranges::find(items, noTagReason, &SwfWarning::reason);
    if (noTag != items.end())
        params.leftOut = std::make_exception_ptr(NotMovieException::noTag(noTag->tagName, noTag->row, noTag->column));
    return bytes;
}

} // namespace zelk
