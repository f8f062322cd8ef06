#pragma once

#include "StatusIconArt.h"
#include "StatusItem.h"

#include <QSystemTrayIcon>

// The status item as a classic tray icon (XEmbed on X11): it cannot show text, so the icon
// tells the title's state and the tool tip carries the title.
class TrayIconStatusItem : public StatusItem {
    Q_OBJECT

public:
    explicit TrayIconStatusItem(QObject *parent = nullptr);
    void setTitle(const QString &title) override;
    void setOfflineNote(const QString &note) override;

private:
    void show();

    QSystemTrayIcon m_icon;
    QString m_title;
    QString m_offlineNote;
    StatusIconArt::State m_state = StatusIconArt::State::Quiet;
    bool m_offline = false;
};
