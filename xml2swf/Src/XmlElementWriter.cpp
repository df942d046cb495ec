#include "XmlElementWriter.h"

#include <cstring>

#include "Base64.h"

namespace xml2swf {

void XmlElementWriter::begin(std::string& out, uint32_t depth, std::string_view name, bool inlined) {
    _out = &out;
    _depth = depth;
    _name = name;
    if (!inlined)
        out += '\n';
    out.append(4 * size_t(depth), ' ');
    out += '<';
    out += name;
    out += '>';
    _attributeInsertPos = out.size() - 1;
    _open = true;
}

void XmlElementWriter::plainAttribute(std::string_view name, std::string_view value) {
    constexpr size_t room = 128;
    const size_t length = name.size() + value.size() + 4; // blank, =, two quotes
    if (_attributeInsertPos + 1 == _out->size() && length < room) {
        // The usual case: no child yet. The text goes in front of the final ">" in one piece.
        char piece[room];
        char* end = piece;
        *end++ = ' ';
        end = std::copy(name.begin(), name.end(), end);
        *end++ = '=';
        *end++ = '"';
        end = std::copy(value.begin(), value.end(), end);
        *end++ = '"';
        *end++ = '>';
        (*_out)[_attributeInsertPos] = ' ';
        _out->append(piece + 1, static_cast<size_t>(end - piece) - 1);
    } else {
        std::string piece(" ");
        piece.append(name).append("=\"").append(value).append("\"");
        _out->insert(_attributeInsertPos, piece);
    }
    _attributeInsertPos += length;
}

static std::string_view entity(char c) {
    switch (c) {
    case '"': return "&quot;";
    case '&': return "&amp;";
    case '\'': return "&apos;";
    case '<': return "&lt;";
    case '>': return "&gt;";
    default: return {};
    }
}

void XmlElementWriter::attribute(std::string_view name, std::string_view value) {
    if (value.find_first_of("\"&'<>") == value.npos) {
        plainAttribute(name, value);
        return;
    }
    std::string escaped;
    for (char c : value) {
        const std::string_view text = entity(c);
        if (text.empty())
            escaped += c;
        else
            escaped += text;
    }
    plainAttribute(name, escaped);
}

void XmlElementWriter::attribute(std::string_view name, const libswf::SwfColor& color) {
    char digits[8];
    char* end = std::to_chars(digits, digits + sizeof digits, color.packed(), 16).ptr;
    plainAttribute(name, {digits, static_cast<size_t>(end - digits)});
}

void XmlElementWriter::startCData() {
    *_out += '\n';
    _out->append(4 * (size_t(_depth) + 1), ' ');
    *_out += "<![CDATA[";
}

void XmlElementWriter::text(std::string_view value) {
    startCData();
    for (size_t end; (end = value.find("]]>")) != value.npos; value.remove_prefix(end + 2))
        _out->append(value.substr(0, end + 2)).append("]]><![CDATA[");
    _out->append(value).append("]]>");
}

void XmlElementWriter::base64(std::span<const uint8_t> bytes) {
    startCData();
    appendBase64(*_out, bytes);
    *_out += "]]>";
}

void XmlElementWriter::end(bool hasChildren) {
    if (!_open)
        return;
    _open = false;
    if (!hasChildren) {
        _out->insert(_attributeInsertPos, " /");
        return;
    }
    *_out += '\n';
    _out->append(4 * size_t(_depth), ' ');
    *_out += "</";
    *_out += _name;
    *_out += '>';
}

void XmlNode::leaf(std::string_view name, std::initializer_list<IntegerAttribute> attributes) {
    char piece[256];
    char* end = piece;
    auto put = [&](std::string_view text) { end = std::copy(text.begin(), text.end(), end); };
    _hasContent = true;
    out() += '\n';
    out().append(4 * (size_t(depth()) + 1), ' ');
    put("<");
    put(name);
    for (const IntegerAttribute& attribute : attributes) {
        put(" ");
        put(attribute.name);
        put("=\"");
        end = std::to_chars(end, piece + sizeof piece, attribute.value).ptr;
        put("\"");
    }
    put(" />");
    out().append(piece, static_cast<size_t>(end - piece));
}

} // namespace xml2swf
