// The lines that a movie writes with trace(), and the errors that the player tells of.
#pragma once

#include <QDockWidget>

class QPlainTextEdit;

namespace zelk {

class TracePane : public QDockWidget {
    Q_OBJECT
public:
    explicit TracePane(QWidget* parent);

    void append(const QStringList& lines);
    QString text() const;
    void clear();
    /// To the clipboard: the selection, or else everything.
    void copy() const;

private:
    QPlainTextEdit* _text;
};

} // namespace zelk
