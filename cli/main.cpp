#include <algorithm>
#include <iterator>

#include "Commands.h"
#include "Console.h"
#include "LongPaths.h"

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#include <windows.h>
#endif

namespace {

using namespace zelkc;

int run(int argc, char** argv) {
    CLI::App app(summary, "zelkc");
    Command chosen;
    addCommands(app, chosen);
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
// What is written to the console is UTF-8 while this lives; the console outlives the program.
class Utf8Console {
public:
    Utf8Console() { SetConsoleOutputCP(CP_UTF8); }
    ~Utf8Console() { SetConsoleOutputCP(_codePage); }
    Utf8Console(const Utf8Console&) = delete;
    Utf8Console& operator=(const Utf8Console&) = delete;

private:
    UINT _codePage = GetConsoleOutputCP();
};

std::string utf8(const wchar_t* wide) {
    const int size = WideCharToMultiByte(CP_UTF8, 0, wide, -1, nullptr, 0, nullptr, nullptr);
    std::string text(static_cast<size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, wide, -1, text.data(), size, nullptr, nullptr);
    return text;
}
#endif

} // namespace

#ifdef _WIN32

extern "C" {

int _dowildcard = -1; // Names like *.swf are expanded at the start: the command interpreter leaves them as they are.

// The arguments are UTF-8 from here on, whatever the code page.
int wmain(int argc, wchar_t** argv) {
    _setmode(_fileno(stdin), _O_BINARY);
    _setmode(_fileno(stdout), _O_BINARY);
    const Utf8Console console;
    zelk::takeLongPaths();
    std::vector<std::string> texts;
    std::transform(argv, argv + argc, std::back_inserter(texts), utf8);
    std::vector<char*> arguments;
    for (std::string& text : texts)
        arguments.push_back(text.data());
    return run(argc, arguments.data());
}
}

#else

int main(int argc, char** argv) { return run(argc, argv); }

#endif
