#include "DocumentViewList.h"

#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>
#include <QVBoxLayout>

#include <algorithm>

#include "AttributeText.h"
#include "CommandTable.h"
#include "ElementInsertion.h"
#include "Exceptions.h"
#include "InsertElementDlg.h"
#include "TagCheck.h"
#include "TagEditorDlg.h"
#include "TagListModel.h"
#include "TagText.h"

namespace zelk {

using namespace guicommand;
using namespace guicommand::documentviewlist;

namespace {

// What the program opens and selects by itself.
constexpr qsizetype mostOpened = 2000;   // sprites
constexpr qsizetype mostSelected = 2000; // runs of rows

QByteArray idOf(std::string_view element) {
    return QByteArray::fromStdString(attributeText(startTagOf(element), "Id").value_or(""));
}

} // namespace

DocumentViewList::DocumentViewList(TaggedText& text, QWidget* parent)
    : QWidget(parent), _text(text), _history(text.view()), _controller(text),
      _model(new TagListModel(_controller, this)), _header(new QLabel(this)), _counts(new QLabel(this)),
      _filter(new QLineEdit(this)), _tree(new TagTree(this)) {
    buildLayout();
    connectTree();
    setFocusProxy(_tree);
}

void DocumentViewList::buildLayout() {
    _header->setTextFormat(Qt::PlainText);
    _header->setToolTip(tr("Double-click to change the movie's settings"));
    _header->setMinimumWidth(80); // In narrow windows its end is cut off.
    _header->installEventFilter(this);
    _counts->setForegroundRole(QPalette::PlaceholderText);
    _filter->setPlaceholderText(tr("Filter"));
    _filter->setClearButtonEnabled(true);
    _filter->setAccessibleName(tr("Filter"));
    _tree->setAccessibleName(tr("Tags"));
    _filter->setMinimumWidth(120);
    _filter->setMaximumWidth(260);
    _filter->installEventFilter(this);
    _tree->setModel(_model);
    auto* top = new QHBoxLayout;
    top->setContentsMargins(6, 4, 6, 4);
    top->addWidget(_header, 1);
    top->addWidget(_counts);
    top->setSpacing(8);
    top->addWidget(_filter, 1);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addLayout(top);
    layout->addWidget(_tree);
}

void DocumentViewList::connectTree() {
    connect(_filter, &QLineEdit::textChanged, this, &DocumentViewList::showFilter);
    connect(_tree->selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this](const QModelIndex& current, const QModelIndex& previous) {
                if (tagOf(current) != tagOf(previous))
                    Q_EMIT currentTagChanged();
            });
    connect(_tree->selectionModel(), &QItemSelectionModel::selectionChanged, this, &DocumentViewList::selectionChanged);
    connect(_tree, &QTreeView::expanded, this,
            [this](const QModelIndex& row) { rememberExpanded(TagListModel::keyOf(row), true); });
    connect(_tree, &QTreeView::collapsed, this,
            [this](const QModelIndex& row) { rememberExpanded(TagListModel::keyOf(row), false); });
    connect(_tree, &TagTree::editAsked, this, &DocumentViewList::activate);
    connect(_tree, &TagTree::deleteAsked, this, [this] { Q_EMIT commandAsked(CommandId::clear); });
    connect(_tree, &TagTree::insertAsked, this, [this] { Q_EMIT commandAsked(CommandId::insert); });
    connect(_tree, &TagTree::duplicateAsked, this, [this] { Q_EMIT commandAsked(CommandId::duplicateTags); });
    connect(_tree, &TagTree::moveAsked, this, [this](TagTree::Step step) { moveTo(positionOfStep(step)); });
    connect(_tree, &TagTree::dropped, this,
            [this](const QModelIndex& target, TagTree::Drop where) { moveTo(positionOfDrop(target, where)); });
    connect(_tree, &QWidget::customContextMenuRequested, this,
            [this](const QPoint& position) { Q_EMIT menuAsked(_tree->viewport()->mapToGlobal(position)); });
}

