#pragma once

#include "LeagueTeam.h"
#include "MatchPlay.h"

#include <functional>
#include <QDateTime>
#include <QJsonObject>

// One match of the season: who plays where and when, and how it will go.
class ScheduledMatch {
public:
    using LogoLocator = std::function<QString(const LeagueTeam &)>;

    ScheduledMatch(qint64 id, int order, const LeagueTeam &home, const LeagueTeam &away,
                   QDateTime start, quint64 seed);

    // Holds the match back: it stays upcoming with the note as its comment until play resumes.
    void delay(std::chrono::seconds by, const QString &note);

    qint64 id() const { return m_id; }
    const QDateTime &start() const { return m_start; }
    QDateTime playStart() const { return m_start.addSecs(m_delay.count()); }
    const MatchPlay &play() const { return m_play; }
    MatchPlay::Progress progressAt(const QDateTime &now) const;
    QString statusAt(const QDateTime &now) const;

    // The match and its scorecard as the score service sends them.
    QJsonObject toJson(const QDateTime &now, const LogoLocator &logo) const;
    QJsonObject scorecardJson(const QDateTime &now) const;

private:
    const LeagueTeam &battingTeam(int innings) const;
    QString resultText() const;
    QString chaseText(const MatchPlay::Progress &progress) const;

    qint64 m_id;
    int m_order;
    const LeagueTeam *m_home; // the league's roster outlives its matches
    const LeagueTeam *m_away;
    QDateTime m_start;
    std::chrono::seconds m_delay{0};
    QString m_delayNote;
    MatchPlay m_play;
};
