#include "XmlPushValues.h"

#include <algorithm>
#include <array>
#include <bit>
#include <type_traits>

#include "XmlScriptNotes.h"
#include "XmlScriptView.h"

namespace xml2swf {

using namespace libswf;

namespace {

// Both directions of one type of operand.
struct ValueForm {
    std::string_view name;
    void (*write)(XmlNode& node, const SwfValue& value);
    std::unique_ptr<SwfValue> (*read)(XmlElement& element);
    std::unique_ptr<SwfValue> (*readQuickly)(XmlQuickElement& element);
};

void writeText(XmlNode& node, const SwfValue& value) {
    node.attribute("Name", static_cast<const SwfValueString&>(value).text);
}

template <class Element>
std::unique_ptr<SwfValue> readText(Element& element) {
    auto value = std::make_unique<SwfValueString>();
    value->text = element.string("Name");
    return value;
}

// The bytes of a double say the same in both forms when they are the same forwards and backwards.
bool differsInFullForm(double value) {
    const auto bits = std::bit_cast<std::array<uint8_t, sizeof value>>(value);
    return !std::equal(bits.begin(), bits.begin() + bits.size() / 2, bits.rbegin());
}

template <class Value>
void writeNumber(XmlNode& node, const SwfValue& value) {
    const auto number = static_cast<const Value&>(value).value;
    if constexpr (std::is_same_v<Value, SwfValueDouble>) {
        if (!node.fullForm())
            node.differs(differsInFullForm(number));
    }
    if constexpr (std::is_same_v<Value, SwfValueInteger>)
        node.attribute("Value", static_cast<int32_t>(number));
    else
        node.attribute("Value", number);
}

template <class Value, class Element>
std::unique_ptr<SwfValue> readNumber(Element& element) {
    using Number = decltype(Value::value);
    auto value = std::make_unique<Value>();
    if constexpr (std::is_same_v<Number, double>)
        value->value = element.realDouble("Value");
    else if constexpr (std::is_same_v<Number, uint32_t>)
        value->value = element.bits32("Value");
    else
        value->value = element.template integer<Number>("Value");
    return value;
}

void writeRegisterValue(XmlNode& node, const SwfValue& value) {
    writeRegister(node, "Value", static_cast<const SwfValueRegister&>(value).value);
}

template <class Element>
std::unique_ptr<SwfValue> readRegisterValue(Element& element) {
    auto value = std::make_unique<SwfValueRegister>();
    value->value = readRegister(element, "Value");
    return value;
}

void writeNothing(XmlNode&, const SwfValue&) {}

template <SwfValue::Plain type, class Element>
std::unique_ptr<SwfValue> readPlain(Element&) {
    return std::make_unique<SwfValue>(type);
}

template <class Value>
constexpr ValueForm numberForm(std::string_view name) {
    return {name, writeNumber<Value>, readNumber<Value>, readNumber<Value>};
}

template <SwfValue::Plain type>
constexpr ValueForm plainForm(std::string_view name) {
    return {name, writeNothing, readPlain<type>, readPlain<type>};
}

// By type byte.
constexpr ValueForm forms[] = {
    {"String", writeText, readText, readText},
    numberForm<SwfValueFloat>("Float"),
    plainForm<SwfValue::Plain::Null>("Null"),
    plainForm<SwfValue::Plain::Undefined>("Undefined"),
    {"Register", writeRegisterValue, readRegisterValue, readRegisterValue},
    numberForm<SwfValueBoolean>("Boolean"),
    numberForm<SwfValueDouble>("Double"),
    numberForm<SwfValueInteger>("Integer"),
    numberForm<SwfValueConstant8>("Constant8"),
    numberForm<SwfValueConstant16>("Constant16"),
};

// The text of a constant, which stands in the document or in `room`.
std::string_view textAttribute(XmlElement& element, std::string& room) {
    room = element.string("Name").view();
    return room;
}
std::string_view textAttribute(XmlQuickElement& element, std::string& room) {
    return element.attribute("Name", room).value_or("");
}

// The index of a text in the pool in force; a text for which it has no room is pushed itself.
template <class Element>
std::unique_ptr<SwfValue> readConstant(Element& element) {
    std::string room;
    const std::string_view text = textAttribute(element, room);
    ConstantsInForce& constants = element.context().script->constants;
    if (!constants.areKnown()) {
        if (element.context().observer == nullptr)
            throw XmlValueError(element.name(), "Name",
                                "\"" + std::string(text) +
                                    "\" is in no pool: it is not known which one is in force here",
                                element.offset());
        return std::make_unique<SwfValueConstant8>();
    }
    const std::optional<uint16_t> index = constants.indexOf(text);
    if (!index) {
        auto value = std::make_unique<SwfValueString>();
        value->text = text;
        return value;
    }
    if (*index <= UINT8_MAX) {
        auto value = std::make_unique<SwfValueConstant8>();
        value->value = static_cast<uint8_t>(*index);
        return value;
    }
    auto value = std::make_unique<SwfValueConstant16>();
    value->value = *index;
    return value;
}

constexpr ValueForm constantForm{"Constant", nullptr, readConstant, readConstant};

constexpr auto allNames = [] {
    std::array<std::string_view, std::size(forms) + 1> names;
    for (size_t i = 0; i < std::size(forms); ++i)
        names[i] = forms[i].name;
    names.back() = constantForm.name;
    return names;
}();
constexpr std::span classicNames(allNames.data(), std::size(forms));

const ValueForm* formByName(std::string_view name, const XmlNameWords& words, bool fullForm) {
    static const XmlNameTable<ValueForm> table = [] {
        XmlNameTable<ValueForm> result;
        for (const ValueForm& form : forms)
            result.add(form.name, &form);
        result.add(constantForm.name, &constantForm);
        return result;
    }();
    const ValueForm* form = table.find(name, words);
    return form == &constantForm && !fullForm ? nullptr : form;
}

std::unique_ptr<SwfValue> read(const ValueForm& form, XmlElement& element) { return form.read(element); }
std::unique_ptr<SwfValue> read(const ValueForm& form, XmlQuickElement& element) { return form.readQuickly(element); }

template <class Element>
void readAll(Element& element, SwfValues& values) {
    const bool fullForm = element.context().fullForm;
    const std::span<const std::string_view> names =
        fullForm ? std::span<const std::string_view>(allNames) : classicNames;
    for (Element child : element.children(XmlNameGroup{"PushValues", names})) {
        const ValueForm* form = formByName(child.name(), nameWords(child), fullForm);
        if (form == nullptr) {
            child.skip();
            form = &forms[SwfValueType::Undefined];
        }
        values.add(read(*form, child));
    }
}

} // namespace

void writeValues(XmlNode& node, const SwfValues& values) {
    ScriptView* script = node.context().script;
    for (const SwfValue* value : values) {
        if (const auto text = script == nullptr ? std::nullopt : script->textOf(*value)) {
            XmlNode(node, constantForm.name).escapedAttribute("Name", *text);
            continue;
        }
        const ValueForm& form = forms[value->valueType];
        XmlNode child(node, form.name);
        form.write(child, *value);
    }
}

void readValues(XmlElement& element, SwfValues& values) { readAll(element, values); }
void readValues(XmlQuickElement& element, SwfValues& values) { readAll(element, values); }

} // namespace xml2swf
