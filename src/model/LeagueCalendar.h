#pragma once

#include "ZelMatch.h"

#include <optional>
#include <QDateTime>
#include <QTimeZone>

// The league's days: Gregorian, in "Asia/Kolkata", whatever the machine's own zone.
class LeagueCalendar {
public:
    static const QTimeZone &zone();
    static QDate dayOf(const QDateTime &moment) { return moment.toTimeZone(zone()).date(); }
    static QDateTime startOfDay(const QDateTime &moment);
    static QDateTime startOfNextDay(const QDateTime &moment);

    // An internet date-time, "2026-04-12T19:30:00.000+05:30" or without the fraction, with "Z"
    // or an offset; anything else (including a missing offset) gives nothing.
    static std::optional<QDateTime> parseStartTime(QStringView text);
    static std::optional<QDateTime> parseStartTime(const std::optional<QString> &text);
    // The start of each match, index for index.
    static QList<std::optional<QDateTime>> startTimesOf(const QList<ZelMatch> &matches);
};
