#include "TagEditorDlg.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

#include "DocumentFonts.h"
#include "TagCheck.h"
#include "Theme.h"
#include "ThemeIcon.h"
#include "WindowDialogs.h"

namespace zelk {

TagEditorDlg::TagEditorDlg(QWidget* parent, TaggedText& document)
    : QDialog(parent), _document(document), _editor(new TextEditorView(this)) {
    setWindowTitle(tr("Tag Editor"));
    setSizeGripEnabled(true);
    resizeOnScreen(*this, {760, 480});
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(_editor);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    for (QAbstractButton* button : buttons->buttons())
        static_cast<QPushButton*>(button)->setAutoDefault(false); // Return belongs to the text.
    auto* place = new QLabel(this);
    auto* bottom = new QHBoxLayout;
    bottom->addWidget(place);
    bottom->addWidget(buttons);
    layout->addLayout(bottom);
    connect(_editor, &TextEditorView::placeChanged, this,
            [this, place] { place->setText(tr("Row %1, column %2").arg(_editor->row()).arg(_editor->column())); });
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    buttons->button(QDialogButtonBox::Ok)->setToolTip(tr("Take the tag over (Ctrl+Return)"));
    for (int key : {Qt::Key_Return, Qt::Key_Enter})
        connect(new QShortcut(QKeySequence(Qt::CTRL | key), this), &QShortcut::activated, this, &QDialog::accept);
    // The text would take the key, for lists of its own.
    connect(new QShortcut(QKeySequence(Qt::Key_Escape), this), &QShortcut::activated, this, [this] {
        if (_editor->send(QsciScintillaBase::SCI_AUTOCACTIVE) != 0)
            _editor->send(QsciScintillaBase::SCI_AUTOCCANCEL);
        else
            reject();
    });
    addEditActions();
}

// The keys that the window's commands have otherwise.
void TagEditorDlg::addEditActions() {
    struct Row {
        QString text;
        const char* icon;
        QList<QKeySequence> keys;
        void (TextEditorView::*slot)();
    };
    const Row rows[] = {
        {tr("&Undo"), "undo", {QKeySequence(Qt::CTRL | Qt::Key_Z)}, &TextEditorView::undo},
        {tr("&Redo"), "redo", {QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z)}, &TextEditorView::redo},
        {tr("Cut"), "cut", {QKeySequence(Qt::CTRL | Qt::Key_X)}, &TextEditorView::cut},
        {tr("Copy"), "copy", {Qt::CTRL | Qt::Key_C, Qt::CTRL | Qt::Key_Insert}, &TextEditorView::copy},
        {tr("Paste"), "paste", {Qt::CTRL | Qt::Key_V, Qt::SHIFT | Qt::Key_Insert}, &TextEditorView::paste},
        {tr("Select All"), "", {QKeySequence(Qt::CTRL | Qt::Key_A)}, &TextEditorView::selectAll},
    };
    for (const Row& row : rows) {
        auto* action = new QAction(themeIcon(QString::fromLatin1(row.icon)), row.text, this);
        action->setShortcuts(row.keys);
        connect(action, &QAction::triggered, _editor, row.slot);
        addAction(action);
    }
    connect(_editor, &TextEditorView::contextMenuAsked, this,
            [this](const QPoint& position) { QMenu::exec(actions(), position, nullptr, this); });
}

std::optional<std::string> TagEditorDlg::editTag(const std::string& element, MovieLayout layout) {
    _layout = layout;
    _editor->setForm(layout.fullForm);
    _editor->setText(element);
    _editor->setFocus();
    if (exec() != QDialog::Accepted)
        return std::nullopt;
    return std::string(_editor->text());
}

// What compiling would leave out is asked about now, while its reason stands on the screen.
bool TagEditorDlg::confirms(const libswf::SwfWarnings& warnings) {
    constexpr size_t mostShown = 8;
    if (warnings.empty())
        return true;
    QStringList lines;
    for (const libswf::SwfWarning& warning : warnings.items()) {
        const QString reason = QString::fromStdString(warning.reason);
        if (static_cast<size_t>(lines.size()) < mostShown)
            lines.append(warning.row == 0
                             ? reason
                             : tr("Row %1, column %2: %3").arg(warning.row).arg(warning.column).arg(reason));
    }
    if (warnings.total() > mostShown)
        lines.append(tr("and %1 more").arg(warnings.total() - mostShown));
    lines.append(tr("\nTake the tag over all the same?"));
    const auto answer = QMessageBox::question(this, windowTitle(), lines.join(u'\n'),
                                              QMessageBox::Yes | QMessageBox::No, QMessageBox::No);
    if (answer == QMessageBox::Yes)
        return true;
    const libswf::SwfWarning& first = warnings.items().front();
    if (first.row != 0)
        _editor->gotoPlace(first.row, first.column);
    return false;
}

void TagEditorDlg::accept() {
    if (!_editor->isModified() && !_editor->text().empty())
        return QDialog::accept();
    libswf::SwfWarnings warnings;
    try {
        const std::string_view text = _editor->text();
        const xml2swf::FontTables fonts =
            fontsOf(_document.text(), _document.tags(), spelledFonts(text, _layout.fullForm));
        checkTag(text, _layout, warnings, &fonts);
    } catch (...) {
        const Failure failure = describeFailure();
        WindowDialogs(this).report(failure);
        if (failure.row != 0)
            _editor->gotoPlace(failure.row, failure.column);
        _editor->setFocus();
        return;
    }
    if (confirms(warnings))
        QDialog::accept();
}

void TagEditorDlg::reject() {
    if (_editor->isModified()) {
        const auto answer = QMessageBox::question(this, windowTitle(), tr("Give up the changes to this tag?"),
                                                  QMessageBox::Discard | QMessageBox::Cancel, QMessageBox::Cancel);
        if (answer != QMessageBox::Discard)
            return;
    }
    QDialog::reject();
}

} // namespace zelk
