// The vocabulary as an XML schema.
#include <set>

#include "XmlElementWriter.h"
#include "XmlVocabulary.h"

namespace xml2swf {

namespace {

constexpr std::string_view head = R"(<?xml version="1.0" encoding="UTF-8"?>
<!-- The XML form of a Flash movie. Made by "zelkc schema"; what may stand where is what the compiler reads. -->
<xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema" elementFormDefault="qualified">)";

struct Facet {
    const char* name;
    std::string value;
};

void set(XmlNode& node, std::string_view name, std::string_view value) { node.attribute(name, value); }

class SchemaWriter {
public:
    explicit SchemaWriter(const XmlVocabulary& vocabulary) : _vocabulary(vocabulary) {}

    std::string write() {
        writeElement(_main, _vocabulary.movie());
        for (const XmlChildGroup& group : _vocabulary.groups())
            writeGroup(group);
        for (const XmlElementType& type : _vocabulary.types())
            writeType(type);
        return std::string(head) + inside(_mainText) + inside(_simpleText) + "\n</xs:schema>\n";
    }

private:
    static constexpr std::string_view root = "xs:schema";

    static std::string inside(const XmlText& text) {
        return std::string(text.view()).substr(root.size() + std::string_view("\n<>").size());
    }

    void writeGroup(const XmlChildGroup& group) {
        XmlNode node(_main, "xs:group");
        node.attribute("name", group.name);
        XmlNode choice(node, "xs:choice");
        for (const XmlChildForm& child : group.children)
            writeElement(choice, child);
    }

    void writeType(const XmlElementType& type) {
        XmlNode node(_main, "xs:complexType");
        set(node, "name", type.name);
        if (type.content != XmlContent::none) {
            XmlNode content(node, "xs:simpleContent");
            XmlNode extension(content, "xs:extension");
            extension.attribute("base", type.content == XmlContent::text ? "xs:string" : "xs:base64Binary");
            writeAttributes(extension, type);
            return;
        }
        if (type.isOrdered)
            writeInOrder(node, type.ownChildren);
        else if (!type.isEmpty())
            writeInAnyOrder(node, type);
        writeAttributes(node, type);
    }

    // None may be left out but the last ones.
    static void writeInOrder(XmlNode& parent, std::span<const XmlChildForm> children) {
        XmlNode sequence(parent, "xs:sequence");
        sequence.attribute("minOccurs", 0);
        writeElement(sequence, children.front());
        if (children.size() > 1)
            writeInOrder(sequence, children.subspan(1));
    }

    static void writeInAnyOrder(XmlNode& parent, const XmlElementType& type) {
        XmlNode choice(parent, "xs:choice");
        choice.attribute("minOccurs", 0);
        choice.attribute("maxOccurs", "unbounded");
        for (const XmlChildForm& child : type.ownChildren)
            writeElement(choice, child);
        if (type.group != nullptr)
            XmlNode(choice, "xs:group").attribute("ref", type.group->name);
    }

    static void writeElement(XmlNode& parent, const XmlChildForm& child) {
        XmlNode element(parent, "xs:element");
        element.attribute("name", child.name);
        set(element, "type", child.type->name);
    }

    void writeAttributes(XmlNode& parent, const XmlElementType& type) {
        for (const XmlAttributeForm& attribute : type.attributes) {
            XmlNode node(parent, "xs:attribute");
            node.attribute("name", attribute.name);
            writeValue(node, attribute.value);
        }
    }

    void writeValue(XmlNode& attribute, const XmlValueForm& form) {
        switch (form.kind) {
        case XmlValueForm::Kind::text:
            if (form.textForm == nullptr)
                attribute.attribute("type", "xs:string");
            else
                set(attribute, "type",
                    simpleType(std::string(form.textForm->name),
                               {{"xs:pattern", std::string(form.textForm->pattern)}}));
            break;
        case XmlValueForm::Kind::places:
            set(attribute, "type", simpleType("places", {{"xs:pattern", R"(\s*\S+(\s+\S+)*\s*)"}}));
            break;
        case XmlValueForm::Kind::place: set(attribute, "type", simpleType("place", {{"xs:pattern", R"(\S+)"}})); break;
        case XmlValueForm::Kind::integer: set(attribute, "type", integerType(form)); break;
        case XmlValueForm::Kind::real:
            set(attribute, "type",
                simpleType("real", {{"xs:pattern", R"([+\-]?([0-9]+\.?[0-9]*|\.[0-9]+)([eE][+\-]?[0-9]+)?)"},
                                    {"xs:pattern", R"([+\-]?inf)"},
                                    {"xs:pattern", R"(nan(\([0-9a-fA-F]+\))?)"}}));
            break;
        case XmlValueForm::Kind::boolean:
            set(attribute, "type", simpleType("boolean", {{"xs:pattern", R"(true|false|[+\-]?[0-9]+)"}}));
            break;
        case XmlValueForm::Kind::color:
            set(attribute, "type", simpleType("color", {{"xs:pattern", "[0-9a-fA-F]{1,8}"}}));
            break;
        case XmlValueForm::Kind::name:
        case XmlValueForm::Kind::nameOrInteger: writeNames(attribute, form); break;
        }
    }

    void writeNames(XmlNode& attribute, const XmlValueForm& form) {
        XmlNode type(attribute, "xs:simpleType");
        std::vector<Facet> names;
        for (const XmlName& name : form.names)
            names.push_back({"xs:enumeration", std::string(name.name)});
        if (form.kind == XmlValueForm::Kind::name) {
            writeRestriction(type, "xs:string", names);
            return;
        }
        XmlNode both(type, "xs:union");
        set(both, "memberTypes", integerType(form));
        XmlNode named(both, "xs:simpleType");
        writeRestriction(named, "xs:string", names);
    }

    std::string integerType(const XmlValueForm& form) {
        const std::string low = std::to_string(form.low), high = std::to_string(form.high);
        if (form.low == INT64_MIN && form.high == INT64_MAX)
            return "xs:long";
        return simpleType("from" + low + "to" + high, {{"xs:minInclusive", low}, {"xs:maxInclusive", high}},
                          "xs:integer");
    }

    // Written when it is used first.
    std::string simpleType(const std::string& name, const std::vector<Facet>& facets, const char* base = "xs:string") {
        if (_simpleTypes.insert(name).second) {
            XmlNode type(_simple, "xs:simpleType");
            set(type, "name", name);
            writeRestriction(type, base, facets);
        }
        return name;
    }

    static void writeRestriction(XmlNode& parent, const char* base, const std::vector<Facet>& facets) {
        XmlNode restriction(parent, "xs:restriction");
        restriction.attribute("base", base);
        for (const Facet& facet : facets)
            XmlNode(restriction, facet.name).attribute("value", std::string_view(facet.value));
    }

    const XmlVocabulary& _vocabulary;
    std::set<std::string> _simpleTypes;
    XmlWriteContext _context;
    XmlText _mainText, _simpleText;
    XmlNode _main{_mainText, _context, 0, root};
    XmlNode _simple{_simpleText, _context, 0, root};
};

} // namespace

std::string xmlSchema(bool fullForm) { return SchemaWriter(XmlVocabulary::get(fullForm)).write(); }

} // namespace xml2swf
