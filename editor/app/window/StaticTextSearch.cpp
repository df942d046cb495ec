#include "StaticTextSearch.h"

#include <QApplication>
#include <QThreadPool>

#include <algorithm>

namespace zelk {

namespace {

// In the order of the document.
std::vector<DocumentText> staticTexts(const std::string& document) {
    std::vector<DocumentText> texts;
    try {
        texts = documentTexts(document);
    } catch (const std::exception&) { // A text that is no movie has none.
    }
    std::erase_if(texts, [](const DocumentText& each) {
        return each.text.kind != TextKind::staticText || each.start == DocumentText::nowhere;
    });
    std::ranges::stable_sort(texts, {}, &DocumentText::start);
    return texts;
}

} // namespace

void StaticTextSearch::find(DocumentView& view, const QString& what, bool up) {
    const uint64_t change = view.changeCount();
    if (_view == &view && _change == change)
        return choose(what, up);
    QThreadPool::globalInstance()->start(
        [self = QPointer(this), asked = QPointer(&view), change, what, up, text = std::string(view.text())] {
            QMetaObject::invokeMethod(qApp, [self, asked, change, what, up, texts = staticTexts(text)]() mutable {
                if (self == nullptr || asked == nullptr || asked->changeCount() != change)
                    return;
                self->_view = asked;
                self->_change = change;
                self->_texts = std::move(texts);
                self->choose(what, up);
            });
        });
}

void StaticTextSearch::choose(const QString& what, bool up) {
    const size_t caret = _view->editor().caret();
    const DocumentText *first = nullptr, *beyond = nullptr; // around the ends, and from the caret on
    const auto look = [&](const DocumentText& each) {
        if (!QString::fromStdString(each.text.text).contains(what, Qt::CaseInsensitive))
            return;
        if (first == nullptr)
            first = &each;
        if (beyond == nullptr && (up ? each.start < caret : each.start > caret))
            beyond = &each;
    };
    if (up)
        std::for_each(_texts.rbegin(), _texts.rend(), look);
    else
        std::for_each(_texts.begin(), _texts.end(), look);
    if (const DocumentText* match = beyond != nullptr ? beyond : first)
        Q_EMIT found(_view, match->start, QString::fromStdString(match->text.text));
}

} // namespace zelk
