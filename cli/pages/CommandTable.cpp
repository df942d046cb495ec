#include "Pages.h"

namespace zelkc {

std::vector<const CLI::App*> commandsOf(const CLI::App& app) {
    return app.get_subcommands([](const CLI::App* command) { return !command->get_group().empty(); });
}

std::vector<const CLI::Option*> switchesOf(const CLI::App& app) {
    return app.get_options([](const CLI::Option* option) { return option->nonpositional(); });
}

std::vector<std::string> namesOf(const CLI::Option& option) {
    std::vector<std::string> names;
    for (const std::string& name : option.get_snames())
        names.emplace_back(1, '-').append(name);
    for (const std::string& name : option.get_lnames())
        names.emplace_back(2, '-').append(name);
    return names;
}

bool takesValue(const CLI::Option& option) { return option.get_items_expected_max() > 0; }

// The library tells them only as part of the type: "FORM:{classic,full}".
std::vector<std::string> valuesOf(const CLI::Option& option) {
    const std::string type = option.get_type_name();
    const size_t from = type.find('{'), to = type.find('}');
    if (from == std::string::npos || to == std::string::npos)
        return {};
    return CLI::detail::split(type.substr(from + 1, to - from - 1), ',');
}

} // namespace zelkc
