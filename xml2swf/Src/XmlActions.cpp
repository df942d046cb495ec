#include "XmlActions.h"

#include <array>
#include <typeinfo>

#include "XmlActionForms.h"
#include "XmlNameTable.h"

namespace xml2swf {

using namespace libswf;

namespace {

// Both directions of the actions of one code. Without `write` the action has no payload.
struct ActionForm {
    std::string_view name;
    uint32_t code = 0;
    bool (*write)(XmlNode& parent, std::string_view name, const SwfAction& action) = nullptr;
    std::unique_ptr<SwfAction> (*read)(XmlElement& element) = nullptr;
};

// False when the object is not of the class: the class decides, not the code.
template <class Action>
bool writeAs(XmlNode& parent, std::string_view name, const SwfAction& action) {
    if (typeid(action) != typeid(Action))
        return false;
    writeChild(parent, name, static_cast<const Action&>(action));
    return true;
}

template <class Action>
std::unique_ptr<SwfAction> readAs(XmlElement& element) {
    auto action = std::make_unique<Action>();
    readXml(element, *action);
    return action;
}

std::unique_ptr<SwfAction> readUnknown(XmlElement& element) {
    const uint8_t code = element.ui8("Type");
    return std::make_unique<SwfActionUnknown>(code, element.payload("Data"));
}

constexpr std::string_view unknownName = "UnknownAction";

constexpr ActionForm allForms[] = {
#define SWF_ACTION(code, name) {#name, code},
#define SWF_PAYLOAD_ACTION(code, name, type) {#name, code, writeAs<type>, readAs<type>},
#include "SwfActions.def"
};

constexpr std::string_view allNames[] = {
#define SWF_ACTION(code, name) #name,
#define SWF_PAYLOAD_ACTION(code, name, type) #name,
#include "SwfActions.def"
    unknownName};

const ActionForm* formByCode(uint32_t code) {
    static const std::array<const ActionForm*, 256> forms = [] {
        std::array<const ActionForm*, 256> table{};
        for (const ActionForm& form : allForms)
            table[form.code] = &form;
        return table;
    }();
    return code < forms.size() ? forms[code] : nullptr;
}

const ActionForm* formByName(std::string_view name) {
    static const ActionForm unknownForm{unknownName, SwfActionCode::compiled, nullptr, readUnknown};
    static const XmlNameTable<ActionForm> forms = [] {
        XmlNameTable<ActionForm> table;
        table.add(unknownName, &unknownForm);
        for (const ActionForm& form : allForms)
            table.add(form.name, &form);
        return table;
    }();
    return forms[name];
}

void writeUnknown(XmlNode& parent, uint32_t code, std::span<const uint8_t> data) {
    XmlNode node(parent, unknownName);
    node.attribute("Type", code);
    writePayload(node, "Data", data);
}

void writeAction(XmlNode& parent, const SwfAction& action) {
    // The usual cases first: types that differ are compared by their names.
    const auto& type = typeid(action);
    const ActionForm* form = formByCode(action.type);
    if (form != nullptr && form->write == nullptr && type == typeid(SwfAction))
        XmlNode(parent, form->name);
    else if (form != nullptr && form->write != nullptr && form->write(parent, form->name, action))
        return;
    else if (action.type == SwfActionCode::compiled)
        XmlNode(parent, "Compiled");
    else if (type == typeid(SwfActionUnknown))
        writeUnknown(parent, action.type, static_cast<const SwfActionUnknown&>(action).data.span());
    else
        writeUnknown(parent, action.type, {});
}

} // namespace

void writeActions(XmlNode& parent, const SwfActions& actions) {
    for (const SwfAction* action : actions)
        writeAction(parent, *action);
}

void readActions(XmlElement& parent, SwfActions& actions) {
    for (XmlElement child : parent.children(XmlNameGroup{"Actions", allNames})) {
        const ActionForm* form = formByName(child.name());
        if (form == nullptr)
            child.skip();
        else
            actions.add(form->read != nullptr ? form->read(child) : std::make_unique<SwfAction>(form->code));
    }
}

} // namespace xml2swf
