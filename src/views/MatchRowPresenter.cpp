#include "MatchRowPresenter.h"

#include "LeagueCalendar.h"
#include "SpacesAndTabs.h"

namespace {

// A status only the rows know about.
bool isAbandoned(const ZelMatch &match)
{
    return match.matchStatus == QLatin1StringView("abandoned");
}

bool hasNotice(const ZelMatch &match)
{
    return !trimSpacesAndTabs(match.comments).isEmpty();
}

// "A – B" when both are there, otherwise whichever is.
QString joined(const QString &first, const QString &second)
{
    if (!first.isEmpty() && !second.isEmpty())
        return first + QStringLiteral(" \u2013 ") + second;
    return first.isEmpty() ? second : first;
}

// A side by its name, else by its code.
QString sideName(const QString &name, const QString &code)
{
    const QString trimmed = trimSpacesAndTabs(name);
    return trimmed.isEmpty() ? code : trimmed;
}

// "96/2 (11.3 Ov)" read aloud: "96 for 2 in 11.3 overs"; a score without wickets or overs says
// what it has.
QString spokenScore(const QString &summary)
{
    QString spoken =
        ZelMatch::summaryHead(summary).trimmed().replace(u'/', QStringLiteral(" for "));
    const qsizetype open = summary.lastIndexOf(u'(');
    const qsizetype close = summary.lastIndexOf(u')');
    if (open >= 0 && close > open) {
        const QString overs = summary.mid(open + 1, close - open - 1).trimmed().section(u' ', 0, 0);
        if (!overs.isEmpty())
            spoken += QStringLiteral(" in ") + overs + QStringLiteral(" overs");
    }
    return spoken;
}

} // namespace

QString MatchRowPresenter::displayTime(const ZelMatch &match, const QTimeZone &zone,
                                       const QLocale &locale)
{
    const auto start = LeagueCalendar::parseStartTime(match.startTime);
    if (!start)
        return QStringLiteral("TBD");
    return locale.toString(start->toTimeZone(zone).time(), QStringLiteral("h:mm AP"));
}

QString MatchRowPresenter::statusIcon(const ZelMatch &match)
{
    if (match.isFinished())
        return QStringLiteral("\u2705");
    if (match.isLive())
        return QStringLiteral("\U0001F534");
    if (isAbandoned(match))
        return QStringLiteral("\u26C8\uFE0F");
    if (match.isUpcoming() && hasNotice(match))
        return QStringLiteral("\U0001F327\uFE0F");
    return QStringLiteral("\U0001F550");
}

bool MatchRowPresenter::isTossPhase(const ZelMatch &match)
{
    return match.firstBattingSummary.isEmpty() && match.secondBattingSummary.isEmpty() &&
           !match.tossDetails.isEmpty();
}

std::optional<QString> MatchRowPresenter::shortTossText(const ZelMatch &match)
{
    const auto decision = match.tossDecision();
    if (!decision)
        return std::nullopt;
    // A side named in the text whose code is unknown gives way to the other side; the title's
    // rule falls back to the side batting first instead.
    const auto namedCode = [&match](const QString &name, const QString &teamID) {
        return !name.isEmpty() && match.tossDetails.contains(name) ? match.battingCodeOf(teamID)
                                                                   : QString();
    };
    QString winner = namedCode(match.homeTeamName, match.homeTeamID);
    if (winner.isEmpty())
        winner = namedCode(match.awayTeamName, match.awayTeamID);
    if (winner.isEmpty())
        return std::nullopt;
    return winner + QStringLiteral(" won, elected to ") + *decision;
}

QString MatchRowPresenter::centreText(const ZelMatch &match, const QTimeZone &zone,
                                      const QLocale &locale)
{
    const QString first = ZelMatch::summaryHead(match.firstBattingSummary);
    const QString second = ZelMatch::summaryHead(match.secondBattingSummary);
    if (isAbandoned(match))
        return QStringLiteral("Abandoned");
    if (match.isFinished()) {
        if (!first.isEmpty() && !second.isEmpty())
            return joined(first, second);
        return hasNotice(match) ? QStringLiteral("\u2713") : QStringLiteral("Final");
    }
    if (match.isLive()) {
        if (first.isEmpty() && second.isEmpty())
            return isTossPhase(match) ? QStringLiteral("Toss") : QStringLiteral("Live");
        return joined(first, second);
    }
    if (match.isUpcoming() && hasNotice(match))
        return QStringLiteral("Delayed");
    return displayTime(match, zone, locale);
}

