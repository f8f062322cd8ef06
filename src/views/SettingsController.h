#pragma once

#include "TeamListModel.h"

#include <functional>
#include <QObject>
#include <QtQml/qqmlregistration.h>

class Preferences;
class TodayViewModel;

// What the settings page binds to: the favourite team among those the lists have named, the
// three alert switches and starting at login.
class SettingsController : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    Q_PROPERTY(TeamListModel *teams READ teams CONSTANT)
    Q_PROPERTY(QString favouriteID READ favouriteID NOTIFY favouriteChanged)
    Q_PROPERTY(bool notifyStarts READ notifyStarts WRITE setNotifyStarts NOTIFY alertsChanged)
    Q_PROPERTY(bool notifyWickets READ notifyWickets WRITE setNotifyWickets NOTIFY alertsChanged)
    Q_PROPERTY(bool notifyResults READ notifyResults WRITE setNotifyResults NOTIFY alertsChanged)
    Q_PROPERTY(bool startAtLogin READ startAtLogin WRITE setStartAtLogin NOTIFY startAtLoginChanged)

public:
    // Reads and writes the user's autostart entry; set() is false when the file could not be
    // written.
    struct LoginSwitch {
        std::function<bool()> isOn = [] { return false; };
        std::function<bool(bool)> set = [](bool) { return false; };
    };

    SettingsController(Preferences &preferences, const TodayViewModel &vm,
                       const QString &serviceURL, LoginSwitch login, QObject *parent = nullptr);

    TeamListModel *teams() { return &m_teams; }
    QString favouriteID() const;
    bool notifyStarts() const;
    void setNotifyStarts(bool on);
    bool notifyWickets() const;
    void setNotifyWickets(bool on);
    bool notifyResults() const;
    void setNotifyResults(bool on);
    bool startAtLogin() const { return m_startAtLogin; }
    void setStartAtLogin(bool on);

    // An empty identifier chooses no favourite.
    Q_INVOKABLE void chooseTeam(const QString &teamID);

signals:
    void favouriteChanged();
    void alertsChanged();
    void startAtLoginChanged();

private:
    void showTeams();

    Preferences &m_preferences;
    const TodayViewModel &m_vm;
    LoginSwitch m_login;
    TeamListModel m_teams;
    bool m_startAtLogin = false;
};
