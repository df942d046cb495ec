// Finds what static texts say: their XML has glyphs only, so that a search of the text passes them by.
#pragma once

#include <QObject>
#include <QPointer>

#include "DocumentTexts.h"
#include "DocumentView.h"

namespace zelk {

class StaticTextSearch : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;

    /// Looks beside the GUI thread for the next text with this in it behind the caret, or before it, around the ends of
    /// the document. Upper and lower case are the same.
    void find(DocumentView& view, const QString& what, bool up);

Q_SIGNALS:
    /// In the view that was asked for, at the tag of the text.
    void found(zelk::DocumentView* view, size_t offset, const QString& text);

private:
    void choose(const QString& what, bool up);

    QPointer<DocumentView> _view; // that the texts are of
    uint64_t _change = 0;
    std::vector<DocumentText> _texts;
};

} // namespace zelk
