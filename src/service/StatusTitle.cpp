#include "StatusTitle.h"

#include "DisplayText.h"
#include "LeagueCalendar.h"
#include "SpacesAndTabs.h"

#include <numeric>

namespace {

// Index of the match that a stable sort by start would put first among those accepted;
// a missing start counts as the distant future (or, when latestFirst, the distant past).
template <typename Accept>
qsizetype firstByStart(const StatusTitle::Schedule &schedule, const QList<qsizetype> &indices,
                       bool latestFirst, Accept accept)
{
    qsizetype best = -1;
    for (qsizetype i : indices) {
        if (!accept(schedule.matches[i]))
            continue;
        if (best < 0) {
            best = i;
            continue;
        }
        const auto &candidate = schedule.starts[i];
        const auto &current = schedule.starts[best];
        const bool earlier = latestFirst ? candidate && (!current || *candidate > *current)
                                         : candidate && (!current || *candidate < *current);
        if (earlier)
            best = i;
    }
    return best;
}

} // namespace

StatusTitle::Line StatusTitle::compose(Schedule today, Schedule fixtures, const QDateTime &now)
{
    // The panel has one line, and room for a few words of it.
    Line line = composeByRules(today, fixtures, now);
    for (QChar &c : line.text) {
        if (c == u'\n' || c == u'\r')
            c = u' ';
    }
    line.text = boundedForDisplay(line.text, maximumLength);
    return line;
}

StatusTitle::Line StatusTitle::composeByRules(Schedule today, Schedule fixtures,
                                              const QDateTime &now)
{
    for (const ZelMatch &match : today.matches) {
        if (match.isLive())
            return {liveStatusBarText(match), State::Live};
    }

    const QDateTime dayStart = LeagueCalendar::startOfDay(now);
    const QDateTime nextDayStart = LeagueCalendar::startOfNextDay(now);
    QList<qsizetype> ofToday;
    for (qsizetype i = 0; i < today.matches.size(); ++i) {
        const auto &start = today.starts[i];
        if (start && *start >= dayStart && *start < nextDayStart)
            ofToday.append(i);
    }

    const qsizetype delayed = firstByStart(today, ofToday, false, [](const ZelMatch &m) {
        return m.isUpcoming() && !trimSpacesAndTabs(m.comments).isEmpty();
    });
    if (delayed >= 0) {
        const ZelMatch &m = today.matches[delayed];
        const bool codes = !m.homeTeamAPICode.isEmpty() && !m.awayTeamAPICode.isEmpty();
        return {prefix +
                    (codes ? m.homeTeamAPICode + QStringLiteral(" vs ") + m.awayTeamAPICode +
                                 QStringLiteral(" \u2022 ")
                           : QString()) +
                    QStringLiteral("Delayed"),
                State::Delayed};
    }

    const qsizetype next =
        firstByStart(today, ofToday, false, [](const ZelMatch &m) { return m.isUpcoming(); });
    if (next >= 0)
        return {prefix + countdown(*today.starts[next], now)};

    const qsizetype finished =
        firstByStart(today, ofToday, true, [](const ZelMatch &m) { return m.isFinished(); });
    if (finished >= 0) {
        const QString comment = trimSpacesAndTabs(today.matches[finished].comments);
        if (!comment.isEmpty())
            return {prefix + comment};
    }

    QList<qsizetype> allFixtures(fixtures.matches.size());
    std::iota(allFixtures.begin(), allFixtures.end(), 0);
    const qsizetype fixture = firstByStart(fixtures, allFixtures, false,
                                           [](const ZelMatch &m) { return m.isUpcoming(); });
    if (fixture >= 0 && fixtures.starts[fixture])
        return {prefix + countdown(*fixtures.starts[fixture], now)};

    return {bat};
}

QString StatusTitle::liveStatusBarText(const ZelMatch &match)
{
    if (match.currentInnings == QStringLiteral("2") && !match.firstBattingSummary.isEmpty() &&
        !match.secondBattingSummary.isEmpty()) {
        return prefix + match.firstBattingTeamCode + u' ' +
               ZelMatch::summaryHead(match.firstBattingSummary) + QStringLiteral(" \u00B7 ") +
               match.secondBattingTeamCode + u' ' + shortScoreWithOvers(match.secondBattingSummary);
    }

    const QString score =
        shortScoreWithOvers(match.firstBattingSummary.isEmpty() ? match.secondBattingSummary
                                                                : match.firstBattingSummary);
    if (!score.isEmpty())
        return prefix + match.firstBattingTeamCode + QStringLiteral(" \U0001F534 ") + score;
    if (const auto toss = shortTossText(match))
        return prefix + *toss;
    if (!match.tossDetails.isEmpty() || match.firstBattingTeamCode.isEmpty())
        return prefix + QStringLiteral("Zel \u2022 Toss");
    return prefix + match.firstBattingTeamCode + QStringLiteral(" chose to bat");
}

QString StatusTitle::shortScoreWithOvers(const QString &summary)
{
    QString shortened = summary;
    shortened.replace(QLatin1StringView(" Ov)"), QLatin1StringView(")"), Qt::CaseInsensitive);
    shortened.replace(QLatin1StringView(" ovs)"), QLatin1StringView(")"), Qt::CaseInsensitive);
    return shortened;
}

std::optional<QString> StatusTitle::shortTossText(const ZelMatch &match)
{
    const auto decision = match.tossDecision();
    if (match.tossDetails.isEmpty() || !decision)
        return std::nullopt;
    const auto winner = match.tossWinnerCode();
    const QString &code = winner && !winner->isEmpty() ? *winner : match.firstBattingTeamCode;
    if (code.isEmpty())
        return std::nullopt;
    return code + QStringLiteral(" chose to ") + *decision;
}

QString StatusTitle::countdown(const QDateTime &start, const QDateTime &now)
{
    const qint64 remaining = now.msecsTo(start);
    if (remaining <= 0)
        return QStringLiteral("Starting Soon");
    const qint64 minutes = remaining / 60000;
    const qint64 days = minutes / 1440;
    const qint64 hours = (minutes - days * 1440) / 60;
    const qint64 mins = minutes % 60;
    if (minutes < 1440) {
        if (hours == 0)
            return QStringLiteral("%1m").arg(qMax<qint64>(mins, 1));
        if (mins == 0)
            return QStringLiteral("%1h").arg(hours);
        return QStringLiteral("%1h %2m").arg(hours).arg(mins);
    }
    if (hours == 0)
        return QStringLiteral("%1d").arg(days);
    return QStringLiteral("%1d %2h").arg(days).arg(hours);
}
