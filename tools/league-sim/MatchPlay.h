#pragma once

#include <chrono>
#include <QList>

// A whole T20 match decided in advance from a seed, ball by ball, so that its state at any
// moment can be replayed and never goes backwards.
class MatchPlay {
public:
    static constexpr int ballsPerInnings = 120;
    static constexpr int bowlersPerInnings = 5;
    static constexpr std::chrono::seconds ballDuration{40};
    static constexpr std::chrono::seconds inningsBreak{15 * 60};
    static constexpr std::chrono::seconds tossLead{30 * 60}; // the toss comes before the start

    // Who faced and who bowled follow from the order of deliveries (see InningsScore).
    struct Delivery {
        int runs = 0;
        bool wicket = false;
    };

    static int bowlerOfBall(int ball) { return (ball / 6) % bowlersPerInnings; }

    enum class Phase { Upcoming, Toss, FirstInnings, InningsBreak, SecondInnings, Finished };

    // Where the match stands some time after its start.
    struct Progress {
        Phase phase = Phase::Upcoming;
        int innings = 0;     // 0 or 1: the innings being played or last played
        int ballsBowled = 0; // deliveries of that innings so far
    };

    explicit MatchPlay(quint64 seed);

    bool homeWonToss() const { return m_homeWonToss; }
    bool tossWinnerBats() const { return m_tossWinnerBats; }
    bool homeBatsFirst() const { return m_homeWonToss == m_tossWinnerBats; }
    const QList<Delivery> &innings(int index) const { return m_innings[index]; }

    Progress progressAt(std::chrono::seconds sinceStart) const;
    std::chrono::seconds duration() const;

private:
    QList<Delivery> simulateInnings(quint64 seed, int target) const;
    std::chrono::seconds secondInningsStart() const;

    bool m_homeWonToss;
    bool m_tossWinnerBats;
    QList<Delivery> m_innings[2];
};
