// The strings that scripts push, found in the XML of their tag.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "SwfTag.h"

namespace zelk {

struct ScriptText {
    std::string part;          ///< the end of its key: "17" for the 17th string of a script, "Class/method:3"
    std::string bytes;         ///< as the script has them
    size_t start = 0, end = 0; ///< of the value between its quotes, in the element
    bool isAbc = false;        ///< of ActionScript 3
    bool isName = false;       ///< the code shows that it is the name of a variable, member, function or the like
};

/// Whether tags of this kind may have scripts.
bool mayHaveScripts(const libswf::SwfTag& tag);

/// The element of a tag in the full form.
std::string scriptElement(const std::shared_ptr<libswf::SwfTag>& tag, uint8_t version);
/// All strings that the scripts in an element push, in their order.
std::vector<ScriptText> scriptTexts(std::string_view element);
/// The tag of an element. Throws the errors of xmlToSwf.
std::shared_ptr<libswf::SwfTag> scriptTag(std::string_view element, uint8_t version);
/// As it stands in the element.
std::string scriptValue(std::string_view bytes, bool isAbc);

} // namespace zelk
