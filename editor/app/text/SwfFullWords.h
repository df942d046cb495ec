// The words of the full form that are coloured as names of elements, beside those of SwfWords.h. A word that stands
// there, too, keeps the class that it has there.
#pragma once

namespace zelk {

inline constexpr const char16_t* fullTagWords[] = {
#define SWF_TAG(code, name)
#define SWF_FULL_TAG(code, name) u"" #name,
#include "SwfTags.def"
};

// clang-format off
inline constexpr const char16_t* fullStructureWords[] = {
    u"Abc", u"Class", u"Script", u"Function", u"Constants", u"Implements", u"Constructor", u"Static", u"Initializer",
    u"Slot", u"Const", u"Method", u"Getter", u"Setter", u"ClassSlot", u"FunctionSlot", u"Parameter", u"Activation",
    u"Catch", u"Bytes", u"Case", u"Int", u"UInt", u"Namespace", u"NamespaceSet", u"Multiname", u"Place",
};
// clang-format on

// The instructions of ActionScript 3.
inline constexpr const char16_t* fullActionWords[] = {
#define ABC_INSTRUCTION(code, name, pops, pushes, scopes, ...) u"" #name,
#include "SwfAbcInstructions.def"
};

} // namespace zelk
