#include "Conversion.h"
#include "DocumentViewTextCommands.h"

namespace zelk::guicommand::documentviewtext {

bool CheckXmlCmd::Execute() {
    ThreadParams params;
    const std::string_view text = _view.text(); // The user cannot change it while the job runs.
    _session.user.runJob("Checking", params, [text] { xml2swf::checkXml(text); });
    _session.user.inform(xmlIsCorrect());
    return true;
}

} // namespace zelk::guicommand::documentviewtext
