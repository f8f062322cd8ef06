#include "TeamInfo.h"

#include <algorithm>
#include <QSet>

QList<TeamInfo> TeamInfo::of(const QList<ZelMatch> &matches)
{
    QList<TeamInfo> teams;
    QSet<QString> seen;
    const auto add = [&](TeamInfo team) {
        if (team.id.isEmpty() || team.name.trimmed().isEmpty() || seen.contains(team.id))
            return;
        seen.insert(team.id);
        teams.append(std::move(team));
    };
    for (const ZelMatch &match : matches) {
        add({match.homeTeamID, match.homeTeamName, match.homeTeamCode(), match.homeTeamLogo});
        add({match.awayTeamID, match.awayTeamName, match.awayTeamCode(), match.awayTeamLogo});
    }
    std::stable_sort(teams.begin(), teams.end(), [](const TeamInfo &a, const TeamInfo &b) {
        return QString::localeAwareCompare(a.name, b.name) < 0;
    });
    return teams;
}
