#include "MenuEntry.h"

#include <QMenu>

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
        if (entry.trigger)
            QObject::connect(action, &QAction::triggered, menu, entry.trigger);
    }
    return menu;
}
