#include <optional>

#include "Conversion.h"
#include "TagKeeper.h"
#include "XmlBytes.h"
#include "XmlDocument.h"
#include "XmlNumbers.h"
#include "XmlStructs.h"
#include "XmlTags.h"

namespace xml2swf {

using namespace libswf;

namespace {

struct RootDefaults {
    static constexpr int64_t version = 7, width = 550, height = 400;
    static constexpr float frameRate = 12;
    static constexpr int64_t firstCompressedVersion = 6; // players before it cannot read compressed movies
};

int64_t rootInteger(XmlElement& root, const char* name, int64_t missing, int64_t high) {
    const auto text = root.attribute(name, XmlValueForm::integer(0, high));
    if (!text)
        return missing;
    const auto value = parseInteger(*text);
    if (!value || *value < 0 || *value > high)
        throw MovieAttributeError(name, root.offset());
    return *value;
}

void readRoot(XmlElement& root, IXml2SwfConversionTarget& target) {
    const int64_t version = rootInteger(root, "SwfVersion", RootDefaults::version, UINT8_MAX);
    const int64_t width = rootInteger(root, "Width", RootDefaults::width, maxStagePixels);
    const int64_t height = rootInteger(root, "Height", RootDefaults::height, maxStagePixels);
    const float frameRate = root.has("FrameRate") ? root.real("FrameRate") : RootDefaults::frameRate;
    const bool isCompressed =
        root.has("IsCompressed") ? root.boolean("IsCompressed") : version >= RootDefaults::firstCompressedVersion;
    target.movieHeader(static_cast<uint8_t>(version), static_cast<int32_t>(width), static_cast<int32_t>(height),
                       frameRate, isCompressed);
    if (root.has("MaxX") || root.has("MaxY") || root.has("MinX") || root.has("MinY")) {
        SwfRect stage;
        readXml(root, stage);
        target.frameSize(stage);
    }
}

void readTags(XmlElement& root, IXml2SwfConversionTarget& target, IProgressReporter* progress) {
    XmlReadContext& context = root.context();
    const uint32_t count = root.countChildren();
    uint32_t done = 0;
    context.tagPath.assign(1, 0);
    for (XmlElement child : root.children(tagElements())) {
        context.tagPath.back() = done;
        try {
            if (auto tag = readTag(child))
                target.append(std::move(tag));
        } catch (SwfException& error) {
            error.addTag(done, std::string(child.name()));
            throw;
        }
        ++done;
        if (progress != nullptr)
            progress->report(double(done) / count);
    }
    if (progress != nullptr && count == 0)
        progress->report(1);
}

// Gives an error its row and column on the way out.
template <class Act>
auto located(std::string_view text, Act act) {
    try {
        return act();
    } catch (XmlSyntaxError& error) {
        error.place.locate(text);
        throw;
    } catch (XmlValueError& error) {
        error.place.locate(text);
        throw;
    } catch (Base64Error& error) {
        error.place.locate(text);
        throw;
    } catch (MovieAttributeError& error) {
        error.place.locate(text);
        throw;
    }
}

} // namespace

// The Movie element's text, without what stands around it.
static std::string_view movieText(std::string_view text, size_t nameOffset) {
    const size_t end = text.rfind('>');
    return text.substr(nameOffset - 1, end + 1 - (nameOffset - 1));
}

static std::unique_ptr<TagKeeper> makeKeeper(const OriginalMovie& original, std::string_view text, XmlElement& root,
                                             std::vector<ElementSpan> spans) {
    // The layout of many tags depends on the version.
    const auto version = root.attribute("SwfVersion");
    if (!version || parseInteger(*version) != original.version())
        return nullptr;
    return std::make_unique<TagKeeper>(original, text, std::move(spans));
}

// The first top-level element of this name; nothing when there is none.
static std::optional<XmlElement> findRoot(XmlReadContext& context, std::string_view name) {
    for (XmlElement::ChildIterator child(context, context.document->top()); !child.atEnd(); ++child) {
        if (child.name() == name)
            return *child;
    }
    return {};
}

static bool compile(XmlDocument& document, std::vector<ElementSpan> spans, IXml2SwfConversionTarget& target,
                    const ConversionOptions& options) {
    XmlReadContext context;
    context.document = &document;
    context.places = XmlPlaces(document.text());
    context.warnings = options.warnings;
    context.observer = options.observer;
    std::optional<XmlElement> root = findRoot(context, "Movie");
    if (!root)
        return false;
    std::unique_ptr<TagKeeper> keeper;
    if (options.original != nullptr)
        keeper = makeKeeper(*options.original, document.text(), *root, std::move(spans));
    context.keeper = keeper.get();
    readRoot(*root, target);
    readTags(*root, target, options.progress);
    context.tagPath.clear();
    if (keeper != nullptr)
        target.source(keeper->source(options.original->isWholeText(movieText(document.text(), root->offset()))));
    return true;
}

bool xmlToSwf(std::string_view text, IXml2SwfConversionTarget& target, const ConversionOptions& options) {
    return located(text, [&] {
        std::vector<ElementSpan> spans;
        XmlDocument document(text, options.original != nullptr ? &spans : nullptr);
        bool found = false;
        try {
            found = compile(document, std::move(spans), target, options);
        } catch (const XmlSyntaxError&) {
            throw;
        } catch (...) {
            document.validate(); // a text that is not well-formed is reported as such, whatever else is wrong with it
            throw;
        }
        document.validate();
        return found;
    });
}

std::optional<XmlStartTag> movieStartTag(std::string_view text) {
    return located(text, [&]() -> std::optional<XmlStartTag> {
        XmlDocument document(text, nullptr);
        XmlReadContext context;
        context.document = &document;
        const std::optional<XmlElement> root = findRoot(context, "Movie");
        if (!root)
            return {};
        const char* end = findTagEnd(text.data() + root->offset(), text.data() + text.size());
        return XmlStartTag{root->offset() - 1, static_cast<size_t>(end - text.data()) + 1};
    });
}

void checkXml(std::string_view text) {
    located(text, [&] { XmlDocument(text).validate(); });
}

void MovieTarget::movieHeader(uint8_t version, int32_t width, int32_t height, float frameRate, bool isCompressed) {
    constexpr int32_t twipsPerPixel = 20;
    movie.version = version;
    movie.frameSize = SwfRect(0, 0, width * twipsPerPixel, height * twipsPerPixel);
    movie.frameRate = frameRate;
    movie.isCompressed = isCompressed;
}

void MovieTarget::append(std::shared_ptr<SwfTag> tag) { movie.tags.append(std::move(tag)); }

void MovieTarget::source(SwfMovieSource source) { movie.source = std::move(source); }

void MovieTarget::frameSize(const SwfRect& rect) { movie.frameSize = rect; }

std::string documentText(std::string bytes) {
    if (bytes.size() < 2)
        return bytes;
    const auto unit = [&](size_t i) { return static_cast<uint8_t>(bytes[i]); };
    const bool little = unit(0) == 0xFF && unit(1) == 0xFE;
    if (!little && !(unit(0) == 0xFE && unit(1) == 0xFF))
        return bytes;
    std::string text;
    auto append = [&](uint32_t c) {
        if (c < 0x80) {
            text += static_cast<char>(c);
            return;
        }
        const int tails = c < 0x800 ? 1 : c < 0x10000 ? 2 : 3;
        text += static_cast<char>((0xF00 >> (tails + 1)) | (c >> (6 * tails)));
        for (int i = tails - 1; i >= 0; --i)
            text += static_cast<char>(0x80 | (c >> (6 * i) & 0x3F));
    };
    auto at = [&](size_t i) { return uint32_t(unit(i + (little ? 1 : 0))) << 8 | unit(i + (little ? 0 : 1)); };
    for (size_t i = 2; i + 1 < bytes.size(); i += 2) {
        uint32_t c = at(i);
        if (c >= 0xD800 && c < 0xDC00 && i + 3 < bytes.size() && at(i + 2) >= 0xDC00 && at(i + 2) < 0xE000) {
            c = 0x10000 + ((c - 0xD800) << 10) + (at(i + 2) - 0xDC00);
            i += 2;
        }
        append(c);
    }
    return text;
}

} // namespace xml2swf
