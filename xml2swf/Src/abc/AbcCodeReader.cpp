#include "AbcCodeReader.h"

#include "AbcCodeWriter.h"
#include "AbcQuickChildren.h"
#include "XmlNameTable.h"

namespace xml2swf {

using namespace libswf;

namespace {

// What may stand in Code besides instructions.
enum class CodeChild : uint8_t { activation, place, caught, bytes, instruction };
struct CodeName {
    CodeChild kind;
    const SwfAbcOpcode* opcode = nullptr;
};

constexpr std::string_view codeNames[] = {
#define ABC_INSTRUCTION(code, name, pops, pushes, scopes, ...) #name,
#include "SwfAbcInstructions.def"
    "Activation", "Place", "Catch", "Bytes"};
constexpr XmlNameGroup codeGroup{"Instructions", codeNames};

const CodeName* findCodeName(std::string_view name, const XmlNameWords& words) {
    static const std::array<CodeName, 256> instructions = [] {
        std::array<CodeName, 256> result;
        for (size_t i = 0; i < result.size(); ++i)
            result[i] = {CodeChild::instruction, &SwfAbcOpcode::of(static_cast<uint8_t>(i))};
        return result;
    }();
    static constexpr CodeName others[] = {
        {CodeChild::activation}, {CodeChild::place}, {CodeChild::caught}, {CodeChild::bytes}};
    static const XmlNameTable<CodeName> table = [] {
        XmlNameTable<CodeName> result;
#define ABC_INSTRUCTION(code, name, pops, pushes, scopes, ...) result.add(#name, &instructions[code]);
#include "SwfAbcInstructions.def"
        for (size_t i = 0; i < std::size(others); ++i)
            result.add(codeNames[std::size(codeNames) - std::size(others) + i], &others[i]);
        return result;
    }();
    return table.find(name, words);
}

std::string_view takeWord(std::string_view& rest) {
    rest.remove_prefix(std::min(rest.find_first_not_of(" \t\r\n"), rest.size()));
    const std::string_view word = rest.substr(0, rest.find_first_of(" \t\r\n"));
    rest.remove_prefix(word.size());
    return word;
}

std::string noPlace(std::string_view label) { return "no place here is called \"" + std::string(label) + "\""; }

// What is wrong with an element that was read before; false.
bool refuseAt(XmlElement& code, std::string_view element, std::string_view attribute, size_t offset,
              std::string reason) {
    if (code.context().observer == nullptr)
        refuseAbcText(element, attribute, std::move(reason), offset);
    return false;
}
bool refuseAt(XmlQuickElement& code, std::string_view, std::string_view, size_t, const std::string&) {
    code.skip();
    return false;
}

} // namespace

// --- the body as a whole ---------------------------------------------------------------------------------------------

AbcCodeReader::Mark AbcCodeReader::mark() const {
    return {_part.code.size(), _aims.size(), _operands.size(), _given.size(), _catches.size(), _traits.size()};
}

void AbcCodeReader::rollBack(const Mark& mark) {
    _part.code.resize(mark.code);
    _aims.resize(mark.branches);
    _operands.resize(mark.operands);
    for (; _given.size() > mark.labels; _given.pop_back())
        _labelPlaces[_given.back()] = unknownPlace;
    _catches.resize(mark.catches);
    _traits.resize(mark.traits);
}

void AbcCodeReader::begin() {
    _start = _part.code.size();
    _isBytes = false;
    _labels.clear();
    _labelTexts.clear();
    _labelPlaces.clear();
    _given.clear();
    _aims.clear();
    _operands.clear();
    _catches.clear();
    _traits.clear();
}

template <class Element>
void AbcCodeReader::read(Element& code, uint32_t method) {
    begin();
    AbcBodyText body;
    body.body.method = method;
    body.offset = code.offset();
    body.place = place(code);
    readLimits(code, body);
    readAbcChildren(code, codeGroup, _part, *this, [this](auto& child) { this->readChild(child); });
    finish(code, body);
    body.body.traits = _traits;
    _part.bodies.push_back(std::move(body));
}

template <class Element>
void AbcCodeReader::readLimits(Element& code, AbcBodyText& body) {
    body.givesStack = code.has("MaxStack");
    body.body.maxStack = number(code, "MaxStack");
    body.givesLocals = code.has("LocalCount");
    body.body.localCount = number(code, "LocalCount");
    body.body.initScopeDepth = number(code, "InitScopeDepth");
    body.givesScopes = code.has("MaxScopeDepth");
    body.body.maxScopeDepth = number(code, "MaxScopeDepth");
}

template <class Element>
void AbcCodeReader::readChild(Element& child) {
    const CodeName* found = findCodeName(child.name(), nameWords(child));
    if (found == nullptr)
        return refuseElement(child);
    switch (found->kind) {
    case CodeChild::instruction: readInstruction(child, *found->opcode); break;
    case CodeChild::activation: readActivation(child); break;
    case CodeChild::place: takeLabels(child); break;
    case CodeChild::caught: readCatch(child); break;
    case CodeChild::bytes: readBytes(child); break;
    }
}

template <class Element>
void AbcCodeReader::readActivation(Element& element) {
    static constexpr XmlNameGroup members{"AbcActivationMembers", abcTraitElements};
    for (Element child : element.children(members))
        activationTrait(child, _traits);
}

void AbcCodeReader::readBytes(XmlElement& element) {
    element.attribute("Reason");
    const SwfBytes bytes = element.base64();
    _part.code.insert(_part.code.end(), bytes.data(), bytes.data() + bytes.size());
    _isBytes = true;
}

// --- instructions ----------------------------------------------------------------------------------------------------

void AbcCodeReader::putU30(uint32_t value) {
    for (; value >= 0x80; value >>= 7)
        _part.code.push_back(static_cast<uint8_t>(value | 0x80));
    _part.code.push_back(static_cast<uint8_t>(value));
}

uint32_t AbcCodeReader::labelOf(std::string_view text) {
    uint32_t label = _labels.find(text);
    if (label != AbcTextTable::none)
        return label;
    label = static_cast<uint32_t>(_labelTexts.size());
    _labelTexts.push_back(_part.arena.keep(text));
    _labelPlaces.push_back(unknownPlace);
    _labels.add(_labelTexts.back(), label);
    return label;
}

template <class Element>
void AbcCodeReader::takeLabels(Element& element) {
    const auto text = textOf(element, "At", {XmlValueForm::Kind::places});
    if (!text)
        return;
    std::string_view rest = *text;
    std::string_view name = takeWord(rest);
    if (name.empty())
        refuse(element, "At", "a place needs a name");
    for (; !name.empty(); name = takeWord(rest)) {
        const uint32_t label = labelOf(name);
        if (_labelPlaces[label] != unknownPlace)
            refuse(element, "At", "another place is called \"" + std::string(name) + "\" already");
        _labelPlaces[label] = here();
        _given.push_back(label);
    }
}

template <class Element>
void AbcCodeReader::readInstruction(Element& element, const SwfAbcOpcode& opcode) {
    takeLabels(element);
    const uint32_t start = here();
    _part.code.push_back(opcode.code);
    for (const SwfAbcOperand kind : opcode.operands) {
        if (kind == SwfAbcOperand::none)
            break;
        readOperand(element, kind, start);
    }
}

template <class Element>
void AbcCodeReader::readOperand(Element& element, SwfAbcOperand kind, uint32_t start) {
    const std::string_view name = abcAttribute(kind);
    if (kind <= SwfAbcOperand::exception)
        return readIndex(element, kind);
    switch (kind) {
    case SwfAbcOperand::u8:
    case SwfAbcOperand::debugType:
    case SwfAbcOperand::debugRegister:
        _part.code.push_back(static_cast<uint8_t>(element.ranged(name, 0, UINT8_MAX)));
        break;
    case SwfAbcOperand::s8: _part.code.push_back(static_cast<uint8_t>(element.ranged(name, INT8_MIN, INT8_MAX))); break;
    case SwfAbcOperand::s16: {
        const auto value = static_cast<uint32_t>(element.ranged(name, INT16_MIN, INT16_MAX));
        putU30(element.has("Bits") ? number(element, "Bits") : value);
        break;
    }
    case SwfAbcOperand::branch: readTarget(element, name, "Offset", start + 4); break;
    case SwfAbcOperand::cases: readCases(element, start); break;
    default: putU30(number(element, name));
    }
}

template <class Element>
void AbcCodeReader::readIndex(Element& element, SwfAbcOperand kind) {
    const std::string_view name = abcAttribute(kind);
    const auto text = textOf(element, name);
    if (!text) {
        const bool mayMiss = kind >= SwfAbcOperand::string && kind <= SwfAbcOperand::nspace;
        if (!mayMiss)
            refuse(element, name, "it is missing");
        return putU30(0);
    }
    Pool pool = Pool::multinames;
    switch (kind) {
    case SwfAbcOperand::string:
    case SwfAbcOperand::file:
    case SwfAbcOperand::variable: pool = Pool::strings; break;
    case SwfAbcOperand::integer: pool = Pool::integers; break;
    case SwfAbcOperand::uinteger: pool = Pool::uintegers; break;
    case SwfAbcOperand::real: pool = Pool::doubles; break;
    case SwfAbcOperand::nspace: pool = Pool::namespaces; break;
    default: break;
    }
    uint32_t index = 0;
    if (kind == SwfAbcOperand::method)
        index = refer(element, AbcReference::Kind::method, pool, name, *text);
    else if (kind == SwfAbcOperand::exception)
        index = refer(element, AbcReference::Kind::caught, pool, name, *text);
    else if (kind == SwfAbcOperand::classIndex)
        index = refer(element, AbcReference::Kind::classIndex, pool, name, *text);
    else
        index = entry(element, pool, name, *text);
    if (index < abcIsReference)
        return putU30(index);
    _operands.push_back({here(), index});
}

template <class Element>
void AbcCodeReader::readTarget(Element& element, std::string_view label, std::string_view offset, uint32_t base) {
    const auto text = textOf(element, label, {XmlValueForm::Kind::place});
    if (element.has(offset)) {
        if (text)
            refuse(element, label, "a place and an offset are given");
        const auto distance = static_cast<uint32_t>(element.ranged(offset, -(1 << 23), (1 << 23) - 1));
        for (const uint32_t shift : {0, 8, 16})
            _part.code.push_back(static_cast<uint8_t>(distance >> shift));
        return;
    }
    if (!text || text->empty())
        refuse(element, label, "it does not say where it leads to");
    const AbcBranch branch{here(), base, labelOf(text.value_or("")), element.offset()};
    _aims.push_back({branch, kept(element, element.name()), label});
    putS24();
}

template <class Element>
void AbcCodeReader::readCases(Element& element, uint32_t start) {
    readTarget(element, "Default", "DefaultOffset", start);
    const size_t count = _part.code.size(); // of the cases: it is known behind them
    uint32_t cases = 0;
    for (Element child : element.anyChildren("Case")) {
        if (child.name() != "Case") {
            refuseElement(child);
            continue;
        }
        readTarget(child, "To", "Offset", start);
        ++cases;
    }
    if (cases == 0)
        refuse(element, "", "it has no cases");
    const size_t end = _part.code.size();
    putU30(cases - (cases != 0));
    std::rotate(_part.code.begin() + static_cast<ptrdiff_t>(count), _part.code.begin() + static_cast<ptrdiff_t>(end),
                _part.code.end());
    const auto moved = static_cast<uint32_t>(_part.code.size() - end);
    for (auto aim = _aims.rbegin(); aim != _aims.rend() && aim->branch.at + _start >= count; ++aim)
        aim->branch.at += moved;
}

// --- exceptions ------------------------------------------------------------------------------------------------------

template <class Element>
uint32_t AbcCodeReader::readPlace(Element& element, std::string_view label, std::string_view byte, bool& isByte) {
    const auto text = textOf(element, label, {XmlValueForm::Kind::place});
    if (text && !text->empty())
        return labelOf(*text);
    isByte = element.has(byte);
    if (!isByte)
        refuse(element, label, "it does not say where");
    return number(element, byte);
}

template <class Element>
void AbcCodeReader::readCatch(Element& element) {
    Catch result;
    result.offset = element.offset();
    if (const auto id = textIfThere(element, "Id"))
        result.name = kept(element, *id);
    bool areBytes[3] = {};
    SwfAbcException& exception = result.exception;
    exception.from = readPlace(element, "From", "FromByte", areBytes[0]);
    exception.to = readPlace(element, "Until", "UntilByte", areBytes[1]);
    exception.target = readPlace(element, "To", "ToByte", areBytes[2]);
    result.areBytes = areBytes[0];
    if (areBytes[0] != areBytes[1] || areBytes[0] != areBytes[2])
        refuse(element, "From", "some of its places are labels and some are bytes");
    else if (!result.areBytes && result.name.empty() && exception.target < _labelTexts.size())
        result.name = _labelTexts[exception.target];
    exception.type = index(element, "Type", Pool::multinames);
    exception.name = index(element, "Name", Pool::multinames);
    _catches.push_back(result);
}

template <class Element>
bool AbcCodeReader::resolveCatches(Element& code, AbcBodyText& body) {
    for (Catch& caught : _catches) {
        SwfAbcException exception = caught.exception;
        for (uint32_t* place : {&exception.from, &exception.to, &exception.target}) {
            if (caught.areBytes || *place >= _labelPlaces.size())
                continue;
            const uint32_t label = *place;
            *place = _labelPlaces[label];
            if (*place == unknownPlace)
                return refuseAt(code, "Catch", "", caught.offset, noPlace(_labelTexts[label]));
        }
        body.body.exceptions.push_back(exception);
    }
    return true;
}

// Exceptions that instructions name: their numbers are known now.
template <class Element>
bool AbcCodeReader::resolveCatchNames(Element& code) {
    AbcTextTable names;
    bool isListed = false;
    for (AbcMissingOperand& operand : _operands) {
        const AbcReference& reference = _part.references[operand.value & ~abcIsReference];
        if (reference.kind != AbcReference::Kind::caught)
            continue;
        for (uint32_t i = 0; !isListed && i < _catches.size(); ++i)
            names.add(_catches[i].name, i);
        isListed = true;
        operand.value = names.find(reference.text);
        if (operand.value == AbcTextTable::none)
            return refuseAt(code, reference.element, reference.attribute, reference.offset,
                            "no Catch here is called \"" + std::string(reference.text) + "\"");
    }
    return true;
}

// --- the end ---------------------------------------------------------------------------------------------------------

template <class Element>
bool AbcCodeReader::resolveTargets(Element& code) {
    for (Aim& aim : _aims) {
        const uint32_t label = aim.branch.target;
        aim.branch.target = _labelPlaces[label];
        if (aim.branch.target == unknownPlace)
            return refuseAt(code, aim.element, aim.attribute, aim.branch.offset, noPlace(_labelTexts[label]));
    }
    return true;
}

template <class Element>
void AbcCodeReader::finish(Element& code, AbcBodyText& body) {
    if (_isBytes && (!_aims.empty() || !_operands.empty()))
        refuse(code, "", "it has bytes and instructions");
    if (!resolveTargets(code) || !resolveCatches(code, body) || !resolveCatchNames(code))
        return;
    body.isBytes = _isBytes;
    body.codeStart = _start;
    keepCode(body);
    body.codeEnd = _part.code.size();
    measure(body);
}

void AbcCodeReader::measure(AbcBodyText& body) const {
    if (!body.operands.empty() || body.isBytes)
        return;
    const SwfAbcMethod& method = _part.methods[body.body.method].method;
    body.body.code = std::span(_part.code).subspan(_start); // it may move later
    body.needed = measureAbcCode(body.body, _block.multinames, registersOf(method));
    body.isMeasured = true;
}

void AbcCodeReader::keepCode(AbcBodyText& body) {
    const bool isKnown = std::none_of(_operands.begin(), _operands.end(),
                                      [](const auto& operand) { return operand.value >= abcIsReference; });
    std::vector<AbcBranch> branches;
    if (_operands.empty()) {
        for (const Aim& aim : _aims)
            putAbcBranch(_part.code.data() + _start + aim.branch.at, aim.branch);
        return;
    }
    for (const Aim& aim : _aims)
        branches.push_back(aim.branch);
    if (!isKnown) {
        body.operands = _operands;
        body.branches = std::move(branches);
        return;
    }
    const std::vector<uint8_t> whole =
        completeAbcCode(std::span(_part.code).subspan(_start), _operands, branches, body.body.exceptions);
    _part.code.resize(_start);
    _part.code.insert(_part.code.end(), whole.begin(), whole.end());
}

template void AbcCodeReader::read(XmlElement&, uint32_t);
template void AbcCodeReader::read(XmlQuickElement&, uint32_t);

} // namespace xml2swf
