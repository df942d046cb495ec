// An XML text that is parsed piece by piece.
#pragma once

#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "XmlScan.h"
#include "XmlWindow.h"

namespace xml2swf {

class IProgressReporter;

/// A text and its parsed windows. Small texts are parsed as a whole; of big ones only what is being read stands in
/// memory in parsed form. The text must outlive the document.
class XmlDocument {
public:
    static constexpr uint32_t maxDepth = 1000; ///< of nested elements; the parser recurses

    /// Throws XmlSyntaxError for what can be told without parsing every piece; the rest shows when a piece is read, or
    /// in validate().
    explicit XmlDocument(std::string_view text, std::vector<ElementSpan>* spans = nullptr, uint32_t threads = 1);
    ~XmlDocument();
    /// The same text with windows of its own, for another thread. Threads read different pieces.
    std::unique_ptr<XmlDocument> another() const;
    XmlDocument(const XmlDocument&) = delete;
    XmlDocument& operator=(const XmlDocument&) = delete;

    /// Has scripts read in another way than as nodes from here on, as far as `reader` wants it; none: no longer.
    void readScripts(XmlScriptReader reader) { _readScript = std::move(reader); }

    std::string_view text() const { return _text; }
    XmlBlock& top() { return _structure->document; }
    const MovieSpan& movie() const { return _structure->movie; }
    XmlBlock& block(uint32_t index) { return _structure->blocks[index]; }

    /// The piece's nodes, parsed; from a place between them on. Throws XmlSyntaxError.
    XmlWindowPtr parseContent(XmlPiece& piece, bool topLevel, size_t start);
    /// A big element's start tag as an empty element.
    XmlWindowPtr parseStartTag(const XmlBlock& block);
    /// A whole element.
    XmlWindowPtr parseElement(const XmlBlock& block);

    /// The content of a big element that holds nothing but one CDATA section, where it stands in the text.
    std::optional<std::string_view> onlySection(const XmlBlock& block) const;

    /// Parses what was not parsed yet. Throws XmlSyntaxError.
    void validate(IProgressReporter* progress = nullptr);

private:
    friend class XmlWindowPtr;
    XmlDocument(std::string_view text, std::shared_ptr<XmlStructure> structure);
    XmlWindowPtr parse(size_t start, size_t end, XmlWindow::Form form);
    std::unique_ptr<XmlWindow> takeWindow();
    void giveBack(XmlWindow* window);
    void validate(XmlBlock& block, bool topLevel, IProgressReporter* progress);

    std::string_view _text;
    std::shared_ptr<XmlStructure> _structure;
    XmlScriptReader _readScript;
    std::vector<std::unique_ptr<XmlWindow>> _free;
};

} // namespace xml2swf
