#pragma once

#include "DBusMenuExporter.h"
#include "StatusItem.h"

#include <memory>
#include <QDBusServiceWatcher>

// Shows the title through a StatusNotifierItem while a StatusNotifierWatcher is on the session
// bus, and through a tray icon otherwise, switching when the watcher comes or goes and never
// showing both.
class StatusItemSwitch : public StatusItem {
    Q_OBJECT

public:
    explicit StatusItemSwitch(DBusMenuExporter::EntrySource menuEntries, QObject *parent = nullptr);
    ~StatusItemSwitch() override;

    void setTitle(const StatusTitle::Line &title) override;
    void setOfflineNote(const QString &note) override;
    QRect anchor() const override;

private:
    void choose(bool watcherPresent);

    DBusMenuExporter::EntrySource m_menuEntries;
    QDBusServiceWatcher m_watcher;
    std::unique_ptr<StatusItem> m_backend;
    bool m_usesStatusNotifierItem = false;
    StatusTitle::Line m_title;
    QString m_offlineNote;
};
