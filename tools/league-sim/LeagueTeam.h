#pragma once

#include <QList>
#include <QString>
#include <QStringList>

// One of the league's fictional sides.
struct LeagueTeam {
    QString id;
    QString name;
    QString code;
    QString ground;
    QString city;
    QString colour;      // badge colour, "#rrggbb"
    QStringList players; // batting order; the first is the captain, the fifth keeps wicket

    // The batter's name as the scorecard lists it, with the captain and keeper marks.
    QString scorecardName(int player) const;

    // The eight sides, with squads drawn from the seed.
    static QList<LeagueTeam> roster(quint64 seed);
};
