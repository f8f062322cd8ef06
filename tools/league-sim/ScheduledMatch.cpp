#include "ScheduledMatch.h"

#include "InningsScore.h"
#include "LeagueCalendar.h"

#include <cstdio>
#include <QJsonArray>

namespace {

QString twoDecimals(double value)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.2f", value);
    return QString::fromLatin1(text);
}

QJsonValue textOrNull(const QString &text)
{
    return text.isEmpty() ? QJsonValue() : text;
}

} // namespace

ScheduledMatch::ScheduledMatch(qint64 id, int order, const LeagueTeam &home, const LeagueTeam &away,
                               QDateTime start, quint64 seed)
    : m_id(id)
    , m_order(order)
    , m_home(&home)
    , m_away(&away)
    , m_start(std::move(start))
    , m_play(seed)
{
}

void ScheduledMatch::delay(std::chrono::seconds by, const QString &note)
{
    m_delay = by;
    m_delayNote = note;
}

MatchPlay::Progress ScheduledMatch::progressAt(const QDateTime &now) const
{
    return m_play.progressAt(std::chrono::seconds(playStart().secsTo(now)));
}

QString ScheduledMatch::statusAt(const QDateTime &now) const
{
    switch (progressAt(now).phase) {
    case MatchPlay::Phase::Upcoming:
        return QStringLiteral("upcoming");
    case MatchPlay::Phase::Finished:
        return QStringLiteral("finished");
    default:
        return QStringLiteral("live");
    }
}

const LeagueTeam &ScheduledMatch::battingTeam(int innings) const
{
    return (innings == 0) == m_play.homeBatsFirst() ? *m_home : *m_away;
}

QString ScheduledMatch::resultText() const
{
    const InningsScore first(m_play.innings(0), int(m_play.innings(0).size()));
    const InningsScore second(m_play.innings(1), int(m_play.innings(1).size()));
    if (second.runs > first.runs) {
        const int left = 10 - second.wickets;
        return QStringLiteral("%1 won by %2 wicket%3")
            .arg(battingTeam(1).name)
            .arg(left)
            .arg(left == 1 ? "" : "s");
    }
    if (second.runs < first.runs) {
        const int margin = first.runs - second.runs;
        return QStringLiteral("%1 won by %2 run%3")
            .arg(battingTeam(0).name)
            .arg(margin)
            .arg(margin == 1 ? "" : "s");
    }
    return QStringLiteral("Match tied");
}

QString ScheduledMatch::chaseText(const MatchPlay::Progress &progress) const
{
    const InningsScore first(m_play.innings(0), int(m_play.innings(0).size()));
    if (progress.phase == MatchPlay::Phase::InningsBreak)
        return QStringLiteral("Innings break: %1 need %2 runs to win")
            .arg(battingTeam(1).name)
            .arg(first.runs + 1);
    const InningsScore second(m_play.innings(1), progress.ballsBowled);
    return QStringLiteral("%1 need %2 runs from %3 balls")
        .arg(battingTeam(1).name)
        .arg(first.runs + 1 - second.runs)
        .arg(MatchPlay::ballsPerInnings - second.balls);
}

