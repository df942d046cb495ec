#include "XmlWindow.h"

#include <algorithm>
#include <cstring>

#include "XmlErrors.h"
#include "XmlPlain.h"
#include "XmlScan.h"
#include "XmlText.h"

namespace xml2swf {

namespace {

using RawNode = rapidxml::xml_node<char>;

// Content is parsed inside an element, where text may stand between the children. A start tag is closed.
struct Wrapping {
    std::string_view before, after;
    size_t cut; // bytes left out at the end
};

Wrapping wrappingOf(XmlWindow::Form form) {
    switch (form) {
    case XmlWindow::Form::content: return {"<w>", "</w>", 0};
    case XmlWindow::Form::startTag: return {"", "/>", 1};
    default: return {"", "", 0};
    }
}

XmlItem::Kind kindOf(const RawNode& node) {
    switch (node.type()) {
    case rapidxml::node_element: return XmlItem::Kind::element;
    case rapidxml::node_data: return XmlItem::Kind::data;
    case rapidxml::node_cdata: return XmlItem::Kind::cdata;
    default: return XmlItem::Kind::other;
    }
}

} // namespace

// The parser writes into what it parses: it works on a copy.
class XmlWindow::Parser {
public:
    const char* copy() const { return _copy.get(); }
    bool isSmall() const { return _capacity <= 4 * windowSize; }
    void clear() { _document.clear(); }

    // The node whose children are the nodes of the piece.
    const RawNode& parse(std::string_view piece, Form form) {
        const Wrapping wrapping = wrappingOf(form);
        piece.remove_suffix(wrapping.cut);
        const size_t room = wrapping.before.size() + piece.size() + wrapping.after.size() + 1;
        if (_capacity < room) {
            _copy.reset(new char[room]);
            _capacity = room;
        }
        char* place = std::copy(wrapping.before.begin(), wrapping.before.end(), _copy.get());
        place = std::copy(piece.begin(), piece.end(), place);
        place = std::copy(wrapping.after.begin(), wrapping.after.end(), place);
        *place = '\0';
        _document.parse<rapidxml::parse_full>(_copy.get());
        return form == Form::content ? *_document.first_node() : _document;
    }

private:
    rapidxml::xml_document<char> _document;
    std::unique_ptr<char[]> _copy;
    size_t _capacity = 0;
};

XmlWindow::XmlWindow() = default;
XmlWindow::~XmlWindow() = default;

bool XmlWindow::readPlain(std::string_view text, size_t start, size_t end, Form form, const XmlScriptReader& scripts) {
    _base = text.data();
    _origin = 0;
    if (form == Form::document && text.substr(start, end - start).starts_with(xmlDeclaration))
        start += xmlDeclaration.size();
    const std::string_view piece = text.substr(start, end - start);
    XmlPlainReader reader(_items, _attributes, _resolved);
    reader.readScripts(scripts, _scripts);
    if (form == Form::startTag ? reader.readStartTag(piece) : reader.readContent(piece))
        return true;
    _items.clear();
    _attributes.clear();
    _scripts.clear();
    _resolved.clear();
    return false;
}

void XmlWindow::parse(std::string_view text, size_t start, size_t end, Form form) {
    if (_parser == nullptr)
        _parser = std::make_unique<Parser>();
    const RawNode* container = nullptr;
    auto setBase = [&] {
        _base = _parser->copy();
        _origin = start - wrappingOf(form).before.size();
    };
    try {
        container = &_parser->parse(text.substr(start, end - start), form);
    } catch (const rapidxml::parse_error& error) {
        setBase();
        const size_t at = offsetOf(error.where<char>());
        throw XmlSyntaxError(error.what(), std::clamp(at, start, end - wrappingOf(form).cut));
    }
    setBase();
    for (const RawNode* node = container->first_node(); node != nullptr; node = node->next_sibling())
        take(*node);
}

template <class Node>
void XmlWindow::take(const Node& node) {
    const size_t index = _items.size();
    XmlItem& item = _items.emplace_back();
    item.kind = kindOf(node);
    item.text = item.kind == XmlItem::Kind::element ? std::string_view(node.name(), node.name_size())
                                                    : std::string_view(node.value(), node.value_size());
    item.firstAttribute = static_cast<uint32_t>(_attributes.size());
    for (auto* a = node.first_attribute(); a != nullptr; a = a->next_attribute())
        _attributes.push_back({{a->name(), a->name_size()}, {a->value(), a->value_size()}});
    item.attributeCount = static_cast<uint32_t>(_attributes.size()) - item.firstAttribute;
    for (const Node* child = node.first_node(); child != nullptr; child = child->next_sibling())
        take(*child);
    _items[index].end = static_cast<uint32_t>(_items.size());
}

const libswf::SwfBytes* XmlWindow::script(const XmlItem* element) const {
    const auto index = static_cast<uint32_t>(element - items());
    const auto found = std::lower_bound(_scripts.begin(), _scripts.end(), index,
                                        [](const XmlScript& script, uint32_t item) { return script.item < item; });
    return found != _scripts.end() && found->item == index ? &found->records : nullptr;
}

bool XmlWindow::reuse() {
    constexpr size_t most = windowSize; // a window of the usual size holds far fewer nodes
    _items.clear();
    _attributes.clear();
    _scripts.clear();
    _resolved.clear();
    if (_parser != nullptr)
        _parser->clear();
    return _items.capacity() <= most && _attributes.capacity() <= most && _resolved.capacity() <= 4 * windowSize &&
           (_parser == nullptr || _parser->isSmall());
}

} // namespace xml2swf