bool DocumentViewList::eventFilter(QObject* watched, QEvent* event) {
    if (watched == _header && event->type() == QEvent::MouseButtonDblClick) {
        Q_EMIT commandAsked(CommandId::movieSettings);
        return true;
    }
    if (watched == _filter && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Escape)
            _filter->clear();
        if (key == Qt::Key_Escape || key == Qt::Key_Down || key == Qt::Key_Return || key == Qt::Key_Enter) {
            _tree->setFocus();
            if (!hasSelection()) // The keyboard alone makes the first row the current one without selecting it.
                _tree->setCurrentIndex(_tree->currentIndex().isValid() ? _tree->currentIndex() : _model->index(0, 0));
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

// --- what is shown ---------------------------------------------------------------------------------------------------

void DocumentViewList::rebuild(TagSelection kept) {
    const int scrolled = _tree->verticalScrollBar()->value();
    _model->beginChange();
    try {
        _controller.refresh(std::move(kept));
    } catch (...) {
        _model->endChange();
        throw;
    }
    _model->endChange();
    expandAsBefore();
    _tree->verticalScrollBar()->setValue(scrolled);
    _header->setText(QString::fromStdString(headerLine(movieSettings(_text.movieElement()))));
    showCounts();
}

void DocumentViewList::refresh() {
    if (_controller.isCurrent())
        return;
    rebuild();
    Q_EMIT currentTagChanged();
}

// Ids are those of sprites; tags with code and classes have names.
QByteArray DocumentViewList::nameOfExpanded(uint32_t key) const {
    const std::string_view element = _text.text().substr(_controller.start(key));
    if (!ListViewController::isCode(key) && !_controller.hasCode(key))
        return idOf(element);
    const auto name = QByteArray::fromStdString(attributeText(startTagOf(element), "Name").value_or(""));
    return ListViewController::isCode(key) ? nameOfExpanded(_controller.tagOf(key)) + '/' + name : name;
}

void DocumentViewList::rememberExpanded(uint32_t key, bool isExpanded) {
    if (!_controller.isCurrent())
        return;
    const bool isOfCode = ListViewController::isCode(key) || _controller.hasCode(key);
    QSet<QByteArray>& names = isOfCode ? _expandedCode : _expanded;
    if (isExpanded)
        names.insert(nameOfExpanded(key));
    else
        names.remove(nameOfExpanded(key));
}

void DocumentViewList::expandAsBefore() {
    const TagIndex& index = _controller.tags();
    const QSignalBlocker quiet(_tree);
    qsizetype opened = 0;
    for (uint32_t tag : _controller.openedByFilter()) {
        if (++opened < mostOpened)
            _tree->expand(_model->indexOf(tag));
    }
    if (_expanded.isEmpty() && _expandedCode.isEmpty())
        return;
    for (uint32_t tag = 0; tag < index.count(); ++tag) {
        if (!_controller.isShown(tag))
            continue;
        if (index.childCount(tag) != 0 && _expanded.contains(idOf(_text.element(tag))))
            _tree->expand(_model->indexOf(tag));
        else if (!_expandedCode.isEmpty() && _controller.hasCode(tag))
            expandCode(tag);
    }
}

void DocumentViewList::expandCode(uint32_t tag) {
    if (!_expandedCode.contains(nameOfExpanded(tag)))
        return;
    _tree->expand(_model->indexOf(tag));
    if (_expandedCode.size() == 1)
        return;
    for (uint32_t row = 0; row < _controller.rowCount(tag); ++row) {
        const uint32_t key = _controller.rowAt(tag, row);
        if (_controller.hasRows(key) && _expandedCode.contains(nameOfExpanded(key)))
            _tree->expand(_model->indexOf(key));
    }
}

void DocumentViewList::setCharacters(std::shared_ptr<const CharacterIndex> characters) {
    _controller.setCharacters(std::move(characters));
    _tree->viewport()->update();
}

void DocumentViewList::showFilter() {
    const uint32_t current = currentTag();
    _model->beginChange();
    _controller.setFilter(_filter->text());
    _model->endChange();
    expandAsBefore();
    showCounts();
    if (current != TagIndex::movie && _controller.isShown(current))
        select(current);
    else
        Q_EMIT currentTagChanged();
    Q_EMIT selectionChanged();
}

void DocumentViewList::showCounts() {
    const auto all = _controller.tags().count();
    _counts->setText(_controller.filter().isEmpty() ? tr("%1 tags").arg(all)
                                                    : tr("%1 of %2").arg(_controller.shownCount()).arg(all));
}

QString DocumentViewList::headerText() const { return _header->text(); }

void DocumentViewList::openFilter() {
    _filter->setFocus();
    _filter->selectAll();
}

// --- selection -------------------------------------------------------------------------------------------------------

void DocumentViewList::select(uint32_t tag) {
    if (!_controller.isShown(tag))
        _filter->clear();
    const QModelIndex row = _model->indexOf(tag);
    _tree->setCurrentIndex(row);
    _tree->scrollTo(row);
}

uint32_t DocumentViewList::tagOf(const QModelIndex& row) const { return _controller.tagOf(TagListModel::keyOf(row)); }

uint32_t DocumentViewList::currentTag() const { return tagOf(_tree->currentIndex()); }

std::optional<size_t> DocumentViewList::currentCode() const {
    const uint32_t key = TagListModel::keyOf(_tree->currentIndex());
    return ListViewController::isCode(key) ? std::optional(_controller.start(key)) : std::nullopt;
}

bool DocumentViewList::holdsTags(const QItemSelectionRange& range) {
    return !ListViewController::isCode(TagListModel::keyOf(range.topLeft()));
}

bool DocumentViewList::hasSelection() const {
    const QItemSelection ranges = _tree->selectionModel()->selection();
    return std::any_of(ranges.begin(), ranges.end(), holdsTags);
}

TagSelection DocumentViewList::selection() const {
    TagSelection paths;
    // selectedRows() looks at every range for every row.
    for (const QItemSelectionRange& range : _tree->selectionModel()->selection()) {
        if (!holdsTags(range))
            continue;
        for (int row = range.top(); row <= range.bottom(); ++row)
            paths.push_back(_controller.tags().path(TagListModel::keyOf(_model->index(row, 0, range.parent()))));
    }
    return paths;
}

TagPath DocumentViewList::currentPath() const { return _controller.tags().path(currentTag()); }

// The tag there; what is next to it, if there is none or the filter hides it.
void DocumentViewList::selectNear(TagPath path) {
    const TagIndex& index = _controller.tags();
    while (!path.empty() && index.find(path) == TagIndex::movie) {
        if (path.back() == 0)
            path.pop_back();
        else
            --path.back();
    }
    const uint32_t found = index.find(path);
    if (found == TagIndex::movie)
        return;
    uint32_t tag = found;
    while (tag < index.count() && !_controller.isShown(tag))
        ++tag;
    if (tag == index.count()) {
        for (tag = found; tag != TagIndex::movie && !_controller.isShown(tag);) // TagIndex::movie comes before 0
            --tag;
    }
    if (tag != TagIndex::movie)
        select(tag);
}

// The first of them becomes the current one.
void DocumentViewList::selectPaths(TagSelection paths) {
    const TagIndex& index = _controller.tags();
    std::ranges::sort(paths);
    select(index.find(paths.front()));
    QItemSelection rows;
    for (size_t i = 0; i < paths.size() && rows.size() < mostSelected;) {
        const QModelIndex first = _model->indexOf(index.find(paths[i]));
        QModelIndex last = first;
        // Neighbours in one piece: each piece costs time.
        while (++i < paths.size()) {
            const QModelIndex next = _model->indexOf(index.find(paths[i]));
            if (next.parent() != last.parent() || next.row() != last.row() + 1)
                break;
            last = next;
        }
        rows.append(QItemSelectionRange(first, last));
    }
    _tree->selectionModel()->select(rows, QItemSelectionModel::Select | QItemSelectionModel::Rows);
}

// --- commands --------------------------------------------------------------------------------------------------------

bool DocumentViewList::handles(int id) {
    constexpr int ids[] = {CommandId::undo,      CommandId::redo,  CommandId::cut,     CommandId::copy,
                           CommandId::paste,     CommandId::clear, CommandId::insert,  CommandId::insertTag,
                           CommandId::selectAll, CommandId::find,  CommandId::editTag, CommandId::duplicateTags};
    return std::ranges::find(ids, id) != std::end(ids);
}

void DocumentViewList::run(Session& session, int id) {
    switch (id) {
    case CommandId::undo:
        if (_history.undo())
            showResult();
        break;
    case CommandId::redo:
        if (_history.redo(session))
            showResult();
        break;
    case CommandId::cut: execute(session, std::make_shared<CutCmd>(_text, _clipboard, selection())); break;
    case CommandId::copy: {
        CopyCmd command(_text, _clipboard, selection());
        runCommand(session, command);
        break;
    }
    case CommandId::paste: execute(session, std::make_shared<PasteCmd>(_text, _clipboard, positionToInsert())); break;
    case CommandId::clear: execute(session, std::make_shared<DeleteCmd>(_text, selection())); break;
    case CommandId::duplicateTags:
        execute(session, std::make_shared<DuplicateCmd>(_text, selection(), positionToInsert()));
        break;
    case CommandId::editTag: activate(); break;
    case CommandId::insert:
    case CommandId::insertTag: insertNew(session); break;
    case CommandId::selectAll: _tree->selectAll(); break;
    case CommandId::find: openFilter(); break;
    default: break;
    }
}

void DocumentViewList::activate() {
    if (const auto place = currentCode())
        Q_EMIT placeAsked(*place);
    else if (currentTag() != TagIndex::movie)
        Q_EMIT executeAsked(
            std::make_shared<EditSingleTagCmd>(_text, tagEditor(), _controller.tags().path(currentTag())));
}

void DocumentViewList::execute(Session& session, const CommandPtr& command) {
    if (_history.execute(session, command))
        showResult();
}

void DocumentViewList::showChange() {
    if (!_controller.isCurrent())
        rebuildAt({}, currentPath(), currentPath());
}

void DocumentViewList::showResult() {
    if (const auto* command = dynamic_cast<const TagListCmd*>(_history.last()))
        rebuildAt(command->shown(), command->place());
    else
        rebuildAt({}, currentPath());
}

// A tag that was changed, and what a command put there, stay in sight under a filter that does not match them.
void DocumentViewList::rebuildAt(const TagSelection& paths, const TagPath& place, const TagPath& changed) {
    try {
        rebuild(changed.empty() ? paths : TagSelection{changed});
    } catch (const XmlException&) {
        Q_EMIT listLost();
        return;
    }
    if (paths.empty())
        selectNear(place);
    else
        selectPaths(paths);
    Q_EMIT currentTagChanged();
}

void DocumentViewList::insertNew(Session& session) {
    const MovieLayout layout = layoutAtStart(_text.text());
    const auto choices = tagChoices(xml2swf::XmlVocabulary::get(layout.fullForm));
    TagPath before = positionToInsert();
    const bool isFirst = before.back()-- == 0;
    const std::string_view name = isFirst ? "" : elementName(_text.element(_controller.tags().find(before)));
    InsertElementDlg dialog(tr("Insert Tag Template"), choices, likelyTag(name), this);
    if (dialog.exec() != QDialog::Accepted)
        return;
    const std::optional<std::string> element = tagEditor().editTag(xml2swf::newElementText(dialog.choice()), layout);
    if (element)
        execute(session, std::make_shared<InsertCmd>(_text, std::vector{trimmed(*element)}, positionToInsert()));
}

TagEditorDlg& DocumentViewList::tagEditor() {
    if (_editor == nullptr)
        _editor = new TagEditorDlg(this, _text);
    return *_editor;
}

// --- positions -------------------------------------------------------------------------------------------------------

TagPath DocumentViewList::positionToInsert() const {
    const TagIndex& index = _controller.tags();
    if (TagPath behind = positionBehind(selection()); !behind.empty())
        return behind;
    if (currentTag() == TagIndex::movie)
        return {index.childCount(TagIndex::movie)};
    TagPath position = index.path(currentTag());
    ++position.back();
    return position;
}

TagPath DocumentViewList::positionOfStep(TagTree::Step step) const {
    const TagIndex& index = _controller.tags();
    TagSelection selected = selection();
    if (selected.empty())
        return {};
    std::ranges::sort(selected);
    TagPath first = selected.front(), last = selected.back();
    switch (step) {
    case TagTree::Step::up:
        if (first.back() == 0)
            return {};
        --first.back();
        return first;
    case TagTree::Step::down: last.back() += 2; return last;
    case TagTree::Step::out:
        first.pop_back();
        if (!first.empty())
            ++first.back();
        return first;
    case TagTree::Step::in: break;
    }
    if (first.back() == 0)
        return {};
    --first.back();
    const uint32_t before = index.find(first);
    if (elementName(_text.element(before)) != "DefineSprite")
        return {};
    first.push_back(index.childCount(before));
    return first;
}

TagPath DocumentViewList::positionOfDrop(const QModelIndex& target, TagTree::Drop where) const {
    const TagIndex& index = _controller.tags();
    if (!target.isValid())
        return {index.childCount(TagIndex::movie)};
    const uint32_t tag = tagOf(target);
    TagPath position = index.path(tag);
    const bool isSprite = elementName(_text.element(tag)) == "DefineSprite";
    if (where == TagTree::Drop::on && isSprite)
        position.push_back(index.childCount(tag));
    else if (where == TagTree::Drop::below && isSprite && _tree->isExpanded(target.siblingAtColumn(0)))
        position.push_back(0); // The line is drawn between the sprite and the first tag in it.
    else if (where != TagTree::Drop::above)
        ++position.back();
    return position;
}

void DocumentViewList::moveTo(const TagPath& position) {
    if (!position.empty())
        Q_EMIT executeAsked(std::make_shared<MoveCmd>(_text, selection(), position));
}

} // namespace zelk
