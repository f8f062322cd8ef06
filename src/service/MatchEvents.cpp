#include "MatchEvents.h"

#include "SpacesAndTabs.h"
#include "StatusTitle.h"

#include <optional>

int MatchEvents::wicketsIn(const QString &summary)
{
    const QString head = ZelMatch::summaryHead(summary);
    const qsizetype slash = head.indexOf(u'/');
    if (slash < 0)
        return -1;
    bool isNumber = false;
    const int wickets = head.mid(slash + 1).toInt(&isNumber);
    return isNumber && wickets >= 0 && wickets <= 10 ? wickets : -1;
}

QList<MatchEvents::Event> MatchEvents::compare(const QList<ZelMatch> &today, const Wanted &wanted)
{
    const bool rebase = std::exchange(m_rebase, false);
    QList<Event> events;
    for (const ZelMatch &match : today) {
        const bool isNew = !m_known.contains(match.matchID);
        Known &known = m_known[match.matchID];
        std::optional<Kind> happened;
        const auto wants = [&](bool on) { return on && !rebase && !isNew; };

        if (match.isLive() && !known.started && !known.finished) {
            known.started = true;
            if (wants(wanted.starts))
                happened = Kind::Started;
        }
        const QString *summaries[2] = {&match.firstBattingSummary, &match.secondBattingSummary};
        for (int innings = 0; innings < 2; ++innings) {
            const int wickets = wicketsIn(*summaries[innings]);
            if (wickets <= known.wickets[innings])
                continue;
            known.wickets[innings] = wickets;
            if (match.isLive() && wants(wanted.wickets))
                happened = Kind::Wicket;
        }
        if (match.isFinished() && !known.finished) {
            known.finished = true;
            if (wants(wanted.results))
                happened = Kind::Finished;
        }
        if (happened && (wanted.teamID.isEmpty() || match.involves(wanted.teamID)))
            events.append(describe(*happened, match));
    }
    return events;
}

MatchEvents::Event MatchEvents::describe(Kind kind, const ZelMatch &match)
{
    const QString codes = match.homeTeamCode();
    const QString names = tr("%1 vs %2").arg(match.homeTeamName, match.awayTeamName);
    switch (kind) {
    case Kind::Started: {
        const QString toss = match.formattedTossDetails();
        return {kind, match, tr("%1 vs %2 has started").arg(codes, match.awayTeamCode()),
                toss.isEmpty() ? names : toss};
    }
    case Kind::Wicket: {
        const bool second =
            match.currentInnings == QLatin1StringView("2") && !match.secondBattingSummary.isEmpty();
        const QString code = second ? match.secondBattingTeamCode : match.firstBattingTeamCode;
        const QString score = StatusTitle::shortScoreWithOvers(second ? match.secondBattingSummary
                                                                      : match.firstBattingSummary);
        return {kind, match, tr("Wicket! %1 %2").arg(code, score), names};
    }
    case Kind::Finished: {
        const QString result = trimSpacesAndTabs(match.comments);
        return {kind, match, tr("%1 vs %2: result").arg(codes, match.awayTeamCode()),
                result.isEmpty() ? names : result};
    }
    }
    return {kind, match, {}, {}};
}
