#pragma once

#include "KeyPath.h"
#include "Result.h"

#include <optional>
#include <QMetaType>
#include <QString>
#include <QUrl>

namespace simdjson::dom {
class element;
}

// One fixture, live game or finished game, flattened from the service's nested JSON.
struct ZelMatch {
    qint64 matchID = 0;
    QString matchOrder;
    QString matchName;
    QString matchStatus = QStringLiteral("unknown");
    std::optional<QString> startTime;
    QString homeTeamID;
    QString homeTeamName;
    QString homeTeamLogo;
    QString homeTeamAPICode;
    QString awayTeamID;
    QString awayTeamName;
    QString awayTeamLogo;
    QString awayTeamAPICode;
    qint64 firstBattingTeamID = 0;
    QString firstBattingTeamCode;
    QString secondBattingTeamCode;
    QString firstBattingSummary;
    QString secondBattingSummary;
    std::optional<QString> currentInnings;
    QString currentStrikerName;
    qint64 strikerRuns = 0;
    qint64 strikerBalls = 0;
    QString currentNonStrikerName;
    qint64 nonStrikerRuns = 0;
    qint64 nonStrikerBalls = 0;
    QString currentBowlerName;
    QString bowlerOvers;
    qint64 bowlerWickets = 0;
    QString winningTeamID;
    QString comments;
    QString groundName;
    QString city;
    QString tossDetails;

    // Fails only for a value that is not an object or a missing or non-integer "matchID";
    // every other broken group falls back to its defaults.
    static Result<ZelMatch> fromJson(const simdjson::dom::element &value, const KeyPath &path);

    // Where a logo text points: paths beginning with "/" live on the score service.
    static std::optional<QUrl> logoURL(const QString &logo, const QString &serviceBaseURL);

    qint64 id() const { return matchID; }
    // The three status words the app acts on, compared exactly: "Live" or "unknown" is none.
    bool isLive() const { return matchStatus == QLatin1StringView("live"); }
    bool isUpcoming() const { return matchStatus == QLatin1StringView("upcoming"); }
    bool isFinished() const { return matchStatus == QLatin1StringView("finished"); }
    // Whether one of the two sides has this identifier; an empty one is no team.
    bool involves(const QString &teamID) const;
    // Team identifiers are text; the first batting side's is a number, compared as plain decimal.
    bool homeBattedFirst() const;
    // The batting-order code of the side with this identifier.
    QString battingCodeOf(const QString &teamID) const;
    // The part of a batting summary before " (": "185/6 (20 ov)" gives "185/6".
    static QString summaryHead(const QString &summary);
    // Where each side's badge is, for a service at this origin.
    std::optional<QUrl> homeTeamLogoURL(const QString &serviceBaseURL) const;
    std::optional<QUrl> awayTeamLogoURL(const QString &serviceBaseURL) const;
    QString homeTeamCode() const;
    QString awayTeamCode() const;
    QString formattedTossDetails() const;

    // What the toss winner chose, "field" (bowling counts as fielding) or "bat", as the toss
    // text says; nothing when it says neither.
    std::optional<QString> tossDecision() const;
    // The batting code of the side the toss text names (home first), which may be empty;
    // nothing when it names neither side.
    std::optional<QString> tossWinnerCode() const;

    friend bool operator==(const ZelMatch &, const ZelMatch &) = default;

private:
    // A side's code from the batting order, else from the team record.
    QString sideCode(bool battedFirst, const QString &apiCode) const;
};

Q_DECLARE_METATYPE(ZelMatch)
