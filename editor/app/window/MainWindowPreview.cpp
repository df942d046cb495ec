// The preview pane and where it takes its tags from.
#include "MainWindow.h"
#include "preview/PreviewPane.h"

namespace zelk {

void MainWindow::addPreview() {
    _preview = new PreviewPane(this);
    addDockWidget(Qt::RightDockWidgetArea, _preview);
    QAction* action = _actions->action(CommandId::preview);
    action->setCheckable(true);
    _handlers[CommandId::preview] = [this] { _preview->setVisible(_preview->isHidden()); };
    // Not by way of the window: the pane is hidden once more when the window is half gone.
    const auto showState = [pane = _preview, action] { action->setChecked(!pane->isHidden()); };
    connect(_preview, &QDockWidget::visibilityChanged, action, showState);
    connect(action, &QAction::triggered, _preview, showState);
    connect(_tabs, &QTabWidget::currentChanged, this, &MainWindow::choosePreviewed);
}

void MainWindow::choosePreviewed() {
    DocumentView* view = _tabs->current();
    const auto tag = view == nullptr ? std::nullopt : view->listedTag();
    if (tag)
        _preview->showTag(view->editor(), {tag->first, tag->second});
    else
        _preview->showCaret(view == nullptr ? nullptr : &view->editor());
}

} // namespace zelk
