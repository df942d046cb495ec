#include "TextsPanel.h"

#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QThreadPool>
#include <QTreeView>
#include <QVBoxLayout>

#include "CommandTable.h"
#include "TextsModel.h"

namespace zelk {

TextsPanel::TextsPanel(QWidget* parent)
    : QDockWidget(tr("Texts"), parent), _model(new TextsModel(this)), _filter(new QLineEdit(this)),
      _message(new QLabel(this)), _list(new QTreeView(this)) {
    setObjectName(QStringLiteral("texts"));
    setAllowedAreas(Qt::BottomDockWidgetArea | Qt::RightDockWidgetArea);
    _filter->setPlaceholderText(tr("Filter"));
    _filter->setClearButtonEnabled(true);
    _filter->setMaximumWidth(260);
    _message->setForegroundRole(QPalette::PlaceholderText);
    _list->setModel(_model);
    _list->setRootIsDecorated(false);
    _list->setUniformRowHeights(true);
    _list->setSelectionMode(QAbstractItemView::ExtendedSelection);
    _list->setEditTriggers(QAbstractItemView::EditKeyPressed);
    _list->header()->setStretchLastSection(false);
    _list->header()->setSectionResizeMode(TextsModel::text, QHeaderView::Stretch);
    _list->setColumnWidth(TextsModel::tag, 260);
    _list->setColumnWidth(TextsModel::limit, 140);
    buildLayout();
    _later.setSingleShot(true);
    _later.setInterval(400);
    for (QWidget* widget : {static_cast<QWidget*>(_filter), static_cast<QWidget*>(_list)})
        widget->installEventFilter(this);
    connect(&_later, &QTimer::timeout, this, &TextsPanel::read);
    connect(_filter, &QLineEdit::textChanged, this, [this](const QString& text) {
        _model->setFilter(text);
        showCount();
    });
    connect(_list, &QTreeView::activated, this, [this](const QModelIndex& index) { choose(index, false); });
    connect(_list, &QTreeView::clicked, this, [this](const QModelIndex& index) { choose(index, true); });
    connect(_model, &TextsModel::changeAsked, this, [this](const QModelIndex& index, const QString& text) {
        if (const DocumentText* which = _model->textOf(index))
            change(*which, text);
    });
    connect(this, &QDockWidget::visibilityChanged, this, [this](bool isShown) {
        if (isShown)
            read();
    });
    hide();
}

void TextsPanel::buildLayout() {
    auto* top = new QHBoxLayout;
    top->setContentsMargins(6, 2, 6, 2);
    top->addWidget(_message, 1);
    top->addWidget(_filter, 1);
    auto* content = new QWidget(this);
    auto* layout = new QVBoxLayout(content);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addLayout(top);
    layout->addWidget(_list);
    setWidget(content);
}

// --- what is shown ---------------------------------------------------------------------------------------------------

void TextsPanel::showDocument(DocumentView* view) {
    if (view == _view)
        return;
    disconnect(_edits);
    _view = view;
    _model->setTexts({});
    showCount();
    if (view != nullptr)
        _edits = connect(&view->editor(), &TextControl::edited, &_later, qOverload<>(&QTimer::start));
    read();
}

void TextsPanel::showCount() {
    const size_t all = _model->count();
    const auto shown = static_cast<size_t>(_model->rowCount());
    _message->setText(shown == all ? tr("%1 texts").arg(all) : tr("%1 of %2 texts").arg(shown).arg(all));
}

// One reading at a time, on a thread and of a copy; what was edited meanwhile is read after it.
void TextsPanel::read() {
    if (!isVisible() || _view == nullptr || _isReading ||
        (_readView == _view && _readChange == _view->changeCount() && _model->count() != 0))
        return;
    _isReading = true;
    _readView = _view;
    const uint64_t change = _view->changeCount();
    QThreadPool::globalInstance()->start([panel = QPointer(this), change, text = std::string(_view->text())] {
        std::vector<DocumentText> texts;
        QString problem;
        try {
            texts = documentTexts(text);
        } catch (const std::exception& error) {
            problem = QString::fromUtf8(error.what());
        }
        QMetaObject::invokeMethod(qApp, [panel, change, texts = std::move(texts), problem]() mutable {
            if (panel != nullptr)
                panel->take(change, std::move(texts), problem);
        });
    });
}

void TextsPanel::take(uint64_t change, std::vector<DocumentText> texts, const QString& problem) {
    _isReading = false;
    if (_readView != _view || _view == nullptr) { // another document came up
        read();
        return;
    }
    _readChange = change;
    if (!problem.isEmpty()) { // of a text that is being edited: the list stays
        _message->setText(tr("The texts are read when the XML is right: %1").arg(problem));
        return;
    }
    const DocumentText* current = _model->textOf(_list->currentIndex());
    const std::string key = current == nullptr ? std::string() : current->text.key;
    if (!_list->isPersistentEditorOpen(_list->currentIndex()))
        _model->setTexts(std::move(texts));
    _list->setCurrentIndex(_model->indexOf(key));
    showCount();
    if (_view->changeCount() != change)
        _later.start();
}

// --- what the user does ----------------------------------------------------------------------------------------------

void TextsPanel::change(const DocumentText& which, const QString& text) {
    if (_view == nullptr)
        return;
    const uint64_t count = _view->changeCount();
    QThreadPool::globalInstance()->start([panel = QPointer(this), count, which = which.text, value = text.toStdString(),
                                          document = std::string(_view->text())] {
        TextChange edit{};
        QString problem;
        try {
            edit = documentTextChange(document, which, value);
        } catch (const std::exception& error) {
            problem = QString::fromStdString(which.key + ": " + error.what());
        }
        QMetaObject::invokeMethod(qApp, [panel, count, edit = std::move(edit), problem] {
            if (panel != nullptr)
                panel->finishChange(count, edit, problem);
        });
    });
}

void TextsPanel::finishChange(uint64_t change, const TextChange& edit, const QString& problem) {
    if (_view == nullptr)
        return;
    if (!problem.isEmpty()) {
        _message->setText(problem);
    } else if (_view->changeCount() != change) {
        _message->setText(tr("The document was edited meanwhile; the text stays as it was."));
    } else {
        _view->replace(edit.start, edit.end, edit.text);
    }
}

void TextsPanel::toggle() {
    if (isVisible()) {
        hide();
        Q_EMIT left();
        return;
    }
    show();
    raise();
    _list->setFocus();
}

bool TextsPanel::run(int id) {
    const QWidget* focus = QApplication::focusWidget();
    if (focus != _list && focus != _filter)
        return false;
    switch (id) {
    case CommandId::find:
        _filter->setFocus();
        _filter->selectAll();
        return true;
    case CommandId::copy: copy(); return true;
    case CommandId::selectAll: _list->selectAll(); return true;
    default: return false;
    }
}

void TextsPanel::copy() const {
    QModelIndexList rows = _list->selectionModel()->selectedRows();
    std::ranges::sort(rows, {}, [](const QModelIndex& index) { return index.row(); });
    QString lines;
    for (const QModelIndex& index : rows)
        lines += _model->lineOf(index) + u'\n';
    if (!lines.isEmpty())
        QApplication::clipboard()->setText(lines);
}

void TextsPanel::choose(const QModelIndex& index, bool staysInList) {
    const DocumentText* text = _model->textOf(index);
    if (text != nullptr && _view != nullptr && text->start < _view->text().size())
        Q_EMIT chosen(text->start, staysInList);
}

bool TextsPanel::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress) {
        // The command is there only while the text has a selection.
        if (watched == _list && static_cast<QKeyEvent*>(event)->matches(QKeySequence::Copy)) {
            copy();
            return true;
        }
        if (handleKey(watched, static_cast<QKeyEvent*>(event)->key()))
            return true;
    }
    return QDockWidget::eventFilter(watched, event);
}

bool TextsPanel::handleKey(QObject* watched, int key) {
    if (key == Qt::Key_Escape && _filter->text().isEmpty()) {
        Q_EMIT left();
        return true;
    }
    if (watched == _list && key == Qt::Key_F2 && _list->currentIndex().isValid()) {
        _list->edit(_list->currentIndex().siblingAtColumn(TextsModel::text));
        return true;
    }
    const bool isDone = watched == _filter && (key == Qt::Key_Down || key == Qt::Key_Return || key == Qt::Key_Enter);
    if (key == Qt::Key_Escape)
        _filter->clear();
    else if (!isDone)
        return false;
    _list->setFocus();
    if (!_list->currentIndex().isValid())
        _list->setCurrentIndex(_model->index(0, 0));
    return true;
}

} // namespace zelk
