#include "ScriptTexts.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <map>
#include <set>
#include <unordered_map>

#include "AbcStrings.h"
#include "Conversion.h"
#include "ElementText.h"
#include "ScriptStack.h"
#include "SwfAbcCode.h"
#include "SwfTagCodes.h"
#include "XmlTagSpans.h"

namespace zelk {

using namespace libswf;

namespace {

using Attributes = std::vector<TagAttribute>;

std::optional<std::string_view> valueOf(const Attributes& attributes, std::string_view name) {
    for (const TagAttribute& attribute : attributes) {
        if (attribute.name == name)
            return attribute.value;
    }
    return {};
}

size_t numberOf(std::string_view text) {
    size_t number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
}

// What actions take from the stack, the top first: n a name, v any other value, * a count and so many values, : a count
// and so many values with names below them. Then how many values they leave there.
struct ActionEffect {
    std::string_view name, takes;
    uint8_t leaves;
};

constexpr ActionEffect effects[] = {{"GetVariable", "n", 1},
                                    {"SetVariable", "vn", 0},
                                    {"GetMember", "nv", 1},
                                    {"SetMember", "vnv", 0},
                                    {"Delete", "nv", 1},
                                    {"Delete2", "n", 1},
                                    {"DefineLocal", "vn", 0},
                                    {"DefineLocal2", "n", 0},
                                    {"CallFunction", "n*", 1},
                                    {"CallMethod", "nv*", 1},
                                    {"NewObject", "n*", 1},
                                    {"NewMethod", "nv*", 1},
                                    {"InitArray", "*", 1},
                                    {"InitObject", ":", 1},
                                    {"GetProperty", "vn", 1},
                                    {"SetProperty", "vvn", 0},
                                    {"SetTarget2", "n", 0},
                                    {"CloneSprite", "vnn", 0},
                                    {"RemoveSprite", "n", 0},
                                    {"GetURL2", "nv", 0},
                                    {"Call", "n", 0},
                                    {"GoToFrame2", "n", 0},
                                    {"Trace", "v", 0},
                                    {"Pop", "v", 0},
                                    {"Add", "vv", 1},
                                    {"Subtract", "vv", 1},
                                    {"Multiply", "vv", 1},
                                    {"Divide", "vv", 1},
                                    {"Equals", "vv", 1},
                                    {"Less", "vv", 1},
                                    {"And", "vv", 1},
                                    {"Or", "vv", 1},
                                    {"Not", "v", 1},
                                    {"StringEquals", "vv", 1},
                                    {"StringLength", "v", 1},
                                    {"StringExtract", "vvv", 1},
                                    {"ToInteger", "v", 1},
                                    {"StringAdd", "vv", 1},
                                    {"StringLess", "vv", 1},
                                    {"RandomNumber", "v", 1},
                                    {"MBStringLength", "v", 1},
                                    {"CharToAscii", "v", 1},
                                    {"AsciiToChar", "v", 1},
                                    {"GetTime", "", 1},
                                    {"MBStringExtract", "vvv", 1},
                                    {"MBCharToAscii", "v", 1},
                                    {"MBAsciiToChar", "v", 1},
                                    {"Return", "v", 0},
                                    {"Throw", "v", 0},
                                    {"CastOp", "vv", 1},
                                    {"Modulo", "vv", 1},
                                    {"TypeOf", "v", 1},
                                    {"TargetPath", "v", 1},
                                    {"Add2", "vv", 1},
                                    {"Less2", "vv", 1},
                                    {"Equals2", "vv", 1},
                                    {"ConvertToNumber", "v", 1},
                                    {"ConvertToString", "v", 1},
                                    {"Increment", "v", 1},
                                    {"Decrement", "v", 1},
                                    {"InstanceOf", "vv", 1},
                                    {"BitAnd", "vv", 1},
                                    {"BitOr", "vv", 1},
                                    {"BitXor", "vv", 1},
                                    {"BitLShift", "vv", 1},
                                    {"BitRShift", "vv", 1},
                                    {"BitURShift", "vv", 1},
                                    {"StrictEquals", "vv", 1},
                                    {"Greater", "vv", 1},
                                    {"StringGreater", "vv", 1},
                                    {"Extends", "vv", 0},
                                    {"If", "v", 0},
                                    {"With", "v", 0},
                                    {"Jump", "", 0},
                                    {"StoreRegister", "", 0},
                                    {"Stop", "", 0},
                                    {"Play", "", 0},
                                    {"NextFrame", "", 0},
                                    {"PreviousFrame", "", 0},
                                    {"GoToFrame", "", 0},
                                    {"GoToLabel", "", 0},
                                    {"SetTarget", "", 0},
                                    {"GetURL", "", 0},
                                    {"WaitForFrame", "", 0},
                                    {"EndDrag", "", 0},
                                    {"StopSounds", "", 0},
                                    {"ConstantPool", "", 0},
                                    {"ToggleQuality", "", 0}};

// Functions and methods whose arguments are names, frames and events, as far as they are strings.
const std::set<std::string_view> takersOfNames = {"addEventListener",
                                                  "addProperty",
                                                  "attachMovie",
                                                  "attachSound",
                                                  "createEmptyMovieClip",
                                                  "createTextField",
                                                  "duplicateMovieClip",
                                                  "getChildByName",
                                                  "getDefinition",
                                                  "getDefinitionByName",
                                                  "gotoAndPlay",
                                                  "gotoAndStop",
                                                  "hasEventListener",
                                                  "hasOwnProperty",
                                                  "registerClass",
                                                  "removeEventListener",
                                                  "watch"};

const std::set<std::string_view> bodies = {"Actions",    "TryActions",       "CatchActions", "FinallyActions",
                                           "ClipAction", "ButtonCondaction", "Code"};

class ScriptReader {
public:
    explicit ScriptReader(std::string_view element) : _text(element) {}
    std::vector<ScriptText> run();

private:
    using Item = ScriptStack::Item;
    struct Open {
        std::string_view name;
        std::string member; // its part of the path of a method; may be empty
        bool isBody = false;
    };

