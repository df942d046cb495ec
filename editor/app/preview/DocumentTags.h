// The tags of a text view, found beside the GUI thread.
#pragma once

#include <QFutureWatcher>
#include <QTimer>
#include <memory>
#include <optional>
#include <string>

#include "PreviewRequest.h"
#include "TagMap.h"

namespace zelk {

class TextEditorView;

/// Knows where the tags stand until the text changes.
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
    /// While it is current: what to show of the tag in this range.
    PreviewRequest request(const TagRange& tag) const;

Q_SIGNALS:
    void found();

private:
    using MapPointer = std::shared_ptr<const TagMap>;

    explicit DocumentTags(TextEditorView& editor);
    void forget();
    void copyPiece();
    void startSearch();
    void take();
    std::string element(const TagRange& range) const;
    std::string smallElement(const std::optional<TagRange>& range) const;

    TextEditorView& _editor;
    QTimer _copying;
    std::string _copy; // of the text, as far as it has come
    QFutureWatcher<MapPointer> _search;
    MapPointer _map;
};

} // namespace zelk
