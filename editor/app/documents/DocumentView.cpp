#include "DocumentView.h"

#include <QApplication>
#include <QFileInfo>
#include <QStackedWidget>
#include <QVBoxLayout>

#include "DocumentTags.h"
#include "Exceptions.h"
#include "NoticeBar.h"
#include "UnknownTag.h"
#include "XmlSurroundings.h"

namespace zelk {

DocumentView::DocumentView(QWidget* parent)
    : QWidget(parent), _editor(new TextEditorView(this)), _list(new DocumentViewList(_tags, this)),
      _views(new QStackedWidget(this)) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(_views);
    _views->addWidget(_editor);
    _views->addWidget(_list);
    setFocusProxy(_editor);
    connect(_editor, &TextEditorView::modificationChanged, this, &DocumentView::showModified);
    connect(_editor, &TextEditorView::placeChanged, this, &DocumentView::stateChanged);
    // Commands that know nothing of the list change the text behind it.
    connect(_editor, &TextControl::edited, this, [this] {
        if (showsList())
            _list->showChange();
    });
    followEdits();
    DocumentTags& tags = DocumentTags::of(*_editor);
    connect(&tags, &DocumentTags::found, this, [this, &tags] {
        _list->setCharacters(tags.characters());
        Q_EMIT stateChanged();
    });
    connect(_editor, &TextEditorView::jumped, this, &DocumentView::showCaret);
    connect(_list, &DocumentViewList::selectionChanged, this, &DocumentView::stateChanged);
    connect(_list, &DocumentViewList::currentTagChanged, this, &DocumentView::currentTagChanged);
    connect(_list, &DocumentViewList::placeAsked, this, &DocumentView::jumpTo);
    connect(_list, &DocumentViewList::listLost, this, [this] { showView(_editor); });
}

// Warnings stay at their elements.
void DocumentView::followEdits() {
    const auto text = [this](size_t start, size_t end) { return _editor->copyOf(start, end); };
    connect(_editor, &TextControl::willInsert, this,
            [this](size_t at, size_t length) { _document.warnings.willInsert(at, length); });
    connect(_editor, &TextControl::willDelete, this,
            [this, text](size_t start, size_t end) { _document.warnings.willDelete(start, end, text); });
    connect(_editor, &TextControl::edited, this, [this, text] {
        if (_document.warnings.settle(text))
            Q_EMIT warningsChanged();
    });
}

QString DocumentView::title() const {
    return QFileInfo(fileName()).fileName() + (_document.isModified ? QStringLiteral("*") : QString());
}

void DocumentView::showModified() {
    _document.isModified = _editor->isModified() || _isApart;
    Q_EMIT stateChanged();
}

void DocumentView::setApart(bool isApart) {
    if (std::exchange(_isApart, isApart) != isApart)
        showModified();
}

void DocumentView::setSavePoint() {
    _isApart = false;
    _editor->setSavePoint();
    showModified();
}

NoticeBar* DocumentView::addNotice(const QString& name) {
    dropNotice(name);
    auto* bar = new NoticeBar(this);
    bar->setObjectName(name);
    static_cast<QVBoxLayout*>(layout())->insertWidget(0, bar);
    return bar;
}

NoticeBar* DocumentView::notice(const QString& name) const {
    return findChild<NoticeBar*>(name, Qt::FindDirectChildrenOnly);
}

void DocumentView::dropNotice(const QString& name) {
    NoticeBar* bar = notice(name);
    if (bar == nullptr)
        return;
    const QWidget* focus = QApplication::focusWidget();
    if (focus != nullptr && bar->isAncestorOf(focus))
        setFocus();
    bar->hide();
    bar->setObjectName({}); // One of its own buttons may have called this, so the bar is deleted later.
    bar->deleteLater();
}

void DocumentView::setText(std::string bytes) {
    _isApart = false;
    _editor->setText(std::move(bytes));
}

void DocumentView::gotoPlace(uint32_t row, uint32_t column) {
    _editor->gotoPlace(row, column);
    showCaret();
}

void DocumentView::gotoWarning(WarningList::Entry entry) {
    const size_t start = warnings().offset(entry);
    if (start >= text().size()) // It has no place.
        return;
    // What a check found may be text behind the tag.
    const size_t last = entry.from == WarningList::From::check ? text().size() : text().find('>', start);
    _editor->gotoOffset(std::min(start + warnings().at(entry).inElement, last));
    showCaret();
}

// In the view that is shown.
void DocumentView::showCaret() {
    if (showsList() && _tags.isCurrent()) {
        const uint32_t tag = tagAtCaret();
        if (tag != TagIndex::movie) {
            _list->select(tag);
            _list->setFocus();
            return;
        }
    }
    showView(_editor);
}

bool DocumentView::undo() {
    const bool canUndo = _editor->canUndo();
    _editor->undo();
    return canUndo;
}

