#include "SwfMovie.h"

#include <cstring>

#include "SwfUtils.h"
#include "SwfWarnings.h"

namespace libswf {

namespace {

constexpr uint32_t fixedHeaderSize = 12; // signature, version, length, frame rate, frame count
constexpr uint32_t endSize = 2;

SwfVector<uint8_t> fileOf(SwfOStream& stream, bool isCompressed, int level, uint32_t threads) {
    if (isCompressed)
        stream.compress(level, threads);
    SwfVector<uint8_t> file;
    const uint32_t size = stream.size();
    file.attach(stream.detach(), size, SwfAttach::adopt);
    return file;
}

// An inflated file given back as it is; only the signature follows the compression that is asked for.
SwfVector<uint8_t> serialiseWhole(const SwfBytes& whole, bool isCompressed, int level, uint32_t threads) {
    SwfOStream stream(whole.size());
    stream.writeUI8(isCompressed ? 'C' : 'F');
    stream.writeBytes(whole.span().subspan(1));
    return fileOf(stream, isCompressed, level, threads);
}

bool sameRect(const SwfRect& a, const SwfRect& b) {
    return a.Xmin == b.Xmin && a.Ymin == b.Ymin && a.Xmax == b.Xmax && a.Ymax == b.Ymax;
}

SwfVector<uint8_t> serialiseMovie(SwfMovieHeader& header, SwfTags& tags, const SwfMovieSource& source, int level,
                                  SwfWarnings* warnings, uint32_t threads) {
    SwfContext context;
    context.version = header.version;
    context.fullForm = header.fullForm;
    context.tags = &tags;
    const bool keepRect = !source.frameSizeBytes.empty() && sameRect(source.frameSize, header.frameSize);
    uint64_t fileLength = uint64_t(fixedHeaderSize) + tags.getSizeInParts(context, threads);
    fileLength += keepRect ? source.frameSizeBytes.size() : header.frameSize.getSize(context);
    if (source.tail)
        fileLength += source.tail->size() - uint64_t(endSize);
    const uint32_t frameCount = tags.showFrames();
    swfAssert(frameCount <= 0xFFFF, "frameCount <= 0xFFFF");
    const bool keepCount = !source.frameSizeBytes.empty() && source.showFrames == frameCount;
    if (!header.keepsFrameCount)
        header.frameCount = keepCount ? source.frameCount : static_cast<uint16_t>(frameCount);

    SwfOStream stream(fileLength);
    stream.context = context;
    stream.context.warnings = warnings;
    stream.writeUI8(header.isCompressed ? 'C' : 'F');
    stream.writeUI8('W');
    stream.writeUI8('S');
    stream.writeUI8(header.version);
    stream.writeUI32(static_cast<uint32_t>(fileLength));
    if (keepRect)
        stream.writeBytes(source.frameSizeBytes.span());
    else
        header.frameSize.write(stream);
    stream.writeUI16(floatToFixed8(header.frameRate));
    stream.writeUI16(header.frameCount);
    tags.writeRecordsInParts(stream, threads);
    if (source.tail)
        stream.writeBytes(source.tail->span());
    else
        stream.writeUI16(0);
    return fileOf(stream, header.isCompressed, level, threads);
}

uint32_t littleAt(const uint8_t* bytes) {
    return bytes[0] | uint32_t(bytes[1]) << 8 | uint32_t(bytes[2]) << 16 | uint32_t(bytes[3]) << 24;
}

// Whether the lengths in the header are those of an LZMA movie, whole or cut short.
bool hasLzmaLengths(const SwfIStream& stream, uint32_t fileLength) {
    constexpr uint32_t lengthOffset = 8, headerSize = 17;
    if (stream.size() < lengthOffset + sizeof(uint32_t))
        return false;
    const uint64_t end = uint64_t(headerSize) + littleAt(stream.data() + lengthOffset);
    const uint64_t mostEnd = uint64_t(fileLength) + fileLength / 64 + 64; // what packs badly grows by little
    return end == stream.size() || (end > stream.size() && end <= mostEnd);
}

// Inflates an LZMA movie. False for a file that is none, whatever its signature says.
bool inflateLzma(SwfIStream& stream, uint32_t fileLength) {
    if (stream.size() < 3 || std::memcmp(stream.data(), "ZWS", 3) != 0)
        return false;
    const bool isLzma = hasLzmaLengths(stream, fileLength);
    try {
        stream.decompressLzma(fileLength);
        return true;
    } catch (const SwfException&) {
        if (isLzma)
            throw;
        return false;
    }
}

// Reads the header and leaves the stream at the first tag.
void readHeader(SwfIStream& stream, SwfMovieHeader& header) {
    header.isCompressed = stream.readUI8("signature") == 'C';
    stream.skip(2);
    header.version = stream.readUI8("version");
    const uint32_t fileLength = stream.readUI32("file length");
    stream.context.version = header.version;
    if (header.isCompressed)
        stream.decompress(fileLength);
    else
        header.isCompressed = inflateLzma(stream, fileLength);
    header.frameSize.read(stream);
    header.frameRate = fixed8ToFloat(stream.readUI16("frame rate"));
    header.frameCount = stream.readUI16("frame count");
}

void warnOfTrailingBytes(const SwfIStream& stream, SwfWarnings* warnings) {
    if (warnings == nullptr || stream.bytesLeft() == 0)
        return;
    SwfWarning warning;
    warning.kind = SwfWarning::Kind::ignored;
    warning.offset = stream.position();
    warning.reason = std::to_string(stream.bytesLeft()) + " bytes after the last tag";
    warnings->add(std::move(warning));
}

void saveMovie(const std::string& fileName, SwfVector<uint8_t> file) {
    writeFile(fileName, {file.data(), file.size()});
}

} // namespace

SwfMovie::SwfMovie(uint8_t version_, int32_t width, int32_t height, float frameRate_, bool isCompressed_) {
    version = version_;
    frameSize = SwfRect(0, 0, width, height);
    frameRate = frameRate_;
    isCompressed = isCompressed_;
}

SwfVector<uint8_t> SwfMovie::serialise(int level, SwfWarnings* warnings, uint32_t threads) {
    if (source && !source->wholeFile.empty())
        return serialiseWhole(source->wholeFile, isCompressed, level, threads);
    return serialiseMovie(*this, tags, source.value_or(SwfMovieSource()), level, warnings, threads);
}

void SwfMovie::save(const std::string& fileName, int level) { saveMovie(fileName, serialise(level)); }

SwfMovieSafe::SwfMovieSafe() {
    chooseSafeSprites();
    isCompressed = true;
    version = 7;
    frameRate = 12.0f;
    frameSize = SwfRect(0, 0, 11000, 8000);
}

void SwfMovieSafe::load(const std::string& fileName, bool headerOnly) {
    SwfLoadOptions options;
    options.headerOnly = headerOnly;
    load(fileName, options);
}

void SwfMovieSafe::load(const std::string& fileName, const SwfLoadOptions& options) {
    parse(readFile(fileName), options);
}

void SwfMovieSafe::parse(std::vector<uint8_t> file, const SwfLoadOptions& options) {
    auto owner = std::make_shared<const std::vector<uint8_t>>(std::move(file));
    const uint8_t* data = owner->data();
    const size_t size = owner->size();
    _iStream = std::make_unique<SwfIStream>(std::shared_ptr<const uint8_t>(std::move(owner), data), size);
    SwfIStream& stream = *_iStream;
    tags = SwfTagsSafe();
    fullForm = keepsFrameCount = stream.context.fullForm = options.fullForm;
    readHeader(stream, *this);
    _firstTag = stream.position();
    if (options.headerOnly)
        return;
    stream.context.tags = &tags.tags();
    stream.context.keepRaw = options.keepRaw;
    stream.context.readLater = options.keepRaw && options.readLater;
    stream.context.warnings = options.warnings;
    if (options.keepRaw && !options.fullForm)
        stream.tagOptions(SwfTagCode::ImportAssets) |= 1;
    tags.read(stream, 0);
    warnOfTrailingBytes(stream, options.warnings);
    stream.context.warnings = nullptr;
}

SwfVector<uint8_t> SwfMovieSafe::serialise(int level, SwfWarnings* warnings, uint32_t threads) {
    return serialiseMovie(*this, tags.tags(), SwfMovieSource(), level, warnings, threads);
}

void SwfMovieSafe::save(const std::string& fileName, int level) { saveMovie(fileName, serialise(level)); }

SwfBytes SwfMovieSafe::body() const {
    if (_iStream == nullptr)
        return {};
    return SwfBytes::share(_iStream->buffer(), _iStream->data(), _iStream->size());
}

SwfMovieSource SwfMovieSafe::source() const {
    constexpr size_t rectStart = 8, rateAndCount = 4;
    const SwfBytes file = body();
    SwfMovieSource result;
    result.frameSize = frameSize;
    result.frameSizeBytes = file.part(rectStart, _firstTag - rateAndCount - rectStart);
    result.showFrames = tags.tags().showFrames();
    result.frameCount = frameCount;
    size_t end = _firstTag;
    if (tags.count() != 0) {
        const SwfBytes& last = tags.at(tags.count() - 1)->source;
        end = static_cast<size_t>(last.data() - file.data()) + last.size();
    }
    result.tail = file.part(end, file.size() - end);
    return result;
}

} // namespace libswf
