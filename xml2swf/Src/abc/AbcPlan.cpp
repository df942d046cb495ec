#include "AbcPlan.h"

#include <algorithm>
#include <numeric>
#include <unordered_map>

#include "AbcPart.h"
#include "SwfException.h"
#include "SwfInOrder.h"

namespace xml2swf {

using namespace libswf;

namespace {

[[noreturn]] void refuse(const char* why) { throw SwfException(SwfError::badData, why); }

// Goes through the code of bodies, some of them at a time: what they refer to is there, and how much text they make.
class CodeCheck {
public:
    CodeCheck(const SwfAbcBlock& block, const AbcNames& names, std::vector<AbcBodyProblem>& problems)
        : _block(block), _names(names), _problems(problems) {
        problems.resize(block.bodies.size());
        for (uint32_t i = 0, bytes = partSize; i < block.bodies.size(); ++i) {
            if (bytes >= partSize) {
                _parts.emplace_back().first = i;
                bytes = 0;
            }
            bytes += static_cast<uint32_t>(std::min<size_t>(block.bodies[i].code.size() + 16, partSize));
            _parts.back().end = i + 1;
        }
    }

    void run(uint32_t threads) {
        workInOrder({_parts.size(), [this](size_t i) { check(_parts[i]); },
                     [this](size_t i) {
                         text += _parts[i].text;
                         calls.insert(calls.end(), _parts[i].calls.begin(), _parts[i].calls.end());
                         _parts[i] = Part();
                     }},
                    threads);
    }

    struct Call {
        uint32_t body, method;
    };
    std::vector<Call> calls; // of methods by code, in order
    uint64_t text = 0;       // characters of operands

private:
    static constexpr uint32_t partSize = 64 * 1024;
    struct Part {
        uint32_t first = 0, end = 0;
        uint64_t text = 0;
        std::vector<Call> calls;
    };

    void check(Part& part) {
        SwfAbcCodeMap map;
        for (uint32_t i = part.first; i < part.end; ++i) {
            const SwfAbcBody& body = _block.bodies[i];
            const size_t calls = part.calls.size();
            if (map.read(body, [&](const SwfAbcInstruction& instruction) { return see(part, i, instruction); }))
                continue;
            _problems[i] = {map.problem(), map.problemPlace()};
            part.calls.resize(calls);
            part.text += body.code.size();
        }
    }

    const char* see(Part& part, uint32_t body, const SwfAbcInstruction& instruction) const {
        const SwfAbcOpcode& opcode = *instruction.opcode;
        for (size_t i = 0; i < SwfAbcOpcode::mostOperands && opcode.operands[i] != SwfAbcOperand::none; ++i) {
            const uint32_t value = instruction.operands[i];
            switch (opcode.operands[i]) {
            case SwfAbcOperand::name:
                if (value >= _names.multinames.size())
                    return "an instruction has a name that is not there";
                part.text += _names.multinames[value].size();
                break;
            case SwfAbcOperand::string:
            case SwfAbcOperand::file:
            case SwfAbcOperand::variable:
                if (value >= _names.strings.size())
                    return "an instruction has a string that is not there";
                part.text += _names.strings[value].size();
                break;
            case SwfAbcOperand::nspace:
                if (value >= _names.namespaces.size())
                    return "an instruction has a namespace that is not there";
                part.text += _names.namespaces[value].size();
                break;
            case SwfAbcOperand::method:
                if (value >= _block.methods.size())
                    return "an instruction has a method that is not there";
                part.calls.push_back({body, value});
                break;
            default:
                if (!isThere(opcode.operands[i], value, body))
                    return "an instruction has an index that is not there";
            }
        }
        return nullptr;
    }

    bool isThere(SwfAbcOperand kind, uint32_t value, uint32_t body) const {
        switch (kind) {
        case SwfAbcOperand::integer: return value < _names.integers.size();
        case SwfAbcOperand::uinteger: return value < _names.uintegers.size();
        case SwfAbcOperand::real: return value < _names.doubles.size();
        case SwfAbcOperand::classIndex: return value < _block.classes.size();
        case SwfAbcOperand::exception: return value < _block.bodies[body].exceptions.size();
        default: return true;
        }
    }

