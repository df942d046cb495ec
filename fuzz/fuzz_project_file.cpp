// Any bytes as a project's archive, and any text through one.
#include "Conversion.h"
#include "Exceptions.h"
#include "ProjectFile.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    try {
        zelk::textOfProject({data, size}, "input");
    } catch (const zelk::FileLoadException&) {
    }
    if (size == 0)
        return 0; // is saved, but is nothing to load
    const std::string text(reinterpret_cast<const char*>(data), size);
    if (zelk::textOfProject(zelk::projectOfText(text, "output"), "output") != xml2swf::documentText(text))
        __builtin_trap();
    return 0;
}
