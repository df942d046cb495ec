#include "GuideWindow.h"

#include <QAction>
#include <QFile>
#include <QImage>
#include <QKeyEvent>
#include <QSplitter>
#include <QToolBar>

#include "Theme.h"

// A library's resources are linked in only when something asks for them, and not from inside a namespace.
static void loadGuide() { Q_INIT_RESOURCE(guide); }

namespace zelk {

namespace {

QUrl urlOf(const QString& page) { return {QStringLiteral("qrc:/guide/") + page}; }

// What stands behind the "#" of a page's first line.
QString titleOf(const QString& page) {
    QFile file(QStringLiteral(":/guide/") + page);
    if (!file.open(QIODevice::ReadOnly))
        return page;
    return QString::fromUtf8(file.readLine()).section(u'#', 1).trimmed();
}

} // namespace

GuideBrowser::GuideBrowser(QWidget* parent) : QTextBrowser(parent) {
    _resized.setSingleShot(true);
    _resized.setInterval(50);
    connect(&_resized, &QTimer::timeout, this, &GuideBrowser::reload);
}

QVariant GuideBrowser::loadResource(int type, const QUrl& name) {
    if (type != QTextDocument::ImageResource)
        return QTextBrowser::loadResource(type, name);
    QImage image(QStringLiteral(":") + source().resolved(name).path());
    constexpr int slack = 24; // for a scroll bar that comes yet
    const int room = viewport()->width() - 2 * int(document()->documentMargin()) - slack;
    return image.width() > room && room > 0 ? image.scaledToWidth(room, Qt::SmoothTransformation) : image;
}

void GuideBrowser::resizeEvent(QResizeEvent* event) {
    QTextBrowser::resizeEvent(event);
    // With pictures of the new width, and later: the scroll bar comes while a page is taken in.
    if (event->size().width() != event->oldSize().width())
        _resized.start();
}

QStringList GuideWindow::pages() {
    return {QStringLiteral("first-steps.md"),
            QStringLiteral("change-a-text.md"),
            QStringLiteral("replace-a-picture.md"),
            QStringLiteral("repair-a-movie.md"),
            QStringLiteral("edit-a-script.md"),
            QStringLiteral("translate.md"),
            QStringLiteral("keys.md")};
}

GuideWindow::GuideWindow(QWidget* parent)
    : QMainWindow(parent), _contents(new QListWidget(this)), _browser(new GuideBrowser(this)) {
    loadGuide();
    setWindowTitle(tr("Guide - Zelk"));
    resizeOnScreen(*this, {920, 640});
    _contents->setAccessibleName(tr("Pages of the guide"));
    for (const QString& page : pages()) {
        auto* item = new QListWidgetItem(titleOf(page), _contents);
        item->setData(Qt::UserRole, page);
    }
    _browser->setAccessibleName(tr("Page of the guide"));
    _browser->setOpenExternalLinks(true);
    auto* parts = new QSplitter(this);
    parts->addWidget(_contents);
    parts->addWidget(_browser);
    parts->setSizes({220, 700});
    parts->setStretchFactor(1, 1);
    setCentralWidget(parts);

    QToolBar* bar = addToolBar(tr("Guide"));
    bar->setMovable(false);
    const auto add = [&](const QString& text, QKeySequence::StandardKey key, auto slot) {
        QAction* action = bar->addAction(text, _browser, slot);
        action->setShortcut(key);
        action->setToolTip(QStringLiteral("%1 (%2)").arg(text, action->shortcut().toString(QKeySequence::NativeText)));
        action->setEnabled(false);
        return action;
    };
    QAction* back = add(tr("Back"), QKeySequence::Back, &QTextBrowser::backward);
    QAction* forward = add(tr("Forward"), QKeySequence::Forward, &QTextBrowser::forward);
    connect(_browser, &QTextBrowser::backwardAvailable, back, &QAction::setEnabled);
    connect(_browser, &QTextBrowser::forwardAvailable, forward, &QAction::setEnabled);
    connect(_browser, &QTextBrowser::sourceChanged, this, &GuideWindow::showInContents);
    connect(_contents, &QListWidget::currentItemChanged, this, [this](const QListWidgetItem* item) {
        const QUrl url = urlOf(item->data(Qt::UserRole).toString());
        if (_browser->source().path() != url.path())
            _browser->setSource(url);
    });
    _contents->setCurrentRow(0);
}

void GuideWindow::open() {
    show();
    raise();
    activateWindow();
    _contents->setFocus();
}

// A link may have led there.
void GuideWindow::showInContents(const QUrl& page) {
    for (int row = 0; row < _contents->count(); ++row) {
        if (page.fileName() == _contents->item(row)->data(Qt::UserRole).toString())
            _contents->setCurrentRow(row);
    }
}

void GuideWindow::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape)
        close();
    else
        QMainWindow::keyPressEvent(event);
}

} // namespace zelk
