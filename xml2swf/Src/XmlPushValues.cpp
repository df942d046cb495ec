// Push and its operands as XML.
#include <array>
#include <type_traits>

#include "XmlActionForms.h"
#include "XmlNameTable.h"

namespace xml2swf {

using namespace libswf;

namespace {

// Both directions of one type of operand.
struct ValueForm {
    std::string_view name;
    void (*write)(XmlNode& node, const SwfValue& value);
    std::unique_ptr<SwfValue> (*read)(XmlElement& element);
};

void writeText(XmlNode& node, const SwfValue& value) {
    node.attribute("Name", static_cast<const SwfValueString&>(value).text);
}

std::unique_ptr<SwfValue> readText(XmlElement& element) {
    auto value = std::make_unique<SwfValueString>();
    value->text = element.string("Name");
    return value;
}

template <class Value>
void writeNumber(XmlNode& node, const SwfValue& value) {
    const auto number = static_cast<const Value&>(value).value;
    if constexpr (std::is_same_v<Value, SwfValueInteger>)
        node.attribute("Value", static_cast<int32_t>(number));
    else
        node.attribute("Value", number);
}

template <class Value>
std::unique_ptr<SwfValue> readNumber(XmlElement& element) {
    using Number = decltype(Value::value);
    auto value = std::make_unique<Value>();
    if constexpr (std::is_same_v<Number, double>)
        value->value = element.realDouble("Value");
    else if constexpr (std::is_same_v<Number, uint32_t>)
        value->value = element.bits32("Value");
    else
        value->value = element.integer<Number>("Value");
    return value;
}

void writeNothing(XmlNode&, const SwfValue&) {}

template <SwfValue::Plain type>
std::unique_ptr<SwfValue> readPlain(XmlElement&) {
    return std::make_unique<SwfValue>(type);
}

template <class Value>
constexpr ValueForm numberForm(std::string_view name) {
    return {name, writeNumber<Value>, readNumber<Value>};
}

// By type byte.
constexpr ValueForm forms[] = {
    {"String", writeText, readText},
    numberForm<SwfValueFloat>("Float"),
    {"Null", writeNothing, readPlain<SwfValue::Plain::Null>},
    {"Undefined", writeNothing, readPlain<SwfValue::Plain::Undefined>},
    numberForm<SwfValueRegister>("Register"),
    numberForm<SwfValueBoolean>("Boolean"),
    numberForm<SwfValueDouble>("Double"),
    numberForm<SwfValueInteger>("Integer"),
    numberForm<SwfValueConstant8>("Constant8"),
    numberForm<SwfValueConstant16>("Constant16"),
};

constexpr auto allNames = [] {
    std::array<std::string_view, std::size(forms)> names;
    for (size_t i = 0; i < names.size(); ++i)
        names[i] = forms[i].name;
    return names;
}();

const ValueForm* formByName(std::string_view name) {
    static const XmlNameTable<ValueForm> table = [] {
        XmlNameTable<ValueForm> result;
        for (const ValueForm& form : forms)
            result.add(form.name, &form);
        return result;
    }();
    return table[name];
}

} // namespace

void writeXml(XmlNode& node, const SwfActionPush& action) {
    for (const SwfValue* value : action.values) {
        const ValueForm& form = forms[value->valueType];
        XmlNode child(node, form.name);
        form.write(child, *value);
    }
}

// An unknown name is a value as well, Undefined, so that the stack keeps its depth.
void readXml(XmlElement& element, SwfActionPush& action) {
    for (XmlElement child : element.children(XmlNameGroup{"PushValues", allNames})) {
        const ValueForm* form = formByName(child.name());
        if (form == nullptr) {
            child.skip();
            form = &forms[SwfValueType::Undefined];
        }
        action.values.add(form->read(child));
    }
}

} // namespace xml2swf
