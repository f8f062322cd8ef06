#pragma once

#include "MatchPlay.h"

#include <QList>
#include <QString>

// The state of one innings after a number of deliveries.
struct InningsScore {
    struct Batter {
        bool batted = false;
        bool out = false;
        int runs = 0, balls = 0, fours = 0, sixes = 0;
    };
    struct Bowler {
        int balls = 0, runs = 0, wickets = 0, maidens = 0;
    };

    int runs = 0;
    int wickets = 0;
    int balls = 0;
    int striker = 0;
    int nonStriker = 1;
    int currentBowler = 0; // who bowls the next delivery, or bowled the last one
    QList<Batter> batters = QList<Batter>(11);
    QList<Bowler> bowlers = QList<Bowler>(MatchPlay::bowlersPerInnings);

    InningsScore(const QList<MatchPlay::Delivery> &deliveries, int ballsBowled);

    // "150/3 (15.2 Ov)"
    QString summary() const;
    static QString overs(int balls);
};
