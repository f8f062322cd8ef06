#include "MenuEntry.h"

#include <QMenu>
#include <QShortcut>

QMenu *MenuEntry::createMenu(const QList<MenuEntry> &entries, QWidget *parent)
{
    auto *menu = new QMenu(parent);
    for (const MenuEntry &entry : entries) {
        if (entry.isSeparator()) {
            menu->addSeparator();
            continue;
        }
        // A lone "&" would otherwise turn into a keyboard mnemonic.
        QAction *action = menu->addAction(QString(entry.label).replace(u'&', QStringLiteral("&&")));
        action->setEnabled(entry.enabled);
        action->setShortcut(entry.shortcut);
        // An action's own shortcut fires only through a menu bar the menu hangs from; a
        // shortcut of the open menu window does, and shows it as any chosen entry goes.
        if (!entry.shortcut.isEmpty()) {
            auto *shortcut = new QShortcut(entry.shortcut, menu);
            QObject::connect(shortcut, &QShortcut::activated, action, [menu, action] {
                menu->close();
                action->trigger();
            });
        }
        if (entry.trigger)
            QObject::connect(action, &QAction::triggered, menu, entry.trigger);
    }
    return menu;
}