    const SwfAbcBlock& _block;
    const AbcNames& _names;
    std::vector<AbcBodyProblem>& _problems;
    std::vector<Part> _parts;
};

} // namespace

class AbcPlanner {
public:
    AbcPlanner(const SwfAbcBlock& block, const AbcNames& names, AbcPlan& plan)
        : _block(block), _names(names), _plan(plan), _hasMember(block.methods.size()) {
        plan._homes.assign(block.methods.size(), noHome);
        plan.methodIds.resize(block.methods.size());
    }

    void run(size_t bytes, uint32_t threads) {
        CodeCheck check(_block, _names, _plan.problems);
        check.run(threads);
        noteCalls(check.calls);
        noteBodies();
        noteMembers();
        layClasses();
        layScripts();
        beginOwner("function");
        for (uint32_t i = 0; i < _block.methods.size(); ++i)
            layFunction(i, 1);
        placeMethods();
        placeBodies();
        nameClasses();
        countMetadata();
        // Names that are used again and again could make a text of any size.
        constexpr uint64_t mostPerByte = 400, most = 1 << 20;
        if (check.text + _text > bytes * mostPerByte + most)
            refuse("it would take too much text");
    }

private:
    static constexpr uint32_t noHome = UINT32_MAX;
    using Kind = AbcItem::Kind;

    void noteCalls(const std::vector<CodeCheck::Call>& calls) {
        _calls.resize(_block.bodies.size() + 1);
        for (const CodeCheck::Call& call : calls)
            ++_calls[call.body + 1];
        std::partial_sum(_calls.begin(), _calls.end(), _calls.begin());
        _called.reserve(calls.size()); // they come in the order of the bodies
        for (const CodeCheck::Call& call : calls) {
            _called.push_back(call.method);
            _needsId.push_back(call.method);
        }
    }

    void noteBodies() {
        _plan.firstBody.assign(_block.methods.size(), abcFollows);
        _plan.nextBody.assign(_block.bodies.size(), abcFollows);
        for (auto i = static_cast<uint32_t>(_block.bodies.size()); i-- != 0;) {
            const uint32_t method = _block.bodies[i].method;
            if (method >= _block.methods.size())
                refuse("a body belongs to a method that is not there");
            _plan.nextBody[i] = _plan.firstBody[method];
            _plan.firstBody[method] = i;
            checkTraits(_block.bodies[i].traits, false);
            for (const SwfAbcException& exception : _block.bodies[i].exceptions) {
                useName(exception.type);
                useName(exception.name);
            }
        }
    }

    void use(const AbcNames::Texts& texts, uint32_t index) {
        if (index >= texts.size())
            refuse("something has a name or value that is not there");
        _text += texts[index].size();
    }
    void useName(uint32_t index) { use(_names.multinames, index); }

    // Of a class or script; what is a method in an activation object does not hold it.
    void useMethod(uint32_t method, bool isMember = true) {
        if (method >= _block.methods.size())
            refuse("a member is a method that is not there");
        if (_hasMember[method] || !isMember)
            _needsId.push_back(method);
        _hasMember[method] = _hasMember[method] || isMember;
    }

    void checkValue(const SwfAbcValue& value) {
        switch (value.kind) {
        case 0x01: use(_names.strings, value.index); break;
        case 0x03: use(_names.integers, value.index); break;
        case 0x04: use(_names.uintegers, value.index); break;
        case 0x06: use(_names.doubles, value.index); break;
        default:
            if (value.index < _names.namespaces.size())
                use(_names.namespaces, value.index); // of other kinds the index may be anything
            else if (value.index >= abcIsReference)
                refuse("a value has an index that nothing can have"); // and that the text's reader does not take
        }
    }

    void checkTraits(const SwfAbcTraits& traits, bool areMembers = true) {
        for (const SwfAbcTrait& trait : traits) {
            useName(trait.name);
            if (trait.holdsValue()) {
                useName(trait.type);
                checkValue(trait.value);
            } else if (trait.kind != SwfAbcTrait::Kind::classSlot) {
                useMethod(trait.index, areMembers);
            } else if (trait.index >= _block.classes.size()) {
                refuse("a member is a class that is not there");
            }
            for (const uint32_t index : trait.metadata) {
                if (index >= _block.metadata.size())
                    refuse("a member has metadata that are not there");
                useMetadata(_block.metadata[index]);
            }
        }
    }

