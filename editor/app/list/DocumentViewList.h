// A document as a list of its tags.
#pragma once

#include <QItemSelection>
#include <QSet>
#include <QWidget>

#include "CommandHistory.h"
#include "DocumentViewListCommands.h"
#include "ListViewController.h"
#include "SystemClipboard.h"
#include "TagTree.h"

class QLabel;
class QLineEdit;

namespace zelk {

class TagEditorDlg;
class TagListModel;

class DocumentViewList : public QWidget {
    Q_OBJECT
public:
    explicit DocumentViewList(TaggedText& text, QWidget* parent = nullptr);

    /// Shows the text as it is now. Throws XmlException; the list is empty then.
    void refresh();
    /// The same while the list is shown: keeps the selection and loses the list with a text that is not well-formed.
    void showChange();
    /// What ids are called beside their numbers.
    void setCharacters(std::shared_ptr<const CharacterIndex> characters);
    /// False from a change of the text to the next of these.
    bool isCurrent() const { return _controller.isCurrent(); }
    /// Makes a tag the current one, and the only selected one. A filter that hides it goes.
    void select(uint32_t tag);
    /// The one that the current row stands for or in; TagIndex::movie when there is none.
    uint32_t currentTag() const;
    /// Where the class or method of the current row starts in the text; none for rows of tags.
    std::optional<size_t> currentCode() const;
    /// Of tags.
    bool hasSelection() const;
    /// The line above the list.
    QString headerText() const;

    /// Whether `run` knows what this command of the table does to the list.
    static bool handles(int id);
    /// Carries out a command of the table on the selected tags.
    void run(Session& session, int id);
    /// Carries out a command on this document's tags and shows what it did.
    void execute(Session& session, const guicommand::CommandPtr& command);

    TagTree& tree() { return *_tree; }

Q_SIGNALS:
    /// Another tag is the current one, or the text of the current one may have changed.
    void currentTagChanged();
    void selectionChanged();
    /// Please run this command of the table.
    void commandAsked(int id);
    /// Please show this place of the text.
    void placeAsked(size_t offset);
    /// Please hand this to `execute`.
    void executeAsked(guicommand::CommandPtr command);
    /// The text is no longer well-formed.
    void listLost();
    void menuAsked(const QPoint& globalPos);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void buildLayout();
    void connectTree();
    /// Gives the filter the keyboard.
    void openFilter();
    void showFilter();
    void showCounts();
    void rebuild(guicommand::documentviewlist::TagSelection kept = {});
    QByteArray nameOfExpanded(uint32_t key) const;
    void rememberExpanded(uint32_t key, bool isExpanded);
    void expandCode(uint32_t tag);
    void activate();
    void expandAsBefore();
    void showResult();
    void rebuildAt(const guicommand::documentviewlist::TagSelection& paths, const TagPath& place,
                   const TagPath& changed = {});
    TagEditorDlg& tagEditor();
    void selectNear(TagPath path);
    void selectPaths(guicommand::documentviewlist::TagSelection paths);

    uint32_t tagOf(const QModelIndex& row) const;
    static bool holdsTags(const QItemSelectionRange& range);
    guicommand::documentviewlist::TagSelection selection() const;
    TagPath currentPath() const;
    /// Behind the selected tags, or else the current one, or at the end.
    TagPath positionToInsert() const;
    /// Empty when there is no way to go.
    TagPath positionOfStep(TagTree::Step step) const;
    TagPath positionOfDrop(const QModelIndex& target, TagTree::Drop where) const;
    void insertNew(Session& session);
    void moveTo(const TagPath& position);

    TaggedText& _text;
    guicommand::CommandHistory _history;
    ListViewController _controller;
    SystemClipboard _clipboard;
    TagListModel* _model;
    QLabel* _header;
    QLabel* _counts;
    QLineEdit* _filter;
    TagTree* _tree;
    QSet<QByteArray> _expanded;     // the ids of the sprites that are open
    QSet<QByteArray> _expandedCode; // tags with code, and classes
    TagEditorDlg* _editor = nullptr;
};

} // namespace zelk
