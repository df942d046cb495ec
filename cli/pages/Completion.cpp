#include "Pages.h"

namespace zelkc {

namespace {

std::string words(const std::vector<std::string>& parts) { return CLI::detail::join(parts, " "); }

std::vector<std::string> allNames(const CLI::App& app) {
    std::vector<std::string> names;
    for (const CLI::Option* option : switchesOf(app)) {
        for (const std::string& name : namesOf(*option))
            names.push_back(name);
    }
    return names;
}

std::string bashValues(const CLI::App& command) {
    std::string cases;
    for (const CLI::Option* option : switchesOf(command)) {
        if (!takesValue(*option))
            continue;
        const std::vector<std::string> values = valuesOf(*option);
        cases.append("        ").append(command.get_name()).append(":").append(namesOf(*option).back()).append(") ");
        cases.append(values.empty() ? "COMPREPLY=($(compgen -f -- \"$word\"))"
                                    : "COMPREPLY=($(compgen -W '" + words(values) + "' -- \"$word\"))");
        cases.append("; return ;;\n");
    }
    return cases;
}

// Text between single quotes of the shell, inside of a description of _arguments.
std::string zshText(const std::string& text) {
    std::string escaped;
    for (char c : text) {
        if (c == '[' || c == ']' || c == ':' || c == '\\')
            escaped += '\\';
        escaped += c;
        if (c == '\'')
            escaped += "\\''";
    }
    return escaped;
}

std::string zshSwitch(const CLI::Option& option) {
    const std::vector<std::string> names = namesOf(option), values = valuesOf(option);
    std::string line = "                ";
    if (names.size() > 1)
        line.append("'(").append(words(names)).append(")'{").append(CLI::detail::join(names, ",")).append("}'");
    else
        line.append("'").append(names.front());
    line.append("[").append(zshText(option.get_description())).append("]");
    if (takesValue(option))
        line.append(": :").append(values.empty() ? "_files" : "(" + words(values) + ")");
    return line.append("' \\\n");
}

} // namespace

std::string bashCompletion(const CLI::App& app) {
    std::vector<std::string> commands;
    std::string values, options;
    for (const CLI::App* command : commandsOf(app)) {
        commands.push_back(command->get_name());
        values.append(bashValues(*command));
        options.append("        ").append(command->get_name()).append(") options='");
        options.append(words(allNames(*command))).append("' ;;\n");
    }
    return "# Completion of zelkc for bash.\n_zelkc() {\n"
           "    local word=\"${COMP_WORDS[COMP_CWORD]}\" before=\"${COMP_WORDS[COMP_CWORD-1]}\" options\n"
           "    COMPREPLY=()\n"
           "    if [ \"$COMP_CWORD\" -eq 1 ]; then\n"
           "        COMPREPLY=($(compgen -W '" +
           words(commands) + " " + words(allNames(app)) +
           "' -- \"$word\"))\n        return\n    fi\n"
           "    compopt -o filenames 2>/dev/null\n"
           "    case \"${COMP_WORDS[1]}:$before\" in\n" +
           values + "    esac\n    case \"${COMP_WORDS[1]}\" in\n" + options +
           "    esac\n"
           "    case \"$word\" in\n"
           "        -*) COMPREPLY=($(compgen -W \"$options\" -- \"$word\")) ;;\n"
           "        *) COMPREPLY=($(compgen -f -- \"$word\")) ;;\n"
           "    esac\n}\ncomplete -F _zelkc zelkc\n";
}

std::string zshCompletion(const CLI::App& app) {
    std::string commands, cases;
    for (const CLI::App* command : commandsOf(app)) {
        commands.append("        '").append(command->get_name()).append(":");
        commands.append(zshText(command->get_description())).append("'\n");
        cases.append("        ").append(command->get_name()).append(")\n            _arguments \\\n");
        for (const CLI::Option* option : switchesOf(*command))
            cases.append(zshSwitch(*option));
        cases.append("                '*: :_files' ;;\n");
    }
    return "#compdef zelkc\n# Completion of zelkc for zsh.\n_zelkc() {\n    local -a commands=(\n" + commands +
           "    )\n"
           "    if (( CURRENT == 2 )); then\n"
           "        _describe command commands\n        _arguments '--help[Print this help]' '--version[Print the "
           "version]'\n"
           "        return\n    fi\n"
           "    local command=$words[2]\n    shift words\n    (( CURRENT-- ))\n    case $command in\n" +
           cases + "    esac\n}\n_zelkc \"$@\"\n";
}

} // namespace zelkc
