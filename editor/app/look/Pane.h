// What all panes beside the text have in common.
#pragma once

#include <QDockWidget>

namespace zelk {

/// Escape closes it, docked or floating. Behind another pane nothing in it takes the keyboard.
class Pane : public QDockWidget {
    Q_OBJECT
public:
    explicit Pane(const QString& title, QWidget* parent = nullptr);

    /// Shows it in front of those that share its place.
    virtual void open();
    /// Opens it, or closes it when it can be seen.
    void toggle();

Q_SIGNALS:
    /// A key closed it while it had the keyboard.
    void left();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void leave();
};

} // namespace zelk
