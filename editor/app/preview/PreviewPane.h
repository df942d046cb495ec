// The dock that shows one tag.
#pragma once

#include <QPointer>
#include <QTimer>
#include <optional>

#include "Pane.h"
#include "PreviewRequest.h"
#include "PreviewWorker.h"
#include "TagMap.h"

class QLabel;
class QPushButton;
class QSlider;

namespace zelk {

class DocumentTags;
class PreviewCanvas;
class SoundPlayer;
class TextEditorView;
struct GlyphCell;

/// What to show of the tag in this range, while the tags are known.
PreviewRequest requestFor(DocumentTags& tags, const TagRange& tag);

/// Costs nothing while it cannot be seen.
class PreviewPane : public Pane {
    Q_OBJECT
public:
    explicit PreviewPane(QWidget* parent = nullptr);

    /// Shows the tag at the caret, wherever that goes. Null for no document.
    void showCaret(TextEditorView* editor);
    /// Shows the tag whose element is this range of the text, a moment after the last call. To be called again when the
    /// text has changed.
    void showTag(TextEditorView& editor, const TagRange& tag);

    const TagPreview* preview() const { return _preview.get(); }
    /// Something is still to be built or painted.
    bool isBusy() const;
    QString words() const;

private:
    void layOut();
    void watch(TextEditorView* editor);
    void askLater();
    void ask(bool isForced);
    void show(PreviewRequest request, bool isForced);
    void accept(const std::shared_ptr<TagPreview>& preview);
    void clear(const QString& words);
    void offer(const QString& words);
    void showWords();
    void showGlyph(const GlyphCell* cell);
    void playOrStop();
    void showPlayed();

    QPointer<TextEditorView> _editor;
    std::optional<TagRange> _tag; // otherwise the one at the caret
    QTimer _timer;
    PreviewWorker* _worker;
    PreviewCanvas* _canvas;
    SoundPlayer* _player;
    QSlider* _ratio;
    QPushButton *_play, *_showAnyway;
    QLabel* _words;
    QString _caption, _names;
    PreviewRequest _request;
    std::shared_ptr<TagPreview> _preview;
};

} // namespace zelk
