// The actions behind menus, tool bar, context menus and shortcuts, made from the command table.
#pragma once

#include <QAction>
#include <QHash>
#include <QMenu>

#include "CommandTable.h"

class QMenuBar;
class QToolBar;

namespace zelk {

/// What is there at the moment, for the commands that need it.
struct CommandState {
    int documents = 0;
    bool hasFile = false, canUndo = false, canRedo = false, hasSelection = false;
    bool showsList = false; ///< and not the text

    bool meets(Needs needs) const;
};

class CommandActions : public QObject {
    Q_OBJECT
public:
    /// The shortcuts work while `window` is active.
    explicit CommandActions(QWidget* window);

    QAction* action(int id) const { return _actions.value(id); }
    /// The menu that stands in place of a command: recent files, themes. It is filled each time it opens.
    QMenu* submenu(int id) const { return _submenus.value(id); }

    void fill(QMenuBar& bar);
    void fill(QToolBar& bar);
    void fill(QMenu& menu, std::span<const MenuItem> items);
    void update(const CommandState& state);

Q_SIGNALS:
    void chosen(int id);

private:
    void addItem(QMenu& menu, const MenuItem& item);
    QAction* make(const CommandRow& row, QWidget* window);

    QHash<int, QAction*> _actions;
    QHash<int, QMenu*> _submenus;
};

} // namespace zelk
