// The commands of zelkc. Each stands in a source file of its own and has its row in addCommands.
#pragma once

#include <CLI/CLI.hpp>

#include <functional>

#include "Files.h"

namespace zelkc {

namespace ExitStatus {
constexpr int done = 0;
constexpr int badInput = 1;
constexpr int differ = 1; ///< of compare
constexpr int wrongUse = 2;
} // namespace ExitStatus

/// What the command line asks for; gives the exit status.
using Command = std::function<int()>;

constexpr const char* summary = "Shows a Flash movie (SWF) as XML and compiles the edited XML back.";

/// Everything that the command line may hold. Parsing a line sets `chosen`.
void addCommands(CLI::App& app, Command& chosen);

// Each adds its subcommand to `app`. Parsing a line that asks for it sets `chosen`.
void addConvert(CLI::App& app, Command& chosen);
void addInfo(CLI::App& app, Command& chosen);
void addCheck(CLI::App& app, Command& chosen);
void addCompare(CLI::App& app, Command& chosen);
void addExtract(CLI::App& app, Command& chosen);
void addReplace(CLI::App& app, Command& chosen);
void addSchema(CLI::App& app, Command& chosen);
void addTexts(CLI::App& app, Command& chosen);

/// The file behind a name and the value of the option that tells its kind. Throws CLI::ValidationError when neither
/// tells it.
File fileOf(const std::string& name, const std::string& kind, const char* option);

/// An input as the arguments name it.
struct Input {
    std::string name, from;

    File file() const { return fileOf(name, from, "--from"); }
};

// Options that several commands have.
void addInput(CLI::App& command, Input& input);
CLI::Option* addKind(CLI::App& command, const char* option, std::string& kind, const char* what);
/// --form, which sets `fullForm`.
void addForm(CLI::App& command, std::optional<bool>& fullForm, const char* what);
void addQuiet(CLI::App& command, bool& quiet);

} // namespace zelkc
