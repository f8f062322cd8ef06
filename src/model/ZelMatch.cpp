#include "ZelMatch.h"

#include "JsonDecoding.h"

#include <QCoreApplication>

using JsonDecoding::isAbsent;
using JsonDecoding::Member;
using JsonDecoding::member;
using JsonDecoding::Object;

namespace {

// Reading one key of a nested wire object: a required key must hold the right type; an optional
// key may be missing or null, but a value of the wrong type still fails the object.
bool readRequired(const Object &object, std::string_view key, QString &into)
{
    auto text = JsonDecoding::text(member(object, key));
    if (!text)
        return false;
    into = *std::move(text);
    return true;
}

bool readRequired(const Object &object, std::string_view key, qint64 &into)
{
    const auto number = JsonDecoding::exactInteger(member(object, key));
    if (!number)
        return false;
    into = *number;
    return true;
}

template <typename T> bool readOptional(const Object &object, std::string_view key, T &into)
{
    return isAbsent(member(object, key)) || readRequired(object, key, into);
}

bool readOptional(const Object &object, std::string_view key, std::optional<QString> &into)
{
    const Member value = member(object, key);
    if (isAbsent(value))
        return true;
    into = JsonDecoding::text(value);
    return into.has_value();
}

// A whole wire group: a nested object that decodes fully or not at all.
template <typename Group> std::optional<Group> decodeGroup(const Member &value)
{
    Object object;
    if (!value || value->get_object().get(object))
        return std::nullopt;
    Group group;
    if (!group.read(object))
        return std::nullopt;
    return group;
}

namespace wire {

struct Venue {
    QString ground, city;
    bool read(const Object &o)
    {
        return readRequired(o, "ground", ground) && readRequired(o, "city", city);
    }
};

struct Team {
    QString id, name, logoURL, code;
    bool read(const Object &o)
    {
        return readRequired(o, "id", id) && readRequired(o, "name", name) &&
               readRequired(o, "logoURL", logoURL) && readOptional(o, "code", code);
    }
    // Into one side's fields of a match.
    void copyTo(QString &teamID, QString &teamName, QString &teamLogo, QString &apiCode) const
    {
        teamID = id;
        teamName = name;
        teamLogo = logoURL;
        apiCode = code;
    }
};

struct Batting {
    qint64 firstTeamID = 0;
    QString firstTeamCode, secondTeamCode, firstSummary, secondSummary;
    bool read(const Object &o)
    {
        return readOptional(o, "firstTeamID", firstTeamID) &&
               readOptional(o, "firstTeamCode", firstTeamCode) &&
               readOptional(o, "secondTeamCode", secondTeamCode) &&
               readOptional(o, "firstSummary", firstSummary) &&
               readOptional(o, "secondSummary", secondSummary);
    }
};

struct Toss {
    QString details;
    bool read(const Object &o) { return readOptional(o, "details", details); }
};

struct Result {
    QString winningTeamID, description;
    bool read(const Object &o)
    {
        return readOptional(o, "winningTeamID", winningTeamID) &&
               readOptional(o, "description", description);
    }
};

struct LivePlayer {
    QString name;
    qint64 runs = 0, balls = 0;
    bool read(const Object &o)
    {
        return readRequired(o, "name", name) && readRequired(o, "runs", runs) &&
               readRequired(o, "balls", balls);
    }
};

struct LiveBowler {
    QString name, overs;
    qint64 wickets = 0;
    bool read(const Object &o)
    {
        return readRequired(o, "name", name) && readRequired(o, "overs", overs) &&
               readRequired(o, "wickets", wickets);
    }
};

struct Live {
    std::optional<QString> currentInnings;
    std::optional<LivePlayer> striker, nonStriker;
    std::optional<LiveBowler> bowler;

    bool read(const Object &o)
    {
        return readOptional(o, "currentInnings", currentInnings) &&
               readMember(member(o, "striker"), striker) &&
               readMember(member(o, "nonStriker"), nonStriker) &&
               readMember(member(o, "bowler"), bowler);
    }

    template <typename Nested>
    static bool readMember(const Member &value, std::optional<Nested> &into)
    {
        if (isAbsent(value))
            return true;
        into = decodeGroup<Nested>(value);
        return into.has_value();
    }
};

} // namespace wire

} // namespace

