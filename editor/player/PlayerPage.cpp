#include "PlayerPage.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QUuid>
#include <QVariant>
#include <QWebEngineSettings>

#include "PlayerFiles.h"

namespace zelk {

PlayerPage::PlayerPage(QWebEngineProfile* profile, Beside beside, QObject* parent)
    : QWebEnginePage(profile, parent), _beside(beside), _secret(QUuid::createUuid().toString()) {
    using Settings = QWebEngineSettings;
    settings()->setAttribute(Settings::PlaybackRequiresUserGesture, false); // a movie plays its sounds at once
    for (auto refused : {Settings::JavascriptCanOpenWindows, Settings::LocalContentCanAccessRemoteUrls,
                         Settings::LocalContentCanAccessFileUrls, Settings::PluginsEnabled, Settings::PdfViewerEnabled,
                         Settings::NavigateOnDropEnabled, Settings::ErrorPageEnabled, Settings::ScreenCaptureEnabled})
        settings()->setAttribute(refused, false);
    settings()->setAttribute(Settings::WebRTCPublicInterfacesOnly, true);
    setBackgroundColor(Qt::black);
    // Once: a movie's attempt to leave the page ends with the same signal.
    connect(this, &QWebEnginePage::loadFinished, this, &PlayerPage::start, Qt::SingleShotConnection);
    connect(this, &QWebEnginePage::featurePermissionRequested, this, [this](const QUrl& origin, Feature feature) {
        setFeaturePermission(origin, feature, PermissionDeniedByUser);
    });
    connect(
        this, &QWebEnginePage::renderProcessTerminated, this, [this] { Q_EMIT failed(tr("The player stopped.")); },
        Qt::QueuedConnection);
    load(PlayerFiles::pageUrl());
}

void PlayerPage::start(bool isPageThere) {
    if (!isPageThere) {
        Q_EMIT failed(tr("The player's page cannot be loaded."));
        return;
    }
    _isStarted = true;
    const QString letterbox = _beside == Beside::bars ? QStringLiteral("on") : QStringLiteral("off");
    runJavaScript(QStringLiteral("player.start('%1', '%2')").arg(_secret, letterbox));
    setPaused(_isPaused);
}

void PlayerPage::setPaused(bool isPaused) {
    _isPaused = isPaused;
    if (_isStarted)
        runJavaScript(isPaused ? QStringLiteral("player.pause(true)") : QStringLiteral("player.pause(false)"));
}

void PlayerPage::step() { runJavaScript(QStringLiteral("player.step()")); }

bool PlayerPage::acceptNavigationRequest(const QUrl& url, NavigationType, bool isMainFrame) {
    return isMainFrame && url == PlayerFiles::pageUrl();
}

// A page has nothing to ask for.
QStringList PlayerPage::chooseFiles(FileSelectionMode, const QStringList&, const QStringList&) { return {}; }
void PlayerPage::javaScriptAlert(const QUrl&, const QString&) {}
bool PlayerPage::javaScriptConfirm(const QUrl&, const QString&) { return false; }
bool PlayerPage::javaScriptPrompt(const QUrl&, const QString&, const QString&, QString*) { return false; }

// Called by the engine in the middle of its work: nothing may be answered from here.
void PlayerPage::javaScriptConsoleMessage(JavaScriptConsoleMessageLevel level, const QString& text, int,
                                          const QString&) {
    if (text.startsWith(_secret)) {
        QMetaObject::invokeMethod(
            this, [this, json = text.mid(_secret.size()).toUtf8()] { receive(json); }, Qt::QueuedConnection);
    } else if (level == ErrorMessageLevel) {
        QMetaObject::invokeMethod(
            this, [this, line = text.section(u'\n', 0, 0).left(500)] { Q_EMIT complained(line); },
            Qt::QueuedConnection);
    }
}

void PlayerPage::receive(const QByteArray& json) {
    const QJsonArray told = QJsonDocument::fromJson(json).array();
    const QString kind = told.at(0).toString();
    if (kind == QStringLiteral("trace"))
        Q_EMIT traced(told.at(1).toVariant().toStringList());
    else if (kind == QStringLiteral("loaded"))
        Q_EMIT loaded(told.at(1).toInt());
    else if (kind == QStringLiteral("failed"))
        Q_EMIT failed(told.at(1).toString());
}

} // namespace zelk
