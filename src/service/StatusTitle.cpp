#include "StatusTitle.h"

#include "DisplayText.h"
#include "LeagueCalendar.h"
#include "SpacesAndTabs.h"

#include <numeric>

namespace {

// The favourite team's matches among these, when it has any; otherwise all of them.
QList<qsizetype> favouredOf(const QList<ZelMatch> &matches, const QList<qsizetype> &indices,
                            const QString &favouriteTeamID)
{
    QList<qsizetype> favoured;
    for (qsizetype i : indices) {
        if (matches[i].involves(favouriteTeamID))
            favoured.append(i);
    }
    return favoured.isEmpty() ? indices : favoured;
}

template <typename Accept>
QList<qsizetype> accepted(const QList<ZelMatch> &matches, const QList<qsizetype> &indices,
                          Accept accept)
{
    QList<qsizetype> kept;
    for (qsizetype i : indices) {
        if (accept(matches[i]))
            kept.append(i);
    }
    return kept;
}

// Index of the match that a stable sort by start would put first among those accepted,
// the favourite's matches first; a missing start counts as the distant future (or, when
// latestFirst, the distant past).
template <typename Accept>
qsizetype firstByStart(const StatusTitle::Schedule &schedule, const QList<qsizetype> &indices,
                       bool latestFirst, const QString &favouriteTeamID, Accept accept)
{
    qsizetype best = -1;
    for (qsizetype i : favouredOf(schedule.matches, accepted(schedule.matches, indices, accept),
                                  favouriteTeamID)) {
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

StatusTitle::Line StatusTitle::compose(Schedule today, Schedule fixtures, const QDateTime &now,
                                       const QString &favouriteTeamID)
{
    // The panel has one line, and room for a few words of it.
    Line line = composeByRules(today, fixtures, now, favouriteTeamID);
    for (QChar &c : line.text) {
        if (c == u'\n' || c == u'\r')
            c = u' ';
    }
    line.text = boundedForDisplay(line.text, maximumLength, DisplayCut::BetweenWords);
    return line;
}

StatusTitle::Line StatusTitle::composeByRules(Schedule today, Schedule fixtures,
                                              const QDateTime &now, const QString &favouriteTeamID)
{
    QList<qsizetype> all(today.matches.size());
    std::iota(all.begin(), all.end(), 0);
    const QList<qsizetype> live = favouredOf(
        today.matches, accepted(today.matches, all, [](const ZelMatch &m) { return m.isLive(); }),
        favouriteTeamID);
    if (!live.isEmpty())
        return {liveStatusBarText(today.matches[live.first()]), State::Live};

    const QDateTime dayStart = LeagueCalendar::startOfDay(now);
    const QDateTime nextDayStart = LeagueCalendar::startOfNextDay(now);
    QList<qsizetype> ofToday;
    for (qsizetype i = 0; i < today.matches.size(); ++i) {
        const auto &start = today.starts[i];
        if (start && *start >= dayStart && *start < nextDayStart)
            ofToday.append(i);
    }

    const qsizetype delayed =
        firstByStart(today, ofToday, false, favouriteTeamID, [](const ZelMatch &m) {
            return m.isUpcoming() && !trimSpacesAndTabs(m.comments).isEmpty();
        });
    if (delayed >= 0) {
        const ZelMatch &m = today.matches[delayed];
        const bool codes = !m.homeTeamAPICode.isEmpty() && !m.awayTeamAPICode.isEmpty();
        return {prefix + (codes ? tr("%1 vs %2 • Delayed").arg(m.homeTeamAPICode, m.awayTeamAPICode)
                                : tr("Delayed")),
                State::Delayed};
    }

    const qsizetype next = firstByStart(today, ofToday, false, favouriteTeamID,
                                        [](const ZelMatch &m) { return m.isUpcoming(); });
    if (next >= 0)
        return {prefix + countdown(*today.starts[next], now)};

    const qsizetype finished = firstByStart(today, ofToday, true, favouriteTeamID,
                                            [](const ZelMatch &m) { return m.isFinished(); });
    if (finished >= 0) {
        const QString comment = trimSpacesAndTabs(today.matches[finished].comments);
        if (!comment.isEmpty())
            return {prefix + comment};
    }

    // A fixture without a start has no countdown to show.
    QList<qsizetype> datedFixtures;
    for (qsizetype i = 0; i < fixtures.matches.size(); ++i) {
        if (fixtures.starts[i])
            datedFixtures.append(i);
    }
    const qsizetype fixture = firstByStart(fixtures, datedFixtures, false, favouriteTeamID,
                                           [](const ZelMatch &m) { return m.isUpcoming(); });
    if (fixture >= 0)
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
        return prefix + tr("Zel • Toss");
    return prefix + tr("%1 chose to bat").arg(match.firstBattingTeamCode);
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
    return *decision == u"field" ? tr("%1 chose to field").arg(code)
                                 : tr("%1 chose to bat").arg(code);
}

QString StatusTitle::inWords(const Line &title, const QString &offlineNote)
{
    const QString state = title.state == State::Live ? tr("Live") : QString();
    return state.isEmpty() || offlineNote.isEmpty() ? state + offlineNote
                                                    : state + u'\n' + offlineNote;
}

QString StatusTitle::spoken(const Line &title)
{
    QString words = title.text;
    words.remove(bat).remove(QStringLiteral("\U0001F534"));
    words = words.simplified();
    const QString state = inWords(title, {});
    return words.isEmpty() || state.isEmpty() ? words : tr("%1: %2").arg(state, words);
}

QString StatusTitle::countdown(const QDateTime &start, const QDateTime &now)
{
    const qint64 remaining = now.msecsTo(start);
    if (remaining <= 0)
        return tr("Starting Soon");
    const qint64 minutes = remaining / 60000;
    const qint64 days = minutes / 1440;
    const qint64 hours = (minutes - days * 1440) / 60;
    const qint64 mins = minutes % 60;
    if (minutes < 1440) {
        if (hours == 0)
            return tr("%1m", "minutes").arg(qMax<qint64>(mins, 1));
        if (mins == 0)
            return tr("%1h", "hours").arg(hours);
        return tr("%1h %2m", "hours and minutes").arg(hours).arg(mins);
    }
    if (hours == 0)
        return tr("%1d", "days").arg(days);
    return tr("%1d %2h", "days and hours").arg(days).arg(hours);
}
