#include "League.h"

#include "LeagueCalendar.h"

#include <algorithm>
#include <array>
#include <QJsonArray>

using namespace std::chrono_literals;

namespace {

constexpr std::array<std::pair<const char *, League::Scenario>, 9> scenarios{{
    {"season", League::Scenario::Season},
    {"live-first-innings", League::Scenario::LiveFirstInnings},
    {"live-second-innings", League::Scenario::LiveSecondInnings},
    {"toss", League::Scenario::Toss},
    {"rain-delay", League::Scenario::RainDelay},
    {"next-start-today", League::Scenario::NextStartToday},
    {"todays-result", League::Scenario::TodaysResult},
    {"no-match-today", League::Scenario::NoMatchToday},
    {"empty", League::Scenario::Empty},
}};

constexpr int seasonDaysEachSide = 14;
const std::array<QTime, 2> startTimes{QTime(15, 30), QTime(19, 30)};

// Each round of an eight-team round robin by the circle method: team 0 stays put, the rest
// rotate; every pair meets once per seven rounds.
QList<std::pair<int, int>> roundRobin()
{
    QList<std::pair<int, int>> pairs;
    for (int round = 0; round < 7; ++round) {
        std::array<int, 8> seats{0};
        for (int i = 1; i < 8; ++i)
            seats[size_t(i)] = 1 + (i - 1 + round) % 7;
        for (int i = 0; i < 4; ++i) {
            const int a = seats[size_t(i)];
            const int b = seats[size_t(7 - i)];
            pairs.append(round % 2 ? std::pair(a, b) : std::pair(b, a));
        }
    }
    return pairs;
}

// Every match plays out differently, and the same way again for the same league seed.
quint64 matchSeed(quint64 leagueSeed, qint64 matchID)
{
    return leagueSeed ^ (quint64(matchID) * 0x9e3779b97f4a7c15ULL);
}

bool startsEarlier(const ScheduledMatch *a, const ScheduledMatch *b)
{
    return a->start() < b->start();
}

} // namespace

QStringList League::scenarioNames()
{
    QStringList names;
    for (const auto &[name, scenario] : scenarios)
        names.append(QString::fromLatin1(name));
    return names;
}

std::optional<League::Scenario> League::scenarioNamed(const QString &name)
{
    for (const auto &[known, scenario] : scenarios) {
        if (name == QLatin1StringView(known))
            return scenario;
    }
    return std::nullopt;
}

League::League(Scenario scenario, quint64 seed, const QDateTime &moment)
    : m_teams(LeagueTeam::roster(seed))
{
    if (scenario == Scenario::Empty)
        return;
    addSeason(seed, LeagueCalendar::dayOf(moment));
    if (scenario != Scenario::Season)
        arrangeToday(scenario, seed, moment);
}

ScheduledMatch &League::addMatch(qint64 id, int home, int away, const QDateTime &start,
                                 quint64 seed)
{
    const int order = int(m_matches.size()) + 1;
    return m_matches.emplace_back(id, order, m_teams[home], m_teams[away], start,
                                  matchSeed(seed, id));
}

void League::addSeason(quint64 seed, const QDate &today)
{
    const QList<std::pair<int, int>> pairs = roundRobin();
    int slot = 0;
    for (int day = -seasonDaysEachSide; day <= seasonDaysEachSide; ++day) {
        for (const QTime &time : startTimes) {
            const auto [home, away] = pairs[slot % pairs.size()];
            const bool secondLeg = (slot / pairs.size()) % 2 == 1;
            addMatch(5001 + slot, secondLeg ? away : home, secondLeg ? home : away,
                     QDateTime(today.addDays(day), time, LeagueCalendar::zone()), seed);
            ++slot;
        }
    }
}

