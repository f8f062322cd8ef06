#include "MatchPlay.h"

#include "InningsScore.h"

#include <array>
#include <QRandomGenerator64>

namespace {

// Outcomes of one delivery and their weights out of 100: a T20 innings averages about 165.
struct Outcome {
    int runs;
    bool wicket;
    int weight;
};
constexpr std::array<Outcome, 7> outcomes{{
    {0, false, 36},
    {1, false, 32},
    {2, false, 9},
    {3, false, 1},
    {4, false, 11},
    {6, false, 5},
    {0, true, 6},
}};

Outcome drawOutcome(QRandomGenerator64 &random)
{
    int pick = int(random.bounded(100));
    for (const Outcome &outcome : outcomes) {
        if (pick < outcome.weight)
            return outcome;
        pick -= outcome.weight;
    }
    return outcomes.front();
}

} // namespace

MatchPlay::MatchPlay(quint64 seed)
{
    QRandomGenerator64 random(seed);
    m_homeWonToss = random.bounded(2) == 0;
    m_tossWinnerBats = random.bounded(2) == 0;
    m_innings[0] = simulateInnings(random.generate(), 0);
    const int firstTotal = InningsScore(m_innings[0], int(m_innings[0].size())).runs;
    m_innings[1] = simulateInnings(random.generate(), firstTotal + 1);
}

// target 0: bat the full innings; otherwise stop as soon as the target is reached.
QList<MatchPlay::Delivery> MatchPlay::simulateInnings(quint64 seed, int target) const
{
    QRandomGenerator64 random(seed);
    QList<Delivery> balls;
    int runs = 0;
    int wickets = 0;
    while (balls.size() < ballsPerInnings && wickets < 10 && (target == 0 || runs < target)) {
        const Outcome outcome = drawOutcome(random);
        balls.append({outcome.runs, outcome.wicket});
        runs += outcome.runs;
        wickets += outcome.wicket;
    }
    return balls;
}

std::chrono::seconds MatchPlay::secondInningsStart() const
{
    return ballDuration * m_innings[0].size() + inningsBreak;
}

std::chrono::seconds MatchPlay::duration() const
{
    return secondInningsStart() + ballDuration * m_innings[1].size();
}

MatchPlay::Progress MatchPlay::progressAt(std::chrono::seconds sinceStart) const
{
    if (sinceStart < -tossLead)
        return {Phase::Upcoming, 0, 0};
    if (sinceStart < std::chrono::seconds(0))
        return {Phase::Toss, 0, 0};
    const int firstBalls = int(m_innings[0].size());
    const auto firstEnd = ballDuration * firstBalls;
    if (sinceStart < firstEnd)
        return {Phase::FirstInnings, 0, int(sinceStart / ballDuration)};
    if (sinceStart < secondInningsStart())
        return {Phase::InningsBreak, 0, firstBalls};
    if (sinceStart < duration())
        return {Phase::SecondInnings, 1, int((sinceStart - secondInningsStart()) / ballDuration)};
    return {Phase::Finished, 1, int(m_innings[1].size())};
}
