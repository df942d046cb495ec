// Offers to format a document whose lines are too long to be read.
#pragma once

#include <QCoreApplication>

#include <functional>

namespace zelk {

class DocumentView;

class LinesNotice {
    Q_DECLARE_TR_FUNCTIONS(LinesNotice)
public:
    /// Puts a bar above the text when the document has such lines. `format` formats all of the document that is shown.
    static void show(DocumentView& view, std::function<void()> format);
    static void drop(DocumentView& view);
};

} // namespace zelk
