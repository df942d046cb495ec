// The guide, one page for each task, in a window beside the program's.
#pragma once

#include <QListWidget>
#include <QMainWindow>
#include <QTextBrowser>
#include <QTimer>

namespace zelk {

/// Shows a page with its pictures no wider than the view.
class GuideBrowser : public QTextBrowser {
    Q_OBJECT
public:
    explicit GuideBrowser(QWidget* parent = nullptr);

    QVariant loadResource(int type, const QUrl& name) override;

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    QTimer _resized;
};

class GuideWindow : public QMainWindow {
    Q_OBJECT
public:
    explicit GuideWindow(QWidget* parent);

    /// The names of the pages' files, in order.
    static QStringList pages();
    void open();
    GuideBrowser& browser() { return *_browser; }
    QListWidget& contents() { return *_contents; }

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void showInContents(const QUrl& page);

    QListWidget* _contents;
    GuideBrowser* _browser;
};

} // namespace zelk
