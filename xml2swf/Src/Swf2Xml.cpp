#include "Conversion.h"
#include "SwfUtils.h"
#include "XmlTags.h"

namespace xml2swf {

using namespace libswf;

namespace {

int64_t pixels(int64_t from, int64_t to) { return std::clamp<int64_t>((to - from) / 20, 0, maxStagePixels); }

void replaceAll(std::string& text, std::string_view placeholder, std::string_view value) {
    for (size_t at = 0; (at = text.find(placeholder, at)) != text.npos; at += value.size())
        text.replace(at, placeholder.size(), value);
}

std::string movieStartTag(const SwfMovieHeader& movie) {
    const SwfRect& stage = movie.frameSize;
    const int64_t width = pixels(stage.Xmin, stage.Xmax);
    const int64_t height = pixels(stage.Ymin, stage.Ymax);
    std::string tag = R"(<Movie SwfVersion="{Version}" Width="{Width}" Height="{Height}" FrameRate="{FrameRate}">)";
    replaceAll(tag, "{Version}", formatInteger(movie.version).view());
    replaceAll(tag, "{Width}", formatInteger(width).view());
    replaceAll(tag, "{Height}", formatInteger(height).view());
    replaceAll(tag, "{FrameRate}", formatReal(movie.frameRate).view());

    std::string unusual;
    if (movie.isCompressed != (movie.version >= 6))
        unusual += movie.isCompressed ? R"( IsCompressed="true")" : R"( IsCompressed="false")";
    if (stage.Xmin != 0 || stage.Ymin != 0 || stage.Xmax != width * 20 || stage.Ymax != height * 20) {
        auto twips = [&](const char* name, int32_t value) {
            unusual.append(" ").append(name).append("=\"").append(formatInteger(value).view()).append("\"");
        };
        twips("MaxX", stage.Xmax);
        twips("MaxY", stage.Ymax);
        twips("MinX", stage.Xmin);
        twips("MinY", stage.Ymin);
    }
    tag.insert(tag.size() - 1, unusual);
    return tag;
}

// The root element, whose start tag comes from the template.
class MovieNode : public XmlNode {
public:
    MovieNode(std::string& out, XmlWriteContext& context, const SwfMovieHeader& movie)
        : XmlNode(out, context, 0, "Movie") {
        out.resize(out.size() - std::string_view("\n<Movie>").size());
        out += movieStartTag(movie);
    }
};

// Room for the text of most movies, so that it need not move as it grows. What is not used is never touched and costs
// nothing.
void reserveFor(std::string& out, const SwfMovieSafe& movie) {
    constexpr size_t textPerByte = 14, most = size_t(1) << 30;
    try {
        out.reserve(std::min(most, movie.body().size() * textPerByte));
        adviseBigPages(out.data(), out.capacity());
    } catch (const std::bad_alloc&) {
        // It grows as it must.
    }
}

void appendMovie(std::string& out, SwfMovieSafe& movie, const ConversionOptions& options) {
    reserveFor(out, movie);
    XmlWriteContext context;
    context.swf.version = movie.version;
    context.swf.tags = &movie.tags.tags();
    context.keepRaw = options.keepRaw;
    context.warnings = options.warnings;
    context.tagTexts = options.tagTexts;
    {
        MovieNode root(out, context, movie);
        context.tagPath.push_back(0);
        const auto& tags = movie.tags.tags().items();
        for (size_t i = 0; i < tags.size(); ++i) {
            context.tagPath.back() = static_cast<uint32_t>(i);
            writeTag(root, *tags[i]);
            if (options.progress != nullptr)
                options.progress->report(double(i + 1) / double(tags.size()));
        }
        root.end(true);
    }
    if (options.progress != nullptr && movie.tags.count() == 0)
        options.progress->report(1);
}

} // namespace

std::string swfToXml(SwfMovieSafe& movie, const ConversionOptions& options) {
    std::string text;
    appendMovie(text, movie, options);
    return text;
}

void swfToXml(SwfMovieSafe& movie, ISwf2XmlConversionTarget& target, const ConversionOptions& options) {
    target.elementText(swfToXml(movie, options));
}

std::string swfToXmlDocument(SwfMovieSafe& movie, const ConversionOptions& options) {
    std::string text(xmlDeclaration);
    appendMovie(text, movie, options);
    return text;
}

} // namespace xml2swf
