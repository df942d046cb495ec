#include "TextAccessible.h"

#include <QAccessibleWidget>
#include <QCoreApplication>
#include <algorithm>

#include "TextControl.h"

namespace zelk {

namespace {

using Sci = QsciScintillaBase;

// Offsets are bytes: counting the characters in front would take the longer the bigger the text is.
class TextAccessible : public QAccessibleWidget, public QAccessibleTextInterface {
public:
    explicit TextAccessible(TextControl* control) : QAccessibleWidget(control, QAccessible::EditableText) {}

    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::TextInterface ? static_cast<QAccessibleTextInterface*>(this)
                                                  : QAccessibleWidget::interface_cast(type);
    }

    // The scroll bars are no one's who does not see them.
    int childCount() const override { return 0; }

    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.multiLine = state.selectableText = true;
        state.readOnly = send(Sci::SCI_GETREADONLY) != 0;
        state.editable = !state.readOnly;
        return state;
    }

    QString text(QAccessible::Text type) const override {
        if (type == QAccessible::Value) {
            const Range line = lineAt(cursorPosition());
            return textOf({line.start, static_cast<int>(send(Sci::SCI_GETLINEENDPOSITION, lineOf(line.start)))});
        }
        const QString text = QAccessibleWidget::text(type);
        return type == QAccessible::Name && text.isEmpty() ? QCoreApplication::translate("zelk::TextAccessible", "XML")
                                                           : text;
    }

    // --- the text ---

    int characterCount() const override { return static_cast<int>(send(Sci::SCI_GETLENGTH)); }
    QString text(int start, int end) const override { return textOf({start, end}); }

    QString textAtOffset(int offset, QAccessible::TextBoundaryType type, int* start, int* end) const override {
        return found(around(valid(offset), type), start, end);
    }
    QString textBeforeOffset(int offset, QAccessible::TextBoundaryType type, int* start, int* end) const override {
        const int first = around(valid(offset), type).start;
        return found(first == 0 ? Range{0, 0} : around(static_cast<int>(send(Sci::SCI_POSITIONBEFORE, first)), type),
                     start, end);
    }
    QString textAfterOffset(int offset, QAccessible::TextBoundaryType type, int* start, int* end) const override {
        const int last = around(valid(offset), type).end;
        return found(last >= characterCount() ? Range{last, last} : around(last, type), start, end);
    }

    // --- caret and selection ---

    int cursorPosition() const override { return static_cast<int>(send(Sci::SCI_GETCURRENTPOS)); }
    void setCursorPosition(int position) override { send(Sci::SCI_GOTOPOS, valid(position)); }
    int selectionCount() const override { return send(Sci::SCI_GETSELECTIONEMPTY) != 0 ? 0 : 1; }
    void selection(int index, int* start, int* end) const override {
        const bool isThere = index == 0 && selectionCount() == 1;
        *start = isThere ? static_cast<int>(send(Sci::SCI_GETSELECTIONSTART)) : 0;
        *end = isThere ? static_cast<int>(send(Sci::SCI_GETSELECTIONEND)) : 0;
    }
    void addSelection(int start, int end) override { setSelection(0, start, end); }
    void setSelection(int index, int start, int end) override {
        if (index == 0)
            send(Sci::SCI_SETSEL, valid(start), valid(end));
    }
    void removeSelection(int index) override {
        if (index == 0)
            send(Sci::SCI_SETEMPTYSELECTION, cursorPosition());
    }

    // --- on the screen ---

    QRect characterRect(int offset) const override {
        const int at = valid(offset), next = static_cast<int>(send(Sci::SCI_POSITIONAFTER, at));
        const auto x = [this](int place) { return static_cast<int>(send(Sci::SCI_POINTXFROMPOSITION, 0, place)); };
        const auto y = static_cast<int>(send(Sci::SCI_POINTYFROMPOSITION, 0, at));
        const auto height = static_cast<int>(send(Sci::SCI_TEXTHEIGHT, lineOf(at)));
        const QRect own(x(at), y, std::max(1, x(next) - x(at)), height);
        return own.translated(control().viewport()->mapToGlobal(QPoint()));
    }
    int offsetAtPoint(const QPoint& point) const override {
        const QPoint own = control().viewport()->mapFromGlobal(point);
        return static_cast<int>(send(Sci::SCI_POSITIONFROMPOINTCLOSE, own.x(), own.y()));
    }
    void scrollToSubstring(int start, int end) override { send(Sci::SCI_SCROLLRANGE, valid(end), valid(start)); }
    QString attributes(int offset, int* start, int* end) const override {
        const Range line = lineAt(valid(offset));
        *start = line.start;
        *end = line.end;
        return {};
    }

private:
    struct Range {
        int start, end;
    };
    static constexpr int most = 4096; // bytes that are read out at once

    TextControl& control() const { return static_cast<TextControl&>(*widget()); }
    long send(unsigned message, long wParam = 0, long lParam = 0) const {
        return control().send(message, wParam, lParam);
    }
    int valid(int offset) const { return std::clamp(offset, 0, characterCount()); }
    long lineOf(int offset) const { return send(Sci::SCI_LINEFROMPOSITION, offset); }

    Range around(int offset, QAccessible::TextBoundaryType type) const {
        switch (type) {
        case QAccessible::CharBoundary: return {offset, static_cast<int>(send(Sci::SCI_POSITIONAFTER, offset))};
        case QAccessible::WordBoundary:
            return {static_cast<int>(send(Sci::SCI_WORDSTARTPOSITION, offset, 0)),
                    static_cast<int>(send(Sci::SCI_WORDENDPOSITION, offset, 0))};
        default: return lineAt(offset);
        }
    }

    // With its end; of a very long one what stands around the place.
    Range lineAt(int offset) const {
        const long line = lineOf(offset);
        const auto start = static_cast<int>(send(Sci::SCI_POSITIONFROMLINE, line));
        const int end = line + 1 < send(Sci::SCI_GETLINECOUNT)
                            ? static_cast<int>(send(Sci::SCI_POSITIONFROMLINE, line + 1))
                            : characterCount();
        const int first = end - start > most ? std::max(start, offset - most / 2) : start;
        return {first, std::min(end, first + most)};
    }

    QString found(Range range, int* start, int* end) const {
        *start = range.start;
        *end = range.end;
        return textOf(range);
    }

    QString textOf(Range range) const {
        const int start = valid(range.start);
        const int end = std::clamp(range.end < 0 ? characterCount() : range.end, start, characterCount());
        constexpr int mostOfAll = 1 << 20;
        return QString::fromStdString(
            control().copyOf(static_cast<size_t>(start), static_cast<size_t>(std::min(end, start + mostOfAll))));
    }
};

QAccessibleInterface* create(const QString&, QObject* object) {
    auto* control = qobject_cast<TextControl*>(object);
    return control == nullptr ? nullptr : new TextAccessible(control);
}

} // namespace

// The control installs its own factory when the first one is made. The last one installed is asked first.
void installTextAccessibility() {
    static const bool isInstalled = (QAccessible::installFactory(create), true);
    static_cast<void>(isInstalled);
}

void tellCaret(TextControl& control) {
    if (!QAccessible::isActive())
        return;
    QAccessibleTextCursorEvent event(&control, static_cast<int>(control.send(Sci::SCI_GETCURRENTPOS)));
    QAccessible::updateAccessibility(&event);
}

} // namespace zelk
