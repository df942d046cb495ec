#include "XmlActions.h"

#include <array>
#include <typeinfo>

#include "XmlActionForms.h"
#include "XmlActionRun.h"

namespace xml2swf {

using namespace libswf;

namespace {

// Both directions of the actions of one code. Without `write` the action has no payload.
struct ActionForm {
    std::string_view name;
    uint32_t code = 0;
    bool (*write)(XmlNode& parent, std::string_view name, const SwfAction& action) = nullptr;
    std::unique_ptr<SwfAction> (*read)(XmlElement& element) = nullptr;
    std::unique_ptr<SwfAction> (*readQuickly)(XmlQuickElement& element) = nullptr;
};

// False when the object is not of the class: the class decides, not the code.
template <class Action>
bool writeAs(XmlNode& parent, std::string_view name, const SwfAction& action) {
    if (typeid(action) != typeid(Action))
        return false;
    writeChild(parent, name, static_cast<const Action&>(action));
    return true;
}

template <class Action, class Element>
std::unique_ptr<SwfAction> readAs(Element& element) {
    auto action = std::make_unique<Action>();
    readXml(element, *action);
    return action;
}

template <class Element>
std::unique_ptr<SwfAction> readUnknown(Element& element) {
    const uint8_t code = element.ui8("Type");
    return std::make_unique<SwfActionUnknown>(code, element.payload("Data"));
}

constexpr std::string_view unknownName = "UnknownAction";

constexpr ActionForm allForms[] = {
#define SWF_ACTION(code, name) {#name, code},
#define SWF_PAYLOAD_ACTION(code, name, type) {#name, code, writeAs<type>, readAs<type>, readAs<type>},
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

const ActionForm* formByName(std::string_view name, const XmlNameWords& words) {
    static const ActionForm unknownForm{unknownName, SwfActionCode::compiled, nullptr, readUnknown, readUnknown};
    static const XmlNameTable<ActionForm> forms = [] {
        XmlNameTable<ActionForm> table;
        table.add(unknownName, &unknownForm);
        for (const ActionForm& form : allForms)
            table.add(form.name, &form);
        return table;
    }();
    return forms.find(name, words);
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

std::unique_ptr<SwfAction> read(const ActionForm& form, XmlElement& element) { return form.read(element); }
std::unique_ptr<SwfAction> read(const ActionForm& form, XmlQuickElement& element) { return form.readQuickly(element); }

// Null for a name that is no action's.
template <class Element>
std::unique_ptr<SwfAction> readAction(Element& element) {
    const ActionForm* form = formByName(element.name(), nameWords(element));
    if (form == nullptr) {
        element.skip();
        return nullptr;
    }
    return form->read != nullptr ? read(*form, element) : std::make_unique<SwfAction>(form->code);
}

template <class Element, class Children>
void readEach(const Children& children, ActionRun& actions) {
    for (Element child : children) {
        if (auto action = readAction(child))
            actions.add(std::move(action));
    }
    actions.finish();
}

// Actions in the form in which they are written, with all that they hold.
class QuickActions final : public XmlQuickReader {
public:
    QuickActions(XmlReadContext& context, ActionRun& actions) : _context(context), _actions(actions) {}

    size_t read(std::string_view text, size_t start, size_t end) override {
        XmlQuickText quick(text, start, end);
        size_t done = start;
        while (auto action = readNext(quick)) {
            _actions.add(std::move(action));
            done = quick.position();
        }
        return done;
    }

private:
    // Null when the next one is not of that form.
    std::unique_ptr<SwfAction> readNext(XmlQuickText& text) {
        text.passBlanks();
        if (!text.atElement())
            return nullptr;
        std::unique_ptr<SwfAction> action;
        {
            XmlQuickElement element(_context, text);
            action = readAction(element);
        }
        return text.isUsual() ? std::move(action) : nullptr;
    }

    XmlReadContext& _context;
    ActionRun& _actions;
};

constexpr XmlNameGroup actionElements{"Actions", allNames};

} // namespace

void writeActions(XmlNode& parent, const SwfActions& actions) {
    for (const SwfAction* action : actions)
        writeAction(parent, *action);
}

std::optional<SwfBytes> compileActions(XmlReadContext& context, std::string_view& text) {
    SwfActions actions;
    size_t end = 0;
    try {
        ActionRun run(context, actions);
        end = QuickActions(context, run).read(text, 0, text.size());
        run.finish();
    } catch (const SwfException&) {
        return {}; // as the nodes will tell
    }
    const std::string_view rest = text.substr(end);
    const bool isAll = rest.substr(std::min(rest.find_first_not_of(" \t\r\n"), rest.size())).starts_with("</");
    if (!isAll || actions.size() > 1 || (actions.size() == 1 && actions[0]->type != SwfActionCode::compiled))
        return {};
    text = rest;
    return actions.empty() ? SwfBytes() : static_cast<const SwfActionCompiled&>(*actions[0]).records;
}

void readActions(XmlElement& parent, SwfActions& actions) {
    if (const SwfBytes* records = parent.script()) {
        parent.children();
        if (!records->empty())
            actions.add(std::make_unique<SwfActionCompiled>(*records));
        return;
    }
    ActionRun run(parent.context(), actions);
    QuickActions quick(parent.context(), run);
    readEach<XmlElement>(parent.children(actionElements, quick), run);
}

void readActions(XmlQuickElement& parent, SwfActions& actions) {
    ActionRun run(parent.context(), actions);
    readEach<XmlQuickElement>(parent.children(), run);
}

} // namespace xml2swf
