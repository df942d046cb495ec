#include <algorithm>

#include "Conversion.h"
#include "SwfInOrder.h"
#include "XmlGlyphs.h"
#include "XmlTags.h"
#include "XmlWriteParts.h"

namespace xml2swf {

using namespace libswf;

namespace {

int64_t pixels(int64_t from, int64_t to) { return std::clamp<int64_t>((to - from) / 20, 0, maxStagePixels); }

// What a movie of its version has anyway is left out.
void writeAttributes(XmlNode& root, const SwfMovieHeader& movie, uint32_t frames) {
    const SwfRect& stage = movie.frameSize;
    const int64_t width = pixels(stage.Xmin, stage.Xmax);
    const int64_t height = pixels(stage.Ymin, stage.Ymax);
    if (movie.fullForm)
        root.attribute("Form", fullForm);
    root.attribute("SwfVersion", movie.version);
    root.attribute("Width", width);
    root.attribute("Height", height);
    root.attribute("FrameRate", movie.frameRate);
    if (movie.isCompressed != (movie.version >= 6))
        root.attribute("IsCompressed", movie.isCompressed);
    if (stage.Xmin != 0 || stage.Ymin != 0 || stage.Xmax != width * 20 || stage.Ymax != height * 20 || stage.bits) {
        root.attribute("MaxX", stage.Xmax);
        root.attribute("MaxY", stage.Ymax);
        root.attribute("MinX", stage.Xmin);
        root.attribute("MinY", stage.Ymin);
        if (stage.bits)
            root.attribute("Bits", stage.bits.bits());
    }
    if (movie.fullForm && movie.frameCount != frames)
        root.attribute("FrameCount", movie.frameCount);
}

// Room for the text of most movies, so that it need not move as it grows.
void reserveFor(XmlText& out, const SwfMovieSafe& movie) {
    constexpr size_t textPerByte = 20, most = size_t(1) << 30;
    out.reserve(std::min(most, movie.body().size() * textPerByte + movie.tags.count() * textPerTag));
}

using Tags = std::vector<std::shared_ptr<SwfTag>>;

void writeRootTag(XmlNode& root, const Tags& tags, size_t index) {
    root.context().tagPath.assign(1, static_cast<uint32_t>(index));
    writeTag(root, *tags[index]);
}

void report(IProgressReporter* progress, const Tags& tags, size_t index) {
    if (progress != nullptr)
        progress->report(double(index + 1) / double(tags.size()));
}

void writeTags(XmlNode& root, const Tags& tags, IProgressReporter* progress) {
    for (size_t i = 0; i < tags.size(); ++i) {
        writeRootTag(root, tags, i);
        report(progress, tags, i);
    }
}

// Writes the tags of a big movie on several threads, some at a time into a text of their own. Big tags are written on
// the calling thread where they belong, so that little text stands in memory twice.
class PartedWriter {
public:
    PartedWriter(XmlNode& root, const Tags& tags, IProgressReporter* progress)
        : _root(root), _context(root.context()), _partContext(_context), _tags(tags), _progress(progress) {
        size_t bytes = partSize;
        for (size_t i = 0; i < tags.size(); ++i) {
            const bool isBig = tags[i]->size > bigTag;
            if (bytes >= partSize || isBig) {
                _parts.emplace_back(i, isBig);
                bytes = isBig ? partSize : 0;
            }
            bytes += tags[i]->size + usualHeader;
            _parts.back().end = i + 1;
        }
    }

    void write(uint32_t threads) {
        workInOrder(
            {_parts.size(), [this](size_t i) { writePart(_parts[i]); }, [this](size_t i) { takePart(_parts[i]); }},
            threads);
    }

private:
    static constexpr size_t partSize = 8 * 1024, bigTag = 128 * 1024, usualHeader = 2;

