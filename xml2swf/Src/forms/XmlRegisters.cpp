#include "XmlRegisters.h"

#include <algorithm>

namespace xml2swf {

using namespace libswf;

RegisterNames::RegisterNames(const SwfActionDefineFunction2& function) {
    uint8_t next = 1;
    for (const PreloadedRegister& each : preloadedRegisters) {
        if ((function.flags & each.preload) != 0)
            add(next++, each.name);
    }
    for (const SwfRegisterParam& parameter : function.parameters) {
        if (parameter.registerNumber != 0)
            add(parameter.registerNumber, parameter.name.view());
    }
    std::vector<Register> sure;
    for (const Register& one : _registers) {
        const auto clashes = std::ranges::count_if(
            _registers, [&](const Register& other) { return other.number == one.number || other.name == one.name; });
        if (clashes == 1 && !one.name.empty())
            sure.push_back(one);
    }
    _registers = std::move(sure);
}

std::string_view RegisterNames::nameOf(uint8_t number) const {
    const auto found = std::ranges::find(_registers, number, &Register::number);
    return found == _registers.end() ? std::string_view() : found->name;
}

std::optional<uint8_t> RegisterNames::numberOf(std::string_view name) const {
    const auto found = std::ranges::find(_registers, name, &Register::name);
    return found == _registers.end() ? std::nullopt : std::optional(found->number);
}

} // namespace xml2swf
