#include "Commands.h"
#include "Console.h"

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <shellapi.h>
#endif

namespace {

using namespace zelkc;

int run(int argc, char** argv) {
    CLI::App app("Shows a Flash movie (SWF) as XML and compiles the edited XML back.", "zelkc");
    app.set_version_flag("--version", "zelkc " ZELK_VERSION);
    app.footer("Exit status: 0 done, 1 the input is at fault, 2 wrong use.");
    app.require_subcommand(1);
    Command chosen;
    for (auto add : {addConvert, addInfo, addCheck, addCompare})
        add(app, chosen);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? ExitStatus::done : ExitStatus::wrongUse;
    }
    try {
        return chosen();
    } catch (...) {
        Console(false).failure("zelkc");
        return ExitStatus::badInput;
    }
}

#ifdef _WIN32
// The arguments as UTF-8, whatever the code page.
int runWide() {
    _setmode(_fileno(stdin), _O_BINARY);
    _setmode(_fileno(stdout), _O_BINARY);
    SetConsoleOutputCP(CP_UTF8);
    int count = 0;
    LPWSTR* wide = CommandLineToArgvW(GetCommandLineW(), &count);
    if (wide == nullptr)
        return ExitStatus::wrongUse;
    std::vector<std::string> texts(static_cast<size_t>(count));
    std::vector<char*> arguments;
    for (int i = 0; i < count; ++i) {
        std::string& text = texts[static_cast<size_t>(i)];
        text.resize(static_cast<size_t>(WideCharToMultiByte(CP_UTF8, 0, wide[i], -1, nullptr, 0, nullptr, nullptr)));
        WideCharToMultiByte(CP_UTF8, 0, wide[i], -1, text.data(), static_cast<int>(text.size()), nullptr, nullptr);
        arguments.push_back(text.data());
    }
    LocalFree(wide);
    return run(count, arguments.data());
}
#endif

} // namespace

int main([[maybe_unused]] int argc, [[maybe_unused]] char** argv) {
#ifdef _WIN32
    return runWide();
#else
    return run(argc, argv);
#endif
}