std::optional<QString> MatchRowPresenter::centreSubText(const ZelMatch &match)
{
    if (match.isUpcoming()) {
        const QString notice = trimSpacesAndTabs(match.comments);
        if (!notice.isEmpty())
            return notice;
        if (match.groundName.isEmpty())
            return match.city.isEmpty() ? std::nullopt : std::optional(match.city);
        return venueText(match);
    }
    if (match.isLive()) {
        if (isTossPhase(match))
            return shortTossText(match);
        if (match.currentInnings == QStringLiteral("1"))
            return QStringLiteral("1st Innings");
        if (match.currentInnings == QStringLiteral("2"))
            return QStringLiteral("2nd Innings");
    }
    return std::nullopt;
}

QString MatchRowPresenter::scoresText(const ZelMatch &match)
{
    const bool homeFirst = match.homeBattedFirst();
    const QString home =
        ZelMatch::summaryHead(homeFirst ? match.firstBattingSummary : match.secondBattingSummary);
    const QString away =
        ZelMatch::summaryHead(homeFirst ? match.secondBattingSummary : match.firstBattingSummary);
    return joined(home, away);
}

QString MatchRowPresenter::venueText(const ZelMatch &match)
{
    return match.city.isEmpty() ? match.groundName
                                : match.groundName + QStringLiteral(", ") + match.city;
}

bool MatchRowPresenter::opensOnTap(const ZelMatch &match)
{
    return match.isFinished();
}

QString MatchRowPresenter::spokenText(const ZelMatch &match, const QTimeZone &zone,
                                      const QLocale &locale)
{
    const QString home = sideName(match.homeTeamName, match.homeTeamCode());
    const QString away = sideName(match.awayTeamName, match.awayTeamCode());
    const QString sides = home + QStringLiteral(" against ") + away;
    if (match.isLive()) {
        if (isTossPhase(match) || match.firstBattingSummary.isEmpty())
            return QStringLiteral("Live: ") + sides +
                   (match.tossDetails.isEmpty()
                        ? QString()
                        : QStringLiteral(", ") + match.formattedTossDetails());
        const QString first = match.homeBattedFirst() ? home : away;
        const QString second = match.homeBattedFirst() ? away : home;
        if (match.secondBattingSummary.isEmpty())
            return QStringLiteral("Live: ") + first + u' ' +
                   spokenScore(match.firstBattingSummary) + QStringLiteral(" against ") + second;
        bool isNumber = false;
        const int runs =
            ZelMatch::summaryHead(match.firstBattingSummary).section(u'/', 0, 0).toInt(&isNumber);
        return QStringLiteral("Live: ") + second + u' ' + spokenScore(match.secondBattingSummary) +
               (isNumber ? QStringLiteral(", chasing %1").arg(runs + 1) : QString()) +
               QStringLiteral(" against ") + first;
    }
    if (match.isFinished()) {
        const QString result = trimSpacesAndTabs(match.comments);
        return QStringLiteral("Result: ") + sides +
               (result.isEmpty() ? QString() : QStringLiteral(", ") + result);
    }
    if (isAbandoned(match))
        return QStringLiteral("Abandoned: ") + sides;
    if (match.isUpcoming() && hasNotice(match))
        return QStringLiteral("Delayed: ") + sides + QStringLiteral(", ") +
               trimSpacesAndTabs(match.comments);
    const QString venue = venueText(match);
    return QStringLiteral("Upcoming: ") + sides + QStringLiteral(" at ") +
           displayTime(match, zone, locale) +
           (venue.isEmpty() ? QString() : QStringLiteral(", ") + venue);
}
