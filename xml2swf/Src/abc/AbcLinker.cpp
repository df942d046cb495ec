#include "AbcLinker.h"

#include <algorithm>
#include <numeric>

#include "XmlErrors.h"

namespace xml2swf {

using namespace libswf;

void refuseAbcText(std::string_view element, std::string_view attribute, std::string reason, size_t offset) {
    if (attribute.empty())
        throw XmlValueError(element, std::move(reason), offset);
    throw XmlValueError(element, attribute, std::move(reason), offset);
}

uint32_t registersOf(const SwfAbcMethod& method) {
    const bool hasMore = (method.flags & (SwfAbcMethod::needArguments | SwfAbcMethod::needRest)) != 0;
    return static_cast<uint32_t>(1 + method.parameterTypes.size() + hasMore);
}

void putAbcBranch(uint8_t* at, const AbcBranch& branch) {
    const int64_t distance = int64_t(branch.target) - branch.base;
    if (distance < -(1 << 23) || distance >= 1 << 23)
        refuseAbcText("Code", "", "a branch leads further than 8 million bytes", branch.offset);
    for (uint32_t i = 0; i < 3; ++i)
        at[i] = static_cast<uint8_t>(distance >> 8 * i);
}

std::vector<uint8_t> completeAbcCode(std::span<const uint8_t> code, const std::vector<AbcMissingOperand>& operands,
                                     const std::vector<AbcBranch>& branches, std::vector<SwfAbcException>& exceptions) {
    std::vector<uint8_t> whole;
    std::vector<uint32_t> added; // bytes up to and with each operand
    size_t done = 0;
    for (const AbcMissingOperand& operand : operands) {
        whole.insert(whole.end(), code.begin() + static_cast<ptrdiff_t>(done), code.begin() + operand.at);
        done = operand.at;
        uint32_t value = operand.value;
        for (; value >= 0x80; value >>= 7)
            whole.push_back(static_cast<uint8_t>(value | 0x80));
        whole.push_back(static_cast<uint8_t>(value));
        added.push_back(static_cast<uint32_t>(whole.size() - done));
    }
    whole.insert(whole.end(), code.begin() + static_cast<ptrdiff_t>(done), code.end());
    // What stands at the place of an operand stands behind it now.
    const auto moved = [&](uint32_t place) {
        const auto behind =
            std::upper_bound(operands.begin(), operands.end(), place,
                             [](uint32_t at, const AbcMissingOperand& operand) { return at < operand.at; });
        return behind == operands.begin() ? place : place + added[static_cast<size_t>(behind - operands.begin()) - 1];
    };
    for (const AbcBranch& branch : branches) {
        const uint32_t at = moved(branch.at);
        putAbcBranch(whole.data() + at, {at, moved(branch.base), moved(branch.target), branch.offset});
    }
    for (SwfAbcException& exception : exceptions) {
        exception.from = moved(exception.from);
        exception.to = moved(exception.to);
        exception.target = moved(exception.target);
    }
    return whole;
}

// The indices in their order: what has a place comes there, what has none behind the one before.
std::vector<uint32_t> AbcLinker::orderOf(std::vector<Place> places) {
    for (size_t i = 0; i < places.size(); ++i) {
        if (places[i].place == abcNoPlace)
            places[i].place = i == 0 ? 0 : places[i - 1].place;
    }
    std::stable_sort(places.begin(), places.end(), [](const Place& a, const Place& b) { return a.place < b.place; });
    std::vector<uint32_t> order;
    for (const Place& place : places)
        order.push_back(place.index);
    return order;
}

void AbcLinker::need(bool isThere, std::string_view element, size_t offset, const char* what) const {
    if (!isThere && _context.observer == nullptr)
        refuseAbcText(element, "", std::string("it has no ") + what, offset);
}

void AbcLinker::link() {
    listMethods();
    listClasses();
    size_t bodies = 0;
    for (const auto& part : _parts)
        bodies += part->bodies.size();
    _block.bodies.reserve(bodies);
    _bodyPlaces.reserve(bodies);
    for (size_t i = 0; i < _parts.size(); ++i) {
        AbcPart& part = *_parts[i];
        resolve(part, _firstMethods[i]);
        takeMethods(part);
        takeClasses(part);
        takeScripts(part);
        takeBodies(part);
        part.letGoOfTaken();
    }
    for (const ClassOffset& entry : _classes) {
        need(entry.hasConstructor, "Class", entry.offset, "Constructor");
        need(entry.hasInitializer, "Class", entry.offset, "Initializer in a Static");
    }
    for (const ClassOffset& script : _scripts)
        need(script.hasInitializer, "Script", script.offset, "Initializer");
    orderBodies();
}

void AbcLinker::listMethods() {
    std::vector<Place> places;
    for (const auto& part : _parts) {
        _firstMethods.push_back(places.size());
        for (const AbcMethodText& method : part->methods)
            places.push_back({method.place, static_cast<uint32_t>(places.size())});
    }
    const std::vector<uint32_t> order = orderOf(std::move(places));
    _methodIndices.resize(order.size());
    for (uint32_t i = 0; i < order.size(); ++i)
        _methodIndices[order[i]] = i;
    size_t number = 0;
    for (const auto& part : _parts) {
        for (const AbcMethodText& method : part->methods) {
            const uint32_t index = _methodIndices[number++];
            if (!method.id.empty() && !_methodIds.add(method.id, index) && _context.observer == nullptr)
                refuseAbcText("Method", "Id", "another method is called \"" + std::string(method.id) + "\" already",
                              method.offset);
        }
    }
    _block.methods.resize(order.size());
}

// Classes stand in their order.
void AbcLinker::listClasses() {
    uint32_t index = 0;
    for (const auto& part : _parts) {
        for (const AbcClassText& entry : part->classes) {
            if (entry.continues)
                continue;
            if (!_classIds.add(entry.id, index++) && _context.observer == nullptr)
                refuseAbcText("Class", "Name", "another class is called \"" + std::string(entry.id) + "\" already",
                              entry.offset);
        }
    }
}

// --- references ------------------------------------------------------------------------------------------------------

uint32_t AbcLinker::resolve(const AbcReference& reference) {
    try {
        switch (reference.kind) {
        case AbcReference::Kind::entry: return _pools.resolve(reference.pool, reference.text);
        case AbcReference::Kind::method: {
            const uint32_t found = _methodIds.find(reference.text);
            if (found == AbcTextTable::none)
                throw AbcTextError("no method is called \"" + std::string(reference.text) + "\"");
            return found;
        }
        case AbcReference::Kind::classIndex: {
            const uint32_t found = _classIds.find(reference.text);
            if (found == AbcTextTable::none)
                throw AbcTextError("no class is called \"" + std::string(reference.text) + "\"");
            return found;
        }
        case AbcReference::Kind::caught: break; // known since the end of its code
        }
    } catch (const AbcTextError& error) {
        if (_context.observer == nullptr)
            refuseAbcText(reference.element, reference.attribute, error.what(), reference.offset);
    }
    return 0;
}

void AbcLinker::resolve(AbcPart& part, size_t firstMethod) {
    _firstMethod = firstMethod;
    _resolved.clear();
    for (const AbcReference& reference : part.references)
        _resolved.push_back(resolve(reference));
    resolveMetadata(part);
}

void AbcLinker::resolveMetadata(AbcPart& part) {
    _metadata.clear();
    for (AbcMetadataText& text : part.metadata) {
        settle(text.metadata.name);
        for (SwfAbcMetadata::Item& item : text.metadata.items) {
            settle(item.key);
            settle(item.value);
        }
        _metadata.push_back(_pools.metadata(std::move(text.metadata), text.copy));
    }
}

void AbcLinker::settle(uint32_t& index) const {
    if (index >= abcIsReference)
        index = _resolved[index & ~abcIsReference];
}

void AbcLinker::settleMethod(uint32_t& index) const {
    if (index >= abcIsReference)
        settle(index);
    else if (_firstMethod + index < _methodIndices.size())
        index = _methodIndices[_firstMethod + index];
}

void AbcLinker::settle(SwfAbcValue& value) const {
    const bool isOfNamespace = value.kind == abcKindOfNamespace && value.index >= abcIsReference;
    settle(value.index);
    if (isOfNamespace && value.index < _block.namespaces.size())
        value.kind = _block.namespaces[value.index].kind;
}

void AbcLinker::settle(SwfAbcMethod& method) const {
    settle(method.returnType);
    settle(method.name);
    for (uint32_t& type : method.parameterTypes)
        settle(type);
    for (SwfAbcValue& value : method.optionals)
        settle(value);
    if ((method.flags & SwfAbcMethod::hasParamNames) == 0)
        method.parameterNames.clear();
    for (uint32_t& name : method.parameterNames)
        settle(name);
}

void AbcLinker::settle(SwfAbcTraits& traits) const {
    for (SwfAbcTrait& trait : traits) {
        settle(trait.name);
        settle(trait.type);
        settle(trait.value);
        if (trait.kind == SwfAbcTrait::Kind::classSlot)
            settle(trait.index);
        else if (!trait.holdsValue())
            settleMethod(trait.index);
        for (uint32_t& index : trait.metadata)
            index = _metadata[index];
    }
}

void AbcLinker::settle(AbcBodyText& text) {
    settleMethod(text.body.method);
    for (SwfAbcException& exception : text.body.exceptions) {
        settle(exception.type);
        settle(exception.name);
    }
    settle(text.body.traits);
    for (AbcMissingOperand& operand : text.operands)
        settle(operand.value);
}

// --- taking over -----------------------------------------------------------------------------------------------------

void AbcLinker::takeMethods(AbcPart& part) {
    for (size_t i = 0; i < part.methods.size(); ++i) {
        settle(part.methods[i].method);
        _block.methods[_methodIndices[_firstMethod + i]] = std::move(part.methods[i].method);
    }
}

template <class Entries>
static void moveBehind(Entries& all, Entries& more) {
    all.insert(all.end(), std::move_iterator(more.begin()), std::move_iterator(more.end()));
}

void AbcLinker::takeClasses(AbcPart& part) {
    for (AbcClassText& text : part.classes) {
        SwfAbcClass& entry = text.entry;
        settle(entry.name);
        settle(entry.base);
        settle(entry.protectedNamespace);
        for (uint32_t& name : entry.interfaces)
            settle(name);
        if (text.hasConstructor)
            settleMethod(entry.constructor);
        if (text.hasInitializer)
            settleMethod(entry.staticInitializer);
        settle(entry.traits);
        settle(entry.staticTraits);
        if (!text.continues) {
            _classes.push_back({text.hasConstructor, text.hasInitializer, text.offset});
            _block.classes.push_back(std::move(entry));
            continue;
        }
        SwfAbcClass& begun = _block.classes.back();
        ClassOffset& noted = _classes.back();
        if ((noted.hasConstructor && text.hasConstructor) || (noted.hasInitializer && text.hasInitializer))
            refuseAbcText("Class", "", "it has two constructors or initializers", noted.offset);
        noted.hasConstructor |= text.hasConstructor;
        noted.hasInitializer |= text.hasInitializer;
        if (text.hasConstructor)
            begun.constructor = entry.constructor;
        if (text.hasInitializer)
            begun.staticInitializer = entry.staticInitializer;
        moveBehind(begun.interfaces, entry.interfaces);
        moveBehind(begun.traits, entry.traits);
        moveBehind(begun.staticTraits, entry.staticTraits);
    }
}

void AbcLinker::takeScripts(AbcPart& part) {
    for (AbcScriptText& text : part.scripts) {
        if (text.hasInitializer)
            settleMethod(text.entry.initializer);
        settle(text.entry.traits);
        if (!text.continues) {
            _scripts.push_back({false, text.hasInitializer, text.offset});
            _block.scripts.push_back(std::move(text.entry));
            continue;
        }
        if (_scripts.back().hasInitializer && text.hasInitializer)
            refuseAbcText("Script", "", "it has two initializers", _scripts.back().offset);
        _scripts.back().hasInitializer |= text.hasInitializer;
        if (text.hasInitializer)
            _block.scripts.back().initializer = text.entry.initializer;
        moveBehind(_block.scripts.back().traits, text.entry.traits);
    }
}

void AbcLinker::takeBodies(AbcPart& part) {
    for (AbcBodyText& text : part.bodies) {
        settle(text);
        SwfAbcBody& body = text.body;
        body.code = std::span(part.code).subspan(text.codeStart, text.codeEnd - text.codeStart);
        if (!text.operands.empty())
            body.code = keep(completeAbcCode(body.code, text.operands, text.branches, body.exceptions));
        if (!text.isMeasured && !text.isBytes)
            text.needed = measureAbcCode(body, _block.multinames, registersOf(_block.methods[body.method]));
        if (!text.isBytes)
            checkLimits(text, body);
        _bodyPlaces.push_back({text.place, body.method});
        _block.bodies.push_back(std::move(body));
    }
}

void AbcLinker::checkLimits(const AbcBodyText& text, SwfAbcBody& body) {
    const auto check = [&](bool isGiven, uint32_t& given, uint32_t needed, const char* name) {
        if (!isGiven)
            given = needed;
        else if (given < needed)
            _context.warn(SwfWarning::Kind::tooSmall, "Code", text.offset,
                          std::string(name) + " is " + std::to_string(given) + ", but the code needs " +
                              std::to_string(needed));
    };
    check(text.givesStack, body.maxStack, text.needed.maxStack, "MaxStack");
    check(text.givesLocals, body.localCount, text.needed.localCount, "LocalCount");
    check(text.givesScopes, body.maxScopeDepth, text.needed.maxScopeDepth, "MaxScopeDepth");
}

// Bodies stand in the order of their methods, if they have no places of their own.
void AbcLinker::orderBodies() {
    const auto isLater = [](const Place& a, const Place& b) {
        return a.place != abcNoPlace || b.place != abcNoPlace || a.index > b.index;
    };
    if (std::ranges::adjacent_find(_bodyPlaces, isLater) == _bodyPlaces.end())
        return; // as mostly
    std::vector<uint32_t> byMethod(_bodyPlaces.size());
    std::iota(byMethod.begin(), byMethod.end(), 0);
    std::stable_sort(byMethod.begin(), byMethod.end(),
                     [&](uint32_t a, uint32_t b) { return _bodyPlaces[a].index < _bodyPlaces[b].index; });
    std::vector<Place> places;
    for (const uint32_t body : byMethod)
        places.push_back({_bodyPlaces[body].place, body});
    std::vector<SwfAbcBody> ordered;
    ordered.reserve(places.size());
    for (const uint32_t body : orderOf(std::move(places)))
        ordered.push_back(std::move(_block.bodies[body]));
    _block.bodies = std::move(ordered);
}

} // namespace xml2swf
