#include <optional>

#include "Conversion.h"
#include "SwfInOrder.h"
#include "TagKeeper.h"
#include "XmlActionRun.h"
#include "XmlActions.h"
#include "XmlBytes.h"
#include "XmlCharacters.h"
#include "XmlDocument.h"
#include "XmlGlyphs.h"
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
    const XmlValueForm form = XmlValueForm::integer(0, high);
    const auto text = root.attribute(name, form);
    if (!text)
        return missing;
    const auto value = parseInteger(*text);
    if (!value || *value < 0 || *value > high)
        throw MovieAttributeError(name, form.fitting(name), root.offset());
    return *value;
}

bool isFullForm(XmlElement& root) {
    static constexpr XmlName forms[] = {{classicForm, 0}, {fullForm, 1}};
    const auto form = root.attribute("Form", {XmlValueForm::Kind::name, 0, 0, forms}).value_or(classicForm);
    if (form != classicForm && form != fullForm)
        throw MovieAttributeError("Form", "Form: classic or full", root.offset());
    return form == fullForm;
}

// Gives the version.
uint8_t readRoot(XmlElement& root, IXml2SwfConversionTarget& target) {
    if (root.fullForm())
        target.fullForm();
    const int64_t version = rootInteger(root, "SwfVersion", RootDefaults::version, UINT8_MAX);
    const int64_t width = rootInteger(root, "Width", RootDefaults::width, maxStagePixels);
    const int64_t height = rootInteger(root, "Height", RootDefaults::height, maxStagePixels);
    const float frameRate = root.has("FrameRate") ? root.real("FrameRate") : RootDefaults::frameRate;
    const bool isCompressed =
        root.has("IsCompressed") ? root.boolean("IsCompressed") : version >= RootDefaults::firstCompressedVersion;
    target.movieHeader(static_cast<uint8_t>(version), static_cast<int32_t>(width), static_cast<int32_t>(height),
                       frameRate, isCompressed);
    if (root.has("MaxX") || root.has("MaxY") || root.has("MinX") || root.has("MinY") ||
        (root.fullForm() && root.has("Bits"))) {
        SwfRect stage;
        readXml(root, stage);
        target.frameSize(stage);
    }
    if (root.fullForm() && root.has("FrameCount"))
        target.frameCount(static_cast<uint16_t>(rootInteger(root, "FrameCount", 0, UINT16_MAX)));
    return static_cast<uint8_t>(version);
}

// While it lives, the scripts of a document become bytes where the context wants that.
class ScriptsAsBytes {
public:
    explicit ScriptsAsBytes(XmlReadContext& context) : _document(*context.document) {
        if (context.isToWrite() && context.observer == nullptr)
            _document.readScripts([&context](std::string_view& text) { return compileActions(context, text); });
    }
    ~ScriptsAsBytes() { _document.readScripts({}); }
    ScriptsAsBytes(const ScriptsAsBytes&) = delete;
    ScriptsAsBytes& operator=(const ScriptsAsBytes&) = delete;

private:
    XmlDocument& _document;
};

// Builds the tag of one of the root's children.
std::shared_ptr<SwfTag> readRootTag(XmlElement& child, uint32_t index) {
    child.context().tagPath.assign(1, index);
    try {
        return readTag(child);
    } catch (SwfException& error) {
        error.addTag(index, std::string(child.name()));
        throw;
    }
}

// Hands the tags on and tells how many of the root's children are done.
class TagSink {
public:
    TagSink(IXml2SwfConversionTarget& target, IProgressReporter* progress, uint32_t count)
        : _target(target), _progress(progress), _count(count) {
        if (progress != nullptr && count == 0)
            progress->report(1);
    }
    uint32_t done() const { return _done; }
    /// The tags that say what glyphs stand for.
    const std::vector<std::shared_ptr<SwfTag>>& fonts() const { return _fonts; }

    // Null for a child that is no tag.
    void take(std::shared_ptr<SwfTag> tag) {
        if (tag != nullptr) {
            if (hasFontCodes(tag->type))
                _fonts.push_back(tag);
            _target.append(std::move(tag));
        }
        ++_done;
        if (_progress != nullptr)
            _progress->report(double(_done) / _count);
    }

private:
    IXml2SwfConversionTarget& _target;
    IProgressReporter* _progress;
    const uint32_t _count;
    uint32_t _done = 0;
    std::vector<std::shared_ptr<SwfTag>> _fonts;
};

void readTags(XmlElement& root, TagSink& sink) {
    for (XmlElement child : root.children(tagElements(root.fullForm())))
        sink.take(readRootTag(child, sink.done()));
}

