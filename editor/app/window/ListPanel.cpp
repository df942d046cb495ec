#include "ListPanel.h"

#include <QApplication>
#include <QClipboard>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QTreeView>
#include <QVBoxLayout>
#include <algorithm>

#include "CommandTable.h"

namespace zelk {

ListPanel::ListPanel(const QString& title, const QString& name, Place place, QWidget* parent)
    : Pane(title, parent), _filter(new QLineEdit(this)), _words(new QLabel(this)), _list(new QTreeView(this)),
      _top(new QHBoxLayout) {
    const bool isWide = place == Place::bottom;
    setObjectName(name);
    setAllowedAreas((isWide ? Qt::BottomDockWidgetArea : Qt::LeftDockWidgetArea) | Qt::RightDockWidgetArea);
    _filter->setPlaceholderText(tr("Filter"));
    _filter->setAccessibleName(tr("Filter"));
    _filter->setClearButtonEnabled(true);
    _words->setForegroundRole(QPalette::PlaceholderText);
    _words->setTextFormat(Qt::PlainText);
    _list->setAccessibleName(title);
    _list->setUniformRowHeights(true);
    _list->setAllColumnsShowFocus(true);
    auto* content = new QWidget(this);
    auto* layout = new QVBoxLayout(content);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addLayout(_top);
    layout->addWidget(_list);
    _top->setContentsMargins(6, 2, 6, 2);
    if (isWide) {
        _filter->setMaximumWidth(260);
        _top->addWidget(_words, 1);
    } else {
        layout->addWidget(_words);
    }
    _top->addWidget(_filter, 1);
    setWidget(content);
    for (QWidget* widget : {static_cast<QWidget*>(_filter), static_cast<QWidget*>(_list)})
        widget->installEventFilter(this);
    connect(this, &QDockWidget::visibilityChanged, this, [this](bool isShown) {
        if (isShown)
            look();
    });
    hide();
}

void ListPanel::open() {
    Pane::open();
    enterList();
}

void ListPanel::enterList() {
    _list->setFocus();
    if (!_list->currentIndex().isValid())
        _list->setCurrentIndex(_list->model()->index(0, 0));
}

bool ListPanel::run(int id) {
    const QWidget* focus = QApplication::focusWidget();
    if (focus != _list && focus != _filter)
        return false;
    switch (id) {
    case CommandId::find:
        if (_filter->isHidden())
            return false;
        _filter->setFocus();
        _filter->selectAll();
        return true;
    case CommandId::copy: return copy();
    case CommandId::selectAll:
        if (_list->selectionMode() != QAbstractItemView::ExtendedSelection)
            return false;
        _list->selectAll();
        return true;
    default: return false;
    }
}

bool ListPanel::copy() const {
    QModelIndexList rows = _list->selectionModel()->selectedRows();
    std::ranges::sort(rows, {}, [](const QModelIndex& index) {
        const QModelIndex outer = index.parent();
        return outer.isValid() ? std::pair(outer.row(), index.row()) : std::pair(index.row(), -1);
    });
    QString lines;
    for (const QModelIndex& index : rows) {
        if (const QString line = lineOf(index); !line.isEmpty())
            lines += line + u'\n';
    }
    if (lines.isEmpty())
        return false;
    QApplication::clipboard()->setText(lines);
    return true;
}

bool ListPanel::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress) {
        auto& key = static_cast<QKeyEvent&>(*event);
        if (takeKey(watched, key))
            return true;
        const int which = key.key();
        if (watched == _filter && (which == Qt::Key_Down || which == Qt::Key_Return || which == Qt::Key_Enter)) {
            enterList();
            return true;
        }
        // The command is there only while the text has a selection.
        if (watched == _list && key.matches(QKeySequence::Copy) && copy())
            return true;
    }
    return Pane::eventFilter(watched, event);
}

void ListPanel::keyPressEvent(QKeyEvent* event) {
    if (event->key() != Qt::Key_Escape || _filter->text().isEmpty())
        return Pane::keyPressEvent(event);
    _filter->clear();
    enterList();
}

} // namespace zelk
