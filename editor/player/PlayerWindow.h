// The window "Player": one movie, the buttons to steer it, what it traces.
#pragma once

#include <QMainWindow>

class QLabel;
class QToolBar;
class QWebEngineProfile;
class QWebEngineView;

namespace zelk {

class PlayerPage;
class PlayerSchemeHandler;
class TracePane;

class PlayerWindow : public QMainWindow {
    Q_OBJECT
public:
    /// What is played, with which files of the emulator. An empty size, in pixels, stands for the movie's own.
    PlayerWindow(const QString& movie, const QString& package, QSize size);
    /// Plays another movie, from its start and in its own size, and brings the window to the front.
    void play(const QString& movie);
    /// What the title calls the movie; empty for nothing.
    void setMovieName(const QString& name);
    ~PlayerWindow() override;

    QWebEngineView& view() { return *_view; }
    QWebEngineProfile& profile() { return *_profile; }
    TracePane& trace() { return *_trace; }

    /// 50 to 200, of the size at the start; the window stays within the screen.
    void setPercent(int percent);

Q_SIGNALS:
    /// The movie runs.
    void loaded();
    /// It is none, or the player broke down: the window has nothing to show.
    void failed(const QString& reason);

protected:
    void changeEvent(QEvent* event) override;

private:
    void makeActions();
    QAction* makeAction(const char* icon, const QString& text, const QString& keys);
    QAction* addSizes();
    void start();
    void showPaused(bool isPaused);
    void setFullScreen(bool isFull);
    void fit();
    void addLines(const QStringList& lines);
    void setMovie(const QString& movie);
    void stepForward();
    void showFrame();

    bool _isOwnSize; // the movie's
    QSize _size;     // of the view at 100 %
    int _percent = 100;
    int _frame = 0, _frameCount = 0; // 0 while that is not known
    QWebEngineProfile* _profile;
    PlayerSchemeHandler* _files;
    QWebEngineView* _view;
    PlayerPage* _page = nullptr;
    TracePane* _trace;
    QToolBar* _bar;
    QLabel* _frameLabel;
    QAction *_pause = nullptr, *_fullScreen = nullptr, *_leave = nullptr;
};

} // namespace zelk