// Reads the tags of a big document on several threads, some hundred KB of its text at a time. Tags, warnings and errors
// come in the order of the text.
class PartedReader {
public:
    PartedReader(XmlReadContext& context, XmlBlock& root, TagSink& sink) : _context(context), _root(root), _sink(sink) {
        constexpr size_t partSize = 256 * 1024;
        for (size_t i = 0; i < root.pieces.size(); ++i) {
            if (_parts.empty() || root.pieces[i].start - root.pieces[_parts.back().firstPiece].start > partSize)
                _parts.emplace_back().firstPiece = i;
            _parts.back().piecesEnd = i + 1;
        }
    }

    void read(uint32_t threads) {
        workInOrder(
            {_parts.size(), [this](size_t i) { readPart(_parts[i]); }, [this](size_t i) { takePart(_parts[i]); }},
            threads);
    }

private:
    struct Part {
        size_t firstPiece = 0, piecesEnd = 0;
        std::vector<std::shared_ptr<SwfTag>> tags; // null for a child that is no tag
        SpelledTexts spelled;
        SwfWarnings warnings;
    };

    // [any thread]
    void readPart(Part& part) {
        const std::unique_ptr<XmlDocument> document = _context.document->another();
        ActionBytes bytes;
        XmlReadContext context;
        context.document = document.get();
        context.fullForm = _context.fullForm;
        context.actionBytes = _context.actionBytes == nullptr ? nullptr : &bytes;
        context.warnings = _context.warnings == nullptr ? nullptr : &part.warnings;
        context.spelled = _context.spelled == nullptr ? nullptr : &part.spelled;
        context.threads = isMost(part) ? _context.threads : 1;
        const ScriptsAsBytes scripts(context);
        uint32_t index = _root.pieces[part.firstPiece].firstChild;
        XmlElement::ChildIterator child(context, _root, part.firstPiece, part.piecesEnd);
        for (; !child.atEnd(); ++child) {
            XmlElement element = *child;
            part.tags.push_back(readRootTag(element, index++));
        }
    }

    // More than the other threads have to do.
    bool isMost(const Part& part) const {
        const size_t bytes = _root.pieces[part.piecesEnd - 1].end - _root.pieces[part.firstPiece].start;
        return bytes > (_root.end - _root.start) / 2;
    }

    void takePart(Part& part) {
        if (_context.warnings != nullptr)
            _context.warnings->add(std::move(part.warnings), [this](SwfWarning& warning) {
                const XmlPlace place = _context.places.at(static_cast<size_t>(warning.offset));
                warning.row = place.row;
                warning.column = place.column;
                if (warning.targetOffset != SwfWarning::noOffset)
                    warning.targetRow = _context.places.at(static_cast<size_t>(warning.targetOffset)).row;
            });
        for (std::shared_ptr<SwfTag>& tag : part.tags)
            _sink.take(std::move(tag));
        part.tags = {};
        if (_context.spelled != nullptr)
            _context.spelled->take(std::move(part.spelled));
    }

    XmlReadContext& _context;
    XmlBlock& _root;
    TagSink& _sink;
    std::vector<Part> _parts;
};

