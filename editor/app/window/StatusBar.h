// "Ready", where the caret is, and how many warnings are still true.
#pragma once

#include <QStatusBar>
#include <QTimer>

class QLabel;
class QToolButton;

namespace zelk {

class StatusBar : public QStatusBar {
    Q_OBJECT
public:
    explicit StatusBar(QWidget* parent = nullptr);

    /// From 1; 0 when no document is open.
    void showPlace(uint32_t row, uint32_t column);
    void showWarnings(size_t count);
    /// What is to be said of the tag at hand; "Ready" when it is empty.
    void showTag(const QString& words);
    /// For some seconds, with a link to the file's folder.
    void showExported(const QString& fileName);

Q_SIGNALS:
    void warningsAsked();

private:
    QLabel *_tag, *_place, *_exported;
    QToolButton* _warnings;
    QTimer _exportedTime;
};

} // namespace zelk
