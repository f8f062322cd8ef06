#include "ScorecardPresenter.h"

#include "SpacesAndTabs.h"

namespace {

// A name without its marks: "Arjun Mehta (c)" is "Arjun Mehta".
QString withoutMarks(QString name)
{
    for (qsizetype open = name.indexOf(u'('); open >= 0; open = name.indexOf(u'(', open)) {
        const qsizetype close = name.indexOf(u')', open + 1);
        if (close < 0)
            break;
        if (close == open + 1) { // "()" holds no mark
            open = close;
            continue;
        }
        qsizetype from = open;
        while (from > 0 && name.at(from - 1).isSpace())
            --from;
        name.remove(from, close + 1 - from);
        open = from;
    }
    return name;
}

} // namespace

int ScorecardPresenter::initialInnings(const ZelMatch &match)
{
    if (!match.isLive())
        return 0;
    bool isNumber = false;
    const int innings = match.currentInnings.value_or(QStringLiteral("1")).toInt(&isNumber);
    return qMax(0, (isNumber ? innings : 1) - 1);
}

QString ScorecardPresenter::tab1Label(const ZelMatch &match)
{
    return match.firstBattingTeamCode.isEmpty() ? tr("1st")
                                                : tr("1st · %1").arg(match.firstBattingTeamCode);
}

QString ScorecardPresenter::tab2Label(const ZelMatch &match)
{
    return match.secondBattingTeamCode.isEmpty() ? tr("2nd")
                                                 : tr("2nd · %1").arg(match.secondBattingTeamCode);
}

bool ScorecardPresenter::isTossPhase(const ZelMatch &match)
{
    return match.isLive() && match.firstBattingSummary.isEmpty() &&
           match.secondBattingSummary.isEmpty();
}

std::optional<ScorecardPresenter::Side> ScorecardPresenter::yetToBat(const ZelMatch &match,
                                                                     const ZelScorecard &scorecard,
                                                                     int selectedInnings)
{
    const bool homeFirst = match.homeBattedFirst();
    if (isTossPhase(match)) {
        // Only the first two tabs name a side; any later innings is the away side's.
        const bool home =
            (homeFirst && selectedInnings == 0) || (!homeFirst && selectedInnings == 1);
        return home ? Side::Home : Side::Away;
    }
    if (selectedInnings >= scorecard.innings.size())
        return homeFirst ? Side::Away : Side::Home;
    return std::nullopt;
}

ScorecardPresenter::TotalLine ScorecardPresenter::totalLine(const ZelMatch &match, int inningsIndex)
{
    const QString &summary =
        inningsIndex == 0 ? match.firstBattingSummary : match.secondBattingSummary;
    // The last parenthesised piece; a summary without any gives itself, shown twice.
    const QString lastPiece = summary.split(u'(').last();
    const QString overs = lastPiece.left(lastPiece.indexOf(u')'));
    return {ZelMatch::summaryHead(summary), overs.isEmpty() ? std::nullopt : std::optional(overs)};
}

ScorecardPresenter::BatsmanState ScorecardPresenter::batsmanState(const ZelMatch &match,
                                                                  const ZelBattingEntry &entry,
                                                                  qint64 inningsNo)
{
    const bool inningsInProgress =
        match.isLive() && match.currentInnings == QString::number(inningsNo);
    if (inningsInProgress) {
        const QString key = trimSpacesAndTabs(withoutMarks(entry.name));
        const QString striker = trimSpacesAndTabs(match.currentStrikerName);
        const QString nonStriker = trimSpacesAndTabs(match.currentNonStrikerName);
        if (!striker.isEmpty() && striker == key)
            return BatsmanState::Striker;
        if (!nonStriker.isEmpty() && nonStriker == key)
            return BatsmanState::NonStriker;
        return entry.isNotOut == QLatin1StringView("0") ? BatsmanState::Out : BatsmanState::Waiting;
    }
    if (entry.isNotOut != QLatin1StringView("1"))
        return BatsmanState::Out;
    return entry.balls == QLatin1StringView("0") ? BatsmanState::DidNotBat : BatsmanState::NotOut;
}

bool ScorecardPresenter::isCurrentBowler(const ZelMatch &match, const ZelBowlingEntry &entry)
{
    return match.isLive() &&
           trimSpacesAndTabs(entry.name) == trimSpacesAndTabs(match.currentBowlerName);
}

bool ScorecardPresenter::tookWickets(const ZelBowlingEntry &entry)
{
    bool isNumber = false;
    const int wickets = entry.wickets.toInt(&isNumber);
    return isNumber && wickets >= 1;
}