bool DocumentView::redo() {
    const bool canRedo = _editor->canRedo();
    _editor->redo();
    return canRedo;
}

// --- the two views ---------------------------------------------------------------------------------------------------

bool DocumentView::showsList() const { return _views->currentWidget() == _list; }

void DocumentView::showView(QWidget* view) {
    _views->setCurrentWidget(view);
    setFocusProxy(view);
    view->setFocus();
    Q_EMIT stateChanged();
    Q_EMIT currentTagChanged();
}

// A caret in the blanks before a tag is at that tag.
uint32_t DocumentView::tagAtCaret() {
    const std::string_view text = _editor->text();
    size_t offset = _editor->caret();
    while (offset < text.size() && (text[offset] == ' ' || text[offset] == '\t'))
        ++offset;
    return _tags.tags().at(offset);
}

void DocumentView::showList() {
    if (showsList())
        return;
    _list->refresh();
    const uint32_t tag = tagAtCaret();
    if (_editor->caret() == _leftCaret && _list->currentTag() != TagIndex::movie)
        ; // where the list was left
    else if (tag != TagIndex::movie)
        _list->select(tag);
    else if (_tags.tags().count() != 0 && _list->currentTag() == TagIndex::movie)
        _list->select(0);
    _leftTag = _list->currentTag();
    _leftCode = _list->currentCode();
    showView(_list);
}

std::optional<std::pair<size_t, size_t>> DocumentView::listedTag() {
    const uint32_t tag = _list->currentTag();
    if (!showsList() || !_list->isCurrent() || tag == TagIndex::movie)
        return std::nullopt;
    return std::pair(_tags.tags().start(tag), _tags.tags().end(tag));
}

QString DocumentView::unknownTag() {
    const std::string_view text = _editor->text();
    std::optional<std::string_view> element;
    if (const auto tag = listedTag())
        element = text.substr(tag->first, tag->second - tag->first);
    else if (!showsList())
        element = unknownElementAt(text, _editor->caret());
    return element ? QString::fromStdString(unknownTagWords(*element, layoutAtStart(text), surroundingsReach))
                   : QString();
}

QString DocumentView::characterWords() {
    DocumentTags& tags = DocumentTags::of(*_editor);
    if (!tags.isCurrent())
        return {};
    const auto listed = listedTag();
    const std::optional<TagRange> tag =
        listed ? std::optional(TagRange{listed->first, listed->second}) : tags.tagAtCaret();
    const CharacterIndex& characters = tags.map()->characters();
    const CharacterId* id = tag ? characters.ofTagAt(tag->start) : nullptr;
    if (id == nullptr)
        return {};
    QStringList names;
    for (const CharacterName& name : characters.names(id->id))
        names.append(QString::fromStdString(name.text));
    const auto all = characters.of(id->id);
    const auto uses = std::ranges::count_if(all, [](const CharacterId& use) { return !isDefinition(use.role); });
    const QString called = names.isEmpty() ? QString() : tr(", called %1").arg(names.join(QStringLiteral(", ")));
    const QString used = uses == 0 ? tr("not used") : uses == 1 ? tr("used once") : tr("used %1 times").arg(uses);
    return tr("Character %1%2, %3").arg(id->id).arg(called, used);
}

std::optional<IdAtPlace> DocumentView::characterId() {
    const auto tag = listedTag();
    return characterIdAt(text(), tag ? tag->first : _editor->caret());
}

void DocumentView::gotoTarget() {
    if (const auto tag = listedTag()) {
        const std::optional<IdAtPlace> id = characterIdAt(text(), tag->first);
        if (id && !isDefinition(id->role))
            _editor->gotoDefinition(id->id);
    } else {
        _editor->followCaret();
    }
}

void DocumentView::showPlace(size_t offset) {
    if (!showsList())
        return _editor->gotoOffset(offset);
    const uint32_t tag = _tags.isCurrent() ? _tags.tags().at(offset) : TagIndex::movie;
    if (tag != TagIndex::movie)
        _list->select(tag);
}

size_t DocumentView::place() {
    const auto tag = listedTag();
    return tag ? tag->first : _editor->selection().start;
}

void DocumentView::showText() {
    if (showsList() && _tags.isCurrent()) {
        const uint32_t tag = _list->currentTag();
        if (tag == _leftTag && _list->currentCode() == _leftCode)
            ; // where the text was left
        else if (const auto code = _list->currentCode())
            _editor->gotoOffset(*code);
        else if (tag != TagIndex::movie && tag != tagAtCaret())
            _editor->gotoOffset(_tags.tags().start(tag));
        _leftCaret = _editor->caret();
    }
    showView(_editor);
}

void DocumentView::jumpTo(size_t offset) {
    _editor->jumpTo(offset);
    showView(_editor);
}

} // namespace zelk
