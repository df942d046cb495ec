// Tells where a movie in the classic form shows other values than players read.
#pragma once

#include <QCoreApplication>
#include <QString>

#include "Session.h"

namespace zelk {

class DocumentView;

class FormNotice {
    Q_DECLARE_TR_FUNCTIONS(FormNotice)
public:
    /// Puts a bar above the text when the document has such values, and takes it away otherwise.
    static void show(DocumentView& view, Session& session);

    /// "14 values and 3 tags of this movie read differently in players."; empty for none.
    static QString text(const FormDifferences& differences);
};

} // namespace zelk
