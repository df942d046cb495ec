// zelkc schema: what a movie's XML may have.
#include <cstdio>

#include "Commands.h"
#include "XmlVocabulary.h"

namespace zelkc {

void addSchema(CLI::App& app, Command& chosen) {
    CLI::App* command = app.add_subcommand("schema", "Print an XML schema (XSD) of the XML form");
    auto fullForm = std::make_shared<std::optional<bool>>();
    addForm(*command, *fullForm, "The form that is described, classic or full");
    command->callback([fullForm, &chosen] {
        chosen = [fullForm] {
            const std::string schema = xml2swf::xmlSchema(fullForm->value_or(false));
            return std::fwrite(schema.data(), 1, schema.size(), stdout) == schema.size() && std::fflush(stdout) == 0
                       ? ExitStatus::done
                       : ExitStatus::badInput;
        };
    });
}

} // namespace zelkc
