// Names of a block's flags, kinds and members in XML, for both directions.
#pragma once

#include <algorithm>
#include <string_view>

#include "SwfAbc.h"
#include "XmlElement.h"
#include "XmlElementWriter.h"

namespace xml2swf {

/// Flags with a name; those of `derived` follow from what else is there, the others stand in the attribute Flags.
struct AbcFlags {
    std::span<const XmlName> named;
    uint32_t derived;

    uint32_t rest() const {
        uint32_t known = derived;
        for (const XmlName& flag : named)
            known |= flag.value;
        return ~known & 0xFF;
    }
};

inline constexpr XmlName abcClassFlagNames[] = {{"Sealed", libswf::SwfAbcClass::isSealed},
                                                {"Final", libswf::SwfAbcClass::isFinal},
                                                {"Interface", libswf::SwfAbcClass::isInterface}};
inline constexpr AbcFlags abcClassFlags{abcClassFlagNames, libswf::SwfAbcClass::hasProtected};

inline constexpr XmlName abcTraitFlagNames[] = {{"Final", libswf::SwfAbcTrait::isFinal},
                                                {"Override", libswf::SwfAbcTrait::isOverride}};
inline constexpr AbcFlags abcTraitFlags{abcTraitFlagNames, libswf::SwfAbcTrait::hasMetadata};

inline constexpr XmlName abcMethodFlagNames[] = {{"NeedArguments", libswf::SwfAbcMethod::needArguments},
                                                 {"NeedActivation", libswf::SwfAbcMethod::needActivation},
                                                 {"NeedRest", libswf::SwfAbcMethod::needRest},
                                                 {"IgnoreRest", libswf::SwfAbcMethod::ignoreRest},
                                                 {"Native", libswf::SwfAbcMethod::native},
                                                 {"SetDxns", libswf::SwfAbcMethod::setDxns}};
inline constexpr AbcFlags abcMethodFlags{abcMethodFlagNames,
                                         libswf::SwfAbcMethod::hasOptional | libswf::SwfAbcMethod::hasParamNames};

/// Those that are set.
inline void writeFlags(XmlNode& node, const AbcFlags& flags, uint32_t value) {
    for (const XmlName& flag : flags.named) {
        if ((value & flag.value) != 0)
            node.attribute(flag.name, true);
    }
    if ((value & flags.rest()) != 0)
        node.attribute("Flags", value & flags.rest());
}

/// By SwfAbcTrait::Kind.
inline constexpr std::string_view abcTraitElements[] = {"Slot",      "Method",       "Getter", "Setter",
                                                        "ClassSlot", "FunctionSlot", "Const"};

/// SwfAbcValue::kind.
struct AbcValueKind {
    static constexpr uint8_t undefined = 0x00, string = 0x01, integer = 0x03, uinteger = 0x04, real = 0x06,
                             falseValue = 0x0A, trueValue = 0x0B, null = 0x0C;
};

/// Values that are their kind, and whose index is mostly the kind again.
inline constexpr XmlName abcPlainValues[] = {{"undefined", AbcValueKind::undefined},
                                             {"false", AbcValueKind::falseValue},
                                             {"true", AbcValueKind::trueValue},
                                             {"null", AbcValueKind::null}};

inline std::string_view abcPlainValue(uint8_t kind) { return findName(abcPlainValues, kind); }

} // namespace xml2swf
