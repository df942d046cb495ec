#include "MainWindow.h"

#include <QApplication>
#include <QCloseEvent>
#include <QMimeData>
#include <QScreen>
#include <QTabBar>
#include <QToolBar>
#include <QVBoxLayout>

#include "FormNotice.h"
#include "IconDrawing.h"
#include "LinesNotice.h"
#include "PreviewPane.h"
#include "SettingsDlg.h"

// A library's resources are linked in only when something asks for them, and not from inside a namespace.
static void loadIcons() { Q_INIT_RESOURCE(icons); }

namespace zelk {

namespace {

// Before the actions, which have icons.
CommandActions* makeActions(QWidget* window) {
    loadIcons();
    return new CommandActions(window);
}

StartPage* makeStart(const CommandActions& actions, QWidget* window) {
    return new StartPage(
        {actions.action(CommandId::fileOpen), actions.action(CommandId::fileNew), actions.action(CommandId::guide)},
        window);
}

} // namespace

MainWindow::MainWindow(QSettings& settings, const QString& stateFolder)
    : _settings(settings), _dialogs(this), _session(_dialogs), _player(settings, _requests),
      _recentSettings(settings, QStringLiteral("RecentList/Recent Document List")), _recentFiles(_recentSettings),
      _actions(makeActions(this)), _tabs(new DocumentTabsView(this)), _start(makeStart(*_actions, this)),
      _pages(new QStackedWidget(this)), _statusBar(new StatusBar(this)), _warnings(new WarningsPanel(this)),
      _uses(new UsesPanel(this)), _results(new ResultsPanel(this)), _kinds(new KindsPanel(this)),
      _texts(new TextsPanel(this)), _preview(new PreviewPane(this)), _search(new SearchController(this, settings)),
      _documents(_session, _recentFiles, *_tabs),
      _commands({*this, _settings, _session, _dialogs, _documents, *_tabs, *_actions, *_search, *_warnings, *_uses,
                 *_results, *_kinds, *_texts, *_preview, *_statusBar}),
      _keeper(
          {*this, _settings, _session, _documents, *_tabs, _requests, *_actions->action(CommandId::reopenSession)}) {
    _session.player = &_player;
    buildLayout();
    connectParts();
    if (!stateFolder.isEmpty())
        _keeper.keepIn(stateFolder);
    restore();
    showState();
    showStart();
}

void MainWindow::buildLayout() {
    setWindowIcon(programIcon());
    setAcceptDrops(true);
    auto* documents = new QWidget(this);
    auto* layout = new QVBoxLayout(documents);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(_tabs, 1);
    layout->addWidget(&_search->bars());
    _pages->addWidget(_start);
    _pages->addWidget(documents);
    setCentralWidget(_pages);
    setStatusBar(_statusBar);
    addDockWidget(Qt::BottomDockWidgetArea, _warnings);
    addDockWidget(Qt::BottomDockWidgetArea, _uses);
    tabifyDockWidget(_warnings, _uses);
    addDockWidget(Qt::BottomDockWidgetArea, _results);
    tabifyDockWidget(_warnings, _results);
    addDockWidget(Qt::LeftDockWidgetArea, _kinds);
    addDockWidget(Qt::BottomDockWidgetArea, _texts);
    tabifyDockWidget(_warnings, _texts);
    addDockWidget(Qt::RightDockWidgetArea, _preview);
    _actions->fill(*menuBar());
    QToolBar* bar = addToolBar(tr("Tool Bar"));
    bar->setObjectName(QStringLiteral("toolBar"));
    bar->setIconSize({20, 20});
    _actions->fill(*bar);
}

void MainWindow::connectParts() {
    connect(_actions, &CommandActions::chosen, this, &MainWindow::run);
    connect(_actions->submenu(CommandId::recentFiles), &QMenu::aboutToShow, this, &MainWindow::fillRecentFiles);
    connect(&_documents, &OpenDocuments::added, this, [this](DocumentView* view) {
        watch(*view);
        view->editor().setTextLook(textLook(_settings));
        FormNotice::show(*view, _session);
        LinesNotice::show(*view, [this] { run(CommandId::formatXml); });
    });
    connect(&_documents, &OpenDocuments::agreed, this,
            [this](DocumentView* view) { FormNotice::show(*view, _session); });
    connect(&_documents, &OpenDocuments::changed, this, [this] {
        showState();
        showWarnings();
    });
    connect(&_documents, &OpenDocuments::saved, this,
            [this](const QString& fileName) { _statusBar->showMessage(tr("Saved %1").arg(fileName), 5000); });
    connect(_tabs, &DocumentTabsView::stateChanged, this, &MainWindow::showState);
    connect(_tabs, &DocumentTabsView::closeAsked, this, [this](DocumentView* view) { _documents.close(*view); });
    connect(_tabs, &DocumentTabsView::menuAsked, this,
            [this](const QPoint& position) { showContextMenu(tabMenu(), position); });
    connect(_tabs, &QTabWidget::currentChanged, this, [this] {
        DocumentView* view = _tabs->current();
        _search->setTarget(view == nullptr ? nullptr : &view->editor());
        showWarnings();
        _uses->showDocument(view);
        _kinds->showDocument(view);
        showPreview();
        _texts->showDocument(view);
    });
    connect(_statusBar, &StatusBar::warningsAsked, this, [this] { run(CommandId::warnings); });
    connect(_warnings, &WarningsPanel::chosen, this, [this](WarningList::Entry entry) {
        if (DocumentView* view = _tabs->current())
            view->gotoWarning(entry);
    });
    for (Pane* pane : std::initializer_list<Pane*>{_warnings, _uses, _results, _kinds, _texts, _preview})
        connect(pane, &Pane::left, this, &MainWindow::goToDocument);
    connectKinds();
    connectStart();
    connect(_texts, &TextsPanel::chosen, this, [this](size_t offset, bool staysInList) {
        if (DocumentView* view = _tabs->current())
            view->jumpTo(offset);
        if (staysInList)
            _texts->list().setFocus();
    });
    connectSearch();
    // The window is no receiver here: the pane is hidden once more while the window is being destroyed.
    QAction* preview = _actions->action(CommandId::preview);
    const auto checkPreview = [pane = _preview, preview] { preview->setChecked(!pane->isHidden()); };
    connect(_preview, &QDockWidget::visibilityChanged, preview, checkPreview);
    connect(preview, &QAction::triggered, _preview, checkPreview);
}

void MainWindow::connectSearch() {
    connect(_search, &SearchController::resultShown, this,
            [this](const QString& text) { _statusBar->showMessage(text, 5000); });
    connect(_search, &SearchController::nothingFound, this, [this](const QString& pattern, bool up) {
        if (DocumentView* view = _tabs->current())
            _staticTexts.find(*view, pattern, up);
    });
    connect(&_staticTexts, &StaticTextSearch::found, this,
            [this](DocumentView* view, size_t offset, const QString& text) {
                const QPointer<QWidget> keyboard = focusWidget(); // stays with the bar
                view->editor().jumpTo(offset);
                if (keyboard != nullptr)
                    keyboard->setFocus();
                _statusBar->showMessage(tr("In a static text: %1").arg(text.simplified()), 5000);
            });
    connect(_search, &SearchController::findInAllAsked, this, [this](const SearchOptions& options) {
        const std::vector<DocumentView*> views = _tabs->all();
        _results->search(options, {views.begin(), views.end()});
    });
    connect(_results, &ResultsPanel::chosen, this, [this](DocumentView* view, size_t start, size_t end) {
        _tabs->setCurrentWidget(view);
        view->jumpTo(start);
        view->editor().select({start, end});
    });
    connect(_search, &SearchController::left, this, &MainWindow::goToDocument);
}

void MainWindow::goToDocument() {
    if (DocumentView* view = _tabs->current())
        view->setFocus();
    else
        _start->setFocus();
}

void MainWindow::connectKinds() {
    connect(_kinds, &KindsPanel::commandAsked, this, [this](int id, size_t place) {
        if (selectInList(place))
            run(id);
    });
    connect(_kinds, &KindsPanel::menuAsked, this, [this](const QPoint& position, size_t place) {
        if (selectInList(place))
            showContextMenu(tagListMenu(), position);
    });
    connect(_kinds, &KindsPanel::editAsked, this, [this](size_t place) {
        if (selectInList(place))
            Q_EMIT _tabs->current()->list().tree().editAsked();
    });
}

void MainWindow::connectStart() {
    connect(_start, &StartPage::openAsked, this, [this](const QString& fileName) { openLater({fileName}); });
    connect(_start, &StartPage::forgetAsked, this, [this](const QString& fileName) {
        _recentFiles.remove(fileName.toStdString());
        showStart();
    });
}

// Commands on tags are those of the list.
bool MainWindow::selectInList(size_t place) {
    run(CommandId::tagList);
    DocumentView* view = _tabs->current();
    if (view == nullptr || !view->showsList())
        return false;
    view->showPlace(place);
    return true;
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

void MainWindow::watch(DocumentView& view) {
    connect(&view.editor(), &TextEditorView::contextMenuAsked, this,
            [this](const QPoint& position) { showContextMenu(textViewMenu(), position); });
    connect(&view, &DocumentView::currentTagChanged, this, [this, &view] {
        if (_tabs->current() != &view)
            return;
        showPreview();
        showState();
    });
    connect(&view.list(), &DocumentViewList::commandAsked, this, &MainWindow::run);
    connect(&view.list(), &DocumentViewList::executeAsked, this, [this, &view](const guicommand::CommandPtr& command) {
        view.list().execute(_session, command);
        showState();
    });
    connect(&view.list(), &DocumentViewList::menuAsked, this,
            [this](const QPoint& position) { showContextMenu(tagListMenu(), position); });
    connect(&view, &DocumentView::warningsChanged, this, [this, &view] {
        if (_tabs->current() == &view)
            showWarnings();
    });
    // The text would take the name of a dropped file as text.
    for (QWidget* widget : view.findChildren<QWidget*>())
        widget->installEventFilter(this);
}

// --- what is shown ---------------------------------------------------------------------------------------------------

void MainWindow::showState() {
    CommandState state;
    state.documents = _tabs->count();
    QString title = QStringLiteral("Zelk");
    QString tag;
    uint32_t row = 0, column = 0;
    if (DocumentView* view = _tabs->current()) {
        TextEditorView& editor = view->editor();
        state.hasFile = view->document().hasFile;
        state.canUndo = editor.canUndo();
        state.canRedo = editor.canRedo();
        state.showsList = view->showsList();
        state.hasSelection = state.showsList ? view->list().hasSelection() : editor.hasSelection();
        title = view->title() + QStringLiteral(" - ") + title;
        if (!state.showsList) {
            row = editor.row();
            column = editor.column();
        }
        tag = view->unknownTag();
        if (tag.isEmpty())
            tag = view->characterWords();
    }
    const int page = state.documents > 0 ? 1 : 0;
    if (_pages->currentIndex() != page) {
        _pages->setCurrentIndex(page);
        if (page == 0)
            showStart();
    }
    _statusBar->showPlace(row, column);
    _statusBar->showTag(tag);
    _actions->update(state);
    if (windowTitle() != title)
        setWindowTitle(title);
}

void MainWindow::showWarnings() {
    DocumentView* view = _tabs->current();
    _warnings->showDocument(view);
    _statusBar->showWarnings(view == nullptr ? 0 : view->warnings().entries().size());
}

void MainWindow::showPreview() {
    DocumentView* view = _tabs->current();
    const auto tag = view == nullptr ? std::nullopt : view->listedTag();
    if (tag)
        _preview->showTag(view->editor(), {tag->first, tag->second});
    else
        _preview->showCaret(view == nullptr ? nullptr : &view->editor());
}

void MainWindow::showStart() {
    _start->showFiles(_recentFiles.files());
    _start->setFocus();
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
        connect(entry, &QAction::triggered, this, [this, path] { openFiles({path}); });
    }
    if (number == 0)
        menu->addAction(_actions->action(CommandId::firstRecentFile));
}

// --- events ----------------------------------------------------------------------------------------------------------

void MainWindow::run(int id) {
    _commands.run(id);
    showState();
}

void MainWindow::restore() {
    resize(QSize(1100, 760).boundedTo(screen()->availableSize() - QSize(40, 80)));
    restoreGeometry(_settings.value(QStringLiteral("Window/geometry")).toByteArray());
    restoreState(_settings.value(QStringLiteral("Window/state")).toByteArray());
    _commands.setTheme(_settings.value(QStringLiteral("Window/theme"), CommandId::themeSystem).toInt());
    _commands.setTextLook(textLook(_settings));
    _session.keepsBackups = keepsBackups(_settings);
    _commands.setFullForm(_settings.value(QStringLiteral("Movies/form")).toString() == QStringLiteral("full"));
}

void MainWindow::closeEvent(QCloseEvent* event) {
    event->ignore();
    if (_requests.isBusy()) { // The window manager can ask for it while a job runs.
        _requests.addLatest(this, QStringLiteral("close"), [this] { close(); });
        return;
    }
    _keeper.willClose();
    // Files that came while the user was asked have the window then.
    const bool ends = _documents.closeAll() && _waitingFiles.isEmpty();
    _keeper.hasEnded(ends);
    if (!ends)
        return;
    _settings.setValue(QStringLiteral("Window/geometry"), saveGeometry());
    _settings.setValue(QStringLiteral("Window/state"), saveState());
    event->accept();
}

// Not every file system tells of changes: the user may come back from the program that made them.
void MainWindow::changeEvent(QEvent* event) {
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow())
        _keeper.look();
}

// The bar that panes share stands far outside while it is not needed, and Tab would lead there. Panes have their keys.
void MainWindow::childEvent(QChildEvent* event) {
    QMainWindow::childEvent(event);
    if (auto* bar = event->polished() ? qobject_cast<QTabBar*>(event->child()) : nullptr) {
        bar->setFocusPolicy(Qt::NoFocus);
        bar->setAccessibleName(tr("Panes"));
    }
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
