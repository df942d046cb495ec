#include "Movies.h"

#include <cstring>

#include "OriginalMovie.h"
#include "SwfException.h"
#include "SwfWarnings.h"

namespace zelkc {

using namespace libswf;

namespace {

constexpr size_t fixedHeaderSize = 8; // signature, version, length

// Any file without a compressed movie's signature reads as an uncompressed one, so say when it hardly is one.
void warnOfSignature(const Signature& signature, SwfWarnings* warnings) {
    if (warnings == nullptr || signature.text == "FWS" || signature.text == "CWS" || signature.text == "ZWS")
        return;
    SwfWarning warning;
    warning.kind = SwfWarning::Kind::ignored;
    warning.offset = 0;
    warning.reason = "the file does not start with FWS, CWS or ZWS";
    warnings->add(std::move(warning));
}

SwfVector<uint8_t> compileFile(const File& file, SwfMovie& movie, const MovieOptions& options) {
    compile(file, readText(file), movie, options);
    return movie.serialise(options.level, options.warnings, options.threads);
}

// In the form of the text that it is the original of: another one would show each tag as changed.
std::unique_ptr<xml2swf::OriginalMovie> loadOriginal(const std::string& fileName, std::string_view text) {
    if (fileName.empty())
        return nullptr;
    SwfMovieSafe movie;
    SwfLoadOptions load;
    load.fullForm = xml2swf::isFullForm(text);
    load.keepRaw = true;
    load.readLater = true;
    try {
        movie.load(fileName, load);
    } catch (const SwfFileException& error) {
        throw zelk::FileLoadException(fileName, error.problem());
    } catch (const SwfException& error) {
        throw zelk::FileLoadException(fileName, error.what());
    }
    return std::make_unique<xml2swf::OriginalMovie>(movie);
}

} // namespace

xml2swf::ConversionOptions MovieOptions::conversion() const {
    xml2swf::ConversionOptions result;
    result.keepRaw = keepRaw;
    result.abcAsData = abcAsData;
    result.warnings = warnings;
    result.threads = threads;
    return result;
}

void compile(const File& file, const std::string& text, SwfMovie& movie, const MovieOptions& options) {
    xml2swf::MovieTarget target;
    xml2swf::ConversionOptions conversion = options.conversion();
    const std::unique_ptr<xml2swf::OriginalMovie> original = loadOriginal(options.original, text);
    conversion.original = original.get();
    conversion.toWrite = true;
    try {
        if (!xml2swf::xmlToSwf(text, target, conversion))
            throw zelk::NotMovieException::noMovie();
    } catch (const xml2swf::XmlSyntaxError& error) {
        throw zelk::FileXmlException(file.shownName(true), {error.what(), error.place.row, error.place.column});
    }
    movie = std::move(target.movie);
}

MovieFile readMovie(const File& file, const MovieOptions& options) {
    if (!file.isText())
        return {readBytes(file), false};
    SwfMovie compiled;
    const SwfVector<uint8_t> bytes = compileFile(file, compiled, options);
    return {{bytes.data(), bytes.data() + bytes.size()}, compiled.fullForm};
}

Signature load(const File& file, MovieFile content, SwfMovieSafe& movie, const MovieOptions& options, bool onlyToShow) {
    const std::vector<uint8_t>& bytes = content.bytes;
    Signature signature;
    signature.bytes = bytes.size();
    if (bytes.size() >= fixedHeaderSize) {
        signature.text.assign(bytes.begin(), bytes.begin() + 3);
        for (size_t i = 4; i < fixedHeaderSize; ++i)
            signature.fileLength |= uint32_t(bytes[i]) << (8 * (i - 4));
        warnOfSignature(signature, options.warnings);
    }
    SwfLoadOptions load;
    load.fullForm = options.fullForm.value_or(content.fullForm);
    load.keepRaw = options.keepRaw;
    load.readLater = onlyToShow;
    load.warnings = options.warnings;
    try {
        movie.parse(std::move(content.bytes), load);
    } catch (const SwfException& error) {
        if (file.isText())
            throw;
        throw zelk::FileLoadException(file.shownName(true), error.what());
    }
    return signature;
}

Signature load(const File& file, SwfMovieSafe& movie, const MovieOptions& options, bool onlyToShow) {
    return load(file, readMovie(file, options), movie, options, onlyToShow);
}

void convert(const File& input, const File& output, const MovieOptions& options) {
    if (input.isText() && output.kind == FileKind::swf) {
        SwfMovie movie;
        const SwfVector<uint8_t> bytes = compileFile(input, movie, options);
        writeBytes(output, {bytes.data(), bytes.size()});
        return;
    }
    SwfMovieSafe movie;
    load(input, movie, options, output.kind != FileKind::swf);
    if (output.kind == FileKind::swf) {
        const SwfVector<uint8_t> bytes = movie.serialise(options.level, options.warnings, options.threads);
        writeBytes(output, {bytes.data(), bytes.size()});
    } else {
        writeText(output, xml2swf::swfToXmlDocument(movie, options.conversion()));
    }
}

} // namespace zelkc
