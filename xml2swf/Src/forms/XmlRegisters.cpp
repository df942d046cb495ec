#include "XmlRegisters.h"

#include <algorithm>
#include <array>

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
    std::array<uint32_t, 256> uses{};
    for (const Register& each : _registers)
        ++uses[each.number];
    std::ranges::sort(_registers, {}, &Register::name);
    const std::vector<Register> all = std::move(_registers);
    _registers.clear();
    for (size_t i = 0; i < all.size(); ++i) {
        const bool isTwice =
            (i > 0 && all[i - 1].name == all[i].name) || (i + 1 < all.size() && all[i + 1].name == all[i].name);
        if (!isTwice && !all[i].name.empty() && uses[all[i].number] == 1)
            _registers.push_back(all[i]);
    }
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
