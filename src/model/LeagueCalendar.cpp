#include "LeagueCalendar.h"

const QTimeZone &LeagueCalendar::zone()
{
    // India has kept +05:30 without daylight saving since 1945, so a machine without the time
    // zone database still gets the league's days right.
    static const QTimeZone kolkata = [] {
        QTimeZone named("Asia/Kolkata");
        return named.isValid() ? named : QTimeZone(5 * 3600 + 30 * 60);
    }();
    return kolkata;
}

QDateTime LeagueCalendar::startOfDay(const QDateTime &moment)
{
    return dayOf(moment).startOfDay(zone());
}

QDateTime LeagueCalendar::startOfNextDay(const QDateTime &moment)
{
    return dayOf(moment).addDays(1).startOfDay(zone());
}

std::optional<QDateTime> LeagueCalendar::parseStartTime(const std::optional<QString> &text)
{
    return text ? parseStartTime(QStringView(*text)) : std::nullopt;
}

QList<std::optional<QDateTime>> LeagueCalendar::startTimesOf(const QList<ZelMatch> &matches)
{
    QList<std::optional<QDateTime>> starts;
    starts.reserve(matches.size());
    for (const ZelMatch &match : matches)
        starts.append(parseStartTime(match.startTime));
    return starts;
}

std::optional<QDateTime> LeagueCalendar::parseStartTime(QStringView text)
{
    qsizetype at = 0;
    // Reads exactly `count` digits; -1 when they are not there.
    const auto digits = [&](int count) {
        int value = 0;
        for (int i = 0; i < count; ++i, ++at) {
            if (at >= text.size() || !text[at].isDigit() || text[at].unicode() > '9')
                return -1;
            value = value * 10 + (text[at].unicode() - '0');
        }
        return value;
    };
    const auto literal = [&](char16_t c) {
        if (at >= text.size() || text[at] != c)
            return false;
        ++at;
        return true;
    };

    const int year = digits(4);
    const bool dateOk = year >= 0 && literal(u'-');
    const int month = dateOk ? digits(2) : -1;
    const int day = month >= 0 && literal(u'-') ? digits(2) : -1;
    const int hour = day >= 0 && literal(u'T') ? digits(2) : -1;
    const int minute = hour >= 0 && literal(u':') ? digits(2) : -1;
    const int second = minute >= 0 && literal(u':') ? digits(2) : -1;
    if (second < 0)
        return std::nullopt;

    int millisecond = 0;
    if (literal(u'.')) {
        int place = 100;
        const qsizetype first = at;
        while (at < text.size() && text[at].isDigit() && text[at].unicode() <= '9') {
            millisecond += (text[at].unicode() - '0') * place;
            place /= 10;
            ++at;
        }
        if (at == first)
            return std::nullopt;
    }

    int offsetSeconds = 0;
    if (!literal(u'Z')) {
        const bool ahead = literal(u'+');
        if (!ahead && !literal(u'-'))
            return std::nullopt;
        const int offsetHours = digits(2);
        const int offsetMinutes = offsetHours >= 0 && literal(u':') ? digits(2) : -1;
        if (offsetMinutes < 0 || offsetMinutes > 59 || offsetHours > 18)
            return std::nullopt;
        offsetSeconds = (ahead ? 1 : -1) * (offsetHours * 3600 + offsetMinutes * 60);
    }
    if (at != text.size())
        return std::nullopt;

    const QDate date(year, month, day);
    const QTime time(hour, minute, second, millisecond);
    if (!date.isValid() || !time.isValid())
        return std::nullopt;
    return QDateTime(date, time, QTimeZone(offsetSeconds));
}
