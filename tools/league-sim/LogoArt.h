#pragma once

#include "LeagueTeam.h"

#include <QByteArray>

// Team badges drawn by the simulator itself: a coloured disc with the team's initials.
namespace LogoArt {

QByteArray png(const LeagueTeam &team, int size = 128);
QByteArray svg(const LeagueTeam &team);

} // namespace LogoArt
