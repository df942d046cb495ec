#include "TextAccessible.h"

#include <QAccessibleWidget>

#include "TextControl.h"

namespace zelk {

namespace {

class TextAccessible : public QAccessibleWidget {
public:
    explicit TextAccessible(TextControl* control) : QAccessibleWidget(control, QAccessible::EditableText) {}

    QString text(QAccessible::Text type) const override {
        if (type != QAccessible::Value)
            return QAccessibleWidget::text(type);
        const auto* control = static_cast<const TextControl*>(widget());
        const long line =
            control->send(QsciScintillaBase::SCI_LINEFROMPOSITION, control->send(QsciScintillaBase::SCI_GETCURRENTPOS));
        const long start = control->send(QsciScintillaBase::SCI_POSITIONFROMLINE, line);
        const long end = control->send(QsciScintillaBase::SCI_GETLINEENDPOSITION, line);
        constexpr long most = 1000; // bytes of a line that are read out
        return QString::fromUtf8(
            control->bytes(static_cast<size_t>(start), static_cast<size_t>(std::min(end, start + most))));
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

} // namespace zelk
