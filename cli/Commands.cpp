#include "Commands.h"

#include "Conversion.h"

namespace zelkc {

void addCommands(CLI::App& app, Command& chosen) {
    app.set_version_flag("--version", "zelkc " ZELK_VERSION);
    app.footer("Exit status: 0 done, 1 the input is at fault, 2 wrong use.");
    app.require_subcommand(1);
    for (auto add : {addConvert, addInfo, addCheck, addCompare, addExtract, addReplace, addSchema, addTexts})
        add(app, chosen);
}

File fileOf(const std::string& name, const std::string& kind, const char* option) {
    const std::optional<FileKind> found =
        kind.empty() && name != "-" ? zelk::fileKind(name) : zelk::kindOfExtension(kind);
    if (!found)
        throw CLI::ValidationError(name, std::string("the name does not say of what kind it is: give ") + option +
                                             " swf, xml or zelk");
    return {name, *found};
}

void addInput(CLI::App& command, Input& input) {
    command.add_option("FILE", input.name, "A movie, its XML or a project; - is standard input")->required();
    addKind(command, "--from", input.from, "Kind of the file when its name does not say it: swf, xml or zelk");
}

CLI::Option* addKind(CLI::App& command, const char* option, std::string& kind, const char* what) {
    const CLI::Validator known(
        [](std::string& value) { return zelk::kindOfExtension(value) ? "" : value + " is none of swf, xml and zelk"; },
        "{swf,xml,zelk}");
    return command.add_option(option, kind, what)->type_name("KIND")->check(known);
}

void addForm(CLI::App& command, std::optional<bool>& fullForm, const char* what) {
    const auto choose = [&fullForm](const std::string& form) { fullForm = form == xml2swf::fullForm; };
    command.add_option_function<std::string>("--form", choose, what)
        ->type_name("FORM")
        ->check(CLI::IsMember({std::string(xml2swf::classicForm), std::string(xml2swf::fullForm)}));
}

void addQuiet(CLI::App& command, bool& quiet) { command.add_flag("-q,--quiet", quiet, "Show no warnings"); }

} // namespace zelkc
