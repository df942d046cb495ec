// A bar above a document that tells something and offers what can be done about it.
#pragma once

#include <QFrame>

class QHBoxLayout;
class QLabel;
class QPushButton;

namespace zelk {

/// Never takes the keyboard from the text: its buttons answer to clicks, to Alt and their letter, and to Tab from one
/// to the next.
class NoticeBar : public QFrame {
    Q_OBJECT
public:
    explicit NoticeBar(QWidget* parent = nullptr);

    /// Plain text; `details` stand below in a lighter colour and may be empty. Screen readers are told.
    void setText(const QString& text, const QString& details = {});
    QString text() const;
    QString details() const;

    /// Left to right. The caller connects to clicked().
    QPushButton* addButton(const QString& text);

protected:
    void changeEvent(QEvent* event) override;

private:
    void setColors();

    QLabel *_icon, *_text, *_details;
    QHBoxLayout* _buttons;
    bool _setsColors = false;
};

} // namespace zelk
