#include "XmlActionForms.h"

#include "XmlActions.h"
#include "XmlPushValues.h"
#include "XmlRegisters.h"
#include "XmlScriptNotes.h"
#include "XmlScriptView.h"

namespace xml2swf {

using namespace libswf;

namespace {

void writeBody(XmlNode& node, const char* name, const SwfActions& body) {
    XmlNode child(node, name);
    writeActions(child, body);
}

// Bodies that nest deeper than a file's could not be read again.
template <class Element>
bool readBody(Element& element, const char* name, SwfActions& body) {
    XmlReadContext& context = element.context();
    auto child = element.child(name);
    if (!child)
        return false;
    if (context.actionDepth >= SwfContext::maxDepth)
        throw SwfException(SwfError::doesNotFit, "actions nested more than 256 deep");
    const SwfDepthScope depth(context.actionDepth);
    readActions(*child, body);
    return true;
}

// Where a branch leads to: a name, or its number.
void writeTarget(XmlNode& node, std::string_view number, int32_t value) {
    ScriptView* script = node.context().script;
    if (script == nullptr || !script->writeTarget(node))
        node.attribute(number, value);
}

// Bits that no one has given a meaning; mostly none is set.
void writeReserved(XmlNode& node, uint32_t bits) {
    if (bits != 0)
        node.attribute("Reserved", bits);
}

template <class Element>
uint32_t readReserved(Element& element, uint32_t high) {
    return static_cast<uint32_t>(element.ranged("Reserved", 0, high));
}

} // namespace

void writeXml(XmlNode& node, const SwfActionGotoFrame& action) { node.attribute("Frame", action.frame); }

template <class Element>
static void read(Element& element, SwfActionGotoFrame& action) {
    action.frame = element.ui16("Frame");
}

void writeXml(XmlNode& node, const SwfActionGetURL& action) {
    node.attribute("URL", action.url);
    node.attribute("Target", action.target);
}

template <class Element>
static void read(Element& element, SwfActionGetURL& action) {
    action.url = element.string("URL");
    action.target = element.string("Target");
}

void writeXml(XmlNode& node, const SwfActionStoreRegister& action) {
    writeRegister(node, "Number", action.registerNumber);
}

template <class Element>
static void read(Element& element, SwfActionStoreRegister& action) {
    action.registerNumber = readRegister(element, "Number");
}

void writeXml(XmlNode& node, const SwfActionConstantPool& action) {
    if (node.context().script != nullptr)
        node.context().script->startPool(action);
    for (const SwfString& constant : action.constants)
        XmlNode(node, "Constant").attribute("Name", constant);
}

template <class Element>
static void read(Element& element, SwfActionConstantPool& action) {
    readEach(element, "Constant", [&](Element& child) { action.constants.append(child.string("Name")); });
    if (element.context().fullForm)
        element.context().script->constants.set(action);
}

void writeXml(XmlNode& node, const SwfActionWaitForFrame& action) {
    node.attribute("Frame", action.frame);
    writeTarget(node, "SkipCount", action.skipCount);
}

template <class Element>
static void read(Element& element, SwfActionWaitForFrame& action) {
    action.frame = element.ui16("Frame");
    element.context().script->addBranch(element, SwfActionCode::WaitForFrame);
    action.skipCount = element.ui8("SkipCount");
}

void writeXml(XmlNode& node, const SwfActionSetTarget& action) { node.attribute("Name", action.targetName); }

template <class Element>
static void read(Element& element, SwfActionSetTarget& action) {
    action.targetName = element.string("Name");
}

void writeXml(XmlNode& node, const SwfActionGoToLabel& action) { node.attribute("Label", action.label); }

template <class Element>
static void read(Element& element, SwfActionGoToLabel& action) {
    action.label = element.string("Label");
}

void writeXml(XmlNode& node, const SwfActionWaitForFrame2& action) { writeTarget(node, "SkipCount", action.skipCount); }

template <class Element>
static void read(Element& element, SwfActionWaitForFrame2& action) {
    element.context().script->addBranch(element, SwfActionCode::WaitForFrame2);
    action.skipCount = element.ui8("SkipCount");
}

static constexpr XmlName functionFlags[] = {
    {"PreloadThis", preloadedRegisters[0].preload},      {"SupressThis", preloadedRegisters[0].suppress},
    {"PreloadArguments", preloadedRegisters[1].preload}, {"SupressArguments", preloadedRegisters[1].suppress},
    {"PreloadSuper", preloadedRegisters[2].preload},     {"SupressSuper", preloadedRegisters[2].suppress},
    {"PreloadRoot", preloadedRegisters[3].preload},      {"PreloadParent", preloadedRegisters[4].preload},
    {"PreloadGlobal", preloadedRegisters[5].preload},
};
static constexpr uint32_t reservedShift = 9;

static constexpr XmlTextForm preloadForm{"preloaded", "this", "(this|arguments|super|_root|_parent|_global| )*"};
static constexpr XmlTextForm suppressForm{"suppressed", "this", "(this|arguments|super| )*"};

// The names of what is preloaded, in the order of its registers, or of what is suppressed.
static void writeRegisterFlags(XmlNode& node, std::string_view attribute, uint16_t flags,
                               uint16_t PreloadedRegister::*flag) {
    std::string names;
    for (const PreloadedRegister& each : preloadedRegisters) {
        if ((flags & each.*flag) != 0)
            names.append(names.empty() ? "" : " ").append(each.name);
    }
    if (!names.empty())
        node.attribute(attribute, std::string_view(names));
}

// Another order would tell other registers than there are.
template <class Element>
static uint16_t readRegisterFlags(Element& element, std::string_view attribute, const XmlTextForm& form,
                                  uint16_t PreloadedRegister::*flag) {
    std::string room;
    std::string_view names;
    if constexpr (std::is_same_v<Element, XmlElement>)
        names = element.attribute(attribute, XmlValueForm::text(form)).value_or("");
    else
        names = element.attribute(attribute, room).value_or("");
    uint16_t flags = 0;
    const auto fail = [&](std::string_view name, const char* reason) {
        throw XmlValueError(element.name(), attribute, "\"" + std::string(name) + reason, element.offset());
    };
    const PreloadedRegister* next = std::begin(preloadedRegisters);
    for (size_t start = 0; (start = names.find_first_not_of(" \t\r\n", start)) != names.npos;) {
        const size_t end = std::min(names.find_first_of(" \t\r\n", start), names.size());
        const std::string_view name = names.substr(start, end - start);
        const auto found = std::ranges::find(preloadedRegisters, name, &PreloadedRegister::name);
        if (found == std::end(preloadedRegisters) || found->*flag == 0)
            fail(name, "\" is none of what can stand here");
        if (found < next)
            fail(name, "\" stands behind what takes a later register");
        flags |= found->*flag;
        next = found + 1;
        start = end;
    }
    return flags;
}

void writeXml(XmlNode& node, const SwfActionDefineFunction2& action) {
    ScriptView* script = node.context().script;
    node.attribute("Name", action.functionName);
    node.attribute("RegisterCount", action.registerCount);
    if (node.context().swf.fullForm) {
        writeRegisterFlags(node, "Preload", action.flags, &PreloadedRegister::preload);
        writeRegisterFlags(node, "Suppress", action.flags, &PreloadedRegister::suppress);
        writeReserved(node, action.flags >> reservedShift);
    } else {
        XmlNode bits(node, "BitsField");
        for (const XmlName& flag : functionFlags)
            bits.attribute(flag.name, (action.flags & flag.value) != 0);
    }
    {
        XmlNode parameters(node, "RegisterParams");
        for (const SwfRegisterParam& parameter : action.parameters) {
            XmlNode child(parameters, "RegisterParam");
            child.attribute("Register", parameter.registerNumber);
            child.attribute("Name", parameter.name);
        }
    }
    const RegisterScope scope(script, script == nullptr ? RegisterNames() : RegisterNames(action));
    writeBody(node, "Actions", action.body);
}

template <class Element>
static void read(Element& element, SwfActionDefineFunction2& action) {
    action.functionName = element.string("Name");
    action.registerCount = element.ui8("RegisterCount");
    const bool fullForm = element.context().fullForm;
    const bool hasLists = fullForm && (element.has("Preload") || element.has("Suppress"));
    if (fullForm) {
        const uint32_t preload = readRegisterFlags(element, "Preload", preloadForm, &PreloadedRegister::preload);
        const uint32_t suppress = readRegisterFlags(element, "Suppress", suppressForm, &PreloadedRegister::suppress);
        action.flags = static_cast<uint16_t>(preload | suppress);
    }
    if (auto bits = hasLists ? std::nullopt : element.child("BitsField")) {
        for (const XmlName& flag : functionFlags)
            action.flags = static_cast<uint16_t>(action.flags | (bits->boolean(flag.name) ? flag.value : 0));
        if (fullForm)
            action.flags = static_cast<uint16_t>(action.flags | readReserved(*bits, 0x7F) << reservedShift);
    }
    if (fullForm)
        action.flags = static_cast<uint16_t>(action.flags | readReserved(element, 0x7F) << reservedShift);
    if (auto parameters = element.child("RegisterParams")) {
        readEach(*parameters, "RegisterParam", [&](Element& child) {
            SwfRegisterParam& parameter = action.parameters.append({});
            parameter.registerNumber = child.ui8("Register");
            parameter.name = child.string("Name");
        });
    }
    const RegisterScope scope(element.context().script, fullForm ? RegisterNames(action) : RegisterNames());
    readBody(element, "Actions", action.body);
}

static void writeBlock(XmlNode& node, const char* name, const SwfActions& body, bool isThere) {
    if (isThere || !body.empty())
        writeBody(node, name, body);
    else
        node.context().script->passList();
}

void writeXml(XmlNode& node, const SwfActionTry& action) {
    const bool full = node.context().swf.fullForm;
    if (action.catchInRegister)
        node.attribute("CatchInRegister", action.catchRegister);
    else
        node.attribute("VarName", action.catchName);
    if (full)
        writeReserved(node, action.flags >> SwfActionTry::reservedShift);
    else
        node.differs(1);
    writeBody(node, "TryActions", action.tryBody);
    writeBlock(node, "CatchActions", action.catchBody, !full || action.hasCatch(full));
    writeBlock(node, "FinallyActions", action.finallyBody, !full || action.hasFinally(full));
}

template <class Element>
static void read(Element& element, SwfActionTry& action) {
    action.catchInRegister = element.has("CatchInRegister");
    action.catchRegister = element.ui8("CatchInRegister");
    action.catchName = element.string("VarName");
    const bool full = element.context().fullForm;
    const uint32_t reserved = full ? readReserved(element, SwfActionTry::highestReserved) : 0;
    readBody(element, "TryActions", action.tryBody);
    const bool hasCatch = readBody(element, "CatchActions", action.catchBody);
    const bool hasFinally = readBody(element, "FinallyActions", action.finallyBody);
    // In the full form an empty body is a block, too.
    const SwfActionTry::Bits bit = SwfActionTry::bits(full);
    action.flags = static_cast<uint8_t>((action.catchInRegister ? bit.catchInRegister : 0) |
                                        ((full ? hasCatch : !action.catchBody.empty()) ? bit.catchBlock : 0) |
                                        ((full ? hasFinally : !action.finallyBody.empty()) ? bit.finallyBlock : 0) |
                                        reserved << SwfActionTry::reservedShift);
}

void writeXml(XmlNode& node, const SwfActionWith& action) { writeBody(node, "Actions", action.body); }

template <class Element>
static void read(Element& element, SwfActionWith& action) {
    readBody(element, "Actions", action.body);
}

static void writeBranch(XmlNode& node, const SwfActionBranch& action) {
    writeTarget(node, "Offset", action.branchOffset);
}

template <class Element>
static void readBranch(Element& element, SwfActionBranch& action) {
    element.context().script->addBranch(element, static_cast<uint8_t>(action.type));
    action.branchOffset = element.si16("Offset");
}

void writeXml(XmlNode& node, const SwfActionJump& action) { writeBranch(node, action); }

template <class Element>
static void read(Element& element, SwfActionJump& action) {
    readBranch(element, action);
}

void writeXml(XmlNode& node, const SwfActionIf& action) { writeBranch(node, action); }

template <class Element>
static void read(Element& element, SwfActionIf& action) {
    readBranch(element, action);
}

static constexpr XmlName sendMethods[] = {{"None", 0}, {"GET", 1}, {"POST", 2}};

void writeXml(XmlNode& node, const SwfActionGetURL2& action) {
    const bool full = node.context().swf.fullForm;
    const SwfActionGetURL2::Bits bit = SwfActionGetURL2::bits(full);
    const uint32_t method = action.flags >> bit.methodShift & SwfActionGetURL2::highestMethod;
    node.attribute("LoadVariables", (action.flags & bit.loadVariables) != 0);
    node.attribute("LoadTarget", (action.flags & bit.loadTarget) != 0);
    if (full && findName(sendMethods, method).empty())
        node.attribute("SendVarsMethod", method);
    else
        node.attribute("SendVarsMethod", findName(sendMethods, method));
    if (full) {
        writeReserved(node, (action.flags & SwfActionGetURL2::reserved) >> SwfActionGetURL2::reservedShift);
        return;
    }
    const SwfActionGetURL2::Bits read = SwfActionGetURL2::bits(true);
    const auto has = [&](uint8_t flag) { return (action.flags & flag) != 0; };
    node.differs(has(bit.loadVariables) != has(read.loadVariables));
    node.differs(has(bit.loadTarget) != has(read.loadTarget));
    node.differs(method != (action.flags >> read.methodShift & SwfActionGetURL2::highestMethod));
}

template <class Element>
static void read(Element& element, SwfActionGetURL2& action) {
    const bool full = element.context().fullForm;
    const SwfActionGetURL2::Bits bit = SwfActionGetURL2::bits(full);
    uint32_t flags = element.boolean("LoadVariables") ? bit.loadVariables : 0;
    flags |= element.boolean("LoadTarget") ? bit.loadTarget : 0;
    flags |= (full ? element.namedOrNumber("SendVarsMethod", sendMethods, SwfActionGetURL2::highestMethod)
                   : element.named("SendVarsMethod", sendMethods))
             << bit.methodShift;
    if (full)
        flags |= readReserved(element, 0x0F) << SwfActionGetURL2::reservedShift;
    action.flags = static_cast<uint8_t>(flags);
}

void writeXml(XmlNode& node, const SwfActionDefineFunction& action) {
    node.attribute("Name", action.functionName);
    {
        XmlNode parameters(node, "Params");
        for (const SwfString& parameter : action.parameters)
            XmlNode(parameters, "Param").attribute("Value", parameter);
    }
    const RegisterScope scope(node.context().script, RegisterNames()); // it has none of its own
    writeBody(node, "Actions", action.body);
}

template <class Element>
static void read(Element& element, SwfActionDefineFunction& action) {
    action.functionName = element.string("Name");
    if (auto parameters = element.child("Params")) {
        readEach(*parameters, "Param", [&](Element& child) { action.parameters.append(child.string("Value")); });
    }
    const RegisterScope scope(element.context().script, RegisterNames());
    readBody(element, "Actions", action.body);
}

void writeXml(XmlNode& node, const SwfActionGotoFrame2& action) {
    const bool full = node.context().swf.fullForm;
    node.attribute("Play", action.play);
    if (action.sceneBias != 0 || (full && action.hasSceneBias))
        node.attribute("SceneBias", action.sceneBias);
    if (full)
        writeReserved(node, action.reserved);
    else
        node.differs((action.play ? 1 : 0) + (action.sceneBias != 0 ? 1 : 0)); // players read other bits
}

template <class Element>
static void read(Element& element, SwfActionGotoFrame2& action) {
    action.play = element.boolean("Play");
    action.hasSceneBias = element.context().fullForm && element.has("SceneBias");
    action.sceneBias = element.ui16("SceneBias");
    if (element.context().fullForm)
        action.reserved = static_cast<uint8_t>(readReserved(element, SwfActionGotoFrame2::highestReserved));
}

void writeXml(XmlNode& node, const SwfActionPush& action) { writeValues(node, action.values); }

template <class Element>
static void read(Element& element, SwfActionPush& action) {
    readValues(element, action.values);
}

#define SWF_PAYLOAD_ACTION(code, name, type)                                                                           \
    void readXml(XmlElement& element, type& action) { read(element, action); }                                         \
    void readXml(XmlQuickElement& element, type& action) { read(element, action); }
#include "SwfActions.def"

} // namespace xml2swf
