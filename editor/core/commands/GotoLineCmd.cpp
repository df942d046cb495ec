#include "DocumentViewTextCommands.h"

namespace zelk::guicommand::documentviewtext {

bool GotoLineCmd::Execute() {
    const std::optional<uint32_t> row = _session.user.askForRow(_view.row(), _view.rowCount());
    if (row)
        _view.gotoPlace(*row, 1);
    return row.has_value();
}

} // namespace zelk::guicommand::documentviewtext
