// Print, Print Preview, Export Text: of the selected lines, or of all.
#pragma once

#include <QPrinter>

#include "Command.h"
#include "DocumentView.h"

namespace zelk::guicommand {

/// What is to be put on pages.
struct PrintSource {
    std::string_view text; ///< which cannot change while the command runs
    size_t start = 0, end = 0;
    QString title;

    /// The lines with the selection when there is one and it is asked for, or all of them.
    static PrintSource of(DocumentView& view, bool isSelectionOnly);
};

class PrintCmd : public FinalCommand {
public:
    PrintCmd(Session& session, DocumentView& view) : _session(session), _view(view) {}
    bool Execute() override;

private:
    Session& _session;
    DocumentView& _view;
};

class PrintPreviewCmd : public FinalCommand {
public:
    PrintPreviewCmd(Session& session, DocumentView& view) : _session(session), _view(view) {}
    bool Execute() override;

private:
    Session& _session;
    DocumentView& _view;
};

/// As PDF or as HTML, in the colours of the text view.
class ExportTextCmd : public FinalCommand {
public:
    ExportTextCmd(Session& session, DocumentView& view) : _session(session), _view(view) {}
    /// Throws FileSaveException; what stood in the file's place stays then.
    bool Execute() override;
    const QString& fileName() const { return _fileName; }

private:
    Session& _session;
    DocumentView& _view;
    QString _fileName;
};

} // namespace zelk::guicommand
