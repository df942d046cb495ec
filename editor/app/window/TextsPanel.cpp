#include "TextsPanel.h"

#include <QApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QThreadPool>
#include <QTreeView>

#include "TextsModel.h"

namespace zelk {

TextsPanel::TextsPanel(QWidget* parent)
    : ListPanel(tr("Texts"), QStringLiteral("texts"), Place::bottom, parent), _model(new TextsModel(this)) {
    list().setModel(_model);
    list().setRootIsDecorated(false);
    list().setSelectionMode(QAbstractItemView::ExtendedSelection);
    list().setEditTriggers(QAbstractItemView::EditKeyPressed);
    list().header()->setStretchLastSection(false);
    list().header()->setSectionResizeMode(TextsModel::text, QHeaderView::Stretch);
    list().setColumnWidth(TextsModel::tag, 260);
    list().setColumnWidth(TextsModel::limit, 140);
    _later.setSingleShot(true);
    _later.setInterval(400);
    connect(&_later, &QTimer::timeout, this, &TextsPanel::read);
    connect(&filter(), &QLineEdit::textChanged, this, [this](const QString& text) {
        _model->setFilter(text);
        showCount();
    });
    connect(&list(), &QTreeView::activated, this, [this](const QModelIndex& index) { choose(index, false); });
    connect(&list(), &QTreeView::clicked, this, [this](const QModelIndex& index) { choose(index, true); });
    connect(_model, &TextsModel::changeAsked, this, [this](const QModelIndex& index, const QString& text) {
        if (const DocumentText* which = _model->textOf(index))
            change(*which, text);
    });
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
    words().setText(shown == all ? tr("%1 texts").arg(all) : tr("%1 of %2 texts").arg(shown).arg(all));
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
        words().setText(tr("The texts are read when the XML is right: %1").arg(problem));
        return;
    }
    const DocumentText* current = _model->textOf(list().currentIndex());
    const std::string key = current == nullptr ? std::string() : current->text.key;
    if (!list().isPersistentEditorOpen(list().currentIndex()))
        _model->setTexts(std::move(texts));
    list().setCurrentIndex(_model->indexOf(key));
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
        words().setText(problem);
    } else if (_view->changeCount() != change) {
        words().setText(tr("The document was edited meanwhile; the text stays as it was."));
    } else {
        _view->replace(edit.start, edit.end, edit.text);
    }
}

void TextsPanel::choose(const QModelIndex& index, bool staysInList) {
    const DocumentText* text = _model->textOf(index);
    if (text != nullptr && _view != nullptr && text->start < _view->text().size())
        Q_EMIT chosen(text->start, staysInList);
}

QString TextsPanel::lineOf(const QModelIndex& index) const { return _model->lineOf(index); }

bool TextsPanel::takeKey(QObject* watched, QKeyEvent& event) {
    if (watched != &list() || event.key() != Qt::Key_F2 || !list().currentIndex().isValid())
        return false;
    list().edit(list().currentIndex().siblingAtColumn(TextsModel::text));
    return true;
}

} // namespace zelk
