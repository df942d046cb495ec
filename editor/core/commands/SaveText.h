// What both save commands do.
#pragma once

#include "Session.h"

namespace zelk::guicommand::documentview {

/// Writes the document's text to a file and marks the document as saved. Gives the text away. Throws what saveDocument
/// throws, and JobCancelled; the document keeps its state then.
void saveText(Session& session, Document& document, const std::string& fileName);

} // namespace zelk::guicommand::documentview
