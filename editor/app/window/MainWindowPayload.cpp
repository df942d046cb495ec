// Payloads of tags.
#include "MainWindow.h"
#include "PayloadCommands.h"

namespace zelk {

using namespace guicommand::documentviewtext;

void MainWindow::exportPayloadAt(DocumentView& view, size_t offset) {
    _dialogs.setPayloadFolder(view.document());
    ExportPayloadCmd command(_session, view, offset);
    execute(command, &view);
}

void MainWindow::replacePayloadAt(DocumentView& view, size_t offset) {
    _dialogs.setPayloadFolder(view.document());
    ImportPayloadCmd command(_session, view, offset);
    execute(command, &view);
}

} // namespace zelk
