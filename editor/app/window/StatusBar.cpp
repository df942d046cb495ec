#include "StatusBar.h"

#include <QLabel>
#include <QToolButton>

namespace zelk {

StatusBar::StatusBar(QWidget* parent)
    : QStatusBar(parent), _tag(new QLabel(this)), _place(new QLabel(this)), _warnings(new QToolButton(this)) {
    _tag->setTextFormat(Qt::PlainText);
    _tag->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred); // words must not make the window wider
    addWidget(_tag, 1);                                                // A message covers it.
    showTag({});
    _warnings->setAutoRaise(true);
    _warnings->setToolTip(tr("Show what was lost on load or save"));
    addPermanentWidget(_warnings);
    addPermanentWidget(_place);
    connect(_warnings, &QToolButton::clicked, this, &StatusBar::warningsAsked);
    showWarnings(0);
}

void StatusBar::showPlace(uint32_t row, uint32_t column) {
    _place->setText(row == 0 ? QString() : tr("Row %1, column %2").arg(row).arg(column));
}

void StatusBar::showTag(const QString& words) {
    _tag->setText(words.isEmpty() ? tr("Ready") : words);
    _tag->setToolTip(words);
}

void StatusBar::showWarnings(size_t count) {
    _warnings->setVisible(count > 0);
    _warnings->setText(count == 1 ? tr("1 warning") : tr("%1 warnings").arg(count));
}

} // namespace zelk
