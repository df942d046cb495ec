#include "Pages.h"

namespace zelkc {

namespace {

// Text as man shows it: a dash that can be copied, and no line that begins with a request.
std::string roff(const std::string& text) {
    std::string escaped;
    for (char c : text) {
        if (c == '\\' || c == '-')
            escaped += '\\';
        escaped += c;
        if (c == '\\')
            escaped += 'e';
    }
    return escaped.starts_with('.') || escaped.starts_with('\'') ? "\\&" + escaped : escaped;
}

// "FORM" of "FORM:{classic,full}".
std::string placeholder(const CLI::Option& option) {
    const std::string type = option.get_type_name();
    return type.substr(0, type.find_first_of(": "));
}

std::string heading(const CLI::Option& option) {
    std::string names;
    for (const std::string& name : namesOf(option))
        names.append(names.empty() ? "" : ", ").append("\\fB").append(roff(name)).append("\\fR");
    if (takesValue(option))
        names.append(" \\fI").append(roff(placeholder(option))).append("\\fR");
    return names;
}

std::string entry(const std::string& head, std::string text, const CLI::Option& option) {
    const std::vector<std::string> values = valuesOf(option);
    if (!values.empty() && text.find(values.front()) == std::string::npos)
        text.append(": ").append(CLI::detail::join(values, ", "));
    if (!option.get_default_str().empty())
        text.append(" (").append(option.get_default_str()).append(" unless it is given)");
    return ".TP\n" + head + "\n" + roff(text) + ".\n";
}

std::string synopsis(const CLI::App& command) {
    std::string line = "\\fBzelkc " + command.get_name() + "\\fR [\\fIOPTIONS\\fR]";
    for (const CLI::Option* argument :
         command.get_options([](const auto* option) { return option->get_positional(); })) {
        const std::string name = argument->get_name(true);
        line.append(argument->get_required() ? " \\fI" : " [\\fI").append(name).append("\\fR");
        line.append(argument->get_items_expected_max() > 1 ? "..." : "").append(argument->get_required() ? "" : "]");
    }
    return line;
}

std::string section(const CLI::App& command) {
    std::string text = ".SS " + command.get_name() + "\n" + roff(command.get_description()) + ".\n";
    text.append(".PP\n").append(synopsis(command)).append("\n");
    for (const CLI::Option* option : command.get_options()) {
        const std::string head =
            option->get_positional() ? "\\fI" + roff(option->get_name(true)) + "\\fR" : heading(*option);
        text.append(entry(head, option->get_description(), *option));
    }
    if (!command.get_footer().empty())
        text.append(".PP\n").append(roff(command.get_footer())).append("\n");
    return text;
}

} // namespace

std::string manPage(const CLI::App& app) {
    std::string page = ".TH ZELKC 1 \"\" \"Zelk " ZELK_VERSION "\" \"User Commands\"\n"
                       ".SH NAME\nzelkc \\- convert Flash movies to XML and back\n"
                       ".SH SYNOPSIS\n.B zelkc\n\\fICOMMAND\\fR [\\fIOPTIONS\\fR] \\fIFILE\\fR...\n.SH DESCRIPTION\n";
    page.append(roff(app.get_description())).append("\n.SH OPTIONS\n");
    for (const CLI::Option* option : switchesOf(app))
        page.append(entry(heading(*option), option->get_description(), *option));
    page.append(".SH COMMANDS\n");
    for (const CLI::App* command : commandsOf(app))
        page.append(section(*command));
    page.append(".SH EXIT STATUS\n0 done, 1 the input is at fault, 2 wrong use.\n.SH SEE ALSO\n.BR zelk (1)\n");
    return page;
}

} // namespace zelkc
