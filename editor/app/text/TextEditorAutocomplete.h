// The list of what may be typed at the caret.
#pragma once

#include <QObject>

#include "Completion.h"

namespace zelk {

class TextEditorView;

class TextEditorAutocomplete : public QObject, private ICompletionView {
    Q_OBJECT
public:
    explicit TextEditorAutocomplete(TextEditorView& control);

    /// Shows the list, if anything is known of the place.
    void show();
    /// Of a text that does not tell its form.
    void setForm(bool fullForm) { _fullForm = fullForm; }
    std::optional<bool> fullForm() const override { return _fullForm; }

private:
    std::string_view text() const override;
    size_t caret() const override;
    std::shared_ptr<const CharacterIndex> characters() const override;
    void showList(const Completion& completion) override;
    void typed(int character);
    void choose(std::string_view word);

    TextEditorView& _control;
    std::optional<bool> _fullForm;
};

} // namespace zelk
