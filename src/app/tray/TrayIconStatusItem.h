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
    void setTitle(const StatusTitle::Line &title) override;
    void setOfflineNote(const QString &note) override;
    QRect anchor() const override { return m_icon.geometry(); }

private:
    void show();

    QSystemTrayIcon m_icon;
    StatusTitle::Line m_title;
    QString m_offlineNote;
    StatusTitle::State m_state = StatusTitle::State::Quiet;
    bool m_offline = false;
};
