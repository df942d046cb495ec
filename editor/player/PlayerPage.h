// The page that runs one movie: what it says, and that it stays where it is.
#pragma once

#include <QStringList>
#include <QWebEnginePage>

namespace zelk {

class PlayerPage : public QWebEnginePage {
    Q_OBJECT
public:
    /// What a view of another shape than the stage shows beside it: black bars, or what the movie has there.
    enum class Beside { bars, movie };
    PlayerPage(QWebEngineProfile* profile, Beside beside, QObject* parent);

    /// At any time: a movie that is still being loaded stops when it is there.
    void setPaused(bool isPaused);
    /// Lets a movie that is paused play one frame.
    void step();

Q_SIGNALS:
    /// All come from the event loop, so that a receiver may delete the page.
    void loaded(int frameCount);
    void failed(const QString& reason);
    void traced(const QStringList& lines);
    /// An error that the emulator or the engine tells of while the movie runs.
    void complained(const QString& text);

protected:
    bool acceptNavigationRequest(const QUrl& url, NavigationType type, bool isMainFrame) override;
    QStringList chooseFiles(FileSelectionMode mode, const QStringList& old, const QStringList& types) override;
    void javaScriptAlert(const QUrl& origin, const QString& text) override;
    bool javaScriptConfirm(const QUrl& origin, const QString& text) override;
    bool javaScriptPrompt(const QUrl& origin, const QString& text, const QString& old, QString* answer) override;
    void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel level, const QString& text, int line,
                                  const QString& source) override;

private:
    void start(bool isPageThere);
    void receive(const QByteArray& json);

    const Beside _beside;
    bool _isStarted = false, _isPaused = false;
    QString _secret; // starts what the page tells us: a movie can write to the console, too
};

} // namespace zelk