QJsonObject ScheduledMatch::toJson(const QDateTime &now, const LogoLocator &logo) const
{
    const MatchPlay::Progress progress = progressAt(now);
    const bool tossDone = progress.phase != MatchPlay::Phase::Upcoming;
    const bool finished = progress.phase == MatchPlay::Phase::Finished;
    const auto team = [&logo](const LeagueTeam &t) {
        return QJsonObject{{"id", t.id}, {"name", t.name}, {"logoURL", logo(t)}, {"code", t.code}};
    };

    QJsonObject batting{{"firstTeamID", QJsonValue()},
                        {"firstTeamCode", QJsonValue()},
                        {"secondTeamCode", QJsonValue()},
                        {"firstSummary", QJsonValue()},
                        {"secondSummary", QJsonValue()}};
    QJsonObject toss{{"details", QJsonValue()}};
    QJsonObject result{{"winningTeamID", QJsonValue()}, {"description", QJsonValue()}};
    QJsonObject live{{"currentInnings", QJsonValue()},
                     {"striker", QJsonValue()},
                     {"nonStriker", QJsonValue()},
                     {"bowler", QJsonValue()}};

    if (!tossDone && m_delay.count() > 0)
        result["description"] = m_delayNote;
    if (tossDone) {
        const LeagueTeam &winner = m_play.homeWonToss() ? *m_home : *m_away;
        toss["details"] = QStringLiteral("%1 won the toss and elected to %2")
                              .arg(winner.name, m_play.tossWinnerBats() ? "bat" : "bowl");
        batting["firstTeamID"] = battingTeam(0).id.toLongLong();
        batting["firstTeamCode"] = battingTeam(0).code;
        batting["secondTeamCode"] = battingTeam(1).code;
    }
    const bool firstStarted = progress.phase >= MatchPlay::Phase::FirstInnings;
    const bool secondStarted = progress.phase >= MatchPlay::Phase::SecondInnings;
    if (firstStarted) {
        const int firstBalls =
            progress.innings == 0 ? progress.ballsBowled : int(m_play.innings(0).size());
        batting["firstSummary"] = InningsScore(m_play.innings(0), firstBalls).summary();
    }
    if (secondStarted)
        batting["secondSummary"] = InningsScore(m_play.innings(1), progress.ballsBowled).summary();

    if (finished) {
        const InningsScore first(m_play.innings(0), int(m_play.innings(0).size()));
        const InningsScore second(m_play.innings(1), int(m_play.innings(1).size()));
        const QString winner = second.runs == first.runs  ? QString()
                               : second.runs > first.runs ? battingTeam(1).id
                                                          : battingTeam(0).id;
        result["winningTeamID"] = textOrNull(winner);
        result["description"] = resultText();
    } else if (progress.phase == MatchPlay::Phase::InningsBreak || secondStarted) {
        result["description"] = chaseText(progress);
    }

    const bool atTheCrease = progress.phase == MatchPlay::Phase::FirstInnings ||
                             progress.phase == MatchPlay::Phase::SecondInnings;
    if (atTheCrease) {
        const InningsScore score(m_play.innings(progress.innings), progress.ballsBowled);
        const LeagueTeam &bat = battingTeam(progress.innings);
        const LeagueTeam &field = battingTeam(1 - progress.innings);
        const auto player = [&](int index) {
            const InningsScore::Batter &b = score.batters[index];
            return QJsonObject{{"name", bat.players[index]}, {"runs", b.runs}, {"balls", b.balls}};
        };
        const InningsScore::Bowler &bowler = score.bowlers[score.currentBowler];
        live["currentInnings"] = QString::number(progress.innings + 1);
        live["striker"] = player(score.striker);
        live["nonStriker"] = player(score.nonStriker);
        live["bowler"] = QJsonObject{{"name", field.players[6 + score.currentBowler]},
                                     {"overs", InningsScore::overs(bowler.balls)},
                                     {"wickets", bowler.wickets}};
    }

    const auto venue = QJsonObject{{"ground", m_home->ground}, {"city", m_home->city}};
    return QJsonObject{
        {"matchID", m_id},
        {"matchOrder", QStringLiteral("Match %1").arg(m_order)},
        {"matchName", QStringLiteral("%1 vs %2").arg(m_home->name, m_away->name)},
        {"status", statusAt(now)},
        {"startTime", m_start.toTimeZone(LeagueCalendar::zone()).toString(Qt::ISODate)},
        {"venue", venue},
        {"homeTeam", team(*m_home)},
        {"awayTeam", team(*m_away)},
        {"batting", batting},
        {"toss", toss},
        {"result", result},
        {"live", live},
    };
}

QJsonObject ScheduledMatch::scorecardJson(const QDateTime &now) const
{
    const MatchPlay::Progress progress = progressAt(now);
    QJsonArray innings;
    const int started = progress.phase >= MatchPlay::Phase::SecondInnings  ? 2
                        : progress.phase >= MatchPlay::Phase::FirstInnings ? 1
                                                                           : 0;
    for (int i = 0; i < started; ++i) {
        const int balls =
            i == progress.innings ? progress.ballsBowled : int(m_play.innings(i).size());
        const InningsScore score(m_play.innings(i), balls);
        const LeagueTeam &bat = battingTeam(i);
        const LeagueTeam &field = battingTeam(1 - i);
        QJsonArray batters;
        for (int b = 0; b < score.batters.size(); ++b) {
            const InningsScore::Batter &batter = score.batters[b];
            batters.append(QJsonObject{
                {"name", bat.scorecardName(b)},
                {"runs", batter.runs},
                {"balls", batter.balls},
                {"fours", batter.fours},
                {"sixes", batter.sixes},
                {"strikeRate",
                 batter.balls > 0 ? twoDecimals(100.0 * batter.runs / batter.balls) : QString()},
                {"isNotOut", !batter.out},
            });
        }
        QJsonArray bowlers;
        for (int b = 0; b < score.bowlers.size(); ++b) {
            const InningsScore::Bowler &bowler = score.bowlers[b];
            if (bowler.balls == 0)
                continue;
            bowlers.append(QJsonObject{
                {"name", field.players[6 + b]},
                {"overs", InningsScore::overs(bowler.balls)},
                {"maidens", bowler.maidens},
                {"runs", bowler.runs},
                {"wickets", bowler.wickets},
                {"economy", twoDecimals(6.0 * bowler.runs / bowler.balls)},
            });
        }
        innings.append(QJsonObject{{"inningsNo", i + 1},
                                   {"battingTeamName", bat.name},
                                   {"batting", batters},
                                   {"bowling", bowlers}});
    }
    return QJsonObject{{"innings", innings}};
}
