#include "MatchRowPresenter.h"

#include "LeagueCalendar.h"
#include "SpacesAndTabs.h"

namespace {

bool is(const ZelMatch &match, const char *status)
{
    return match.matchStatus == QLatin1StringView(status);
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

} // namespace

QString MatchRowPresenter::summaryHead(const QString &summary)
{
    const qsizetype bracket = summary.indexOf(QLatin1StringView(" ("));
    return bracket < 0 ? summary : summary.left(bracket);
}

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
    if (is(match, "finished"))
        return QStringLiteral("\u2705");
    if (is(match, "live"))
        return QStringLiteral("\U0001F534");
    if (is(match, "abandoned"))
        return QStringLiteral("\u26C8\uFE0F");
    if (is(match, "upcoming") && hasNotice(match))
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
    const QString first = QString::number(match.firstBattingTeamID);
    const auto codeOf = [&](const QString &teamID) {
        return teamID == first ? match.firstBattingTeamCode : match.secondBattingTeamCode;
    };
    const QString homeCode = codeOf(match.homeTeamID);
    const QString awayCode = codeOf(match.awayTeamID);
    const QString elected = QStringLiteral(" won, elected to ") + *decision;
    if (match.tossDetails.contains(match.homeTeamName) && !homeCode.isEmpty())
        return homeCode + elected;
    if (match.tossDetails.contains(match.awayTeamName) && !awayCode.isEmpty())
        return awayCode + elected;
    return std::nullopt;
}

QString MatchRowPresenter::centreText(const ZelMatch &match, const QTimeZone &zone,
                                      const QLocale &locale)
{
    const QString first = summaryHead(match.firstBattingSummary);
    const QString second = summaryHead(match.secondBattingSummary);
    if (is(match, "abandoned"))
        return QStringLiteral("Abandoned");
    if (is(match, "finished")) {
        if (!first.isEmpty() && !second.isEmpty())
            return joined(first, second);
        return hasNotice(match) ? QStringLiteral("\u2713") : QStringLiteral("Final");
    }
    if (is(match, "live")) {
        if (first.isEmpty() && second.isEmpty())
            return isTossPhase(match) ? QStringLiteral("Toss") : QStringLiteral("Live");
        return joined(first, second);
    }
    if (is(match, "upcoming") && hasNotice(match))
        return QStringLiteral("Delayed");
    return displayTime(match, zone, locale);
}

std::optional<QString> MatchRowPresenter::centreSubText(const ZelMatch &match)
{
    if (is(match, "upcoming")) {
        const QString notice = trimSpacesAndTabs(match.comments);
        if (!notice.isEmpty())
            return notice;
        if (match.groundName.isEmpty())
            return match.city.isEmpty() ? std::nullopt : std::optional(match.city);
        return venueText(match);
    }
    if (is(match, "live")) {
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
    const bool homeFirst = match.homeTeamID == QString::number(match.firstBattingTeamID);
    const QString home =
        summaryHead(homeFirst ? match.firstBattingSummary : match.secondBattingSummary);
    const QString away =
        summaryHead(homeFirst ? match.secondBattingSummary : match.firstBattingSummary);
    return joined(home, away);
}

QString MatchRowPresenter::venueText(const ZelMatch &match)
{
    return match.city.isEmpty() ? match.groundName
                                : match.groundName + QStringLiteral(", ") + match.city;
}

bool MatchRowPresenter::opensOnTap(const ZelMatch &match)
{
    return is(match, "finished");
}
