#include "SettingsController.h"

#include "Preferences.h"
#include "TodayViewModel.h"

#include <algorithm>

SettingsController::SettingsController(Preferences &preferences, const TodayViewModel &vm,
                                       const QString &serviceURL, LoginSwitch login,
                                       QObject *parent)
    : QObject(parent)
    , m_preferences(preferences)
    , m_vm(vm)
    , m_login(std::move(login))
    , m_teams(serviceURL)
    , m_startAtLogin(m_login.isOn())
{
    connect(&vm, &TodayViewModel::knownTeamsChanged, this, &SettingsController::showTeams);
    connect(&preferences, &Preferences::favouriteChanged, this, [this] {
        showTeams();
        emit favouriteChanged();
    });
    connect(&preferences, &Preferences::alertsChanged, this, &SettingsController::alertsChanged);
    showTeams();
}

// The favourite stays on offer before the lists have named it.
void SettingsController::showTeams()
{
    QList<TeamInfo> teams = m_vm.knownTeams();
    if (const auto &favourite = m_preferences.favourite();
        favourite && std::none_of(teams.begin(), teams.end(),
                                  [&](const TeamInfo &t) { return t.id == favourite->id; }))
        teams.prepend(*favourite);
    m_teams.setTeams(teams, m_preferences.favouriteTeamID());
}

QString SettingsController::favouriteID() const
{
    return m_preferences.favouriteTeamID();
}

void SettingsController::chooseTeam(const QString &teamID)
{
    const TeamInfo *team = teamID.isEmpty() ? nullptr : m_teams.team(teamID);
    m_preferences.setFavourite(team ? std::optional(*team) : std::nullopt);
}

bool SettingsController::notifyStarts() const
{
    return m_preferences.alerts(Preferences::Alert::Starts);
}

void SettingsController::setNotifyStarts(bool on)
{
    m_preferences.setAlerts(Preferences::Alert::Starts, on);
}

bool SettingsController::notifyWickets() const
{
    return m_preferences.alerts(Preferences::Alert::Wickets);
}

void SettingsController::setNotifyWickets(bool on)
{
    m_preferences.setAlerts(Preferences::Alert::Wickets, on);
}

bool SettingsController::notifyResults() const
{
    return m_preferences.alerts(Preferences::Alert::Results);
}

void SettingsController::setNotifyResults(bool on)
{
    m_preferences.setAlerts(Preferences::Alert::Results, on);
}

void SettingsController::setStartAtLogin(bool on)
{
    if (on == m_startAtLogin)
        return;
    if (m_login.set(on))
        m_startAtLogin = on;
    // Told either way, so that a switch the user flipped goes back when the file failed.
    emit startAtLoginChanged();
}
