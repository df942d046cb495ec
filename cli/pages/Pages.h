// What a system wants to know of zelkc's command line, written from the table of its commands.
#pragma once

#include <CLI/CLI.hpp>

#include <string>
#include <vector>

namespace zelkc {

/// The manual page, as source of man.
std::string manPage(const CLI::App& app);
std::string bashCompletion(const CLI::App& app);
std::string zshCompletion(const CLI::App& app);

// What all three are written from.

std::vector<const CLI::App*> commandsOf(const CLI::App& app);
/// Those that begin with a dash, --help included.
std::vector<const CLI::Option*> switchesOf(const CLI::App& app);
/// "-q", "--quiet", as they are typed.
std::vector<std::string> namesOf(const CLI::Option& option);
bool takesValue(const CLI::Option& option);
/// The values that an option takes, when they are few; else empty: the name of a file, or a number.
std::vector<std::string> valuesOf(const CLI::Option& option);

} // namespace zelkc