    void useMetadata(const SwfAbcMetadata& metadata) {
        use(_names.strings, metadata.name);
        for (const SwfAbcMetadata::Item& item : metadata.items) {
            use(_names.strings, item.key);
            use(_names.strings, item.value);
        }
    }

    // Methods that members stand for stand with these; only the others are laid where they are called.
    void noteMembers() {
        for (const SwfAbcMethod& method : _block.methods) {
            useName(method.returnType);
            use(_names.strings, method.name);
            for (const uint32_t type : method.parameterTypes)
                useName(type);
            for (const SwfAbcValue& value : method.optionals)
                checkValue(value);
            for (const uint32_t name : method.parameterNames)
                use(_names.strings, name);
        }
        for (const SwfAbcClass& entry : _block.classes) {
            useName(entry.name);
            useName(entry.base);
            use(_names.namespaces, entry.protectedNamespace);
            for (const uint32_t name : entry.interfaces)
                useName(name);
            useMethod(entry.constructor);
            useMethod(entry.staticInitializer);
            checkTraits(entry.traits);
            checkTraits(entry.staticTraits);
        }
        for (const SwfAbcScript& script : _block.scripts) {
            useMethod(script.initializer);
            checkTraits(script.traits);
        }
        for (const std::vector<uint32_t>& set : _block.namespaceSets) {
            for (const uint32_t space : set)
                use(_names.namespaces, space);
        }
        std::sort(_needsId.begin(), _needsId.end());
    }

    void beginOwner(std::string name) {
        _ownerName = std::move(name);
        _functions = 0;
    }

    void lay(Kind kind, uint32_t depth, uint32_t owner, uint32_t index = 0) {
        _plan.items.push_back({kind, static_cast<uint8_t>(depth), owner, index});
    }

    // A member's method, and behind it the functions that are made in it.
    void layMethod(Kind kind, uint32_t depth, uint32_t owner, uint32_t index, uint32_t method, std::string_view name) {
        lay(kind, depth, owner, index);
        if (_plan._homes[method] != noHome)
            return; // it stands with another one already
        settle(method, name);
        layCalled(method, depth);
    }

    void settle(uint32_t method, std::string_view name) {
        _plan._homes[method] = static_cast<uint32_t>(_plan.items.size() - 1);
        _order.push_back(method);
        if (!std::binary_search(_needsId.begin(), _needsId.end(), method))
            return;
        std::string text;
        appendAbcText(text, _ownerName + "/" + std::string(name), AbcTextPlace::value);
        std::string id;
        appendAttributeText(id, text);
        _plan.methodIds[method] = unique(_methodIdTable, id);
    }

    // The first function of a method's code, and the first one in that, and so on: as a stack, not as calls.
    void layCalled(uint32_t method, uint32_t depth) {
        std::vector<uint32_t> waiting;
        pushCalled(method, waiting);
        while (!waiting.empty()) {
            const uint32_t next = waiting.back();
            waiting.pop_back();
            if (_hasMember[next] || _plan._homes[next] != noHome)
                continue;
            lay(Kind::function, depth, 0, next);
            settle(next, std::to_string(++_functions));
            pushCalled(next, waiting);
        }
    }

    void pushCalled(uint32_t method, std::vector<uint32_t>& waiting) const {
        const size_t before = waiting.size();
        for (uint32_t body = _plan.firstBody[method]; body != abcFollows; body = _plan.nextBody[body])
            waiting.insert(waiting.end(), _called.begin() + _calls[body], _called.begin() + _calls[body + 1]);
        std::reverse(waiting.begin() + static_cast<ptrdiff_t>(before), waiting.end());
    }

    void layFunction(uint32_t method, uint32_t depth) {
        if (_plan._homes[method] != noHome)
            return;
        lay(Kind::function, depth, 0, method);
        settle(method, std::to_string(++_functions));
        layCalled(method, depth);
    }

    void layTraits(Kind kind, uint32_t depth, uint32_t owner, const SwfAbcTraits& traits) {
        for (uint32_t i = 0; i < traits.size(); ++i) {
            const SwfAbcTrait& trait = traits[i];
            if (trait.holdsValue() || trait.kind == SwfAbcTrait::Kind::classSlot)
                lay(kind, depth, owner, i);
            else
                layMethod(kind, depth, owner, i, trait.index, abcPlainName(_block, trait.name));
        }
    }

