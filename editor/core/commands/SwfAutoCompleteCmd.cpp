#include "DocumentViewTextCommands.h"

namespace zelk::guicommand::documentviewtext {

bool SwfAutoCompleteCmd::Execute() {
    const std::optional<Completion> completion = completionAt(_view.text(), _view.caret());
    if (completion)
        _view.showList(*completion);
    return completion.has_value();
}

} // namespace zelk::guicommand::documentviewtext
