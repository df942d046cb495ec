#include "XmlProbe.h"

#include <algorithm>

#include "Conversion.h"
#include "XmlElement.h"
#include "XmlTags.h"

namespace xml2swf {

namespace {

constexpr std::string_view strangerName = "_"; // no element is called this

// Of a movie whose players know everything that has a form.
constexpr std::string_view movieStart = "<Movie SwfVersion=\"10\" IsCompressed=\"false\">";
constexpr std::string_view fullMovieStart = "<Movie Form=\"full\" SwfVersion=\"10\" IsCompressed=\"false\">";
constexpr std::string_view formName = "Form"; // not varied: each form is learned by itself

bool isMovie(const ProbeNode& node) { return node.parent == nullptr; }

void writeStart(std::string& text, const ProbeNode& node, const char* end) {
    text.append("<").append(node.name);
    for (const ProbeAttribute& attribute : node.attributes)
        text.append(" ").append(attribute.name).append("=\"").append(*sampleValue(attribute.form, 0)).append("\"");
    text += end;
}

// The start tags around a node. The siblings before each stand there too, empty: some are told apart by their place.
void writeBefore(std::string& text, const ProbeNode& node) {
    if (isMovie(node))
        return;
    const ProbeNode& parent = *node.parent;
    writeBefore(text, parent);
    if (isMovie(parent))
        text += parent.fullForm ? fullMovieStart : movieStart;
    else
        writeStart(text, parent, ">");
    const bool isOwn = std::any_of(parent.children.begin(), parent.children.end(),
                                   [&](const auto& child) { return child.get() == &node; });
    for (size_t i = 0; isOwn && !node.isAlone && parent.children[i].get() != &node; ++i)
        writeStart(text, *parent.children[i], "/>");
}

class NullTarget : public IXml2SwfConversionTarget {
    void movieHeader(uint8_t, int32_t, int32_t, float, bool) override {}
    void append(std::shared_ptr<libswf::SwfTag>) override {}
};

} // namespace

std::optional<std::string> sampleValue(const XmlValueForm& form, size_t index) {
    const auto oneOf = [index](std::initializer_list<const char*> values) {
        return index < values.size() ? std::optional<std::string>(values.begin()[index]) : std::nullopt;
    };
    switch (form.kind) {
    case XmlValueForm::Kind::text:
        if (form.textForm != nullptr)
            return index == 0 ? std::optional<std::string>(form.textForm->sample) : std::nullopt;
        [[fallthrough]];
    case XmlValueForm::Kind::places:
    case XmlValueForm::Kind::place: return oneOf({"a"});
    case XmlValueForm::Kind::integer: {
        constexpr int64_t tried[] = {1, 0, 2};
        const bool fits = index < std::size(tried) && form.low <= tried[index] && tried[index] <= form.high;
        if (index == 0 && !fits)
            return std::to_string(form.high);
        return fits ? std::optional(std::to_string(tried[index])) : std::nullopt;
    }
    case XmlValueForm::Kind::real: return oneOf({"1"});
    case XmlValueForm::Kind::boolean: return oneOf({"true", "false"});
    case XmlValueForm::Kind::color: return oneOf({"ff"});
    case XmlValueForm::Kind::name:
    case XmlValueForm::Kind::nameOrInteger:
        return index < form.names.size() ? std::optional<std::string>(form.names[index].name) : std::nullopt;
    }
    return std::nullopt;
}

std::string sampleBefore(const ProbeNode& node) {
    std::string text;
    writeBefore(text, node);
    return text;
}

std::string sampleBehind(const ProbeNode& node) {
    std::string text;
    for (const ProbeNode* at = node.parent; at != nullptr; at = at->parent)
        text.append("</").append(at->name).append(">");
    return text;
}

std::string structureOf(const ProbeNode& node) {
    std::string text;
    for (const ProbeAttribute& attribute : node.attributes) {
        const XmlValueForm& form = attribute.form;
        text.append(attribute.name).append(":").append(std::to_string(static_cast<int>(form.kind)));
        text.append("," + std::to_string(form.low) + "," + std::to_string(form.high));
        for (const XmlName& name : form.names)
            text.append(",").append(name.name);
        if (form.textForm != nullptr)
            text.append(",").append(form.textForm->name);
        text += attribute.isOptional ? '?' : ' ';
        text += attribute.isAlwaysRead ? '!' : ' ';
    }
    text += node.isOrdered ? "[" : "{";
    for (const auto& child : node.children) {
        text.append(child->name).append(child->isAlwaysRead ? "!" : " ");
        text += structureOf(*child);
    }
    text.append("}").append(std::to_string(static_cast<int>(node.content)));
    return node.group ? text.append(node.group->name) : text;
}

// --- samples ---------------------------------------------------------------------------------------------------------

void XmlProber::explore(ProbeNode& node) {
    learn(node);
    vary(node);
    learn(node);
}

// Runs one sample until nothing new is asked for. Whether there was anything new.
bool XmlProber::learn(ProbeNode& focus, const ProbeVariation& variation) {
    bool hadNews = false;
    do {
        _hasNews = false;
        _focus = &focus;
        _places.clear();
        _text = sampleBefore(focus);
        write(focus, variation);
        _text += sampleBehind(focus);
        run();
        hadNews |= _hasNews;
    } while (_hasNews);
    note();
    for (Place& place : _places) {
        if (variation.attribute != ProbeVariation::none || place.isStranger)
            continue;
        const bool isRead = !place.wasSkipped;
        place.node->isAlwaysRead = isRead;
        for (ProbeAttribute& attribute : place.node->attributes)
            attribute.isAlwaysRead = isRead && !attribute.wasSkipped;
    }
    return hadNews;
}

void XmlProber::run() {
    NullTarget target;
    ConversionOptions options;
    options.observer = this;
    options.ignoreFonts = true;
    for (Place& place : _places) {
        for (ProbeAttribute& attribute : place.node->attributes)
            attribute.wasSkipped = false;
    }
    try {
        xmlToSwf(_text, target, options);
    } catch (const std::runtime_error&) {
        if (!_hasNews) // Otherwise it was a value whose form is known only now.
            throw;
    } catch (const boost::bad_lexical_cast&) {
        if (!_hasNews)
            throw;
    }
}

void XmlProber::write(ProbeNode& node, const ProbeVariation& variation) {
    _text += '<';
    _places.push_back({_text.size(), &node, false});
    _text += node.name;
    if (node.fullForm)
        _text.append(" ").append(formName).append("=\"").append(fullForm).append("\"");
    for (size_t i = 0; i < node.attributes.size(); ++i) {
        if (isMovie(node) && node.attributes[i].name == formName)
            continue;
        const bool varies = &node == _focus && (variation.attribute == ProbeVariation::all || variation.attribute == i);
        std::optional<std::string> value = sampleValue(node.attributes[i].form, varies ? variation.value : 0);
        if (!value && variation.attribute == ProbeVariation::all)
            value = sampleValue(node.attributes[i].form, 0);
        if (value)
            _text.append(" ").append(node.attributes[i].name).append("=\"").append(*value).append("\"");
    }
    _text += '>';
    for (const auto& child : node.children) {
        if (!child->isAlone)
            write(*child, variation);
    }
    if (node.content == XmlContent::none) {
        _text += '<';
        _places.push_back({_text.size(), &node, true});
        _text.append(strangerName).append("/>");
    }
    _text.append("</").append(node.name).append(">");
}

// What the last run has read. What stands in an element that was skipped was skipped as well.
void XmlProber::note() {
    for (Place& place : _places) {
        if (place.isStranger)
            continue;
        if (place.node != _focus) {
            const auto around = std::find_if(_places.begin(), _places.end(), [&](const Place& other) {
                return other.node == place.node->parent && !other.isStranger;
            });
            place.wasSkipped |= around->wasSkipped;
        }
        place.node->isRead |= !place.wasSkipped;
        for (ProbeAttribute& attribute : place.node->attributes)
            attribute.isRead |= !place.wasSkipped && !attribute.wasSkipped;
    }
}

void XmlProber::vary(ProbeNode& node) {
    const std::string structure = std::string(node.name) + structureOf(node);
    if (_dull.contains(structure))
        return;
    bool hasNews = varyAttributes(node);
    hasNews |= tryAlone(node);
    for (size_t i = 0; i < node.children.size(); ++i) // they may become more
        vary(*node.children[i]);
    if (!hasNews && structure == std::string(node.name) + structureOf(node))
        _dull.insert(structure);
}

bool XmlProber::varyAttributes(ProbeNode& node) {
    bool hasNews = false;
    for (size_t value : {1, 2})
        hasNews |= learn(node, {ProbeVariation::all, value});
    for (size_t i = 0; i < node.attributes.size(); ++i) {
        constexpr size_t missing = size_t(-1);
        if (!node.children.empty() || node.attributes[i].isOptional)
            hasNews |= learn(node, {i, missing});
        for (size_t value = 1; value < node.attributes[i].form.names.size(); ++value)
            hasNews |= learn(node, {i, value});
    }
    return hasNews;
}

// Some readers take only their first child.
bool XmlProber::tryAlone(ProbeNode& node) {
    bool hasNews = false;
    for (size_t i = 0; i < node.children.size(); ++i) {
        ProbeNode& child = *node.children[i];
        if (child.isRead)
            continue;
        child.isAlone = true;
        hasNews |= learn(child);
        child.isAlone = child.isRead;
    }
    return hasNews;
}

// --- what is heard ---------------------------------------------------------------------------------------------------

XmlProber::Place* XmlProber::placeOf(const XmlElement& element) {
    const auto found = std::lower_bound(_places.begin(), _places.end(), element.offset(),
                                        [](const Place& place, size_t offset) { return place.offset < offset; });
    return found != _places.end() && found->offset == element.offset() ? &*found : nullptr;
}

ProbeNode* XmlProber::nodeOf(const XmlElement& element) {
    const Place* place = placeOf(element);
    return place == nullptr || place->isStranger || place->isMistaken ? nullptr : place->node;
}

ProbeAttribute* XmlProber::attributeOf(const XmlElement& element, std::string_view name) {
    ProbeNode* node = nodeOf(element);
    if (node == nullptr)
        return nullptr;
    const auto found = std::find_if(node->attributes.begin(), node->attributes.end(),
                                    [&](const ProbeAttribute& attribute) { return attribute.name == name; });
    return found == node->attributes.end() ? nullptr : &*found;
}

void XmlProber::addChild(ProbeNode& node, size_t index, std::string_view name) {
    if (std::any_of(node.children.begin(), node.children.end(), [&](const auto& child) { return child->name == name; }))
        return;
    auto child = std::make_unique<ProbeNode>();
    child->name = name;
    child->parent = &node;
    const size_t at = std::min(index, node.children.size());
    node.children.insert(node.children.begin() + static_cast<ptrdiff_t>(at), std::move(child));
    _hasNews = true;
}

ProbeAttribute* XmlProber::addAttribute(const XmlElement& element, std::string_view name, const XmlValueForm& form) {
    ProbeNode* node = nodeOf(element);
    if (node == nullptr)
        return nullptr;
    ProbeAttribute* known = attributeOf(element, name);
    if (known == nullptr) {
        known = &node->attributes.emplace_back();
        known->name = name;
        _hasNews = true;
    }
    if (known->form.isAnyText() && !form.isAnyText()) {
        known->form = form;
        _hasNews = true;
    }
    return known;
}

void XmlProber::askedForAttribute(const XmlElement& element, std::string_view name, const XmlValueForm& form) {
    addAttribute(element, name, form);
}

void XmlProber::askedForPresence(const XmlElement& element, std::string_view name) {
    if (ProbeAttribute* attribute = addAttribute(element, name, {}))
        attribute->isOptional = true;
}

void XmlProber::skippedAttribute(const XmlElement& element, std::string_view name) {
    if (ProbeAttribute* known = attributeOf(element, name))
        known->wasSkipped = true;
}

void XmlProber::missedChild(const XmlElement& element, std::string_view name) {
    if (ProbeNode* node = nodeOf(element))
        addChild(*node, node->children.size(), name);
}

void XmlProber::askedForAll(const XmlElement& element, std::string_view name) {
    missedChild(element, name);
    const bool isAround = placeOf(element) == nullptr; // maybe the parent of all that is being looked at
    const ProbeNode* node = isAround && element.name() == _focus->parent->name ? _focus->parent : nodeOf(element);
    for (Place& place : _places) {
        if (node != nullptr && place.node->parent == node && place.node->name != name)
            place.wasSkipped = place.isMistaken = true;
    }
}

void XmlProber::askedForChildAt(const XmlElement& element, uint32_t index, std::string_view name) {
    ProbeNode* node = nodeOf(element);
    if (node == nullptr || name.empty())
        return;
    node->isOrdered = true;
    addChild(*node, index, name);
}

void XmlProber::askedForGroup(const XmlElement& element, const XmlNameGroup& names) {
    if (ProbeNode* node = nodeOf(element); node != nullptr && !node->group) {
        node->group = names;
        _hasNews = true;
    }
}

// Readers that take their children in a certain order ask for the next one: it goes before the one that was not it.
void XmlProber::comparedName(const XmlElement& element, std::string_view name) {
    const Place* place = placeOf(element);
    if (place == nullptr || (place->node == _focus && !place->isStranger))
        return;
    ProbeNode& parent = place->isStranger ? *place->node : const_cast<ProbeNode&>(*place->node->parent);
    size_t index = 0;
    while (index < parent.children.size() && (place->isStranger || parent.children[index].get() != place->node))
        ++index;
    addChild(parent, index, name);
}

void XmlProber::skipped(const XmlElement& element) {
    if (Place* place = placeOf(element))
        place->wasSkipped = true;
}

void XmlProber::askedForContent(const XmlElement& element, XmlContent content) {
    ProbeNode* node = nodeOf(element);
    if (node == nullptr || node->content == content)
        return;
    node->content = content;
    _hasNews = true;
}

} // namespace xml2swf
