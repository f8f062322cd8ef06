#pragma once

#include "TeamInfo.h"

#include <optional>
#include <QObject>
#include <QSettings>

// What the user chose on the settings page, in one INI file of the app's own. A value of the
// wrong type, or a favourite that is not a usable team, reads as the default.
class Preferences : public QObject {
    Q_OBJECT

public:
    enum class Alert { Starts, Wickets, Results };

    explicit Preferences(const QString &path, QObject *parent = nullptr);

    // ZelMenuBar/settings.ini under the user's configuration folder.
    static QString defaultPath();

    const std::optional<TeamInfo> &favourite() const { return m_favourite; }
    void setFavourite(const std::optional<TeamInfo> &team);
    QString favouriteTeamID() const { return m_favourite ? m_favourite->id : QString(); }

    // Every alert is off until the user turns it on.
    bool alerts(Alert alert) const { return m_alerts[int(alert)]; }
    void setAlerts(Alert alert, bool on);

signals:
    void favouriteChanged();
    void alertsChanged();

private:
    static std::optional<TeamInfo> readTeam(const QSettings &file);
    static bool readSwitch(const QSettings &file, const QString &key);
    static QString keyOf(Alert alert);

    QSettings m_file;
    std::optional<TeamInfo> m_favourite;
    bool m_alerts[3] = {};
};
