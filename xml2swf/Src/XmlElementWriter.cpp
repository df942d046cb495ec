#include "XmlElementWriter.h"

#include <cstring>

#include "Base64.h"

namespace xml2swf {

namespace {

// A short text put together on the stack and appended in one go.
class Piece {
public:
    static constexpr size_t room = 512;

    void put(char c) { *_end++ = c; }
    void put(std::string_view text) {
        copyShort(text.data(), text.size());
        _end += text.size();
    }
    void put(int32_t value) { _end = writeInteger(_end, value); }
    void indent(uint32_t depth) {
        constexpr size_t usual = 32;
        put('\n');
        const size_t blanks = 4 * size_t(depth);
        std::memset(_end, ' ', usual); // of a fixed length: no call
        if (blanks > usual)
            std::memset(_end, ' ', blanks);
        _end += blanks;
    }
    void appendTo(std::string& out) const { out.append(_chars, static_cast<size_t>(_end - _chars)); }

private:
    // Names and numbers are a few bytes long: two copies that may overlap take less time than a call.
    void copyShort(const char* from, size_t n) {
        auto twice = [&]<class Word>(Word) {
            Word first, last;
            std::memcpy(&first, from, sizeof first);
            std::memcpy(&last, from + n - sizeof last, sizeof last);
            std::memcpy(_end, &first, sizeof first);
            std::memcpy(_end + n - sizeof last, &last, sizeof last);
        };
        if (n > 16)
            std::memcpy(_end, from, n);
        else if (n >= 8)
            twice(uint64_t());
        else if (n >= 4)
            twice(uint32_t());
        else if (n >= 2)
            twice(uint16_t());
        else if (n == 1)
            *_end = *from;
    }

    char _chars[room];
    char* _end = _chars;
};

// What fits a piece whatever else stands in it.
bool isShort(std::string_view name, uint32_t depth) { return name.size() <= 64 && depth <= 64; }

} // namespace

void XmlElementWriter::begin(std::string& out, uint32_t depth, std::string_view name, bool inlined) {
    _out = &out;
    _depth = depth;
    _name = name;
    _open = true;
    if (isShort(name, depth) && !inlined) {
        Piece piece;
        piece.indent(depth);
        piece.put('<');
        piece.put(name);
        piece.put('>');
        piece.appendTo(out);
    } else {
        if (!inlined)
            out += '\n';
        out.append(4 * size_t(depth), ' ').append("<").append(name).append(">");
    }
    _attributeInsertPos = out.size() - 1;
}

void XmlElementWriter::plainAttribute(std::string_view name, std::string_view value) {
    const size_t length = name.size() + value.size() + 4; // blank, =, two quotes
    if (_attributeInsertPos + 1 == _out->size() && length < Piece::room) {
        // The usual case: no child yet. The text goes in front of the final ">" in one piece.
        Piece piece;
        piece.put(name);
        piece.put("=\"");
        piece.put(value);
        piece.put("\">");
        (*_out)[_attributeInsertPos] = ' ';
        piece.appendTo(*_out);
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
    if (!hasChildren && _attributeInsertPos + 1 == _out->size()) {
        _out->back() = ' ';
        _out->append("/>");
    } else if (!hasChildren) {
        _out->insert(_attributeInsertPos, " /");
    } else if (isShort(_name, _depth)) {
        Piece piece;
        piece.indent(_depth);
        piece.put("</");
        piece.put(_name);
        piece.put('>');
        piece.appendTo(*_out);
    } else {
        _out->append("\n").append(4 * size_t(_depth), ' ').append("</").append(_name).append(">");
    }
}

void XmlNode::leaf(std::string_view name, std::initializer_list<IntegerAttribute> attributes) {
    if (!isShort(name, depth() + 1) || attributes.size() > 4) {
        XmlNode node(*this, name);
        for (const IntegerAttribute& attribute : attributes)
            node.attribute(attribute.name, attribute.value);
        return;
    }
    _hasContent = true;
    Piece piece;
    piece.indent(depth() + 1);
    piece.put('<');
    piece.put(name);
    for (const IntegerAttribute& attribute : attributes) {
        piece.put(' ');
        piece.put(attribute.name);
        piece.put("=\"");
        piece.put(attribute.value);
        piece.put('"');
    }
    piece.put(" />");
    piece.appendTo(out());
}

} // namespace xml2swf
