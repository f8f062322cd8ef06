#pragma once

#include "LeagueCalendar.h"
#include "ZelMatch.h"

#include <optional>
#include <QList>

// Matches around one fixed afternoon in the league's zone, for the title and schedule rules.
namespace SampleMatches {

inline const QDateTime now = QDateTime::fromString("2026-11-22T14:00:00+05:30", Qt::ISODate);

// A start so many minutes from now.
inline QString in(qint64 minutes)
{
    return now.addSecs(minutes * 60).toString(Qt::ISODate);
}

inline ZelMatch match(const QString &status, std::optional<QString> start,
                      const QString &comments = {}, const QString &home = "STH",
                      const QString &away = "NTH")
{
    ZelMatch m;
    m.matchStatus = status;
    m.startTime = std::move(start);
    m.comments = comments;
    m.homeTeamAPICode = home;
    m.awayTeamAPICode = away;
    return m;
}

inline ZelMatch live(const QString &innings, const QString &first, const QString &second)
{
    ZelMatch m = match("live", in(-60));
    m.currentInnings = innings;
    m.firstBattingTeamCode = "NTH";
    m.secondBattingTeamCode = "STH";
    m.firstBattingSummary = first;
    m.secondBattingSummary = second;
    return m;
}

} // namespace SampleMatches
