#include "MainWindow.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDir>
#include <QFileInfo>
#include <QMimeData>
#include <QScreen>
#include <QToolBar>

#include "DocumentViewCommands.h"
#include "DocumentViewTextCommands.h"
#include "ThemeIcon.h"

// A library's resources are linked in only when something asks for them, and not from inside a namespace.
static void loadIcons() { Q_INIT_RESOURCE(icons); }

namespace zelk {

namespace {

// Before the actions, which have icons.
CommandActions* makeActions(QWidget* window) {
    loadIcons();
    return new CommandActions(window);
}

} // namespace

using namespace guicommand;
using namespace guicommand::documentview;
using namespace guicommand::documentviewtext;

MainWindow::MainWindow(QSettings& settings)
    : _settings(settings), _dialogs(this), _session(_dialogs), _player(settings, _requests),
      _recentSettings(settings, QStringLiteral("RecentList/Recent Document List")), _recentFiles(_recentSettings),
      _actions(makeActions(this)), _tabs(new DocumentTabsView(this)), _statusBar(new StatusBar(this)),
      _warnings(new WarningsPanel(this)), _search(new SearchController(this)) {
    setWindowIcon(QIcon(QStringLiteral(":/icons/zelk.svg")));
    setAcceptDrops(true);
    _session.player = &_player;
    setCentralWidget(_tabs);
    setStatusBar(_statusBar);
    addDockWidget(Qt::BottomDockWidgetArea, _warnings);
    _actions->fill(*menuBar());
    QToolBar* bar = addToolBar(tr("Tool Bar"));
    bar->setObjectName(QStringLiteral("toolBar"));
    bar->setIconSize({20, 20});
    _actions->fill(*bar);
    addHandlers();
    connect(_actions, &CommandActions::chosen, this, &MainWindow::run);
    connect(_actions->submenu(CommandId::recentFiles), &QMenu::aboutToShow, this, &MainWindow::fillRecentFiles);
    connect(_tabs, &DocumentTabsView::stateChanged, this, &MainWindow::showState);
    connect(_tabs, &QTabWidget::currentChanged, this, &MainWindow::showWarnings);
    connect(_tabs, &DocumentTabsView::closeAsked, this, [this](DocumentView* view) { closeView(*view); });
    connect(_tabs, &DocumentTabsView::menuAsked, this,
            [this](const QPoint& position) { showContextMenu(tabMenu(), position); });
    connect(_statusBar, &StatusBar::warningsAsked, this, [this] { run(CommandId::warnings); });
    connect(_warnings, &WarningsPanel::placeChosen, this, [this](uint32_t row, uint32_t column) {
        if (DocumentView* view = _tabs->current())
            view->gotoPlace(row, column);
    });
    connect(_search, &SearchController::resultShown, this,
            [this](const QString& text) { _statusBar->showMessage(text, 5000); });
    connect(_tabs, &QTabWidget::currentChanged, this, [this] {
        DocumentView* view = _tabs->current();
        _search->setTarget(view == nullptr ? nullptr : &view->editor());
    });
    addPreview();
    restore();
    showState();
}

// --- documents -------------------------------------------------------------------------------------------------------

void MainWindow::newDocument() {
    auto* view = new DocumentView;
    view->document() = zelk::newDocument(_session.names);
    LoadFromDocCmd(view->document(), *view).Execute();
    addView(view);
}

bool MainWindow::openFiles(const QStringList& fileNames) {
    bool all = true;
    for (const QString& name : fileNames)
        all = openFile(name) && all;
    return all;
}

void MainWindow::openLater(const QStringList& fileNames) {
    _waitingFiles += fileNames;
    _requests.addLatest(this, QStringLiteral("open"), [this] { openFiles(std::exchange(_waitingFiles, {})); });
}

void MainWindow::receiveFiles(const QStringList& fileNames) {
    setWindowState(windowState() & ~Qt::WindowMinimized);
    QWidget* const dialog = QApplication::activeModalWidget(); // which the files wait for
    for (QWidget* widget : {static_cast<QWidget*>(this), dialog}) {
        if (widget == nullptr)
            continue;
        widget->raise();
        widget->activateWindow();
    }
    openLater(fileNames);
}

bool MainWindow::openFile(const QString& fileName) {
    const QString name = QFileInfo(fileName).absoluteFilePath();
    if (DocumentView* view = viewOf(name)) {
        _tabs->setCurrentWidget(view);
        return true;
    }
    auto view = std::make_unique<DocumentView>();
    MacroCommand command{std::make_shared<LoadFromFileCmd>(_session, view->document(), name.toStdString()),
                         std::make_shared<LoadFromDocCmd>(view->document(), *view)};
    if (!execute(command, nullptr)) {
        if (!QFileInfo::exists(name))
            _recentFiles.remove(name.toStdString());
        return false;
    }
    _recentFiles.add(name.toStdString());
    DocumentView* untouched = _tabs->count() == 1 && isUntouchedNew(*_tabs->at(0)) ? _tabs->at(0) : nullptr;
    addView(view.release());
    if (untouched != nullptr)
        _tabs->remove(untouched);
    return true;
}

bool MainWindow::isUntouchedNew(const DocumentView& view) const {
    return !view.document().hasFile && !view.document().isModified;
}

DocumentView* MainWindow::viewOf(const QString& fileName) const {
    const QFileInfo file(fileName);
    for (DocumentView* view : _tabs->all()) {
        if (view->document().hasFile && QFileInfo(view->fileName()) == file)
            return view;
    }
    return nullptr;
}

void MainWindow::addView(DocumentView* view) {
    watch(*view);
    _tabs->add(view);
    showState();
    showWarnings();
}

void MainWindow::watch(DocumentView& view) {
    connect(&view.editor(), &TextEditorView::contextMenuAsked, this,
            [this](const QPoint& position) { showContextMenu(textViewMenu(), position); });
    watchList(view);
    // The text would take the name of a dropped file as text.
    for (QWidget* widget : view.findChildren<QWidget*>())
        widget->installEventFilter(this);
}

bool MainWindow::save(DocumentView& view) {
    if (!view.document().hasFile)
        return saveAs(view);
    return saveBy(view, std::make_shared<SaveToFileCmd>(_session, view.document()));
}

bool MainWindow::saveAs(DocumentView& view) {
    return saveBy(view, std::make_shared<SaveAsFileCmd>(_session, view.document()));
}

bool MainWindow::saveBy(DocumentView& view, CommandPtr command) {
    MacroCommand all{std::make_shared<SaveAsDocCmd>(view.document(), view), std::move(command)};
    const bool isDone = execute(all, &view);
    view.document().text = {};
    if (!isDone)
        return false;
    view.setSavePoint();
    _recentFiles.add(view.document().fileName);
    Q_EMIT view.stateChanged();
    showWarnings();
    _statusBar->showMessage(tr("Saved %1").arg(view.fileName()), 5000);
    return true;
}

void MainWindow::play(DocumentView& view) {
    MacroCommand all{std::make_shared<SaveAsDocCmd>(view.document(), view),
                     std::make_shared<SwfPlayCmd>(_session, view.document())};
    execute(all, &view);
    view.document().text = {};
    showWarnings();
}

bool MainWindow::closeView(DocumentView& view) {
    if (view.document().isModified) {
        _tabs->setCurrentWidget(&view);
        const SaveAnswer answer = _dialogs.askToSave(view.document());
        if (answer == SaveAnswer::cancel || (answer == SaveAnswer::yes && !save(view)))
            return false;
    }
    _tabs->remove(&view);
    showState();
    showWarnings();
    return true;
}

bool MainWindow::closeViews(const DocumentView* butThis) {
    for (DocumentView* view : _tabs->all()) {
        if (view != butThis && !closeView(*view))
            return false;
    }
    return true;
}

bool MainWindow::execute(ICommand& command, ITextView* view) { return runCommand(_session, command, view); }

// --- what is shown ---------------------------------------------------------------------------------------------------

void MainWindow::showState() {
    DocumentView* view = _tabs->current();
    CommandState state;
    state.documents = _tabs->count();
    QString title = QStringLiteral("Zelk");
    if (view != nullptr) {
        TextEditorView& editor = view->editor();
        state.hasFile = view->document().hasFile;
        state.canUndo = editor.canUndo();
        state.canRedo = editor.canRedo();
        state.hasSelection = editor.hasSelection();
        title = view->title() + QStringLiteral(" - ") + title;
        _statusBar->showPlace(editor.row(), editor.column());
    } else {
        _statusBar->showPlace(0, 0);
    }
    _actions->update(state);
    showListState();
    if (windowTitle() != title)
        setWindowTitle(title);
}

void MainWindow::showWarnings() {
    const DocumentView* view = _tabs->current();
    const DocumentWarnings& warnings = view == nullptr ? DocumentWarnings() : view->document().warnings;
    _warnings->setWarnings(warnings);
    _statusBar->showWarnings(warnings.size());
}

void MainWindow::showContextMenu(std::span<const MenuItem> items, const QPoint& globalPos) {
    QMenu menu(this);
    _actions->fill(menu, items);
    menu.exec(globalPos);
}

void MainWindow::fillRecentFiles() {
    QMenu* menu = _actions->submenu(CommandId::recentFiles);
    menu->clear();
    int number = 0;
    for (const std::string& name : _recentFiles.files()) {
        const QString path = QString::fromStdString(name);
        ++number;
        QAction* entry = menu->addAction(
            QStringLiteral("&%1 %2").arg(number).arg(QString(path).replace(u'&', QStringLiteral("&&"))));
        entry->setObjectName(QString::number(CommandId::firstRecentFile + number - 1));
        connect(entry, &QAction::triggered, this, [this, path] { openFile(path); });
    }
    if (number == 0)
        menu->addAction(_actions->action(CommandId::firstRecentFile));
}

// --- events ----------------------------------------------------------------------------------------------------------

void MainWindow::run(int id) {
    if (const Handler handler = _handlers.value(id))
        handler();
    showState();
}

void MainWindow::restore() {
    resize(QSize(1100, 760).boundedTo(screen()->availableSize() - QSize(40, 80)));
    restoreGeometry(_settings.value(QStringLiteral("Window/geometry")).toByteArray());
    restoreState(_settings.value(QStringLiteral("Window/state")).toByteArray());
    setTheme(_settings.value(QStringLiteral("Window/theme"), CommandId::themeSystem).toInt());
}

void MainWindow::closeEvent(QCloseEvent* event) {
    event->ignore();
    if (_requests.isBusy()) { // The window manager can ask for it while a job runs.
        _requests.addLatest(this, QStringLiteral("close"), [this] { close(); });
        return;
    }
    if (!closeViews() || !_waitingFiles.isEmpty()) // Those that came while the user was asked have the window then.
        return;
    _settings.setValue(QStringLiteral("Window/geometry"), saveGeometry());
    _settings.setValue(QStringLiteral("Window/state"), saveState());
    event->accept();
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
    if (event->mimeData()->hasUrls())
        event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent* event) {
    QStringList files;
    for (const QUrl& url : event->mimeData()->urls()) {
        if (url.isLocalFile())
            files.append(url.toLocalFile());
    }
    event->acceptProposedAction();
    openLater(files);
}

// Files dropped onto the text are opened like those dropped elsewhere.
bool MainWindow::eventFilter(QObject* watched, QEvent* event) {
    const auto type = event->type();
    if (type == QEvent::DragEnter || type == QEvent::DragMove || type == QEvent::Drop) {
        auto* drop = static_cast<QDropEvent*>(event);
        if (!drop->mimeData()->hasUrls())
            return false;
        if (type == QEvent::Drop)
            dropEvent(drop);
        else
            drop->acceptProposedAction();
        return true;
    }
    return QMainWindow::eventFilter(watched, event);
}

} // namespace zelk