// Original bytes are looked for in the order of the tags, and who listens hears one reader: that is for one thread.
uint32_t threadsFor(const XmlReadContext& context, const ConversionOptions& options) {
    const bool isForOne = context.untouched || context.observer != nullptr || context.scripts != nullptr;
    return isForOne ? 1 : libswf::threadsFor(context.document->text().size() >= bigText, options.threads);
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
    // The layout of many tags depends on version and form.
    const auto version = root.peek("SwfVersion"); // it is asked for below
    if (!version || parseInteger(*version) != original.version() || root.fullForm() != original.fullForm())
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

// Asked before the first piece is read: scripts in it become bytes at once, and these depend on the form.
static bool isFullForm(XmlReadContext& context) {
    XmlDocument& document = *context.document;
    const MovieSpan& movie = document.movie();
    if (movie.start == MovieSpan::none || movie.tagEnd == movie.end)
        return false; // none, or an empty one
    XmlBlock block;
    block.start = movie.start;
    block.tagEnd = movie.tagEnd;
    XmlWindowPtr window = document.parseStartTag(block);
    XmlElement root(context, window, window->items());
    root.acceptAll();
    return isFullForm(root);
}

// Fonts may stand behind the texts that use them, so this comes last.
static void lookUpGlyphs(const XmlReadContext& context, const TagSink& sink, uint8_t version,
                         const FontTables* others) {
    if (context.spelled == nullptr || context.spelled->empty())
        return;
    SwfContext movie;
    movie.version = version;
    movie.fullForm = context.fullForm;
    FontTables fonts = others == nullptr ? FontTables() : *others;
    for (const std::shared_ptr<SwfTag>& tag : sink.fonts())
        fonts.add(*tag, movie);
    context.spelled->lookUp(fonts);
}

static bool compile(XmlDocument& document, std::vector<ElementSpan> spans, IXml2SwfConversionTarget& target,
                    const ConversionOptions& options) {
    ActionBytes bytes;
    XmlReadContext context;
    context.document = &document;
    context.actionBytes = options.toWrite ? &bytes : nullptr;
    context.places = XmlPlaces(document.text());
    context.warnings = options.warnings;
    context.observer = options.observer;
    context.scripts = options.toWrite ? nullptr : options.scripts;
    context.fullForm = isFullForm(context);
    SpelledTexts spelled;
    context.spelled = options.ignoreFonts ? nullptr : &spelled;
    const ScriptsAsBytes scripts(context);
    std::optional<XmlElement> root = findRoot(context, "Movie");
    if (!root)
        return false;
    context.fullForm = isFullForm(*root);
    std::unique_ptr<TagKeeper> keeper;
    if (options.original != nullptr)
        keeper = makeKeeper(*options.original, document.text(), *root, std::move(spans));
    if (keeper != nullptr)
        context.untouched = [&keeper](size_t nameOffset) { return keeper->untouched(nameOffset); };
    const uint8_t version = readRoot(*root, target);
    TagSink sink(target, options.progress, root->countChildren());
    const uint32_t threads = context.threads = threadsFor(context, options);
    XmlBlock* pieces = threads > 1 ? root->takePieces() : nullptr;
    if (pieces != nullptr)
        PartedReader(context, *pieces, sink).read(threads);
    else
        readTags(*root, sink);
    context.tagPath.clear();
    lookUpGlyphs(context, sink, version, options.fonts);
    if (keeper != nullptr)
        target.source(keeper->source(options.original->isWholeText(movieText(document.text(), root->offset()))));
    return true;
}

bool xmlToSwf(std::string_view text, IXml2SwfConversionTarget& target, const ConversionOptions& options) {
    return located(text, [&] {
        std::vector<ElementSpan> spans;
        XmlDocument document(text, options.original != nullptr ? &spans : nullptr,
                             libswf::threadsFor(text.size() >= bigText, options.threads));
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

bool isFullForm(std::string_view text) {
    return located(text, [&] {
        XmlDocument document(text, nullptr);
        XmlReadContext context;
        context.document = &document;
        std::optional<XmlElement> root = findRoot(context, "Movie");
        return root && isFullForm(*root);
    });
}

void checkXml(std::string_view text) {
    located(text, [&] { XmlDocument(text, nullptr, libswf::threadsFor(text.size() >= bigText, 0)).validate(); });
}

void MovieTarget::movieHeader(uint8_t version, int32_t width, int32_t height, float frameRate, bool isCompressed) {
    constexpr int32_t twipsPerPixel = 20;
    movie.version = version;
    movie.frameSize = SwfRect(0, 0, width * twipsPerPixel, height * twipsPerPixel);
    movie.frameRate = frameRate;
    movie.isCompressed = isCompressed;
}

void MovieTarget::fullForm() { movie.fullForm = true; }

void MovieTarget::append(std::shared_ptr<SwfTag> tag) { movie.tags.append(std::move(tag)); }

void MovieTarget::source(SwfMovieSource source) { movie.source = std::move(source); }

void MovieTarget::frameSize(const SwfRect& rect) { movie.frameSize = rect; }

void MovieTarget::frameCount(uint16_t count) {
    movie.frameCount = count;
    movie.keepsFrameCount = true;
}

std::string documentText(std::string bytes) {
    if (bytes.size() < 2)
        return bytes;
    const auto unit = [&](size_t i) { return static_cast<uint8_t>(bytes[i]); };
    const bool little = unit(0) == 0xFF && unit(1) == 0xFE;
    if (!little && !(unit(0) == 0xFE && unit(1) == 0xFF))
        return bytes;
    std::string text;
    auto at = [&](size_t i) { return uint32_t(unit(i + (little ? 1 : 0))) << 8 | unit(i + (little ? 0 : 1)); };
    for (size_t i = 2; i + 1 < bytes.size(); i += 2) {
        uint32_t c = at(i);
        if (c >= 0xD800 && c < 0xDC00 && i + 3 < bytes.size() && at(i + 2) >= 0xDC00 && at(i + 2) < 0xE000) {
            c = 0x10000 + ((c - 0xD800) << 10) + (at(i + 2) - 0xDC00);
            i += 2;
        }
        appendUtf8(text, c);
    }
    return text;
}

} // namespace xml2swf
