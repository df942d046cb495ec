// Attributes that only scripts with labels and code of ActionScript 3 have: coloured where "=" follows. Those that
// other elements have, too, stay black.
#pragma once

namespace zelk {

// clang-format off
inline constexpr const char16_t* codeAttributeWords[] = {
    u"At", u"To", u"From", u"Until", u"Default", u"Arguments", u"Returns", u"Base", u"Sealed", u"Final", u"Override",
    u"Interface", u"Native", u"Method", u"Class", u"Catch", u"SlotId", u"DispId", u"MaxStack", u"LocalCount",
    u"InitScopeDepth", u"MaxScopeDepth", u"ObjectRegister", u"IndexRegister", u"ProtectedNamespace", u"NeedArguments",
    u"NeedActivation", u"NeedRest", u"IgnoreRest", u"SetDxns", u"DebugName", u"Place", u"Preload", u"Suppress",
};
// clang-format on

} // namespace zelk
