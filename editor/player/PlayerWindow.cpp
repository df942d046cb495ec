#include "PlayerWindow.h"

#include <QActionGroup>
#include <QEvent>
#include <QLabel>
#include <QMenu>
#include <QScreen>
#include <QToolBar>
#include <QToolButton>
#include <QWebEngineProfile>
#include <QWebEngineView>
#include <algorithm>

#include "FrameMarks.h"
#include "PlayerPage.h"
#include "PlayerScheme.h"
#include "SwfMovie.h"
#include "ThemeIcon.h"
#include "TracePane.h"

// A library's resources are linked in only when something asks for them, and not from inside a namespace.
static void loadResources() {
    Q_INIT_RESOURCE(icons);
    Q_INIT_RESOURCE(player);
}

namespace zelk {

namespace {

constexpr int percents[] = {50, 75, 100, 150, 200};
constexpr QSize smallest(100, 75), usual(550, 400);
constexpr int biggest = 8000;

// In pixels; the usual size for what is no movie, which then fails to load.
QSize sizeOf(const QString& movie) {
    constexpr int twipsPerPixel = 20;
    try {
        libswf::SwfMovieSafe read;
        read.load(movie.toStdString(), true);
        const libswf::SwfRect& stage = read.frameSize;
        const auto pixels = [](int64_t from, int64_t to) {
            return static_cast<int>(std::min<int64_t>((to - from) / twipsPerPixel, biggest));
        };
        const QSize size(pixels(stage.Xmin, stage.Xmax), pixels(stage.Ymin, stage.Ymax));
        return size.isEmpty() ? usual : size;
    } catch (const std::exception&) {
        return usual;
    }
}

} // namespace

PlayerWindow::PlayerWindow(const QString& movie, const QString& package, QSize size)
    : _isOwnSize(size.isEmpty()), _size((_isOwnSize ? sizeOf(movie) : size).expandedTo(smallest)),
      _profile(new QWebEngineProfile(this)), _files(new PlayerSchemeHandler({package, movie}, _profile)),
      _view(new QWebEngineView(this)), _trace(new TracePane(this)), _bar(addToolBar(tr("Tool Bar"))),
      _frameLabel(new QLabel(_bar)) {
    loadResources();
    setMovieName({});
    setMovie(movie);
    setWindowIcon(QIcon(QStringLiteral(":/icons/zelk.svg")));
    // A profile without a name keeps nothing on the disk.
    _profile->installUrlSchemeHandler(playerScheme, _files);
    auto* guard = new PlayerRequestGuard(_profile);
    _profile->setUrlRequestInterceptor(guard);
    connect(guard, &PlayerRequestGuard::refused, this,
            [this](const QUrl& url) { addLines({tr("(refused: %1)").arg(url.toDisplayString().left(200))}); });
    _view->setContextMenuPolicy(Qt::NoContextMenu);
    setCentralWidget(_view);
    addDockWidget(Qt::BottomDockWidgetArea, _trace);
    makeActions();
    start();
    fit();
}

PlayerWindow::~PlayerWindow() { delete _page; } // before its profile

void PlayerWindow::setMovie(const QString& movie) { _files->setMovie(movie, withFrameMarks(movie)); }

void PlayerWindow::setMovieName(const QString& name) {
    const QString player = QStringLiteral("Player");
    setWindowTitle(name.isEmpty() ? player : name + QStringLiteral(" - ") + player);
}

void PlayerWindow::play(const QString& movie) {
    setMovie(movie);
    _isOwnSize = true;
    _size = sizeOf(movie).expandedTo(smallest);
    _trace->clear();
    start();
    fit();
    setWindowState(windowState() & ~Qt::WindowMinimized);
    raise();
    activateWindow();
}

// A page that a movie broke stays broken: each run gets its own.
void PlayerWindow::start() {
    PlayerPage* old = _page;
    _page = new PlayerPage(_profile, _isOwnSize ? PlayerPage::Beside::bars : PlayerPage::Beside::movie, this);
    _view->setPage(_page);
    delete old;
    connect(_page, &PlayerPage::loaded, this, [this](int frameCount) {
        _frameCount = frameCount;
        showFrame();
        Q_EMIT loaded();
    });
    connect(_page, &PlayerPage::failed, this, &PlayerWindow::failed);
    connect(_page, &PlayerPage::traced, this, &PlayerWindow::addLines);
    connect(_page, &PlayerPage::complained, this,
            [this](const QString& text) { addLines({tr("(player: %1)").arg(text)}); });
    _frame = _frameCount = 0;
    showFrame();
    showPaused(false);
    _view->setFocus();
}

// The emulator keeps the number to itself; a movie that has marks tells it.
void PlayerWindow::showFrame() {
    const QString all = _frameCount == 0 ? QString() : QString::number(_frameCount);
    if (_frame == 0)
        _frameLabel->setText(all.isEmpty() ? QString() : tr("%1 frames").arg(_frameCount));
    else
        _frameLabel->setText(all.isEmpty() ? tr("Frame %1").arg(_frame) : tr("Frame %1 of %2").arg(_frame).arg(all));
}

void PlayerWindow::addLines(const QStringList& told) {
    QStringList lines = told;
    if (const std::optional<int> frame = takeFrameMarks(lines)) {
        _frame = *frame;
        showFrame();
    }
    if (lines.isEmpty())
        return;
    const bool isFirst = _trace->text().isEmpty();
    _trace->append(lines);
    if (isFirst && !_trace->isVisible()) {
        _trace->show();
        fit();
    }
}

// --- buttons ---------------------------------------------------------------------------------------------------------

QAction* PlayerWindow::makeAction(const char* icon, const QString& text, const QString& keys) {
    auto* action = new QAction(themeIcon(QString::fromLatin1(icon)), text, this);
    action->setShortcut(QKeySequence(keys, QKeySequence::PortableText));
    action->setToolTip(QStringLiteral("%1 (%2)").arg(text, action->shortcut().toString(QKeySequence::NativeText)));
    addAction(action); // works while the tool bar is hidden
    return action;
}

// Keys with Ctrl: the others are the movie's.
void PlayerWindow::makeActions() {
    _bar->setObjectName(QStringLiteral("toolBar"));
    _bar->setIconSize({20, 20});
    _bar->setMovable(false);
    _pause = makeAction("pause", tr("Pause"), QStringLiteral("Ctrl+Return"));
    _pause->setObjectName(QStringLiteral("pause"));
    _pause->setCheckable(true);
    connect(_pause, &QAction::toggled, this, [this](bool isPaused) {
        _page->setPaused(isPaused);
        showPaused(isPaused);
    });
    QAction* step = makeAction("step", tr("Step Forward"), QStringLiteral("Ctrl+Right"));
    step->setObjectName(QStringLiteral("step"));
    connect(step, &QAction::triggered, this, &PlayerWindow::stepForward);
    QAction* restart = makeAction("restart", tr("Restart"), QStringLiteral("Ctrl+R"));
    restart->setObjectName(QStringLiteral("restart"));
    connect(restart, &QAction::triggered, this, &PlayerWindow::start);
    QAction* size = addSizes();
    _fullScreen = makeAction("full-screen", tr("Full Screen"), QStringLiteral("F11"));
    _fullScreen->setCheckable(true);
    connect(_fullScreen, &QAction::triggered, this, &PlayerWindow::setFullScreen);
    _leave = new QAction(this);
    _leave->setShortcut(Qt::Key_Escape);
    _leave->setEnabled(false); // so that a movie gets the key
    addAction(_leave);
    connect(_leave, &QAction::triggered, this, [this] { setFullScreen(false); });
    QAction* trace = _trace->toggleViewAction();
    trace->setIcon(themeIcon(QStringLiteral("trace")));
    trace->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_T));
    trace->setToolTip(tr("What the movie writes (Ctrl+T)"));
    connect(trace, &QAction::triggered, this, &PlayerWindow::fit);
    auto* close = new QAction(this);
    close->setShortcuts({QKeySequence(Qt::CTRL | Qt::Key_W), QKeySequence(Qt::CTRL | Qt::Key_F4)});
    addAction(close);
    connect(close, &QAction::triggered, this, &QWidget::close);
    _bar->addActions({_pause, step, restart, size, _fullScreen, trace});
    qobject_cast<QToolButton*>(_bar->widgetForAction(size))->setPopupMode(QToolButton::InstantPopup);
    auto* room = new QWidget(_bar);
    room->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    _bar->addWidget(room);
    _frameLabel->setObjectName(QStringLiteral("frame"));
    _frameLabel->setContentsMargins(6, 0, 6, 0);
    _frameLabel->setToolTip(tr("The frame of the main timeline. A movie with ActionScript 3 does not tell."));
    _bar->addWidget(_frameLabel);
}

