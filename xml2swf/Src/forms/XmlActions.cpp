#include "XmlActions.h"

#include <array>
#include <typeinfo>

#include "XmlActionForms.h"
#include "XmlActionRun.h"
#include "XmlScriptNotes.h"
#include "XmlScriptView.h"

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

// An action's element, with the name of its place.
class ActionNode : public XmlNode {
public:
    ActionNode(XmlNode& parent, std::string_view name) : XmlNode(parent, name) {
        if (context().script != nullptr)
            context().script->startAction(*this);
    }
};

// False when the object is not of the class: the class decides, not the code.
template <class Action>
bool writeAs(XmlNode& parent, std::string_view name, const SwfAction& action) {
    if (typeid(action) != typeid(Action))
        return false;
    ActionNode node(parent, name);
    writeXml(node, static_cast<const Action&>(action));
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
    unknownName, placeElement};

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
    static const ActionForm placeForm{placeElement, SwfActionCode::compiled};
    static const XmlNameTable<ActionForm> forms = [] {
        XmlNameTable<ActionForm> table;
        table.add(unknownName, &unknownForm);
        table.add(placeElement, &placeForm);
        for (const ActionForm& form : allForms)
            table.add(form.name, &form);
        return table;
    }();
    return forms.find(name, words);
}

void writeUnknown(XmlNode& parent, uint32_t code, std::span<const uint8_t> data) {
    ActionNode node(parent, unknownName);
    node.attribute("Type", code);
    writePayload(node, "Data", data);
}

// Whether the full form shows what stands as UnknownAction in the classic one: the layouts of few actions differ.
bool isOfFullForm(const SwfActionUnknown& action) {
    SwfIStream stream(action.data.data(), action.data.size());
    stream.context.fullForm = stream.context.keepRaw = true;
    stream.context.actionLength = static_cast<uint16_t>(action.data.size());
    stream.setBodyEnd(action.data.size());
    try {
        switch (action.type) {
        case SwfActionCode::Try: SwfActionTry{stream}; break;
        case SwfActionCode::GoToFrame2: SwfActionGotoFrame2{stream}; break;
        case SwfActionCode::GetURL2: SwfActionGetURL2{stream}; break;
        default: return false;
        }
    } catch (const SwfException&) {
        return false;
    }
    return stream.inexact() == nullptr && stream.position() == action.data.size();
}

void writeAction(XmlNode& parent, const SwfAction& action) {
    // The usual cases first: types that differ are compared by their names.
    const auto& type = typeid(action);
    const ActionForm* form = formByCode(action.type);
    if (form != nullptr && form->write == nullptr && type == typeid(SwfAction))
        ActionNode(parent, form->name);
    else if (form != nullptr && form->write != nullptr && form->write(parent, form->name, action))
        return;
    else if (action.type == SwfActionCode::compiled)
        ActionNode(parent, "Compiled");
    else if (type == typeid(SwfActionUnknown)) {
        const auto& unknown = static_cast<const SwfActionUnknown&>(action);
        if (!parent.fullForm())
            parent.differs(isOfFullForm(unknown));
        writeUnknown(parent, action.type, unknown.data.span());
    } else
        writeUnknown(parent, action.type, {});
}

std::unique_ptr<SwfAction> read(const ActionForm& form, XmlElement& element) { return form.read(element); }
std::unique_ptr<SwfAction> read(const ActionForm& form, XmlQuickElement& element) { return form.readQuickly(element); }

// In the classic form, the bytes of a record up to the next one where its length does not tell them: the length of a
// Try counts its bodies, which are records of their own, and code 128 has none.
uint32_t oddBytes(const SwfAction& action, const SwfContext& context) {
    const uint32_t header = action.headerSize(context);
    if (const auto* attempt = dynamic_cast<const SwfActionTry*>(&action))
        return header + attempt->headSize();
    const auto* unknown = dynamic_cast<const SwfActionUnknown*>(&action);
    return header + (unknown == nullptr ? 0 : static_cast<uint32_t>(unknown->data.size()));
}

template <class Element>
std::unique_ptr<SwfAction> readOdd(const ActionForm& form, Element& element) {
    ScriptNotes& script = *element.context().script;
    const size_t record = script.addOddRecord();
    std::unique_ptr<SwfAction> action = read(form, element);
    script.setOddRecord(record, oddBytes(*action, {}));
    return action;
}

