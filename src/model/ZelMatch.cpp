#include "ZelMatch.h"

#include "JsonDecoding.h"
#include "ZelConfig.h"

#include <QJsonObject>

using JsonDecoding::exactInteger;

namespace {

// Reading one key of a nested wire object: a required key must hold the right type; an optional
// key may be missing or null, but a value of the wrong type still fails the object.
bool readRequired(const QJsonObject &object, QLatin1StringView key, QString &into)
{
    const QJsonValue value = object.value(key);
    if (!value.isString())
        return false;
    into = value.toString();
    return true;
}

bool readRequired(const QJsonObject &object, QLatin1StringView key, qint64 &into)
{
    const auto number = exactInteger(object.value(key));
    if (!number)
        return false;
    into = *number;
    return true;
}

bool isAbsent(const QJsonValue &value) { return value.isUndefined() || value.isNull(); }

template <typename T>
bool readOptional(const QJsonObject &object, QLatin1StringView key, T &into)
{
    return isAbsent(object.value(key)) || readRequired(object, key, into);
}

bool readOptional(const QJsonObject &object, QLatin1StringView key, std::optional<QString> &into)
{
    QString text;
    if (isAbsent(object.value(key)))
        return true;
    if (!readRequired(object, key, text))
        return false;
    into = std::move(text);
    return true;
}

// A whole wire group: a nested object that decodes fully or not at all.
template <typename Group> std::optional<Group> decodeGroup(const QJsonValue &value)
{
    if (!value.isObject())
        return std::nullopt;
    Group group;
    if (!group.read(value.toObject()))
        return std::nullopt;
    return group;
}

namespace wire {

struct Venue {
    QString ground, city;
    bool read(const QJsonObject &o)
    {
        return readRequired(o, QLatin1StringView("ground"), ground) &&
               readRequired(o, QLatin1StringView("city"), city);
    }
};

struct Team {
    QString id, name, logoURL, code;
    bool read(const QJsonObject &o)
    {
        return readRequired(o, QLatin1StringView("id"), id) &&
               readRequired(o, QLatin1StringView("name"), name) &&
               readRequired(o, QLatin1StringView("logoURL"), logoURL) &&
               readOptional(o, QLatin1StringView("code"), code);
    }
};

struct Batting {
    qint64 firstTeamID = 0;
    QString firstTeamCode, secondTeamCode, firstSummary, secondSummary;
    bool read(const QJsonObject &o)
    {
        return readOptional(o, QLatin1StringView("firstTeamID"), firstTeamID) &&
               readOptional(o, QLatin1StringView("firstTeamCode"), firstTeamCode) &&
               readOptional(o, QLatin1StringView("secondTeamCode"), secondTeamCode) &&
               readOptional(o, QLatin1StringView("firstSummary"), firstSummary) &&
               readOptional(o, QLatin1StringView("secondSummary"), secondSummary);
    }
};

struct Toss {
    QString details;
    bool read(const QJsonObject &o) { return readOptional(o, QLatin1StringView("details"), details); }
};

struct Result {
    QString winningTeamID, description;
    bool read(const QJsonObject &o)
    {
        return readOptional(o, QLatin1StringView("winningTeamID"), winningTeamID) &&
               readOptional(o, QLatin1StringView("description"), description);
    }
};

struct LivePlayer {
    QString name;
    qint64 runs = 0, balls = 0;
    bool read(const QJsonObject &o)
    {
        return readRequired(o, QLatin1StringView("name"), name) &&
               readRequired(o, QLatin1StringView("runs"), runs) &&
               readRequired(o, QLatin1StringView("balls"), balls);
    }
};

struct LiveBowler {
    QString name, overs;
    qint64 wickets = 0;
    bool read(const QJsonObject &o)
    {
        return readRequired(o, QLatin1StringView("name"), name) &&
               readRequired(o, QLatin1StringView("overs"), overs) &&
               readRequired(o, QLatin1StringView("wickets"), wickets);
    }
};

struct Live {
    std::optional<QString> currentInnings;
    std::optional<LivePlayer> striker, nonStriker;
    std::optional<LiveBowler> bowler;

    bool read(const QJsonObject &o)
    {
        return readOptional(o, QLatin1StringView("currentInnings"), currentInnings) &&
               readMember(o.value(QLatin1StringView("striker")), striker) &&
               readMember(o.value(QLatin1StringView("nonStriker")), nonStriker) &&
               readMember(o.value(QLatin1StringView("bowler")), bowler);
    }

    template <typename Member>
    static bool readMember(const QJsonValue &value, std::optional<Member> &into)
    {
        if (isAbsent(value))
            return true;
        into = decodeGroup<Member>(value);
        return into.has_value();
    }
};

} // namespace wire

std::optional<QString> optionalString(const QJsonObject &object, QLatin1StringView key)
{
    const QJsonValue value = object.value(key);
    if (!value.isString())
        return std::nullopt;
    return value.toString();
}

} // namespace

