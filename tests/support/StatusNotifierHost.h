#pragma once

#include <QList>
#include <QProcess>
#include <QVariant>
#include <utility>

class DesktopSession;

// Plays the panel's part beside a real status-notifier-watcher on the session bus: registers
// as a host, finds the registered item and reads and pokes it as a panel would.
class StatusNotifierHost {
public:
    explicit StatusNotifierHost(const DesktopSession &desktop);

    // Starts the watcher in `watcher` and waits until it answers as this host's watcher.
    bool startWatcher(QProcess &watcher);
    // The bus name of the first registered item, or nothing.
    static QString registeredItem();
    static QVariant itemProperty(const QString &item, const QString &name);
    static QString toolTipTitle(const QString &item);
    // A left click at (600, 30) for "Activate".
    static void callItem(const QString &item, const QString &method);
    // The top entries of the item's exported menu, as a panel reads them: id and label.
    static QList<std::pair<int, QString>> menuEntries(const QString &item);
    // A click on the exported menu's entry of that id.
    static void clickMenuEntry(const QString &item, int id);

private:
    const DesktopSession &m_desktop;
};