// Null for a place, which is no action, and for a name that is no action's.
template <class Element>
std::unique_ptr<SwfAction> readAction(Element& element) {
    ScriptNotes& script = *element.context().script;
    const ActionForm* form = formByName(element.name(), nameWords(element));
    if (form == nullptr) {
        element.skip();
        return nullptr;
    }
    if (form->code == SwfActionCode::compiled && form->read == nullptr) {
        script.addLabels(element);
        return nullptr;
    }
    script.startAction(element);
    if (form->read == nullptr)
        return std::make_unique<SwfAction>(form->code);
    const bool isOdd = form->code == SwfActionCode::Try || form->code == SwfActionCode::compiled;
    return isOdd && !element.context().fullForm ? readOdd(*form, element) : read(*form, element);
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
        while (readNext(quick))
            done = quick.position();
        return done;
    }

private:
    // False when the next one is not of that form.
    bool readNext(XmlQuickText& text) {
        text.passBlanks();
        if (!text.atElement())
            return false;
        const ScriptNotes::Mark before = _context.script->mark();
        std::unique_ptr<SwfAction> action;
        {
            XmlQuickElement element(_context, text);
            action = readAction(element);
        }
        if (!text.isUsual())
            _context.script->rewind(before);
        else if (action != nullptr)
            _actions.add(std::move(action));
        return text.isUsual();
    }

    XmlReadContext& _context;
    ActionRun& _actions;
};

constexpr XmlNameGroup actionElements{"Actions", allNames};

} // namespace

static void writeEach(XmlNode& parent, const SwfActions& actions) {
    for (const SwfAction* action : actions)
        writeAction(parent, *action);
}

static void writeList(XmlNode& parent, const SwfActions& actions, ScriptView& script) {
    const ScriptView::List list(script);
    writeEach(parent, actions);
    script.endList(parent);
}

void writeActions(XmlNode& parent, const SwfActions& actions) {
    XmlWriteContext& context = parent.context();
    if (!context.swf.fullForm) {
        writeEach(parent, actions);
    } else if (context.script != nullptr) {
        writeList(parent, actions, *context.script);
    } else {
        ScriptView script(context, actions);
        writeList(parent, actions, script);
    }
}

std::optional<SwfBytes> compileActions(XmlReadContext& context, std::string_view& text) {
    SwfActions actions;
    const std::string_view document = context.document->text();
    const auto start = static_cast<size_t>(text.data() - document.data());
    size_t end = start;
    ScriptNotes script(context);
    try {
        ActionRun run(context, actions);
        end = QuickActions(context, run).read(document, start, start + text.size());
        run.finish();
        if (!script.settle(actions, false))
            return {};
    } catch (const SwfException&) {
        return {}; // as the nodes will tell
    } catch (const XmlValueError&) {
        return {};
    }
    const std::string_view rest = text.substr(end - start);
    const bool isAll = rest.substr(std::min(rest.find_first_not_of(" \t\r\n"), rest.size())).starts_with("</");
    std::optional<SwfBytes> records;
    if (isAll)
        records = ActionRun::joined(context, actions);
    if (records)
        text = rest;
    return records;
}

// The actions of a script's outermost list, or of one in it.
template <class Read>
static void readList(XmlReadContext& context, SwfActions& actions, Read read) {
    if (context.script != nullptr) {
        const ScriptList list(*context.script);
        read();
        return;
    }
    ScriptNotes script(context);
    read();
    script.settle(actions, true);
}

void readActions(XmlElement& parent, SwfActions& actions) {
    if (const SwfBytes* records = parent.script()) {
        parent.children();
        if (!records->empty())
            actions.add(std::make_unique<SwfActionCompiled>(*records));
        return;
    }
    readList(parent.context(), actions, [&] {
        ActionRun run(parent.context(), actions);
        QuickActions quick(parent.context(), run);
        readEach<XmlElement>(parent.children(actionElements, quick), run);
    });
}

void readActions(XmlQuickElement& parent, SwfActions& actions) {
    readList(parent.context(), actions, [&] {
        ActionRun run(parent.context(), actions);
        readEach<XmlQuickElement>(parent.children(), run);
    });
}

} // namespace xml2swf
