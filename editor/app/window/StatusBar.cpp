#include "StatusBar.h"

#include <QFileInfo>
#include <QLabel>
#include <QToolButton>
#include <QUrl>

namespace zelk {

StatusBar::StatusBar(QWidget* parent)
    : QStatusBar(parent), _tag(new QLabel(this)), _place(new QLabel(this)), _exported(new QLabel(this)),
      _warnings(new QToolButton(this)) {
    _tag->setTextFormat(Qt::PlainText);
    _tag->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred); // words must not make the window wider
    addWidget(_tag, 1);                                                // A message covers it.
    showTag({});
    _exported->setOpenExternalLinks(true);
    _exported->setTextInteractionFlags(Qt::TextBrowserInteraction); // by Tab and Return, too
    _exported->hide();
    _exported->setObjectName(QStringLiteral("exported"));
    addPermanentWidget(_exported);
    _exportedTime.setSingleShot(true);
    _exportedTime.setInterval(20'000);
    connect(&_exportedTime, &QTimer::timeout, _exported, &QWidget::hide);
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

void StatusBar::showExported(const QString& fileName) {
    const QFileInfo file(fileName);
    const QUrl folder = QUrl::fromLocalFile(file.absolutePath());
    _exported->setText(
        tr("Exported <a href=\"%1\">%2</a>")
            .arg(QString::fromLatin1(folder.toEncoded()).toHtmlEscaped(), file.fileName().toHtmlEscaped()));
    _exported->setToolTip(tr("Open %1").arg(file.absolutePath()).toHtmlEscaped());
    _exported->show();
    _exportedTime.start();
}

void StatusBar::showWarnings(size_t count) {
    _warnings->setVisible(count > 0);
    _warnings->setText(count == 1 ? tr("1 warning") : tr("%1 warnings").arg(count));
}

} // namespace zelk
