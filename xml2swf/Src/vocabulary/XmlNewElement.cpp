#include "XmlNewElement.h"

#include <algorithm>
#include <optional>
#include <span>

#include "Conversion.h"
#include "SwfException.h"
#include "SwfWarnings.h"
#include "XmlDocument.h"
#include "XmlElement.h"
#include "XmlTags.h"

namespace xml2swf {

using namespace libswf;

namespace {

// A movie with a new element in it, which holds `inside`.
std::string newElement(const ProbeNode& node, const XmlElementType& type, std::string_view inside) {
    std::string text = sampleBefore(node).append("<").append(node.name);
    for (const XmlAttributeForm& attribute : type.attributes) {
        if (attribute.newValue)
            text.append(" ").append(attribute.name).append("=\"").append(*attribute.newValue).append("\"");
    }
    return text.append(">").append(inside).append("</").append(node.name).append(">").append(sampleBehind(node));
}

// The file that a text becomes, or why it becomes none.
struct Compiled {
    std::string fileOrError;
    bool isFile = false, isRead = false; ///< all of it
};

Compiled compiled(const std::string& text) {
    Compiled result;
    SwfWarnings reading, writing;
    ConversionOptions options;
    options.warnings = &reading;
    MovieTarget target;
    try {
        xmlToSwf(text, target, options);
        result.isRead = reading.empty();
        const SwfVector<uint8_t> file = target.movie.serialise(1, &writing);
        result.fileOrError.assign(file.begin(), file.end());
        result.isFile = writing.empty();
    } catch (const SwfException& error) {
        result.fileOrError = error.what();
    } catch (const XmlValueError& error) { // It leads to what is to be written yet.
        result.fileOrError = error.what();
    }
    return result;
}

template <class Look>
void descend(XmlElement& element, std::span<const std::string_view> path, Look look) {
    if (path.empty())
        look(element);
    else if (auto child = element.child(path.front()))
        descend(*child, path.subspan(1), look);
}

// The element as it is written after it was read from a text. Nothing when its parent has no use for it.
template <class Look>
void lookAtWritten(const ProbeNode& node, const std::string& text, Look look) {
    MovieTarget target;
    try {
        xmlToSwf(text, target, {});
    } catch (const XmlValueError&) {
        return;
    }
    XmlText written;
    XmlWriteContext writing;
    writing.swf.version = target.movie.version;
    writing.swf.fullForm = target.movie.fullForm;
    try {
        XmlNode root(written, writing, 0, "Movie");
        writeTagList(root, target.movie.tags);
    } catch (const SwfException&) {
        return; // a value that has no name
    }
    std::vector<std::string_view> path;
    for (const ProbeNode* at = &node; at->parent != nullptr; at = at->parent)
        path.insert(path.begin(), at->name);
    XmlDocument document(written.view());
    XmlReadContext reading;
    reading.document = &document;
    reading.fullForm = target.movie.fullForm;
    XmlElement movie = *XmlElement::ChildIterator(reading, document.top());
    descend(movie, path, look);
}

void chooseChildren(const ProbeNode& node, XmlElementType& type) {
    const Compiled without = compiled(newElement(node, type, ""));
    std::string inside;
    for (XmlChildForm& child : type.ownChildren) {
        const auto found = std::find_if(node.children.begin(), node.children.end(),
                                        [&](const auto& other) { return other->name == child.name; });
        if (!(*found)->isAlwaysRead || (*found)->isAlone || !without.isRead)
            continue;
        const std::string more = inside + "<" + std::string(child.name) + "/>";
        const Compiled with = compiled(newElement(node, type, more));
        child.isInNew = with.isRead && with.fileOrError == without.fileOrError;
        if (child.isInNew)
            inside = more;
    }
    lookAtWritten(node, newElement(node, type, inside), [&](XmlElement& element) {
        for (XmlChildForm& child : type.ownChildren)
            child.isInNew &= element.child(child.name).has_value();
    });
}

// Some elements make no sense with all their flags off.
void chooseFlag(const ProbeNode& node, XmlElementType& type) {
    const auto fits = [&] { return compiled(newElement(node, type, "")).isFile; };
    for (size_t i = 0; i < type.attributes.size() && !fits(); ++i) {
        XmlAttributeForm& attribute = type.attributes[i];
        if (!attribute.newValue || attribute.value.kind != XmlValueForm::Kind::boolean)
            continue;
        attribute.newValue = "true";
        if (!fits())
            attribute.newValue = "false";
    }
}

std::string_view defaultValue(const XmlValueForm& form) {
    switch (form.kind) {
    case XmlValueForm::Kind::text: return form.textForm == nullptr ? "" : form.textForm->sample;
    case XmlValueForm::Kind::places:
    case XmlValueForm::Kind::place: return "";
    case XmlValueForm::Kind::boolean: return "false";
    case XmlValueForm::Kind::color: return "ff";
    case XmlValueForm::Kind::name: return form.names.front().name;
    case XmlValueForm::Kind::integer:
    case XmlValueForm::Kind::real:
    case XmlValueForm::Kind::nameOrInteger: break;
    }
    return "0";
}

} // namespace

void chooseNewElement(const ProbeNode& node, XmlElementType& type) {
    const auto probed = [&](const XmlAttributeForm& attribute) {
        return *std::find_if(node.attributes.begin(), node.attributes.end(),
                             [&](const ProbeAttribute& other) { return other.name == attribute.name; });
    };
    const bool isOnlyNumber = type.isEmpty() && type.attributes.size() == 1 && type.attributes[0].value.isInteger();
    const auto setInNew = [](XmlAttributeForm& attribute, bool isInNew) {
        attribute.newValue = isInNew ? std::optional(defaultValue(attribute.value)) : std::nullopt;
    };
    for (XmlAttributeForm& attribute : type.attributes)
        setInNew(attribute, probed(attribute).isAlwaysRead && (!probed(attribute).isOptional || isOnlyNumber));
    if (node.parent == nullptr)
        return;
    if (!type.ownChildren.empty())
        chooseChildren(node, type);
    lookAtWritten(node, newElement(node, type, ""), [&](XmlElement& element) {
        // A new element leads to no place yet: it has the number in its stead.
        const bool leads = std::any_of(type.attributes.begin(), type.attributes.end(), [&](const auto& attribute) {
            return attribute.value.kind == XmlValueForm::Kind::place && element.has(attribute.name);
        });
        for (XmlAttributeForm& attribute : type.attributes) {
            const bool isIn = attribute.value.kind != XmlValueForm::Kind::place &&
                              (element.has(attribute.name) || (leads && attribute.value.isInteger()));
            setInNew(attribute, isIn && probed(attribute).isAlwaysRead);
        }
    });
    chooseFlag(node, type);
}

static void writeNew(XmlNode& node, const XmlElementType& type) {
    for (const XmlAttributeForm& attribute : type.attributes) {
        if (attribute.newValue)
            node.attribute(attribute.name, *attribute.newValue);
    }
    if (type.content == XmlContent::text)
        node.text("");
    else if (type.content == XmlContent::base64)
        node.base64({});
}

std::string newElementText(const XmlChildForm& form) {
    XmlText text;
    XmlWriteContext context;
    {
        XmlNode node(text, context, 0, form.name);
        writeNew(node, *form.type);
        for (const XmlChildForm& child : form.type->ownChildren) {
            if (!child.isInNew)
                continue;
            XmlNode inside(node, child.name);
            writeNew(inside, *child.type);
        }
    }
    return std::string(text.view().substr(text.view().find('<')));
}

} // namespace xml2swf