    void begin(size_t start, size_t end);
    void finish();
    void readPushed(std::string_view name, const Attributes& attributes);
    void readAction(std::string_view name, const Attributes& attributes);
    void readInstruction(std::string_view name, const Attributes& attributes);
    void follow(std::string_view name, const Attributes& attributes);
    void take(std::string_view kinds);
    void takeArguments(size_t count, bool areNames);
    void markName(const Item& item);
    bool takesNames(const Item& name) const;
    size_t add(std::string_view value, bool isAbc);
    std::string_view around() const { return _open.empty() ? std::string_view() : _open.back().name; }
    void beginCode();

    const std::string_view _text;
    std::vector<Open> _open;
    std::vector<ScriptStack> _stacks{1};
    std::vector<ScriptText> _found;
    std::vector<std::pair<bool, bool>> _uses; // of each string: as a name, as something else
    std::string _code;                        // the path of the method whose code is read
    size_t _inCode = 0;                       // strings in it
    std::map<std::string, size_t> _paths;
};

std::vector<ScriptText> ScriptReader::run() {
    for (size_t at = 0; (at = _text.find('<', at)) != _text.npos;) {
        const size_t end = xml2swf::markupEnd(_text, at);
        if (_text[at + 1] == '/')
            finish();
        else if (_text[at + 1] != '!')
            begin(at, end);
        at = end;
    }
    for (size_t i = 0; i < _found.size(); ++i)
        _found[i].isName = _uses[i].first && !_uses[i].second;
    return std::move(_found);
}

std::string memberName(std::string_view element, const Attributes& attributes) {
    const std::string name = decoded(valueOf(attributes, "Name").value_or(""));
    if (element == "Class" || element == "Method" || element == "FunctionSlot")
        return name;
    if (element == "Getter" || element == "Setter")
        return (element == "Getter" ? "get " : "set ") + name;
    constexpr std::string_view without[] = {"Constructor", "Initializer", "Static", "Function"};
    return std::string(std::find(std::begin(without), std::end(without), element) == std::end(without) ? "" : element);
}

void ScriptReader::begin(size_t start, size_t end) {
    const std::string_view tag = _text.substr(start, end - start);
    const std::string_view name = elementName(tag);
    const Attributes attributes = attributesOf(tag);
    if (around() == "Push")
        readPushed(name, attributes);
    else if (around() == "Code")
        readInstruction(name, attributes);
    else if (!_open.empty() && _open.back().isBody)
        readAction(name, attributes);
    else if (around() == "LookupSwitch")
        _stacks.back().branch(valueOf(attributes, "To").value_or(""));
    if (tag[tag.size() - 2] == '/')
        return;
    const bool isBody = bodies.contains(name) && around() != "Push";
    _open.push_back({name, memberName(name, attributes), isBody});
    if (isBody)
        _stacks.emplace_back();
    if (name == "Code")
        beginCode();
}

void ScriptReader::finish() {
    if (_open.back().isBody)
        _stacks.pop_back();
    if (_open.back().name == "LookupSwitch")
        _stacks.back().end();
    _open.pop_back();
}

void ScriptReader::beginCode() {
    _code.clear();
    _inCode = 0;
    for (const Open& element : _open) {
        if (!element.member.empty())
            _code.append(_code.empty() ? "" : "/").append(element.member);
    }
    const size_t count = ++_paths[_code];
    if (count > 1)
        _code += "#" + std::to_string(count);
}

size_t ScriptReader::add(std::string_view value, bool isAbc) {
    ScriptText text;
    text.start = static_cast<size_t>(value.data() - _text.data());
    text.end = text.start + value.size();
    text.bytes = decoded(value);
    text.isAbc = isAbc;
    text.part = isAbc ? _code + ":" + std::to_string(++_inCode) : std::to_string(_found.size() + 1);
    _found.push_back(std::move(text));
    _uses.emplace_back();
    return _found.size() - 1;
}

void ScriptReader::readPushed(std::string_view name, const Attributes& attributes) {
    const std::optional<std::string_view> text = valueOf(attributes, "Name");
    Item item;
    if (text && (name == "String" || name == "Constant"))
        item.strings.push_back(add(*text, false));
    else if (name == "Integer" || name == "Double" || name == "Float")
        item.count = numberOf(valueOf(attributes, "Value").value_or(""));
    _stacks.back().push(std::move(item));
}

// Places and branches, which all kinds of scripts write alike.
void ScriptReader::follow(std::string_view name, const Attributes& attributes) {
    std::string_view places = valueOf(attributes, "At").value_or("");
    while (!places.empty()) {
        const size_t end = std::min(places.find(' '), places.size());
        if (end != 0)
            _stacks.back().arrive(places.substr(0, end));
        places.remove_prefix(std::min(end + 1, places.size()));
    }
    if (name == "Jump") {
        _stacks.back().branch(valueOf(attributes, "To").value_or(""));
        _stacks.back().end();
    }
}

void ScriptReader::markName(const Item& item) {
    for (const size_t string : item.strings)
        _uses[string].first = true;
}

bool ScriptReader::takesNames(const Item& name) const {
    return name.strings.size() == 1 && takersOfNames.contains(_found[name.strings[0]].bytes);
}

void ScriptReader::takeArguments(size_t count, bool areNames) {
    for (size_t i = 0; i < count && !_stacks.back().isEmpty(); ++i) {
        const Item item = _stacks.back().pop();
        for (const size_t string : item.strings)
            (areNames ? _uses[string].first : _uses[string].second) = true;
    }
}

void ScriptReader::take(std::string_view kinds) {
    ScriptStack& stack = _stacks.back();
    bool areNames = false;
    for (const char kind : kinds) {
        const Item item = stack.pop();
        if (kind == 'n') {
            markName(item);
            areNames |= takesNames(item);
        } else if (kind == 'v') {
            for (const size_t string : item.strings)
                _uses[string].second = true;
        } else if (!item.count) {
            stack.forget();
        } else if (kind == '*') {
            takeArguments(*item.count, areNames);
        } else {
            for (size_t i = 0; i < *item.count && !stack.isEmpty(); ++i) {
                takeArguments(1, false);
                takeArguments(1, true);
            }
        }
    }
}

void ScriptReader::readAction(std::string_view name, const Attributes& attributes) {
    static const std::unordered_map<std::string_view, const ActionEffect*> table = [] {
        std::unordered_map<std::string_view, const ActionEffect*> rows;
        for (const ActionEffect& effect : effects)
            rows.emplace(effect.name, &effect);
        return rows;
    }();
    ScriptStack& stack = _stacks.back();
    follow(name, attributes);
    const auto effect = table.find(name);
    if (effect != table.end()) {
        take(effect->second->takes);
        for (uint8_t i = 0; i < effect->second->leaves; ++i)
            stack.push({});
    } else if (name == "StackSwap") {
        stack.swap();
    } else if (name == "PushDuplicate") {
        stack.duplicate();
    } else if (name == "DefineFunction" || name == "DefineFunction2") {
        if (valueOf(attributes, "Name").value_or("").empty())
            stack.push({}); // the function itself
    } else if (name != "Push" && name != "Place" && name != "Try") {
        stack.forget();
    }
    if (name == "If")
        stack.branch(valueOf(attributes, "To").value_or(""));
    else if (name == "Return" || name == "Throw")
        stack.end();
}

void ScriptReader::readInstruction(std::string_view name, const Attributes& attributes) {
    static const std::unordered_map<std::string_view, const SwfAbcOpcode*> table = [] {
        std::unordered_map<std::string_view, const SwfAbcOpcode*> rows;
        for (uint32_t code = 0; code <= UINT8_MAX; ++code) {
            const SwfAbcOpcode& row = SwfAbcOpcode::of(static_cast<uint8_t>(code));
            if (!row.name.empty())
                rows.emplace(row.name, &row);
        }
        return rows;
    }();
    ScriptStack& stack = _stacks.back();
    follow(name, attributes);
    const auto opcode = table.find(name);
    if (name == "PushString") {
        stack.push({{add(valueOf(attributes, "Value").value_or(""), true)}, {}});
    } else if (name == "Dup") {
        stack.duplicate();
    } else if (name == "Swap") {
        stack.swap();
    } else if (opcode == table.end()) {
        if (name != "Place" && name != "Activation" && name != "Catch")
            stack.forget();
    } else if (!name.starts_with("Coerce") && !name.starts_with("Convert")) { // these leave the value as it is
        const std::string_view member = valueOf(attributes, "Name").value_or("");
        const bool isLate = member.find("[]") != member.npos; // the name lies on the stack
        const size_t arguments = numberOf(valueOf(attributes, "Arguments").value_or("0"));
        const size_t count = numberOf(valueOf(attributes, "Count").value_or("0"));
        const bool setsValue = name == "SetProperty" || name == "InitProperty" || name == "SetSuper";
        takeArguments(arguments, takersOfNames.contains(member));
        for (size_t i = 0; i < count && !stack.isEmpty(); ++i) {
            takeArguments(1, false);
            if (name == "NewObject")
                takeArguments(1, true);
        }
        if (setsValue)
            take("v");
        if (isLate)
            take("n");
        if (name == "In") {
            take("vn");
        } else {
            for (uint8_t i = setsValue ? 1 : 0; i < opcode->second->pops; ++i)
                take("v");
        }
        for (uint8_t i = 0; i < opcode->second->pushes; ++i)
            stack.push({});
        if (name.starts_with("If"))
            stack.branch(valueOf(attributes, "To").value_or(""));
        if (name == "LookupSwitch")
            stack.branch(valueOf(attributes, "Default").value_or(""));
        else if (opcode->second->endsFlow())
            stack.end();
    }
}

} // namespace

bool mayHaveScripts(const SwfTag& tag) {
    switch (tag.type) {
    case SwfTagCode::DoAction:
    case SwfTagCode::DoInitAction:
    case SwfTagCode::DefineButton:
    case SwfTagCode::DefineButton2:
    case SwfTagCode::PlaceObject2:
    case SwfTagCode::PlaceObject3:
    case SwfTagCode::PlaceObject4:
    case SwfTagCode::DoABC:
    case SwfTagCode::DoABCDefine: return !tag.isUnknown();
    default: return false;
    }
}

std::string scriptElement(const std::shared_ptr<SwfTag>& tag, uint8_t version) {
    SwfMovieSafe movie;
    movie.version = version;
    movie.fullForm = true;
    movie.tags.append(tag);
    std::vector<xml2swf::TagText> texts;
    xml2swf::ConversionOptions options;
    options.keepRaw = true;
    options.tagTexts = &texts;
    const std::string text = xml2swf::swfToXml(movie, options);
    return text.substr(texts.back().start, texts.back().end - texts.back().start);
}

std::vector<ScriptText> scriptTexts(std::string_view element) {
    std::vector<ScriptText> texts = ScriptReader(element).run();
    for (ScriptText& text : texts) {
        if (!text.isAbc)
            continue;
        // Behind "\=" stands which of several equal strings of the pool it is.
        const size_t twin = text.bytes.rfind("\\=");
        const std::string_view own = std::string_view(text.bytes).substr(0, twin);
        const bool isTwin = twin != text.bytes.npos && (twin == 0 || text.bytes[twin - 1] != '\\');
        text.bytes = xml2swf::abcBytes(isTwin ? own : text.bytes).value_or(std::string());
    }
    return texts;
}

std::shared_ptr<SwfTag> scriptTag(std::string_view element, uint8_t version) {
    std::string text = "<Movie SwfVersion=\"" + std::to_string(version) + "\" Form=\"full\">";
    text.append(element).append("</Movie>");
    xml2swf::ConversionOptions options;
    options.keepRaw = true;
    xml2swf::MovieTarget target;
    xml2swf::xmlToSwf(text, target, options);
    return target.movie.tags.sharedAt(0);
}

std::string scriptValue(std::string_view bytes, bool isAbc) {
    std::string text, value;
    if (isAbc)
        xml2swf::appendAbcText(text, bytes, xml2swf::AbcTextPlace::value);
    else
        text = bytes;
    xml2swf::appendAttributeText(value, text);
    return value;
}

} // namespace zelk
