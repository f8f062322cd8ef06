#pragma once

#include "DBusWireTypes.h"
#include "MenuEntry.h"

#include <functional>
#include <QDBusContext>
#include <QObject>

// Exports the context menu as com.canonical.dbusmenu, the menu panels open for a
// StatusNotifierItem. The entries are asked for afresh whenever a host lays the menu out.
class DBusMenuExporter : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.canonical.dbusmenu")
    Q_PROPERTY(uint Version READ version)
    Q_PROPERTY(QString TextDirection READ textDirection)
    Q_PROPERTY(QString Status READ status)
    Q_PROPERTY(QStringList IconThemePath READ iconThemePath)

public:
    using EntrySource = std::function<QList<MenuEntry>()>;
    explicit DBusMenuExporter(EntrySource source, QObject *parent = nullptr);

    uint version() const { return 3; }
    QString textDirection() const;
    QString status() const { return QStringLiteral("normal"); }
    QStringList iconThemePath() const { return {}; }

    // The menu's properties as the protocol spells them: "type", "label" (with "_" doubled,
    // since a single one marks a mnemonic), "enabled" and "shortcut".
    static QVariantMap propertiesOf(const MenuEntry &entry);

public slots:
    Q_SCRIPTABLE uint GetLayout(int parentID, int recursionDepth, const QStringList &propertyNames,
                                DBusMenuLayoutItem &layout);
    Q_SCRIPTABLE DBusMenuItemPropertiesList GetGroupProperties(const QList<int> &ids,
                                                               const QStringList &propertyNames);
    Q_SCRIPTABLE QDBusVariant GetProperty(int id, const QString &name);
    Q_SCRIPTABLE void Event(int id, const QString &eventID, const QDBusVariant &data,
                            uint timestamp);
    Q_SCRIPTABLE QList<int> EventGroup(const DBusMenuEventList &events);
    Q_SCRIPTABLE bool AboutToShow(int id);
    Q_SCRIPTABLE QList<int> AboutToShowGroup(const QList<int> &ids, QList<int> &idErrors);

signals:
    Q_SCRIPTABLE void ItemsPropertiesUpdated(const DBusMenuItemPropertiesList &updated,
                                             const DBusMenuItemKeysList &removed);
    Q_SCRIPTABLE void LayoutUpdated(uint revision, int parent);
    Q_SCRIPTABLE void ItemActivationRequested(int id, uint timestamp);
    // The host opened the menu it draws from this one.
    void opened();

private:
    // Rebuilds the entries; a change of labels or states starts a new layout revision.
    void refresh();
    QVariantMap propertiesOf(int id, const QStringList &names) const;
    bool exists(int id) const { return id >= 0 && id <= m_entries.size(); }

    EntrySource m_source;
    QList<MenuEntry> m_entries; // item n is m_entries[n - 1]; 0 is the root
    QList<QVariantMap> m_properties;
    uint m_revision = 1;
};
