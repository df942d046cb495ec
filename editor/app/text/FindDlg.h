// What to search for, and how: a bar below the text.
#pragma once

#include <QFrame>

#include "TextSearch.h"

class QAbstractButton;
class QBoxLayout;
class QCheckBox;
class QComboBox;
class QGridLayout;
class QLabel;
class QPushButton;
class QRadioButton;

namespace zelk {

class FindDlg : public QFrame {
    Q_OBJECT
public:
    explicit FindDlg(QWidget* parent);

    /// As narrow as it can be made by breaking the line of options.
    QSize minimumSizeHint() const override;

    /// Opens the bar and gives it the keyboard, with this text to search for unless it is empty.
    void present(const QString& pattern);
    /// The same pattern, options and earlier texts as another bar has.
    void takeOver(const FindDlg& other);

    SearchOptions options() const;
    bool searchesUp() const;
    bool wraps() const;
    /// What came of the last search; a failure is shown in a warning colour.
    void showResult(const QString& text, bool isFailure);
    /// Puts the text at the head of the list of earlier ones.
    void remember();
    /// Earlier texts, the last one first.
    QStringList history() const { return historyOf(_pattern); }
    void setHistory(const QStringList& texts) { setHistoryOf(_pattern, texts); }

Q_SIGNALS:
    void findAsked();
    /// Return was pressed in a field.
    void entered();
    void findPreviousAsked();
    void countAsked();
    void findInAllAsked();
    /// What is searched for is another now.
    void optionsChanged();
    /// The user is done here.
    void left();

protected:
    QGridLayout* _rows;   ///< a row for each field: name, field, buttons
    QBoxLayout* _choices; ///< what can be ticked, below: one line, or in narrow windows several

    QComboBox* addField(int row, const QString& label);
    QPushButton* addButton(int row, int column, const QString& text);
    /// Tab goes from the field to these fields, to the buttons, to these, to the options.
    void setOrder(const QList<QWidget*>& fields, const QList<QWidget*>& buttons);
    static void rememberIn(QComboBox* field);
    static QStringList historyOf(const QComboBox* field);
    static void setHistoryOf(QComboBox* field, const QStringList& texts);
    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void addOptions();
    bool press(const QKeyEvent& event);
    /// What Alt and this key belong to; null when there is none.
    QWidget* withMnemonic(int key) const;

    QList<QPushButton*> _ownButtons;
    QComboBox* _pattern;
    QCheckBox *_wholeWord, *_matchCase, *_expression, *_wrap;
    QRadioButton *_up, *_down;
    QLabel* _result;
};

} // namespace zelk
