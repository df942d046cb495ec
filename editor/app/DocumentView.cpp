#include "DocumentView.h"

#include <QFileInfo>
#include <QVBoxLayout>

namespace zelk {

DocumentView::DocumentView(QWidget* parent) : QWidget(parent), _editor(new TextEditorView(this)) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(_editor);
    setFocusProxy(_editor);
    connect(_editor, &TextEditorView::modificationChanged, this, [this](bool isModified) {
        _document.isModified = isModified;
        Q_EMIT stateChanged();
    });
    connect(_editor, &TextEditorView::placeChanged, this, &DocumentView::stateChanged);
}

QString DocumentView::title() const {
    return QFileInfo(fileName()).fileName() + (_document.isModified ? QStringLiteral("*") : QString());
}

void DocumentView::setText(std::string bytes) { _editor->setText(std::move(bytes)); }

void DocumentView::gotoPlace(uint32_t row, uint32_t column) {
    _editor->gotoPlace(row, column);
    _editor->setFocus();
}

} // namespace zelk
