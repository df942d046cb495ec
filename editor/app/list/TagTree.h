// The tree of tags: keys and dropping.
#pragma once

#include <QTreeView>

namespace zelk {

class TagTree : public QTreeView {
    Q_OBJECT
public:
    /// Where selected tags are moved with the keyboard.
    enum class Step : uint8_t { up, down, out, in };

    /// Where something is dropped, seen from a row.
    enum class Drop : uint8_t { above, below, on };

    explicit TagTree(QWidget* parent = nullptr);

    /// The outermost rows: what is inside goes with them.
    void selectAll() override;

Q_SIGNALS:
    void editAsked();
    void deleteAsked();
    void insertAsked();
    void duplicateAsked();
    void moveAsked(TagTree::Step step);
    /// The selected rows were dropped; the target is not valid below the last row.
    void dropped(const QModelIndex& target, TagTree::Drop where);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index,
                                                         const QEvent* event = nullptr) const override;
};

} // namespace zelk
