// Parsed parts of an XML text.
#pragma once

#include <rapidxml/rapidxml.hpp>

#include <cstddef>
#include <memory>
#include <string_view>
#include <utility>

namespace xml2swf {

class XmlDocument;
struct XmlBlock;

/// A piece of the text in parsed form, on a private copy: the parser writes into what it parses. Lives as long as an
/// element refers to it; used by one thread.
class XmlWindow {
public:
    using Node = rapidxml::xml_node<char>;

    size_t offsetOf(const char* place) const { return static_cast<size_t>(place - _copy.get()) - _before + _origin; }
    /// The element, or the document, whose children are the piece's nodes.
    Node* container() const { return _container; }

private:
    friend class XmlDocument;
    friend class XmlWindowPtr;

    rapidxml::xml_document<char> _document;
    std::unique_ptr<char[]> _copy;
    size_t _capacity = 0;
    size_t _origin = 0; // of the piece in the text
    size_t _before = 0; // bytes put in front of the copy
    Node* _container = nullptr;
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