    struct Part {
        size_t first, done, end; // indices of tags
        bool isBig;
        XmlText text;
        size_t textStart = 0, textEnd = 0; // of the tags that are done
        SwfWarnings warnings;
        std::vector<TagText> tagTexts;
        FormDifferences differences;

        Part(size_t index, bool big) : first(index), done(index), end(index), isBig(big) {}
    };

    // [any thread]
    void writePart(Part& part) {
        if (part.isBig)
            return;
        XmlWriteContext context(_partContext);
        context.threads = 1;
        context.warnings = _partContext.warnings == nullptr ? nullptr : &part.warnings;
        context.tagTexts = _partContext.tagTexts == nullptr ? nullptr : &part.tagTexts;
        context.differences = _partContext.differences == nullptr ? nullptr : &part.differences;
        part.text = _texts.take();
        XmlNode root(part.text, context, 0, "Movie"); // for its depth; its own text is left out
        part.textStart = part.text.size();
        part.textEnd = part.textStart;
        for (; part.done < part.end; ++part.done) {
            writeRootTag(root, _tags, part.done);
            part.textEnd = part.text.size();
        }
    }

    void takePart(Part& part) {
        if (part.isBig)
            writeRootTag(_root, _tags, part.done++);
        else
            join(part);
        for (size_t i = part.first; i < part.done; ++i)
            report(_progress, _tags, i);
        _texts.giveBack(std::move(part.text));
        part = Part(part.end, false); // gives its memory back
    }

    void join(Part& part) {
        if (_context.warnings != nullptr)
            _context.warnings->add(std::move(part.warnings));
        if (_context.differences != nullptr)
            *_context.differences += part.differences;
        XmlText& out = _root.out();
        const size_t shift = out.size() - part.textStart;
        out.append(part.text.view().substr(part.textStart, part.textEnd - part.textStart));
        for (const TagText& place : part.tagTexts)
            _context.tagTexts->push_back({place.start + shift, place.end + shift, place.tag});
    }

    XmlNode& _root;
    XmlWriteContext& _context;
    const XmlWriteContext _partContext; // what the parts' contexts are made of
    const Tags& _tags;
    IProgressReporter* _progress;
    std::vector<Part> _parts;
    XmlFreeTexts _texts;
};

void appendMovie(XmlText& out, SwfMovieSafe& movie, const ConversionOptions& options) {
    reserveFor(out, movie);
    XmlWriteContext context;
    context.swf.version = movie.version;
    context.swf.fullForm = movie.fullForm;
    context.swf.tags = &movie.tags.tags();
    context.keepRaw = options.keepRaw;
    context.abcAsData = options.abcAsData;
    context.warnings = options.warnings;
    context.tagTexts = options.tagTexts;
    const MovieFonts fonts(context.swf, options.fonts);
    context.fonts = options.ignoreFonts ? nullptr : &fonts;
    context.differences = movie.fullForm ? nullptr : options.formDifferences;
    const Tags& tags = movie.tags.tags().items();
    {
        XmlNode root(out, context);
        writeAttributes(root, movie, movie.tags.tags().showFrames());
        const uint32_t threads = context.threads = threadsFor(movie.body().size() >= bigBody, options.threads);
        if (threads > 1)
            PartedWriter(root, tags, options.progress).write(threads);
        else
            writeTags(root, tags, options.progress);
        root.end(true);
    }
    if (options.progress != nullptr && tags.empty())
        options.progress->report(1);
}

} // namespace

std::string swfToXml(SwfMovieSafe& movie, const ConversionOptions& options) {
    XmlText text;
    appendMovie(text, movie, options);
    return text.take();
}

void swfToXml(SwfMovieSafe& movie, ISwf2XmlConversionTarget& target, const ConversionOptions& options) {
    target.documentText(swfToXmlDocument(movie, options));
}

std::string swfToXmlDocument(SwfMovieSafe& movie, const ConversionOptions& options) {
    XmlText text(xmlDeclaration);
    appendMovie(text, movie, options);
    return text.take();
}

} // namespace xml2swf
