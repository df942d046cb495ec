#include "WarningsPanel.h"

#include <QListWidget>

namespace zelk {

WarningsPanel::WarningsPanel(QWidget* parent) : QDockWidget(tr("Warnings"), parent), _list(new QListWidget(this)) {
    setObjectName(QStringLiteral("warnings"));
    setAllowedAreas(Qt::BottomDockWidgetArea | Qt::RightDockWidgetArea);
    _list->setUniformItemSizes(true);
    setWidget(_list);
    connect(_list, &QListWidget::itemActivated, this, [this] {
        if (static_cast<size_t>(_list->currentRow()) >= _warnings.size())
            return; // It says that there is none.
        const DocumentWarning& warning = _warnings.at(static_cast<size_t>(_list->currentRow()));
        if (warning.row != 0)
            Q_EMIT placeChosen(warning.row, warning.column);
    });
    hide();
}

void WarningsPanel::setWarnings(const DocumentWarnings& warnings) {
    _warnings = warnings;
    _list->clear();
    for (const DocumentWarning& warning : warnings) {
        QString text = QString::fromStdString(warning.text);
        if (warning.row != 0 && !text.contains(QStringLiteral("row ")))
            text = tr("row %1: %2").arg(warning.row).arg(text);
        _list->addItem(text);
    }
    if (warnings.empty())
        _list->addItem(tr("The last conversion gave no warnings."));
}

void WarningsPanel::open() {
    show();
    raise();
    _list->setCurrentRow(0);
    _list->setFocus();
}

} // namespace zelk
