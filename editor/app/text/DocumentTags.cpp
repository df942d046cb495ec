#include "DocumentTags.h"

#include <QPointer>
#include <QPromise>
#include <QThreadPool>
#include <algorithm>

#include "TextEditorView.h"

namespace zelk {

namespace {

// Big texts are copied in between other events.
constexpr size_t pieceSize = 1 << 20;
// At whose tags it looks by itself, so long after a change: bytes, milliseconds.
constexpr long smallText = 16 << 20;
constexpr int lookDelay = 400;
// Bytes of a tag that another one uses; a bigger one counts as missing.
constexpr size_t mostCopied = 16 << 20;

} // namespace

DocumentTags& DocumentTags::of(TextEditorView& editor) {
    if (auto* tags = editor.findChild<DocumentTags*>(QString(), Qt::FindDirectChildrenOnly))
        return *tags;
    return *new DocumentTags(editor);
}

DocumentTags::DocumentTags(TextEditorView& editor) : QObject(&editor), _editor(editor) {
    connect(&editor, &TextControl::edited, this, &DocumentTags::forget);
    _looking.setSingleShot(true);
    connect(&_looking, &QTimer::timeout, this, &DocumentTags::find);
    connect(&_copying, &QTimer::timeout, this, &DocumentTags::copyPiece);
    connect(&_search, &QFutureWatcherBase::finished, this, &DocumentTags::take);
}

void DocumentTags::forget() {
    _copying.stop();
    _copy = {};
    _search.setFuture({});
    _map.reset();
    _act = {};
    if (_editor.send(QsciScintillaBase::SCI_GETLENGTH) <= smallText)
        _looking.start(lookDelay);
}

void DocumentTags::find() {
    _looking.stop();
    if (_map != nullptr || _copying.isActive() || _search.isRunning())
        return;
    _copy.reserve(_editor.text().size());
    _copying.start(0);
    copyPiece();
}

void DocumentTags::copyPiece() {
    const std::string_view text = _editor.text();
    _copy.append(text.substr(std::min(_copy.size(), text.size()), pieceSize));
    if (_copy.size() < text.size())
        return;
    _copying.stop();
    startSearch();
}

// The thread knows nothing of this object, which can go while it runs.
void DocumentTags::startSearch() {
    auto promise = std::make_shared<QPromise<MapPointer>>();
    auto text = std::make_shared<std::string>(std::move(_copy));
    _copy = {};
    promise->start();
    _search.setFuture(promise->future());
    QThreadPool::globalInstance()->start([promise, text] {
        MapPointer map;
        try {
            map = std::make_shared<const TagMap>(*text);
        } catch (const std::exception&) { // out of memory
            map = std::make_shared<const TagMap>();
        }
        *text = {};
        promise->addResult(map);
        promise->finish();
    });
}

void DocumentTags::take() {
    if (_search.future().resultCount() == 0)
        return;
    _map = _last = _search.future().result();
    Q_EMIT found();
    if (const auto act = std::exchange(_act, {}))
        act();
}

std::shared_ptr<const CharacterIndex> DocumentTags::characters() const {
    return _last == nullptr ? nullptr : std::shared_ptr<const CharacterIndex>(_last, &_last->characters());
}

void DocumentTags::whenCurrent(std::function<void()> act) {
    if (_map != nullptr)
        return act();
    _act = std::move(act);
    find();
}

std::optional<TagRange> DocumentTags::tagAtCaret() const {
    return _map == nullptr ? std::nullopt : _map->at(_editor.text(), _editor.selection().start);
}

std::string DocumentTags::element(const TagRange& range) const {
    const std::string_view text = _editor.text();
    return range.start < range.end && range.end <= text.size()
               ? std::string(text.substr(range.start, range.end - range.start))
               : std::string();
}

std::string DocumentTags::smallElement(const std::optional<TagRange>& range) const {
    return range && range->end - range->start <= mostCopied ? element(*range) : std::string();
}

} // namespace zelk
