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

// "no fours", "1 four", "3 fours"; a figure that is not a count is said as it stands.
QString counted(const QString &figure, const QString &one, const QString &many, const QString &none)
{
    if (figure == u'0')
        return none;
    return figure + u' ' + (figure == u'1' ? one : many);
}

// ", strike rate 119"; nothing for a rate not known yet ("-").
QString rate(const QString &format, const QString &figure)
{
    return figure == u'-' ? QString() : format.arg(figure);
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

QString ScorecardPresenter::spokenName(const QString &name)
{
    QStringList words{trimSpacesAndTabs(withoutMarks(name))};
    for (qsizetype open = name.indexOf(u'('); open >= 0; open = name.indexOf(u'(', open + 1)) {
        const qsizetype close = name.indexOf(u')', open + 1);
        if (close < 0)
            break;
        const QString mark = name.mid(open + 1, close - open - 1).trimmed();
        if (mark == QLatin1StringView("c"))
            words.append(tr("captain"));
        else if (mark == QLatin1StringView("wk"))
            words.append(tr("wicket-keeper"));
        else if (!mark.isEmpty())
            words.append(mark);
    }
    return words.join(QStringLiteral(", "));
}

QString ScorecardPresenter::spokenBatting(const ZelBattingEntry &entry, BatsmanState state)
{
    const QString name = spokenName(entry.name);
    switch (state) {
    case BatsmanState::Waiting:
        return tr("%1, yet to bat").arg(name);
    case BatsmanState::DidNotBat:
        return tr("%1, did not bat").arg(name);
    default:
        break;
    }
    const QString how = state == BatsmanState::Striker      ? tr("on strike")
                        : state == BatsmanState::NonStriker ? tr("at the non-striker's end")
                        : state == BatsmanState::NotOut     ? tr("not out")
                                                            : tr("out");
    const QString figures = tr("%1 from %2, %3, %4")
                                .arg(counted(entry.runs, tr("run"), tr("runs"), tr("0 runs")),
                                     counted(entry.balls, tr("ball"), tr("balls"), tr("0 balls")),
                                     counted(entry.fours, tr("four"), tr("fours"), tr("no fours")),
                                     counted(entry.sixes, tr("six"), tr("sixes"), tr("no sixes"))) +
                            rate(tr(", strike rate %1"), entry.strikeRate);
    return tr("%1, %2: %3").arg(name, how, figures);
}

QString ScorecardPresenter::spokenBowling(const ZelBowlingEntry &entry, bool bowlingNow)
{
    const QString name = spokenName(entry.name);
    const QString figures =
        tr("%1, %2, %3, %4")
            .arg(counted(entry.overs, tr("over"), tr("overs"), tr("0 overs")),
                 counted(entry.maidens, tr("maiden"), tr("maidens"), tr("no maiden")),
                 counted(entry.runs, tr("run"), tr("runs"), tr("0 runs")),
                 counted(entry.wickets, tr("wicket"), tr("wickets"), tr("no wicket"))) +
        rate(tr(", economy %1"), entry.economy);
    return tr("%1: %2").arg(bowlingNow ? tr("%1, bowling").arg(name) : name, figures);
}
