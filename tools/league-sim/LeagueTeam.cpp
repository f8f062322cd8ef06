#include "LeagueTeam.h"

#include <array>
#include <QRandomGenerator64>
#include <QSet>

QString LeagueTeam::scorecardName(int player) const
{
    const QString &playerName = players.at(player);
    if (player == 0)
        return playerName + QStringLiteral(" (c)");
    if (player == 4)
        return playerName + QStringLiteral(" (wk)");
    return playerName;
}

QList<LeagueTeam> LeagueTeam::roster(quint64 seed)
{
    struct Side {
        const char *name, *code, *ground, *city, *colour;
    };
    static constexpr std::array<Side, 8> sides{{
        {"Northport Mariners", "NTH", "Harbour Oval", "Northport", "#1f5fa8"},
        {"Southshore Suns", "STH", "Sunrise Park", "Southshore", "#e08a1e"},
        {"Eastgate Falcons", "EGT", "Falcon Ground", "Eastgate", "#2e8b57"},
        {"Westvale Wolves", "WVL", "Valley Stadium", "Westvale", "#6b4fa0"},
        {"Highcliff Titans", "HCF", "Cliffside Arena", "Highcliff", "#b0303a"},
        {"Riverton Royals", "RVT", "Riverside Oval", "Riverton", "#c9a227"},
        {"Lakeside Lions", "LKS", "Lakefront Stadium", "Lakeside", "#1c8c9c"},
        {"Stonebridge Strikers", "SBR", "Bridge Park", "Stonebridge", "#4a4f57"},
    }};
    static constexpr std::array firstNames{
        "Arjun", "Kabir",  "Rohan", "Vikram", "Dev",   "Ishaan", "Nikhil", "Aditya",
        "Rahul", "Sameer", "Tarun", "Yash",   "Karan", "Manav",  "Pranav", "Siddharth",
        "Omar",  "Liam",   "Noah",  "Ethan",  "Ravi",  "Zubin",  "Farhan", "Imran"};
    static constexpr std::array surnames{
        "Mehta", "Rao",   "Iyer",     "Kapoor", "Shah",     "Nair",   "Reddy", "Joshi",
        "Patel", "Singh", "Das",      "Bose",   "Menon",    "Pillai", "Khan",  "Verma",
        "Gill",  "Sethi", "Kulkarni", "Chopra", "Malhotra", "Saxena", "Bhatt", "Dutta"};

    QRandomGenerator64 random(seed);
    QSet<QString> taken;
    QList<LeagueTeam> teams;
    for (qsizetype i = 0; i < qsizetype(sides.size()); ++i) {
        const Side &side = sides[size_t(i)];
        LeagueTeam team{QString::number(i + 1),
                        QString::fromUtf8(side.name),
                        QString::fromUtf8(side.code),
                        QString::fromUtf8(side.ground),
                        QString::fromUtf8(side.city),
                        QString::fromUtf8(side.colour),
                        {}};
        while (team.players.size() < 11) {
            const QString player =
                QString::fromUtf8(firstNames[random.bounded(quint64(firstNames.size()))]) + u' ' +
                QString::fromUtf8(surnames[random.bounded(quint64(surnames.size()))]);
            if (!taken.contains(player)) {
                taken.insert(player);
                team.players.append(player);
            }
        }
        teams.append(team);
    }
    return teams;
}
