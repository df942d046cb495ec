#include "PrintCommands.h"

#include <QFileInfo>
#include <QFontDatabase>
#include <QPdfWriter>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QSaveFile>
#include <QToolButton>

#include "Exceptions.h"
#include "FileDialog.h"
#include "HtmlWriter.h"
#include "PagePainter.h"

namespace zelk::guicommand {

namespace {

constexpr int mostPreviewed = 300; // pages: they are all kept in memory
constexpr int points = 8;

QFont pageFont() {
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setPointSize(points);
    return font;
}

struct PageParams : ThreadParams {
    QPagedPaintDevice* device = nullptr;
    PrintSource source;
    PagePainter::Pages pages;
    QFont font = pageFont();
};

void paintPages(PageParams& params) {
    const PrintSource& source = params.source;
    PagePainter(*params.device, params.font, source.title)
        .paint({source.text, source.start, source.end}, params.pages, params.progress);
}

struct ExportTextParams : PageParams {
    QString fileName;
};

void writeTextFile(ExportTextParams& params) {
    QSaveFile file(params.fileName);
    const auto fail = [&](const QString& reason) {
        throw FileSaveException(params.fileName.toStdString(), reason.toStdString());
    };
    if (!file.open(QIODevice::WriteOnly))
        fail(file.errorString());
    try {
        if (QFileInfo(params.fileName).suffix().compare(QStringLiteral("pdf"), Qt::CaseInsensitive) == 0) {
            QPdfWriter writer(&file);
            writer.setTitle(params.source.title);
            writer.setPageMargins(QMarginsF(15, 15, 15, 15), QPageLayout::Millimeter);
            params.device = &writer;
            paintPages(params);
        } else {
            const PrintSource& source = params.source;
            writeHtml({source.text, source.start, source.end}, source.title, file, params.progress);
        }
    } catch (const std::runtime_error& error) {
        fail(QString::fromUtf8(error.what()));
    }
    if (!file.commit())
        fail(file.errorString());
}

} // namespace

PrintSource PrintSource::of(DocumentView& view, bool isSelectionOnly) {
    TextEditorView& editor = view.editor();
    PrintSource source{editor.text(), 0, editor.text().size(), QFileInfo(view.fileName()).fileName()};
    if (!isSelectionOnly || view.showsList() || !editor.hasSelection())
        return source;
    const TextMatch selection = editor.selection();
    const size_t before = selection.start == 0 ? std::string_view::npos : source.text.rfind('\n', selection.start - 1);
    source.start = before == std::string_view::npos ? 0 : before + 1;
    const bool isBehindLine = selection.end > selection.start && source.text[selection.end - 1] == '\n';
    source.end = isBehindLine ? selection.end : std::min(source.text.find('\n', selection.end), source.end);
    return source;
}

bool PrintCmd::Execute() {
    QPrinter printer(QPrinter::HighResolution);
    printer.setDocName(_view.title());
    QPrintDialog dialog(&printer, _view.window());
    if (!_view.showsList() && _view.editor().hasSelection())
        dialog.setOption(QAbstractPrintDialog::PrintSelection);
    if (dialog.exec() != QDialog::Accepted)
        return false;
    PageParams params;
    params.device = &printer;
    params.source = PrintSource::of(_view, dialog.printRange() == QAbstractPrintDialog::Selection);
    if (printer.printRange() == QPrinter::PageRange && printer.fromPage() > 0)
        params.pages = {printer.fromPage(), printer.toPage()};
    runJob<paintPages>(_session.user, "Printing", params);
    return true;
}

namespace {

// Qt leaves some parts of its dialog without a name for screen readers.
void nameParts(QPrintPreviewDialog& dialog) {
    for (auto* more : dialog.findChildren<QToolButton*>(QStringLiteral("qt_toolbar_ext_button")))
        more->setAccessibleName(QObject::tr("More"));
    for (auto* pages : dialog.findChildren<QGraphicsView*>())
        pages->setAccessibleName(QObject::tr("Pages"));
    for (auto* scale : dialog.findChildren<QComboBox*>())
        scale->setAccessibleName(QObject::tr("Scale"));
    for (auto* field : dialog.findChildren<QLineEdit*>()) {
        if (qobject_cast<QComboBox*>(field->parent()) == nullptr)
            field->setAccessibleName(QObject::tr("Page"));
    }
}

} // namespace

bool PrintPreviewCmd::Execute() {
    QPrinter printer(QPrinter::HighResolution);
    printer.setDocName(_view.title());
    QPrintPreviewDialog dialog(&printer, _view.window());
    dialog.setWindowTitle(QObject::tr("Print Preview - %1").arg(_view.title()));
    nameParts(dialog);
    QObject::connect(&dialog, &QPrintPreviewDialog::paintRequested, &dialog, [&](QPrinter* pages) {
        PageParams params;
        params.device = pages;
        params.source = PrintSource::of(_view, false);
        params.pages.last = mostPreviewed;
        try {
            runJob<paintPages>(_session.user, "Preparing pages", params);
        } catch (...) {
            reportFailure(_session, std::current_exception());
        }
    });
    dialog.exec();
    return true;
}

bool ExportTextCmd::Execute() {
    const QFileInfo document(_view.fileName());
    FileDialog dialog(_view.window(), QObject::tr("Export Text"),
                      {{QObject::tr("PDF File (*.pdf)"), QStringLiteral("*.pdf")},
                       {QObject::tr("HTML File (*.html)"), QStringLiteral("*.html *.htm")}});
    if (document.isAbsolute())
        dialog.setDirectory(document.absolutePath());
    dialog.selectFile(document.completeBaseName() + QStringLiteral(".pdf"));
    const auto name = dialog.askWhereToSave([](const QString& typed, qsizetype kind) {
        const QString suffix = QFileInfo(typed).suffix().toLower();
        const bool isWhole = suffix == u"pdf" || suffix == u"html" || suffix == u"htm";
        return isWhole ? typed : typed + (kind == 0 ? QStringLiteral(".pdf") : QStringLiteral(".html"));
    });
    if (!name)
        return false;
    ExportTextParams params;
    params.fileName = *name;
    params.source = PrintSource::of(_view, true);
    runJob<writeTextFile>(_session.user, "Exporting", params);
    _fileName = *name;
    return true;
}

} // namespace zelk::guicommand