// A movie that plays stops first.
void PlayerWindow::stepForward() {
    if (_pause->isChecked())
        _page->step();
    else
        _pause->setChecked(true);
}

QAction* PlayerWindow::addSizes() {
    auto* size = new QAction(themeIcon(QStringLiteral("size")), tr("Size"), this);
    size->setToolTip(tr("Size (Ctrl++, Ctrl+-, Ctrl+0)"));
    auto* menu = new QMenu(this);
    auto* group = new QActionGroup(this);
    for (int percent : percents) {
        QAction* action = menu->addAction(tr("%1 %").arg(percent), this, [this, percent] { setPercent(percent); });
        action->setCheckable(true);
        action->setChecked(percent == _percent);
        group->addAction(action);
    }
    size->setMenu(menu);
    const auto step = [group](int by) {
        const QList<QAction*> actions = group->actions();
        const qsizetype index = actions.indexOf(group->checkedAction()) + by;
        if (index >= 0 && index < actions.size())
            actions[index]->trigger();
    };
    const auto key = [this](const QList<QKeySequence>& keys, auto work) {
        auto* action = new QAction(this);
        action->setShortcuts(keys);
        addAction(action);
        connect(action, &QAction::triggered, this, work);
    };
    key({QKeySequence(Qt::CTRL | Qt::Key_Plus), QKeySequence(Qt::CTRL | Qt::Key_Equal)}, [step] { step(1); });
    key({QKeySequence(Qt::CTRL | Qt::Key_Minus)}, [step] { step(-1); });
    key({QKeySequence(Qt::CTRL | Qt::Key_0)}, [group] { group->actions()[2]->trigger(); });
    return size;
}