Result<ZelMatch> ZelMatch::fromJson(const QJsonValue &value, const KeyPath &path)
{
    auto object = JsonDecoding::object(value, path);
    if (!object.isOk())
        return object.error();
    const QJsonObject &o = object.value();

    ZelMatch match;
    const QLatin1StringView idKey("matchID");
    auto id = JsonDecoding::integer(o.value(idKey), KeyPath(path, idKey));
    if (!id.isOk())
        return id.error();
    match.matchID = id.value();

    match.matchOrder = optionalString(o, QLatin1StringView("matchOrder")).value_or(QString());
    match.matchName = optionalString(o, QLatin1StringView("matchName")).value_or(QString());
    match.matchStatus =
        optionalString(o, QLatin1StringView("status")).value_or(QStringLiteral("unknown"));
    match.startTime = optionalString(o, QLatin1StringView("startTime"));

    if (const auto venue = decodeGroup<wire::Venue>(o.value(QLatin1StringView("venue")))) {
        match.groundName = venue->ground;
        match.city = venue->city;
    }
    if (const auto home = decodeGroup<wire::Team>(o.value(QLatin1StringView("homeTeam")))) {
        match.homeTeamID = home->id;
        match.homeTeamName = home->name;
        match.homeTeamLogo = home->logoURL;
        match.homeTeamAPICode = home->code;
    }
    if (const auto away = decodeGroup<wire::Team>(o.value(QLatin1StringView("awayTeam")))) {
        match.awayTeamID = away->id;
        match.awayTeamName = away->name;
        match.awayTeamLogo = away->logoURL;
        match.awayTeamAPICode = away->code;
    }
    if (const auto batting = decodeGroup<wire::Batting>(o.value(QLatin1StringView("batting")))) {
        match.firstBattingTeamID = batting->firstTeamID;
        match.firstBattingTeamCode = batting->firstTeamCode;
        match.secondBattingTeamCode = batting->secondTeamCode;
        match.firstBattingSummary = batting->firstSummary;
        match.secondBattingSummary = batting->secondSummary;
    }
    if (const auto toss = decodeGroup<wire::Toss>(o.value(QLatin1StringView("toss"))))
        match.tossDetails = toss->details;
    if (const auto result = decodeGroup<wire::Result>(o.value(QLatin1StringView("result")))) {
        match.winningTeamID = result->winningTeamID;
        match.comments = result->description;
    }
    if (const auto live = decodeGroup<wire::Live>(o.value(QLatin1StringView("live")))) {
        match.currentInnings = live->currentInnings;
        if (live->striker) {
            match.currentStrikerName = live->striker->name;
            match.strikerRuns = live->striker->runs;
            match.strikerBalls = live->striker->balls;
        }
        if (live->nonStriker) {
            match.currentNonStrikerName = live->nonStriker->name;
            match.nonStrikerRuns = live->nonStriker->runs;
            match.nonStrikerBalls = live->nonStriker->balls;
        }
        if (live->bowler) {
            match.currentBowlerName = live->bowler->name;
            match.bowlerOvers = live->bowler->overs;
            match.bowlerWickets = live->bowler->wickets;
        }
    }
    return match;
}

std::optional<QUrl> ZelMatch::logoURL(const QString &logo, const QString &serviceBaseURL)
{
    if (logo.isEmpty())
        return std::nullopt;
    const QUrl url(logo.startsWith(u'/') ? serviceBaseURL + logo : logo, QUrl::TolerantMode);
    if (!url.isValid())
        return std::nullopt;
    return url;
}

std::optional<QUrl> ZelMatch::homeTeamLogoURL() const
{
    return logoURL(homeTeamLogo, QString::fromLatin1(ZelConfig::scoreServiceURL));
}

std::optional<QUrl> ZelMatch::awayTeamLogoURL() const
{
    return logoURL(awayTeamLogo, QString::fromLatin1(ZelConfig::scoreServiceURL));
}

bool ZelMatch::homeBattedFirst() const
{
    return homeTeamID == QString::number(firstBattingTeamID);
}

QString ZelMatch::homeTeamCode() const
{
    const QString &code = homeBattedFirst() ? firstBattingTeamCode : secondBattingTeamCode;
    return code.isEmpty() ? homeTeamAPICode : code;
}

// Deliberately keyed on the home side too: the away side batted first exactly when home did not.
QString ZelMatch::awayTeamCode() const
{
    const QString &code = homeBattedFirst() ? secondBattingTeamCode : firstBattingTeamCode;
    return code.isEmpty() ? awayTeamAPICode : code;
}

QString ZelMatch::formattedTossDetails() const
{
    if (tossDetails.isEmpty())
        return tossDetails;

    const QString lowered = tossDetails.toLower();
    QLatin1StringView decision;
    if (lowered.contains(QLatin1StringView("field")) || lowered.contains(QLatin1StringView("bowl")))
        decision = QLatin1StringView("field");
    else if (lowered.contains(QLatin1StringView("bat")))
        decision = QLatin1StringView("bat");
    else
        return tossDetails;

    const QString *winnerID = nullptr;
    if (!homeTeamName.isEmpty() && tossDetails.contains(homeTeamName))
        winnerID = &homeTeamID;
    else if (!awayTeamName.isEmpty() && tossDetails.contains(awayTeamName))
        winnerID = &awayTeamID;

    // With no team named, the side batting first is taken as the toss winner.
    const bool winnerBattedFirst = !winnerID || *winnerID == QString::number(firstBattingTeamID);
    const QString &code = winnerBattedFirst ? firstBattingTeamCode : secondBattingTeamCode;
    if (code.isEmpty())
        return tossDetails;
    return code + QLatin1StringView(" won the toss, chose to ") + decision;
}