Result<ZelMatch> ZelMatch::fromJson(const simdjson::dom::element &value, const KeyPath &path)
{
    auto object = JsonDecoding::object(value, path);
    if (!object.isOk())
        return object.error();
    const Object &o = object.value();

    ZelMatch match;
    const std::string_view idKey = "matchID";
    auto id = JsonDecoding::integer(member(o, idKey), KeyPath(path, idKey));
    if (!id.isOk())
        return id.error();
    match.matchID = id.value();

    match.matchOrder = JsonDecoding::text(member(o, "matchOrder")).value_or(QString());
    match.matchName = JsonDecoding::text(member(o, "matchName")).value_or(QString());
    match.matchStatus = JsonDecoding::text(member(o, "status")).value_or(QStringLiteral("unknown"));
    match.startTime = JsonDecoding::text(member(o, "startTime"));

    if (const auto venue = decodeGroup<wire::Venue>(member(o, "venue"))) {
        match.groundName = venue->ground;
        match.city = venue->city;
    }
    if (const auto home = decodeGroup<wire::Team>(member(o, "homeTeam")))
        home->copyTo(match.homeTeamID, match.homeTeamName, match.homeTeamLogo,
                     match.homeTeamAPICode);
    if (const auto away = decodeGroup<wire::Team>(member(o, "awayTeam")))
        away->copyTo(match.awayTeamID, match.awayTeamName, match.awayTeamLogo,
                     match.awayTeamAPICode);
    if (const auto batting = decodeGroup<wire::Batting>(member(o, "batting"))) {
        match.firstBattingTeamID = batting->firstTeamID;
        match.firstBattingTeamCode = batting->firstTeamCode;
        match.secondBattingTeamCode = batting->secondTeamCode;
        match.firstBattingSummary = batting->firstSummary;
        match.secondBattingSummary = batting->secondSummary;
    }
    if (const auto toss = decodeGroup<wire::Toss>(member(o, "toss")))
        match.tossDetails = toss->details;
    if (const auto result = decodeGroup<wire::Result>(member(o, "result"))) {
        match.winningTeamID = result->winningTeamID;
        match.comments = result->description;
    }
    if (const auto live = decodeGroup<wire::Live>(member(o, "live"))) {
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

std::optional<QUrl> ZelMatch::homeTeamLogoURL(const QString &serviceBaseURL) const
{
    return logoURL(homeTeamLogo, serviceBaseURL);
}

std::optional<QUrl> ZelMatch::awayTeamLogoURL(const QString &serviceBaseURL) const
{
    return logoURL(awayTeamLogo, serviceBaseURL);
}

bool ZelMatch::involves(const QString &teamID) const
{
    return !teamID.isEmpty() && (homeTeamID == teamID || awayTeamID == teamID);
}

bool ZelMatch::homeBattedFirst() const
{
    return homeTeamID == QString::number(firstBattingTeamID);
}

QString ZelMatch::battingCodeOf(const QString &teamID) const
{
    return teamID == QString::number(firstBattingTeamID) ? firstBattingTeamCode
                                                         : secondBattingTeamCode;
}

QString ZelMatch::summaryHead(const QString &summary)
{
    const qsizetype bracket = summary.indexOf(QLatin1StringView(" ("));
    return bracket < 0 ? summary : summary.left(bracket);
}

QString ZelMatch::homeTeamCode() const
{
    return sideCode(homeBattedFirst(), homeTeamAPICode);
}

// Deliberately keyed on the home side too: the away side batted first exactly when home did not.
QString ZelMatch::awayTeamCode() const
{
    return sideCode(!homeBattedFirst(), awayTeamAPICode);
}

QString ZelMatch::sideCode(bool battedFirst, const QString &apiCode) const
{
    const QString &code = battedFirst ? firstBattingTeamCode : secondBattingTeamCode;
    return code.isEmpty() ? apiCode : code;
}

std::optional<QString> ZelMatch::tossDecision() const
{
    const QString lowered = tossDetails.toLower();
    if (lowered.contains(QLatin1StringView("field")) || lowered.contains(QLatin1StringView("bowl")))
        return QStringLiteral("field");
    if (lowered.contains(QLatin1StringView("bat")))
        return QStringLiteral("bat");
    return std::nullopt;
}

std::optional<QString> ZelMatch::tossWinnerCode() const
{
    const QString *winnerID = nullptr;
    if (!homeTeamName.isEmpty() && tossDetails.contains(homeTeamName))
        winnerID = &homeTeamID;
    else if (!awayTeamName.isEmpty() && tossDetails.contains(awayTeamName))
        winnerID = &awayTeamID;
    if (!winnerID)
        return std::nullopt;
    return battingCodeOf(*winnerID);
}

QString ZelMatch::formattedTossDetails() const
{
    const auto decision = tossDecision();
    if (tossDetails.isEmpty() || !decision)
        return tossDetails;
    // With no team named, the side batting first is taken as the toss winner.
    const QString code = tossWinnerCode().value_or(firstBattingTeamCode);
    if (code.isEmpty())
        return tossDetails;
    return *decision == u"field"
               ? QCoreApplication::translate("ZelMatch", "%1 won the toss, chose to field")
                     .arg(code)
               : QCoreApplication::translate("ZelMatch", "%1 won the toss, chose to bat").arg(code);
}
