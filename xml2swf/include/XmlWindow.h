// Parsed parts of an XML text.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "SwfBytes.h"

namespace xml2swf {

class XmlDocument;
struct XmlBlock;

/// An attribute, references in its value resolved.
struct XmlAttribute {
    std::string_view name, value;
};

/// A node of a window. Nodes stand in the order of the text, so that an element's children follow it.
struct XmlItem {
    enum class Kind : uint8_t { element, data, cdata, other };
    std::string_view text;       ///< name of an element; text of data and CDATA
    uint32_t end = 0;            ///< index behind the last node inside
    uint32_t firstAttribute = 0; ///< index of an element's attributes
    uint32_t attributeCount = 0;
    Kind kind = Kind::element;
};

/// Makes bytes of the actions that a text begins with, and moves the text on behind them, to an end tag. Nothing when
/// it would rather have them as nodes.
using XmlScriptReader = std::function<std::optional<libswf::SwfBytes>(std::string_view& text)>;

/// The content of an element whose actions became bytes; it has no nodes.
struct XmlScript {
    uint32_t item; ///< index of the element
    libswf::SwfBytes records;
};

/// A piece of the text in parsed form. Lives as long as an element refers to it; used by one thread.
class XmlWindow {
public:
    XmlWindow();
    ~XmlWindow();

    /// What the piece is.
    enum class Form : uint8_t {
        document, ///< elements, and what may stand around them
        content,  ///< what stands inside an element
        startTag  ///< one start tag, taken as an element without content
    };
    /// Reads a piece of the text where it stands. False, with no nodes, when it is not of the plain form in which XML
    /// is mostly written (XmlPlain.h). With `scripts` it reads the Actions of DoAction and DoInitAction.
    bool readPlain(std::string_view text, size_t start, size_t end, Form form, const XmlScriptReader& scripts = {});
    /// Parses a copy of the piece: any text. Throws XmlSyntaxError. Gives the same nodes for a plain one.
    void parse(std::string_view text, size_t start, size_t end, Form form);
    /// Lets go of the nodes. Their memory is kept for the next piece, unless there is much of it (false).
    bool reuse();

    const XmlItem* items() const { return _items.data(); }
    const XmlItem* end() const { return _items.data() + _items.size(); }
    const XmlAttribute* attributes(const XmlItem& item) const { return _attributes.data() + item.firstAttribute; }
    /// What became of an element's actions; null when they have nodes.
    const libswf::SwfBytes* script(const XmlItem* element) const;
    /// The node behind this one and all that it holds.
    const XmlItem* after(const XmlItem* item) const { return _items.data() + item->end; }
    /// Byte of the text that a name or CDATA section refers to.
    size_t offsetOf(const char* place) const { return static_cast<size_t>(place - _base) + _origin; }

private:
    friend class XmlDocument;
    friend class XmlWindowPtr;
    class Parser;
    template <class Node>
    void take(const Node& node); // of the parser's, with all that it holds

    std::vector<XmlItem> _items;
    std::vector<XmlAttribute> _attributes;
    std::vector<XmlScript> _scripts; // in the order of their elements
    std::string _resolved;           // values of a plain piece that hold references; does not grow while there are any
    const char* _base = nullptr;     // what names and other values refer to: the text, or the parser's copy
    size_t _origin = 0;              // of the base in the text
    std::unique_ptr<Parser> _parser;
    uint32_t _references = 0;
    XmlDocument* _owner = nullptr;
};

/// Shared hold on a window; the last one gives it back to its document.
class XmlWindowPtr {
public:
    XmlWindowPtr() = default;
    explicit XmlWindowPtr(XmlWindow* window) : _window(window) { retain(); }
    XmlWindowPtr(const XmlWindowPtr& other) : XmlWindowPtr(other._window) {}
    XmlWindowPtr(XmlWindowPtr&& other) noexcept : _window(std::exchange(other._window, nullptr)) {}
    XmlWindowPtr& operator=(XmlWindowPtr other) noexcept {
        std::swap(_window, other._window);
        return *this;
    }
    ~XmlWindowPtr() {
        if (_window != nullptr && --_window->_references == 0)
            release();
    }
    XmlWindow& operator*() const { return *_window; }
    XmlWindow* operator->() const { return _window; }
    explicit operator bool() const { return _window != nullptr; }

private:
    void retain() {
        if (_window != nullptr)
            ++_window->_references;
    }
    void release();

    XmlWindow* _window = nullptr;
};

} // namespace xml2swf
