#include "TracePane.h"

#include <QApplication>
#include <QClipboard>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QPlainTextEdit>
#include <QToolBar>

#include "ThemeIcon.h"

namespace zelk {

namespace {

constexpr int mostLines = 10'000; // the oldest go first

// As high as eight lines at first, so that the movie keeps most of the window.
class Lines : public QPlainTextEdit {
public:
    using QPlainTextEdit::QPlainTextEdit;
    QSize sizeHint() const override { return {256, 8 * fontMetrics().lineSpacing() + 2 * frameWidth()}; }
};

} // namespace

TracePane::TracePane(QWidget* parent) : QDockWidget(tr("Trace"), parent), _text(new Lines(this)) {
    setObjectName(QStringLiteral("trace"));
    setAllowedAreas(Qt::BottomDockWidgetArea | Qt::RightDockWidgetArea);
    _text->setReadOnly(true);
    _text->setMaximumBlockCount(mostLines);
    _text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    _text->setPlaceholderText(tr("What the movie writes with trace() stands here."));
    auto* bar = new QToolBar(this);
    bar->setIconSize({16, 16});
    bar->setOrientation(Qt::Vertical);
    bar->addAction(themeIcon(QStringLiteral("copy")), tr("Copy the selection or all lines"), this, &TracePane::copy);
    bar->addAction(themeIcon(QStringLiteral("clear")), tr("Clear"), this, &TracePane::clear);
    auto* content = new QWidget(this);
    auto* layout = new QHBoxLayout(content);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(_text);
    layout->addWidget(bar);
    setWidget(content);
    hide();
}

void TracePane::append(const QStringList& lines) { _text->appendPlainText(lines.join(u'\n')); }

QString TracePane::text() const { return _text->toPlainText(); }

void TracePane::clear() { _text->clear(); }

void TracePane::copy() const {
    if (_text->textCursor().hasSelection())
        _text->copy();
    else
        QApplication::clipboard()->setText(text());
}

} // namespace zelk
