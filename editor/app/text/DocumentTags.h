// The tags of a text view, found beside the GUI thread.
#pragma once

#include <QFutureWatcher>
#include <QTimer>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "TagMap.h"

namespace zelk {

class TextEditorView;

/// Knows where the tags stand until the text changes. Of a text that is not big it looks by itself, a moment after each
/// change.
class DocumentTags : public QObject {
    Q_OBJECT
public:
    /// The one of this view; made when it is first asked for, and gone with the view.
    static DocumentTags& of(TextEditorView& editor);

    bool isCurrent() const { return _map != nullptr; }
    /// Begins to look for the tags, unless they are known; found() comes later.
    void find();
    /// While it is current: the tag at the caret.
    std::optional<TagRange> tagAtCaret() const;
    /// While it is current; empty otherwise.
    using MapPointer = std::shared_ptr<const TagMap>;
    const MapPointer& map() const { return _map; }
    std::string element(const TagRange& range) const;
    /// Of a tag that another one uses: empty for one that is too big for that.
    std::string smallElement(const std::optional<TagRange>& range) const;
    /// The characters when it was last current; null before it ever was. Names and ids mostly stay, places do not.
    std::shared_ptr<const CharacterIndex> characters() const;
    /// Does something when it is current, which may be now. Forgotten when the text changes before, or something else
    /// is to be done.
    void whenCurrent(std::function<void()> act);

Q_SIGNALS:
    void found();

private:
    explicit DocumentTags(TextEditorView& editor);
    void forget();
    void copyPiece();
    void startSearch();
    void take();

    TextEditorView& _editor;
    QTimer _copying, _looking;
    std::string _copy; // of the text, as far as it has come
    QFutureWatcher<MapPointer> _search;
    MapPointer _map, _last;
    std::function<void()> _act;
};

} // namespace zelk