    void layClasses() {
        for (uint32_t i = 0; i < _block.classes.size(); ++i) {
            const SwfAbcClass& entry = _block.classes[i];
            beginOwner(abcPlainName(_block, entry.name));
            lay(Kind::classStart, 1, i);
            layMethod(Kind::constructor, 2, i, 0, entry.constructor, "constructor");
            layTraits(Kind::trait, 2, i, entry.traits);
            lay(Kind::staticStart, 2, i);
            layMethod(Kind::staticInitializer, 3, i, 0, entry.staticInitializer, "initializer");
            layTraits(Kind::staticTrait, 3, i, entry.staticTraits);
            lay(Kind::classEnd, 1, i);
        }
    }

    void layScripts() {
        for (uint32_t i = 0; i < _block.scripts.size(); ++i) {
            const SwfAbcScript& script = _block.scripts[i];
            beginOwner(script.traits.empty() ? "script" : "script " + abcPlainName(_block, script.traits[0].name));
            lay(Kind::scriptStart, 1, i);
            layMethod(Kind::scriptInitializer, 2, i, 0, script.initializer, "initializer");
            layTraits(Kind::scriptTrait, 2, i, script.traits);
            lay(Kind::scriptEnd, 1, i);
        }
    }

    static std::string unique(std::unordered_map<std::string, uint32_t>& taken, std::string text) {
        uint32_t& copies = taken[text];
        if (++copies == 1)
            return text;
        std::string copy;
        do
            copy = text + "#" + std::to_string(copies++);
        while (!taken.try_emplace(copy, 1).second);
        taken[text] = copies - 1;
        return copy;
    }

    // Places of what follows the one before are not said.
    static std::vector<uint32_t> placesOf(const std::vector<uint32_t>& order) {
        std::vector<uint32_t> places(order.size(), abcFollows);
        uint32_t next = 0;
        for (const uint32_t index : order) {
            if (index != next)
                places[index] = index;
            next = index + 1;
        }
        return places;
    }

    void placeMethods() { _plan.methodPlaces = placesOf(_order); }

    // Bodies stand in the order of their methods, if nothing else is said.
    void placeBodies() {
        std::vector<uint32_t> order;
        for (uint32_t method = 0; method < _block.methods.size(); ++method) {
            for (uint32_t body = _plan.firstBody[method]; body != abcFollows; body = _plan.nextBody[body])
                order.push_back(body);
        }
        _plan.bodyPlaces = placesOf(order);
    }

    void nameClasses() {
        std::unordered_map<std::string, uint32_t> taken;
        for (const SwfAbcClass& entry : _block.classes)
            _plan.classIds.push_back(unique(taken, std::string(_names.multinames[entry.name])));
    }

    void countMetadata() {
        std::unordered_map<std::string, uint32_t> copies;
        for (const SwfAbcMetadata& metadata : _block.metadata) {
            useMetadata(metadata);
            std::string key(reinterpret_cast<const char*>(&metadata.name), sizeof metadata.name);
            key.append(reinterpret_cast<const char*>(metadata.items.data()),
                       metadata.items.size() * sizeof(SwfAbcMetadata::Item));
            _plan.metadataCopies.push_back(++copies[key]);
        }
    }

    const SwfAbcBlock& _block;
    const AbcNames& _names;
    AbcPlan& _plan;
    std::vector<bool> _hasMember;          // by method: a member stands for it
    std::vector<uint32_t> _needsId;        // methods
    std::vector<uint32_t> _calls, _called; // by body: where in _called the methods are that its code names
    std::vector<uint32_t> _order;          // methods, as they stand in the text
    std::unordered_map<std::string, uint32_t> _methodIdTable;
    std::string _ownerName;
    uint32_t _functions = 0;
    uint64_t _text = 0;
};

AbcPlan::AbcPlan(const SwfAbcBlock& block, const AbcNames& names, size_t bytes, uint32_t threads) {
    AbcPlanner(block, names, *this).run(bytes, threads);
}

} // namespace xml2swf
