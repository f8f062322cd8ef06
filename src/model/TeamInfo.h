#pragma once

#include "ZelMatch.h"

#include <QList>

// A side of the league as the matches name it: what the settings page lists and what a
// favourite is kept as.
struct TeamInfo {
    QString id;
    QString name;
    QString code;
    QString logo; // the logo text as the service sends it

    friend bool operator==(const TeamInfo &, const TeamInfo &) = default;

    // Every side these matches name with an identifier and a name, once each (the first
    // mention wins), sorted by name.
    static QList<TeamInfo> of(const QList<ZelMatch> &matches);
};
