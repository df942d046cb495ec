// Writing of XML elements into one growing text.
#pragma once

#include <concepts>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "FormDifferences.h"
#include "SwfContext.h"
#include "SwfScriptOutline.h"
#include "SwfStructs.h"
#include "SwfWarnings.h"
#include "XmlText.h"

namespace xml2swf {

/// Whether a value stands otherwise in an attribute than it is, and how.
bool mustBeEscaped(std::string_view value);
std::string escapedValue(std::string_view value);

/// One element being written. Names are not copied: they outlive the writer.
class XmlElementWriter {
public:
    XmlElementWriter() = default;
    XmlElementWriter(const XmlElementWriter&) = delete;
    XmlElementWriter& operator=(const XmlElementWriter&) = delete;
    /// Closes an open element as one with children.
    ~XmlElementWriter() { end(true); }

    /// Starts "<name>" on a line of its own, 4 blanks per depth; `inlined` leaves the line feed out.
    void begin(XmlText& out, uint32_t depth, std::string_view name, bool inlined = false);

    void attribute(std::string_view name, std::string_view value);
    void attribute(std::string_view name, const char* value) { attribute(name, std::string_view(value)); }
    void attribute(std::string_view name, const std::string& value) { attribute(name, std::string_view(value)); }
    void attribute(std::string_view name, const libswf::SwfString& value) { attribute(name, value.view()); }
    void attribute(std::string_view name, bool value) { plainAttribute(name, value ? "true" : "false"); }
    void attribute(std::string_view name, float value) { plainAttribute(name, formatReal(value).view()); }
    void attribute(std::string_view name, double value) { plainAttribute(name, formatReal(value).view()); }
    template <std::integral Int>
    requires(!std::same_as<Int, bool>) void attribute(std::string_view name, Int value) {
        plainAttribute(name, formatInteger(value).view());
    }
    /// A value that stands as it is in the text: what has to be escaped is.
    void escapedAttribute(std::string_view name, std::string_view value) { plainAttribute(name, value); }
    /// A fixed-point number (formatFixed).
    void fixed(std::string_view name, int32_t value, uint32_t one) {
        plainAttribute(name, formatFixed(value, one).view());
    }
    /// 0xRRGGBBAA in lower-case hexadecimal without prefix or leading zeros.
    void attribute(std::string_view name, const libswf::SwfColor& color);

    /// Character data as a CDATA section on a line of its own. "]]>" inside is split over two sections.
    void text(std::string_view value);
    /// Bytes as base64 in a CDATA section.
    void base64(std::span<const uint8_t> bytes);

    /// Closes the element; a second call does nothing.
    void end(bool hasChildren);

    bool isOpen() const { return _open; }
    XmlText& out() const { return *_out; }
    uint32_t depth() const { return _depth; }

private:
    void plainAttribute(std::string_view name, std::string_view value); // needs no escaping
    void startCData();
    // No child yet: the start tag ends the text.
    bool isBare() const { return _attributeInsertPos + 1 == _out->size(); }

    XmlText* _out = nullptr;
    std::string_view _name;
    size_t _attributeInsertPos = 0;
    uint32_t _depth = 0;
    bool _open = false;
};

class MovieFonts;
class ScriptView;
struct TagText;

/// What the writers of nested tags share.
struct XmlWriteContext {
    libswf::SwfContext swf; ///< of the movie: version and tags
    bool keepRaw = false;   ///< show a tag that has no XML form as Unknown instead of throwing
    bool abcAsData = false; ///< show blocks of ActionScript 3 as bytes
    libswf::SwfWarnings* warnings = nullptr;
    std::vector<uint32_t> tagPath;            ///< indices of the tag being written
    const MovieFonts* fonts = nullptr;        ///< whose glyphs are shown by their characters; null: by their indices
    ScriptView* script = nullptr;             ///< being written in the full form; null elsewhere
    libswf::SwfScriptOutline outline;         ///< of the script that was read last, if it is known
    uint32_t threads = 1;                     ///< for an element that can be written in parts
    std::vector<TagText>* tagTexts = nullptr; ///< receives the place of each tag's element; may be null
    FormDifferences* differences = nullptr;   ///< classic form: counts what the full form shows otherwise; may be null
};

/// An element of the tree being written. It notes whether it got content and closes itself in the fitting form.
class XmlNode : public XmlElementWriter {
public:
    /// The Movie element, where the text ends.
    XmlNode(XmlText& out, XmlWriteContext& context) : _context(context) { begin(out, 0, "Movie", true); }
    /// The root of a fragment.
    XmlNode(XmlText& out, XmlWriteContext& context, uint32_t depth, std::string_view name) : _context(context) {
        begin(out, depth, name);
    }
    XmlNode(XmlNode& parent, std::string_view name) : _context(parent._context) {
        parent._hasContent = true;
        begin(parent.out(), parent.depth() + 1, name);
    }
    ~XmlNode() { end(_hasContent); }

    void text(std::string_view value) {
        _hasContent = true;
        XmlElementWriter::text(value);
    }
    void base64(std::span<const uint8_t> bytes) {
        _hasContent = true;
        XmlElementWriter::base64(bytes);
    }

    struct IntegerAttribute {
        std::string_view name;
        int32_t value;
    };
    /// A child without content, in one piece: for records that come in millions. Names and attributes are few and
    /// short, 200 characters in all.
    void leaf(std::string_view name, std::initializer_list<IntegerAttribute> attributes);

    /// Where children are written without a node of their own: behind the text, for this depth.
    XmlText& content() {
        _hasContent = true;
        return out();
    }
    /// Children that were written elsewhere, for this depth.
    void append(std::string_view children) {
        _hasContent |= !children.empty();
        out().append(children);
    }

    XmlWriteContext& context() const { return _context; }
    /// The text is in the full form.
    bool fullForm() const { return _context.swf.fullForm; }
    /// Notes, in the classic form, that the full form shows so many values of the element otherwise.
    void differs(uint64_t values) {
        if (_context.differences != nullptr)
            _context.differences->values += values;
    }

private:
    XmlWriteContext& _context;
    bool _hasContent = false;
};

/// A child element that holds bytes.
inline void writePayload(XmlNode& parent, std::string_view name, std::span<const uint8_t> bytes) {
    XmlNode(parent, name).base64(bytes);
}

/// A child element written by writeXml(XmlNode&, const T&).
template <class T>
void writeChild(XmlNode& parent, std::string_view name, const T& value) {
    XmlNode node(parent, name);
    writeXml(node, value);
}

} // namespace xml2swf