void League::arrangeToday(Scenario scenario, quint64 seed, const QDateTime &moment)
{
    const QDate today = LeagueCalendar::dayOf(moment);
    std::erase_if(m_matches, [&](const ScheduledMatch &m) {
        return LeagueCalendar::dayOf(m.start()) == today;
    });

    const qint64 id = 9001;
    const QDateTime endOfToday = LeagueCalendar::startOfNextDay(moment).addSecs(-60);
    // Today's match starts no earlier than today began and no later than today ends.
    const auto todayAt = [&](std::chrono::seconds offset) {
        return std::clamp(moment.addSecs(offset.count()), LeagueCalendar::startOfDay(moment),
                          endOfToday);
    };
    switch (scenario) {
    case Scenario::LiveFirstInnings:
        addMatch(id, 0, 1, moment.addSecs(-(40min).count()), seed);
        break;
    case Scenario::LiveSecondInnings: {
        const MatchPlay play(matchSeed(seed, id));
        const auto firstInnings = MatchPlay::ballDuration * play.innings(0).size();
        const auto intoChase = MatchPlay::ballDuration * (play.innings(1).size() / 2);
        addMatch(id, 0, 1,
                 moment.addSecs(-(firstInnings + MatchPlay::inningsBreak + intoChase).count()),
                 seed);
        break;
    }
    case Scenario::Toss:
        addMatch(id, 2, 3, moment.addSecs((10min).count()), seed);
        break;
    case Scenario::RainDelay: {
        ScheduledMatch &match = addMatch(id, 1, 0, todayAt(-15min), seed);
        match.delay(75min,
                    QStringLiteral("Rain delay: the covers are on at %1").arg(m_teams[1].ground));
        break;
    }
    case Scenario::NextStartToday:
        addMatch(id, 4, 5, todayAt(3h), seed);
        break;
    case Scenario::TodaysResult:
        addMatch(id, 6, 7, todayAt(-5h), seed);
        break;
    case Scenario::Season:
    case Scenario::NoMatchToday:
    case Scenario::Empty:
        break;
    }
}

QString League::logoLocation(const LeagueTeam &team) const
{
    const QString file = team.code.toLower();
    if (team.code == QLatin1StringView("LKS"))
        return QStringLiteral("/logos/%1.svg").arg(file);
    if (team.id.toInt() % 2 == 1)
        return QStringLiteral("/logos/%1.png").arg(file);
    return QStringLiteral("%1/cdn/logos/%2.png").arg(m_origin, file);
}

QJsonObject League::listJson(const QDateTime &now,
                             const std::vector<const ScheduledMatch *> &matches) const
{
    QJsonArray list;
    const auto logo = [this](const LeagueTeam &team) { return logoLocation(team); };
    for (const ScheduledMatch *match : matches)
        list.append(match->toJson(now, logo));
    return QJsonObject{{"matches", list}};
}

QJsonObject League::todayJson(const QDateTime &now) const
{
    const QDate today = LeagueCalendar::dayOf(now);
    std::vector<const ScheduledMatch *> picked;
    for (const ScheduledMatch &match : m_matches) {
        if (LeagueCalendar::dayOf(match.start()) == today ||
            match.statusAt(now) == QLatin1StringView("live"))
            picked.push_back(&match);
    }
    std::stable_sort(picked.begin(), picked.end(), startsEarlier);
    return listJson(now, picked);
}

QJsonObject League::upcomingJson(const QDateTime &now) const
{
    const QDateTime tomorrow = LeagueCalendar::startOfNextDay(now);
    std::vector<const ScheduledMatch *> picked;
    for (const ScheduledMatch &match : m_matches) {
        if (match.start() >= tomorrow && match.statusAt(now) == QLatin1StringView("upcoming"))
            picked.push_back(&match);
    }
    std::stable_sort(picked.begin(), picked.end(), startsEarlier);
    return listJson(now, picked);
}

QJsonObject League::resultsJson(const QDateTime &now) const
{
    std::vector<const ScheduledMatch *> picked;
    for (const ScheduledMatch &match : m_matches) {
        if (match.statusAt(now) == QLatin1StringView("finished"))
            picked.push_back(&match);
    }
    std::stable_sort(picked.begin(), picked.end(),
                     [](auto *a, auto *b) { return startsEarlier(b, a); });
    return listJson(now, picked);
}

std::optional<QJsonObject> League::scorecardJson(qint64 matchID, const QDateTime &now) const
{
    for (const ScheduledMatch &match : m_matches) {
        if (match.id() == matchID)
            return match.scorecardJson(now);
    }
    return std::nullopt;
}
