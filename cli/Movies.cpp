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

Signature parse(std::vector<uint8_t> bytes, SwfMovieSafe& movie, const MovieOptions& options, bool onlyToShow) {
    Signature signature;
    signature.bytes = bytes.size();
    if (bytes.size() >= fixedHeaderSize) {
        signature.text.assign(bytes.begin(), bytes.begin() + 3);
        for (size_t i = 4; i < fixedHeaderSize; ++i)
            signature.fileLength |= uint32_t(bytes[i]) << (8 * (i - 4));
        warnOfSignature(signature, options.warnings);
    }
    SwfLoadOptions load;
    load.keepRaw = options.keepRaw;
    load.readLater = onlyToShow;
    load.warnings = options.warnings;
    movie.parse(std::move(bytes), load);
    return signature;
}

SwfVector<uint8_t> compileFile(const File& file, const MovieOptions& options) {
    SwfMovie movie;
    compile(readText(file), movie, options);
    return movie.serialise(options.level, options.warnings, options.threads);
}

std::unique_ptr<xml2swf::OriginalMovie> loadOriginal(const std::string& fileName) {
    if (fileName.empty())
        return nullptr;
    SwfMovieSafe movie;
    SwfLoadOptions load;
    load.keepRaw = true;
    load.readLater = true;
    try {
        movie.load(fileName, load);
    } catch (const SwfException& error) {
        throw zelk::FileLoadException(fileName, error.what());
    }
    return std::make_unique<xml2swf::OriginalMovie>(movie);
}

} // namespace

xml2swf::ConversionOptions MovieOptions::conversion() const {
    xml2swf::ConversionOptions result;
    result.keepRaw = keepRaw;
    result.warnings = warnings;
    result.threads = threads;
    return result;
}

void compile(const std::string& text, SwfMovie& movie, const MovieOptions& options) {
    xml2swf::MovieTarget target;
    xml2swf::ConversionOptions conversion = options.conversion();
    const std::unique_ptr<xml2swf::OriginalMovie> original = loadOriginal(options.original);
    conversion.original = original.get();
    conversion.toWrite = true;
    if (!xml2swf::xmlToSwf(text, target, conversion))
        throw InputError("The document has no Movie element.");
    movie = std::move(target.movie);
}

Signature load(const File& file, SwfMovieSafe& movie, const MovieOptions& options, bool onlyToShow) {
    if (file.isText()) {
        const SwfVector<uint8_t> bytes = compileFile(file, options);
        return parse({bytes.data(), bytes.data() + bytes.size()}, movie, options, onlyToShow);
    }
    try {
        return parse(readBytes(file), movie, options, onlyToShow);
    } catch (const SwfException& error) {
        throw zelk::FileLoadException(file.shownName(true), error.what());
    }
}

void convert(const File& input, const File& output, const MovieOptions& options) {
    if (input.isText() && output.kind == FileKind::swf) {
        const SwfVector<uint8_t> bytes = compileFile(input, options);
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