void PlayerWindow::showPaused(bool isPaused) {
    const QSignalBlocker blocker(_pause);
    const QString text = isPaused ? tr("Play") : tr("Pause");
    _pause->setChecked(isPaused);
    _pause->setIcon(themeIcon(isPaused ? QStringLiteral("play") : QStringLiteral("pause")));
    _pause->setText(text);
    _pause->setToolTip(QStringLiteral("%1 (%2)").arg(text, _pause->shortcut().toString(QKeySequence::NativeText)));
    _bar->update();
}

// --- size ------------------------------------------------------------------------------------------------------------

void PlayerWindow::setPercent(int percent) {
    _percent = percent;
    fit();
}

// Makes the window as big as its movie wants it to be, as far as the screen goes, and keeps its lower edge on it.
void PlayerWindow::fit() {
    if (isFullScreen() || isMaximized())
        return;
    const QSize frame(20, 60); // what a desktop may add around
    const QRect available = screen()->availableGeometry();
    _view->setFixedSize(_size * _percent / 100);
    const QSize wanted = sizeHint();
    _view->setMinimumSize(0, 0);
    _view->setMaximumSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
    resize(wanted.boundedTo(available.size() - frame));
    const int below = frameGeometry().bottom() - available.bottom();
    if (isVisible() && below > 0)
        move(x(), std::max(available.top(), y() - below));
}

void PlayerWindow::setFullScreen(bool isFull) {
    setWindowState(isFull ? windowState() | Qt::WindowFullScreen : windowState() & ~Qt::WindowFullScreen);
}

void PlayerWindow::changeEvent(QEvent* event) {
    if (event->type() == QEvent::WindowStateChange) {
        _bar->setVisible(!isFullScreen());
        _fullScreen->setChecked(isFullScreen());
        _leave->setEnabled(isFullScreen());
    }
    QMainWindow::changeEvent(event);
}

} // namespace zelk
