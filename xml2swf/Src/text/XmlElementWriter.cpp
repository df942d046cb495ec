#include "XmlElementWriter.h"

#include "Base64.h"
#include "XmlBytes.h"

namespace xml2swf {

// What fits a line, whatever else is in a leaf.
static bool isShort(std::string_view name, uint32_t depth) { return name.size() <= 64 && depth <= 64; }
static constexpr size_t lineRoom = 512;

static void putStart(XmlLine& line, uint32_t depth, std::string_view name) {
    line.indent(depth);
    line.put('<');
    line.put(name);
}

void XmlElementWriter::begin(XmlText& out, uint32_t depth, std::string_view name, bool inlined) {
    _out = &out;
    _depth = depth;
    _name = name;
    _open = true;
    if (isShort(name, depth) && !inlined) {
        XmlLine line(out.room(lineRoom));
        putStart(line, depth, name);
        line.put('>');
        out.finish(line.end());
    } else {
        if (!inlined)
            out.append("\n");
        out.append(4 * size_t(depth), ' ').append("<").append(name).append(">");
    }
    _attributeInsertPos = out.size() - 1;
}

void XmlElementWriter::plainAttribute(std::string_view name, std::string_view value) {
    const size_t length = name.size() + value.size() + 4; // blank, =, two quotes
    if (isBare()) {
        XmlLine line(_out->room(length) - 1); // over the ">"
        line.put(' ');
        line.put(name);
        line.put("=\"");
        line.put(value);
        line.put("\">");
        _out->finish(line.end());
    } else {
        std::string attribute(" ");
        attribute.append(name).append("=\"").append(value).append("\"");
        _out->insert(_attributeInsertPos, attribute);
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

bool mustBeEscaped(std::string_view value) {
    const char* const end = value.data() + value.size();
    return findFirst<Escaped>(value.data(), end) != end;
}

std::string escapedValue(std::string_view value) {
    std::string escaped;
    for (char c : value) {
        const std::string_view text = entity(c);
        if (text.empty())
            escaped += c;
        else
            escaped += text;
    }
    return escaped;
}

void XmlElementWriter::attribute(std::string_view name, std::string_view value) {
    if (mustBeEscaped(value)) [[unlikely]]
        plainAttribute(name, escapedValue(value));
    else
        plainAttribute(name, value);
}

void XmlElementWriter::attribute(std::string_view name, const libswf::SwfColor& color) {
    char digits[8];
    char* end = std::to_chars(digits, digits + sizeof digits, color.packed(), 16).ptr;
    plainAttribute(name, {digits, static_cast<size_t>(end - digits)});
}

void XmlElementWriter::startCData() { _out->append("\n").append(4 * (size_t(_depth) + 1), ' ').append("<![CDATA["); }

void XmlElementWriter::text(std::string_view value) {
    startCData();
    for (size_t end; (end = value.find("]]>")) != value.npos; value.remove_prefix(end + 2))
        _out->append(value.substr(0, end + 2)).append("]]><![CDATA[");
    _out->append(value).append("]]>");
}

void XmlElementWriter::base64(std::span<const uint8_t> bytes) {
    startCData();
    appendBase64(*_out, bytes);
    _out->append("]]>");
}

void XmlElementWriter::end(bool hasChildren) {
    if (!_open)
        return;
    _open = false;
    if (!hasChildren && isBare()) {
        XmlLine line(_out->room(std::string_view(" /").size()) - 1);
        line.put(" />");
        _out->finish(line.end());
    } else if (!hasChildren) {
        _out->insert(_attributeInsertPos, " /");
    } else if (isShort(_name, _depth)) {
        XmlLine line(_out->room(lineRoom));
        line.indent(_depth);
        line.put("</");
        line.put(_name);
        line.put('>');
        _out->finish(line.end());
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
    XmlLine line(out().room(lineRoom));
    putStart(line, depth() + 1, name);
    for (const IntegerAttribute& attribute : attributes) {
        line.put(' ');
        line.put(attribute.name);
        line.put("=\"");
        line.put(attribute.value);
        line.put('"');
    }
    line.put(" />");
    out().finish(line.end());
}

} // namespace xml2swf
