#include "Commands.h"

namespace zelkc {

File fileOf(const std::string& name, const std::string& kind, const char* option) {
    const std::optional<Kind> found = kind.empty() && name != "-" ? kindOfFile(name) : kindNamed(kind);
    if (!found)
        throw CLI::ValidationError(name, std::string("the name does not say of what kind it is: give ") + option +
                                             " swf or " + option + " xml");
    return {name, *found};
}

void addInput(CLI::App& command, Input& input) {
    command.add_option("FILE", input.name, "A movie or its XML; - is standard input")->required();
    addKind(command, "--from", input.from, "Kind of the file when its name does not say it: swf or xml");
}

CLI::Option* addKind(CLI::App& command, const char* option, std::string& kind, const char* what) {
    const CLI::Validator known(
        [](std::string& value) { return kindNamed(value) ? "" : value + " is neither swf nor xml"; }, "");
    return command.add_option(option, kind, what)->type_name("KIND")->check(known);
}

void addQuiet(CLI::App& command, bool& quiet) { command.add_flag("-q,--quiet", quiet, "Show no warnings"); }

} // namespace zelkc
