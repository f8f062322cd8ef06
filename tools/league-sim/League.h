#pragma once

#include "LeagueTeam.h"
#include "ScheduledMatch.h"

#include <optional>
#include <QDateTime>
#include <QJsonObject>
#include <vector>

// The Zel league as the score service sees it: a season of fixtures around a chosen moment,
// with today's matches arranged by a scenario.
class League {
public:
    enum class Scenario {
        Season,
        LiveFirstInnings,
        LiveSecondInnings,
        Toss,
        RainDelay,
        NextStartToday,
        TodaysResult,
        NoMatchToday,
        Empty,
    };

    static QStringList scenarioNames();
    static std::optional<Scenario> scenarioNamed(const QString &name);

    League(Scenario scenario, quint64 seed, const QDateTime &moment);

    // Where this league's absolute logo URLs point, such as "http://127.0.0.1:8765".
    void setOrigin(const QString &origin) { m_origin = origin; }
    QString logoLocation(const LeagueTeam &team) const;
    const QList<LeagueTeam> &teams() const { return m_teams; }

    QJsonObject todayJson(const QDateTime &now) const;
    QJsonObject upcomingJson(const QDateTime &now) const;
    QJsonObject resultsJson(const QDateTime &now) const;
    std::optional<QJsonObject> scorecardJson(qint64 matchID, const QDateTime &now) const;

private:
    void addSeason(quint64 seed, const QDate &today);
    void arrangeToday(Scenario scenario, quint64 seed, const QDateTime &moment);
    ScheduledMatch &addMatch(qint64 id, int home, int away, const QDateTime &start, quint64 seed);
    QJsonObject listJson(const QDateTime &now,
                         const std::vector<const ScheduledMatch *> &matches) const;

    QList<LeagueTeam> m_teams;
    std::vector<ScheduledMatch> m_matches;
    QString m_origin;
};
