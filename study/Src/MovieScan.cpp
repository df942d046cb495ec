#include "MovieScan.h"

#include <algorithm>

namespace zelk {

using namespace xml2swf;

namespace {

constexpr std::string_view blanks = " \t\r\n";

} // namespace

void MovieScan::run() {
    if (_movie.start == MovieSpan::none)
        return;
    _open.push_back({"Movie", true});
    size_t at = _movie.tagEnd;
    while (at < _movie.contentEnd) {
        const size_t open = std::min(_text.find('<', at), _movie.contentEnd);
        noteText(at, open);
        if (open >= _movie.contentEnd)
            return;
        const size_t end = markupEnd(_text, open);
        switch (_text[open + 1]) {
        case '!':
        case '?': break;
        case '/':
            if (_open.size() > 1)
                finish(end);
            break;
        default: begin(open, end); break;
        }
        at = end;
    }
}

void MovieScan::begin(size_t open, size_t end) {
    const std::string_view startTag = _text.substr(open, end - open);
    Element& around = _open.back();
    around.hasElements = true;
    Element element;
    element.name = elementName(startTag);
    if (around.isList) {
        const uint32_t list = _open.size() == 1 ? ScannedTag::movie : around.tag.number;
        element.tag = {element.name, open, _tags++, list, around.rows++};
        element.isTag = true;
        element.isList = element.name == "DefineSprite";
        _visitor.tagBegins(element.tag, startTag);
    } else {
        element.tag = around.tag;
        _visitor.element(element.tag, startTag, open);
    }
    _open.push_back(element);
    if (startTag[startTag.size() - 2] == '/')
        finish(end);
}

void MovieScan::finish(size_t end) {
    const Element& element = _open.back();
    if (element.text != std::string_view::npos)
        _visitor.text(&element.tag, element.name, !element.hasElements, element.text);
    if (element.isTag)
        _visitor.tagEnds(element.tag, end);
    _open.pop_back();
}

void MovieScan::noteText(size_t at, size_t end) {
    const size_t text = _text.find_first_not_of(blanks, at);
    if (text >= end)
        return;
    Element& element = _open.back();
    if (element.isList)
        _visitor.text(_open.size() == 1 ? nullptr : &element.tag, element.name, false, text);
    else if (element.text == std::string_view::npos)
        element.text = text;
}

} // namespace zelk
