// What to put in place of what is found: the bar with a second row.
#pragma once

#include "FindDlg.h"

namespace zelk {

class ReplaceDlg : public FindDlg {
    Q_OBJECT
public:
    explicit ReplaceDlg(QWidget* parent);

    std::string replacement() const;
    bool onlyInSelection() const;
    void rememberReplacement() { rememberIn(_replacement); }
    QStringList replacements() const { return historyOf(_replacement); }
    void setReplacements(const QStringList& texts) { setHistoryOf(_replacement, texts); }

Q_SIGNALS:
    void replaceAsked();
    void replaceAllAsked();

private:
    QComboBox* _replacement;
    QCheckBox* _inSelection;
};

} // namespace zelk
