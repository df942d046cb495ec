// Asks for one of a text's symbols by a part of its name.
#pragma once

#include <QDialog>

#include <optional>
#include <vector>

#include "Symbols.h"

class QLabel;
class QLineEdit;
class QPushButton;
class QTreeWidget;

namespace zelk {

class FindSymbolDlg : public QDialog {
    Q_OBJECT
public:
    /// The symbols have to live as long as the dialog.
    FindSymbolDlg(const std::vector<Symbol>& symbols, QWidget* parent);

    /// After it was accepted.
    const Symbol& choice() const;

private:
    static constexpr size_t mostShown = 500;
    void showMatching(const QString& filter);

    const std::vector<Symbol>& _symbols;
    QLineEdit* _filter;
    QTreeWidget* _list;
    QLabel* _count;
    QPushButton* _go;
};

} // namespace zelk
