#include "InningsScore.h"

#include <utility>

InningsScore::InningsScore(const QList<MatchPlay::Delivery> &deliveries, int ballsBowled)
{
    batters[0].batted = batters[1].batted = true;
    int nextBatter = 2;
    int overRuns = 0;
    for (int i = 0; i < ballsBowled && i < deliveries.size(); ++i) {
        const MatchPlay::Delivery &ball = deliveries[i];
        Batter &batter = batters[striker];
        Bowler &bowler = bowlers[MatchPlay::bowlerOfBall(i)];
        ++balls;
        runs += ball.runs;
        overRuns += ball.runs;
        ++batter.balls;
        batter.runs += ball.runs;
        batter.fours += ball.runs == 4;
        batter.sixes += ball.runs == 6;
        ++bowler.balls;
        bowler.runs += ball.runs;
        if (ball.wicket) {
            ++wickets;
            ++bowler.wickets;
            batter.out = true;
            if (nextBatter < 11) {
                batters[nextBatter].batted = true;
                striker = nextBatter++;
            }
        } else if (ball.runs % 2 == 1) {
            std::swap(striker, nonStriker);
        }
        if (balls % 6 == 0) {
            bowler.maidens += overRuns == 0;
            overRuns = 0;
            std::swap(striker, nonStriker);
        }
    }
    const bool inningsOver = balls >= deliveries.size();
    currentBowler = MatchPlay::bowlerOfBall(inningsOver && balls > 0 ? balls - 1 : balls);
}

QString InningsScore::summary() const
{
    return QStringLiteral("%1/%2 (%3 Ov)").arg(runs).arg(wickets).arg(overs(balls));
}

QString InningsScore::overs(int balls)
{
    return balls % 6 == 0 ? QString::number(balls / 6)
                          : QStringLiteral("%1.%2").arg(balls / 6).arg(balls % 6);
}
