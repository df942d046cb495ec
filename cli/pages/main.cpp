#include <cstdio>
#include <string_view>

#include "Commands.h"
#include "Pages.h"

// zelkc_pages man|bash|zsh prints one of the pages; the build writes them to files.
int main(int argc, char** argv) {
    CLI::App app(zelkc::summary, "zelkc");
    zelkc::Command chosen;
    zelkc::addCommands(app, chosen);
    const std::string_view wanted = argc == 2 ? argv[1] : "";
    std::string page;
    if (wanted == "man")
        page = zelkc::manPage(app);
    else if (wanted == "bash")
        page = zelkc::bashCompletion(app);
    else if (wanted == "zsh")
        page = zelkc::zshCompletion(app);
    else
        return 2;
    return std::fwrite(page.data(), 1, page.size(), stdout) == page.size() ? 0 : 1;
}
