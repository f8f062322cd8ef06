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
    const QString head = ZelMatch::summaryHead(summary).trimmed();
    const QString spoken = head.contains(u'/')
                               ? MatchRowPresenter::tr("%1 for %2")
                                     .arg(head.section(u'/', 0, 0), head.section(u'/', 1))
                               : head;
    const qsizetype open = summary.lastIndexOf(u'(');
    const qsizetype close = summary.lastIndexOf(u')');
    if (open >= 0 && close > open) {
        const QString overs = summary.mid(open + 1, close - open - 1).trimmed().section(u' ', 0, 0);
        if (!overs.isEmpty())
            return MatchRowPresenter::tr("%1 in %2 overs").arg(spoken, overs);
    }
    return spoken;
}

} // namespace

QString MatchRowPresenter::displayTime(const ZelMatch &match, const QTimeZone &zone,
                                       const QLocale &locale)
{
    const auto start = LeagueCalendar::parseStartTime(match.startTime);
    if (!start)
        return tr("TBD");
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
    return *decision == u"field" ? tr("%1 won, elected to field").arg(winner)
                                 : tr("%1 won, elected to bat").arg(winner);
}

QString MatchRowPresenter::centreText(const ZelMatch &match, const QTimeZone &zone,
                                      const QLocale &locale)
{
    const QString first = ZelMatch::summaryHead(match.firstBattingSummary);
    const QString second = ZelMatch::summaryHead(match.secondBattingSummary);
    if (isAbandoned(match))
        return tr("Abandoned");
    if (match.isFinished()) {
        if (!first.isEmpty() && !second.isEmpty())
            return joined(first, second);
        return hasNotice(match) ? QStringLiteral("\u2713") : tr("Final");
    }
    if (match.isLive()) {
        if (first.isEmpty() && second.isEmpty())
            return isTossPhase(match) ? tr("Toss") : tr("Live");
        return joined(first, second);
    }
    if (match.isUpcoming() && hasNotice(match))
        return tr("Delayed");
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
            return tr("1st Innings");
        if (match.currentInnings == QStringLiteral("2"))
            return tr("2nd Innings");
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
    const QString sides = tr("%1 against %2").arg(home, away);
    // An optional tail: ", Rain delay", or nothing.
    const auto then = [](const QString &more) {
        return more.isEmpty() ? QString() : tr(", %1").arg(more);
    };
    if (match.isLive()) {
        if (isTossPhase(match) || match.firstBattingSummary.isEmpty())
            return tr("Live: %1").arg(sides + then(match.formattedTossDetails()));
        const QString first = match.homeBattedFirst() ? home : away;
        const QString second = match.homeBattedFirst() ? away : home;
        if (match.secondBattingSummary.isEmpty())
            return tr("Live: %1 %2 against %3")
                .arg(first, spokenScore(match.firstBattingSummary), second);
        bool isNumber = false;
        const int runs =
            ZelMatch::summaryHead(match.firstBattingSummary).section(u'/', 0, 0).toInt(&isNumber);
        const QString chase = spokenScore(match.secondBattingSummary);
        return isNumber ? tr("Live: %1 %2, chasing %3 against %4")
                              .arg(second, chase, QString::number(runs + 1), first)
                        : tr("Live: %1 %2 against %3").arg(second, chase, first);
    }
    if (match.isFinished())
        return tr("Result: %1").arg(sides + then(trimSpacesAndTabs(match.comments)));
    if (isAbandoned(match))
        return tr("Abandoned: %1").arg(sides);
    if (match.isUpcoming() && hasNotice(match))
        return tr("Delayed: %1").arg(sides + then(trimSpacesAndTabs(match.comments)));
    return tr("Upcoming: %1 at %2")
        .arg(sides, displayTime(match, zone, locale) + then(venueText(match)));
}
