#include "CommandActions.h"

#include <QMenuBar>
#include <QToolBar>

#include "ThemeIcon.h"

namespace zelk {

namespace {

QString text(const char* utf8) { return QString::fromUtf8(utf8); }

// The keys behind the tab of the menu text, then the others.
QList<QKeySequence> keysOf(const CommandRow& row) {
    QStringList names = text(row.text).split(u'\t').mid(1) + text(row.otherKeys).split(QStringLiteral("; "));
    names.removeAll(QString());
    QList<QKeySequence> keys;
    for (const QString& name : names)
        keys.append(QKeySequence(name, QKeySequence::PortableText));
    return keys;
}

QString toolTip(const QString& what, const QList<QKeySequence>& keys) {
    return keys.isEmpty() ? what : QStringLiteral("%1 (%2)").arg(what, keys.first().toString(QKeySequence::NativeText));
}

} // namespace

bool CommandState::meets(Needs needs) const {
    switch (needs) {
    case Needs::nothing: return true;
    case Needs::document: return documents > 0;
    case Needs::file: return hasFile;
    case Needs::undo: return canUndo;
    case Needs::redo: return canRedo;
    case Needs::text: return documents > 0 && !showsList;
    case Needs::selection: return hasSelection;
    case Needs::selectedText: return hasSelection && !showsList;
    case Needs::selectedTags: return hasSelection && showsList;
    case Needs::severalDocuments: return documents > 1;
    case Needs::neverMet: break;
    }
    return false;
}

CommandActions::CommandActions(QWidget* window) : QObject(window) {
    for (const CommandRow& row : commandTable())
        _actions.insert(row.id, make(row, window));
    for (int id : {CommandId::recentFiles, CommandId::theme}) {
        auto* menu = new QMenu(text(findCommand(id)->text), window);
        _submenus.insert(id, menu);
    }
    fill(*submenu(CommandId::theme), themeMenu());
    for (int id :
         {CommandId::themeSystem, CommandId::themeLight, CommandId::themeDark, CommandId::movieXml, CommandId::tagList,
          CommandId::preview, CommandId::reopenSession, CommandId::openInFullForm, CommandId::wordWrap})
        action(id)->setCheckable(true);
}

QAction* CommandActions::make(const CommandRow& row, QWidget* window) {
    auto* action = new QAction(text(row.text).section(u'\t', 0, 0), window);
    const QString status = text(row.status);
    const QList<QKeySequence> keys = keysOf(row);
    action->setObjectName(QString::number(row.id));
    action->setShortcuts(keys);
    action->setStatusTip(status.section(u'\n', 0, 0));
    if (status.contains(u'\n'))
        action->setToolTip(toolTip(status.section(u'\n', 1), keys));
    else
        action->setToolTip(toolTip(action->text().remove(u'&').remove(QStringLiteral("...")), keys));
    if (*row.icon != 0)
        action->setIcon(themeIcon(text(row.icon)));
    connect(action, &QAction::triggered, this, [this, id = row.id] { Q_EMIT chosen(id); });
    window->addAction(action);
    return action;
}

void CommandActions::addItem(QMenu& menu, const MenuItem& item) {
    if (item.id == CommandId::separator) {
        menu.addSeparator();
    } else if (QMenu* other = submenu(item.id)) {
        menu.addMenu(other);
    } else if (item.text == nullptr) {
        menu.addAction(action(item.id));
    } else { // The same command under another text.
        const QAction* command = action(item.id);
        QAction* entry = menu.addAction(command->icon(), text(item.text));
        entry->setEnabled(command->isEnabled());
        entry->setStatusTip(command->statusTip());
        connect(entry, &QAction::triggered, command, &QAction::trigger);
    }
}

void CommandActions::fill(QMenu& menu, std::span<const MenuItem> items) {
    for (const MenuItem& item : items)
        addItem(menu, item);
}

void CommandActions::fill(QMenuBar& bar) {
    for (const Menu& menu : menuBar())
        fill(*bar.addMenu(text(menu.title)), menu.items);
}

void CommandActions::fill(QToolBar& bar) {
    for (int id : toolBarCommands()) {
        if (id == CommandId::separator)
            bar.addSeparator();
        else
            bar.addAction(action(id));
    }
}

void CommandActions::update(const CommandState& state) {
    for (const CommandRow& row : commandTable())
        action(row.id)->setEnabled(state.meets(row.needs));
    action(CommandId::movieXml)->setChecked(state.documents > 0 && !state.showsList);
    action(CommandId::tagList)->setChecked(state.showsList);
}

} // namespace zelk
