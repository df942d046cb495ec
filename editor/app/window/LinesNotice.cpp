#include "LinesNotice.h"

#include <QPushButton>

#include "DocumentView.h"
#include "FormatXml.h"
#include "NoticeBar.h"

namespace zelk {

namespace {

const QString noticeName = QStringLiteral("lines");

} // namespace

void LinesNotice::show(DocumentView& view, std::function<void()> format) {
    if (!hasVeryLongLines(view.text()))
        return;
    NoticeBar* bar = view.addNotice(noticeName);
    bar->setText(tr("This document has very long lines."),
                 tr("Formatting puts each element on a line of its own. The movie stays what it is."));
    QObject::connect(bar->addButton(tr("F&ormat XML")), &QPushButton::clicked, bar,
                     [&view, format = std::move(format)] {
                         const size_t caret = view.editor().caret();
                         view.editor().select({caret, caret}); // so that all is formatted
                         format();
                     });
    QObject::connect(bar->addButton(tr("Hi&de")), &QPushButton::clicked, bar, [&view] { drop(view); });
}

void LinesNotice::drop(DocumentView& view) { view.dropNotice(noticeName); }

} // namespace zelk
