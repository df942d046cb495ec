// The list of what may be typed at the caret.
#pragma once

#include <QObject>

#include "Completion.h"

namespace zelk {

class TextControl;

class TextEditorAutocomplete : public QObject, private ICompletionView {
    Q_OBJECT
public:
    explicit TextEditorAutocomplete(TextControl& control);

    /// Shows the list, if anything is known of the place.
    void show();

private:
    std::string_view text() const override;
    size_t caret() const override;
    void showList(const Completion& completion) override;
    void typed(int character);
    void choose(std::string_view word);

    TextControl& _control;
};

} // namespace zelk
