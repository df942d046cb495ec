// Registers of functions by name, in the full form.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "SwfActionsPayload.h"
#include "XmlErrors.h"
#include "XmlReadObserver.h"

namespace xml2swf {

/// What a DefineFunction2 has its player load into registers before it runs, from register 1 on, in this order.
struct PreloadedRegister {
    std::string_view name;
    uint16_t preload, suppress; ///< its flags; only some can be suppressed
};
inline constexpr PreloadedRegister preloadedRegisters[] = {
    {"this", 0x0001, 0x0002},  {"arguments", 0x0004, 0x0008}, {"super", 0x0010, 0x0020},
    {"_root", 0x0040, 0x0000}, {"_parent", 0x0080, 0x0000},   {"_global", 0x0100, 0x0000},
};

/// The names of one function's registers: those of what is preloaded and of its parameters. A name that stands for two
/// registers, and one of two names of a register, are none. The function has to live as long.
class RegisterNames {
public:
    RegisterNames() = default;
    explicit RegisterNames(const libswf::SwfActionDefineFunction2& function);

    /// Empty when there is none.
    std::string_view nameOf(uint8_t number) const;
    std::optional<uint8_t> numberOf(std::string_view name) const;

private:
    struct Register {
        uint8_t number;
        std::string_view name;
    };
    void add(uint8_t number, std::string_view name) { _registers.push_back({number, name}); }

    std::vector<Register> _registers; // few, and mostly asked for one of the first
};

/// A register by its name in the function being written, or by its number.
template <class Node>
void writeRegister(Node& node, std::string_view numberAttribute, uint8_t number) {
    const auto* script = node.context().script;
    const RegisterNames* names = script == nullptr ? nullptr : script->registers;
    const std::string_view name = names == nullptr ? std::string_view() : names->nameOf(number);
    if (name.empty())
        node.attribute(numberAttribute, number);
    else
        node.attribute("Name", name);
}

/// In the full form by its name, too.
template <class Element>
uint8_t readRegister(Element& element, std::string_view numberAttribute) {
    auto& context = element.context();
    if (!context.fullForm || !element.has("Name"))
        return element.ui8(numberAttribute);
    std::string room;
    const std::string_view name = element.label("Name", XmlValueForm::Kind::place, room); // in the stead of the number
    const RegisterNames* names = context.script == nullptr ? nullptr : context.script->registers;
    const auto number = names == nullptr ? std::nullopt : names->numberOf(name);
    const bool hasBoth = context.observer == nullptr && element.has(numberAttribute);
    if (context.observer == nullptr && (hasBoth || !number))
        throw XmlValueError(
            element.name(), "Name",
            "\"" + std::string(name) +
                (hasBoth ? "\" stands beside " + std::string(numberAttribute) + ": only one of them can hold"
                         : "\" is the name of no register of the function here"),
            element.offset());
    return number.value_or(0);
}

/// Lets the names of a function be known in its body, for as long as it lives: to the script that holds them.
template <class Script>
class RegisterScope {
public:
    /// A null script knows no names.
    RegisterScope(Script* script, RegisterNames names) : _script(script), _names(std::move(names)) {
        if (script != nullptr) {
            _outer = script->registers;
            script->registers = &_names;
        }
    }
    ~RegisterScope() {
        if (_script != nullptr)
            _script->registers = _outer;
    }
    RegisterScope(const RegisterScope&) = delete;
    RegisterScope& operator=(const RegisterScope&) = delete;

private:
    Script* const _script;
    const RegisterNames _names;
    const RegisterNames* _outer = nullptr;
};

} // namespace xml2swf
