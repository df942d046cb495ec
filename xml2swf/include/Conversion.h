// The two conversions between a movie and its XML text.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "FormDifferences.h"
#include "SwfMovie.h"
#include "TagText.h"
#include "XmlErrors.h"

namespace xml2swf {

/// Receives progress. Called on the thread that converts.
class IProgressReporter {
public:
    /// From 0 to 1.
    virtual void report(double fraction) = 0;
    virtual ~IProgressReporter() = default;
};

/// Receives the result of XML to SWF.
class IXml2SwfConversionTarget {
public:
    virtual ~IXml2SwfConversionTarget() = default;
    /// Width and height in pixels.
    virtual void movieHeader(uint8_t version, int32_t width, int32_t height, float frameRate, bool isCompressed) = 0;
    virtual void append(std::shared_ptr<libswf::SwfTag> tag) = 0;
    /// The text is in the full form. Called before everything else, for such a text only.
    virtual void fullForm() {}
    /// A stage that whole pixels from (0, 0) cannot express, in twips. Called after movieHeader when there is one.
    virtual void frameSize(const libswf::SwfRect&) {}
    /// The frame count of a movie that has another number of frames. Called after movieHeader for a text that says it.
    virtual void frameCount(uint16_t) {}
    /// What the movie takes over from its original. Called last, when there is one.
    virtual void source(libswf::SwfMovieSource) {}
};

/// Receives the result of SWF to XML.
class ISwf2XmlConversionTarget {
public:
    virtual ~ISwf2XmlConversionTarget() = default;
    /// Declaration and Movie element: what an XML file holds.
    virtual void documentText(std::string text) = 0;
};

class IScriptListener;
class FontTables;
class OriginalMovie;
class XmlReadObserver;

/// What both directions take. Null members are left out.
struct ConversionOptions {
    /// Show a tag that its XML form cannot express as Unknown with its bytes; otherwise that is an error.
    bool keepRaw = false;
    IProgressReporter* progress = nullptr;
    libswf::SwfWarnings* warnings = nullptr;
    /// SWF to XML in the full form: show blocks of ActionScript 3 as bytes, as the classic form does.
    bool abcAsData = false;
    /// SWF to XML: receives the place of every tag's element, nested ones too.
    std::vector<TagText>* tagTexts = nullptr;
    /// SWF to XML in the classic form: receives how much the full form would show otherwise.
    FormDifferences* formDifferences = nullptr;
    /// XML to SWF: the movie that the text came from. Elements whose text is as it was, the stage, the frame count and
    /// what follows the last tag are written with their original bytes, as long as the SWF version is the same.
    const OriginalMovie* original = nullptr;
    /// XML to SWF: the movie is only to be written. Its scripts and edges become bytes as they are read
    /// (SwfActionCompiled, SwfShapeRecords::packEdges), which takes less time and memory; what is written is the same.
    bool toWrite = false;
    /// XML to SWF: hears what the readers ask for.
    XmlReadObserver* observer = nullptr;
    /// XML to SWF, without toWrite: hears where the branches of scripts lead to. Goes on one thread then.
    IScriptListener* scripts = nullptr;
    /// Full form: the fonts of the movie that these tags are only a part of, for texts whose fonts are not among them.
    const FontTables* fonts = nullptr;
    /// Full form: to show all glyphs of texts by their indices, and to leave the ones that are given by their
    /// characters at 0.
    bool ignoreFonts = false;
    /// Threads for a big input, this one among them; 0 for as many as the machine has cores. What comes out is the
    /// same, and progress and warnings come on this thread.
    uint32_t threads = 0;
};

/// The widest and highest stage, in pixels: its twips stay below 2^30, as a rectangle's fields ask.
constexpr int64_t maxStagePixels = 53687091;

/// The values of the Movie element's attribute Form. A text without it is in the classic form.
constexpr std::string_view classicForm = "classic", fullForm = "full";

/// The Movie element of a movie. Without keepRaw throws SwfException code 3 for a value that has no name in XML.
std::string swfToXml(libswf::SwfMovieSafe& movie, const ConversionOptions& options);
void swfToXml(libswf::SwfMovieSafe& movie, ISwf2XmlConversionTarget& target, const ConversionOptions& options);
/// Declaration and Movie element: what an XML file holds.
std::string swfToXmlDocument(libswf::SwfMovieSafe& movie, const ConversionOptions& options);

/// Compiles a text. False when it has no Movie element. Throws XmlSyntaxError, XmlValueError, Base64Error,
/// MovieAttributeError, each with its place in `text`.
bool xmlToSwf(std::string_view text, IXml2SwfConversionTarget& target, const ConversionOptions& options);

/// A start tag in a text, from its "<" to behind its ">".
struct XmlStartTag {
    size_t start, end;
};

/// The start tag of the Movie element that xmlToSwf reads; none when there is no such element. Throws XmlSyntaxError,
/// with its place, for a text that is not well-formed as far as it is read.
std::optional<XmlStartTag> movieStartTag(std::string_view text);

/// Whether a text is in the full form; no text without a Movie element is. Throws MovieAttributeError for a form that
/// there is none of, and as movieStartTag does.
bool isFullForm(std::string_view text);

/// Throws XmlSyntaxError, with its place, when the text is not well-formed.
void checkXml(std::string_view text);

/// Builds an SwfMovie. Pixels become twips here, 20 each.
class MovieTarget : public IXml2SwfConversionTarget {
public:
    void movieHeader(uint8_t version, int32_t width, int32_t height, float frameRate, bool isCompressed) override;
    void append(std::shared_ptr<libswf::SwfTag> tag) override;
    void fullForm() override;
    void frameSize(const libswf::SwfRect& rect) override;
    void frameCount(uint16_t count) override;
    void source(libswf::SwfMovieSource source) override;

    libswf::SwfMovie movie;
};

/// The text of an XML file's bytes: UTF-16 with a byte order mark becomes UTF-8, everything else stays as it is.
std::string documentText(std::string bytes);

} // namespace xml2swf
