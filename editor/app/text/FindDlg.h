// What to search for, and how. Stays open beside the text.
#pragma once

#include <QDialog>

#include "TextSearch.h"

class QCheckBox;
class QComboBox;
class QGridLayout;
class QLabel;
class QPushButton;
class QRadioButton;
class QVBoxLayout;

namespace zelk {

class FindDlg : public QDialog {
    Q_OBJECT
public:
    explicit FindDlg(QWidget* parent);

    /// Opens the dialog, or brings it to the front, with this text to search for unless it is empty.
    void present(const QString& pattern);

    SearchOptions options() const;
    bool searchesUp() const;
    bool wraps() const;
    /// What came of the last search; a failure is shown in a warning colour.
    void showResult(const QString& text, bool isFailure);
    /// Puts the text at the head of the list of earlier ones.
    void remember();

Q_SIGNALS:
    void findAsked();
    void countAsked();

protected:
    /// Rows below the first, and buttons below the first two.
    QGridLayout* _fields;
    QVBoxLayout* _buttons;

    QComboBox* addField(const QString& label);
    QPushButton* addButton(const QString& text);
    static void rememberIn(QComboBox* field);

private:
    QComboBox* _pattern;
    QCheckBox* _wholeWord;
    QCheckBox* _matchCase;
    QCheckBox* _expression;
    QCheckBox* _wrap;
    QRadioButton* _up;
    QLabel* _result;
    int _buttonCount = 0;
};

} // namespace zelk
