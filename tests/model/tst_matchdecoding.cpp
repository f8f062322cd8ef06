#include "MatchesResponse.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

// Every field in one line, so that a failed comparison shows exactly what differs.
static QString describe(const ZelMatch &m)
{
    const auto opt = [](const std::optional<QString> &s) {
        return s ? u'"' + *s + u'"' : "absent";
    };
    const auto n = [](qint64 value) { return QString::number(value); };
    // clang-format off
    return QStringList{n(m.matchID), m.matchOrder, m.matchName, m.matchStatus, opt(m.startTime),
        m.homeTeamID, m.homeTeamName, m.homeTeamLogo, m.homeTeamAPICode,
        m.awayTeamID, m.awayTeamName, m.awayTeamLogo, m.awayTeamAPICode,
        n(m.firstBattingTeamID), m.firstBattingTeamCode, m.secondBattingTeamCode,
        m.firstBattingSummary, m.secondBattingSummary, opt(m.currentInnings),
        m.currentStrikerName, n(m.strikerRuns), n(m.strikerBalls),
        m.currentNonStrikerName, n(m.nonStrikerRuns), n(m.nonStrikerBalls),
        m.currentBowlerName, m.bowlerOvers, n(m.bowlerWickets),
        m.winningTeamID, m.comments, m.groundName, m.city, m.tossDetails}.join(u'|');
    // clang-format on
}

static ZelMatch decodeOne(const QByteArray &json)
{
    const auto result = MatchesResponse::fromJson("{\"matches\": [" + json + "]}");
    if (!result.isOk())
        qFatal("unexpected decode failure: %s", qPrintable(result.error().description));
    return result.value().matches.at(0);
}

static const QByteArray fullMatch = R"json({
  "matchID": 42, "matchOrder": "Match 12", "matchName": "Lions v Tigers", "status": "live",
  "startTime": "2026-04-05T19:30:00+05:30",
  "venue": {"ground": "Eden Park", "city": "Pune"},
  "homeTeam": {"id": "11", "name": "Lions", "logoURL": "/logos/lions.png", "code": "LIO"},
  "awayTeam": {"id": "22", "name": "Tigers", "logoURL": "https://cdn.example/t.svg", "code": "TIG"},
  "batting": {"firstTeamID": 22, "firstTeamCode": "TIG", "secondTeamCode": "LIO",
              "firstSummary": "180/6 (20 Ov)", "secondSummary": "150/3 (15.2 Ov)"},
  "toss": {"details": "Tigers won the toss and chose to bat"},
  "result": {"winningTeamID": null, "description": "Lions need 31 runs"},
  "live": {"currentInnings": "2", "striker": {"name": "A", "runs": 40, "balls": 30},
           "nonStriker": {"name": "B", "runs": 12, "balls": 9},
           "bowler": {"name": "C", "overs": "3.2", "wickets": 1}},
  "extra": {"ignored": true}
})json";

// clang-format off
static const ZelMatch fullMatchRecord{.matchID = 42, .matchOrder = "Match 12",
    .matchName = "Lions v Tigers", .matchStatus = "live", .startTime = "2026-04-05T19:30:00+05:30",
    .homeTeamID = "11", .homeTeamName = "Lions", .homeTeamLogo = "/logos/lions.png",
    .homeTeamAPICode = "LIO", .awayTeamID = "22", .awayTeamName = "Tigers",
    .awayTeamLogo = "https://cdn.example/t.svg", .awayTeamAPICode = "TIG",
    .firstBattingTeamID = 22, .firstBattingTeamCode = "TIG", .secondBattingTeamCode = "LIO",
    .firstBattingSummary = "180/6 (20 Ov)", .secondBattingSummary = "150/3 (15.2 Ov)",
    .currentInnings = "2", .currentStrikerName = "A", .strikerRuns = 40, .strikerBalls = 30,
    .currentNonStrikerName = "B", .nonStrikerRuns = 12, .nonStrikerBalls = 9,
    .currentBowlerName = "C", .bowlerOvers = "3.2", .bowlerWickets = 1,
    .comments = "Lions need 31 runs", .groundName = "Eden Park", .city = "Pune",
    .tossDetails = "Tigers won the toss and chose to bat"};
// clang-format on

class MatchDecodingTest : public QObject {
    Q_OBJECT

private slots:
    void decodesGroupsForgivingly_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<QString>("expected");

        const QString bare = describe(ZelMatch{.matchID = 1});
        // clang-format off
        QTest::newRow("every group") << fullMatch << describe(fullMatchRecord);
        QTest::newRow("only matchID") << QByteArray(R"({"matchID": 1})") << bare;
        QTest::newRow("a number past 64 bits under a key the app ignores, digits in a string kept")
            << QByteArray(R"({"matchID": 1, "extra": [18446744073709551616, -9223372036854775809],
                              "status": "99999999999999999999"})")
            << describe(ZelMatch{.matchID = 1, .matchStatus = "99999999999999999999"});
        QTest::newRow("integral 1.0 as matchID") << QByteArray(R"({"matchID": 1.0})") << bare;
        QTest::newRow("null status, numeric name")
            << QByteArray(R"({"matchID": 1, "status": null, "matchName": 5})") << bare;
        QTest::newRow("status kept verbatim, numeric start")
            << QByteArray(R"({"matchID": 1, "status": "Live", "startTime": 1700000000})")
            << describe(ZelMatch{.matchID = 1, .matchStatus = "Live"});
        QTest::newRow("home team without code")
            << QByteArray(R"({"matchID": 1, "homeTeam": {"id": "11", "name": "Lions", "logoURL": "l.png"}})")
            << describe(ZelMatch{.matchID = 1, .homeTeamID = "11", .homeTeamName = "Lions", .homeTeamLogo = "l.png"});
        QTest::newRow("numeric home id empties the home team only")
            << QByteArray(R"({"matchID": 1,
                "homeTeam": {"id": 11, "name": "Lions", "logoURL": "l.png", "code": "LIO"},
                "awayTeam": {"id": "22", "name": "Tigers", "logoURL": "t.png", "code": "TIG"}})")
            << describe(ZelMatch{.matchID = 1, .awayTeamID = "22", .awayTeamName = "Tigers",
                                 .awayTeamLogo = "t.png", .awayTeamAPICode = "TIG"});
        QTest::newRow("team code of the wrong type fails the team")
            << QByteArray(R"({"matchID": 1, "homeTeam": {"id": "11", "name": "L", "logoURL": "l", "code": 3}})")
            << bare;
        QTest::newRow("venue without city")
            << QByteArray(R"({"matchID": 1, "venue": {"ground": "Eden Park"}})") << bare;
        QTest::newRow("string firstTeamID empties batting")
            << QByteArray(R"({"matchID": 1, "batting": {"firstTeamID": "22",
                "firstTeamCode": "TIG", "secondTeamCode": "LIO", "firstSummary": "1/0"}})")
            << bare;
        QTest::newRow("null optional batting keys are absent")
            << QByteArray(R"({"matchID": 1, "batting": {"firstTeamID": null, "firstTeamCode": "TIG", "secondTeamCode": null}})")
            << describe(ZelMatch{.matchID = 1, .firstBattingTeamCode = "TIG"});
        QTest::newRow("numeric toss details")
            << QByteArray(R"({"matchID": 1, "toss": {"details": 3}})") << bare;
        QTest::newRow("numeric winner empties the result")
            << QByteArray(R"({"matchID": 1, "result": {"winningTeamID": 22, "description": "x"}})") << bare;
        QTest::newRow("striker without balls empties live")
            << QByteArray(R"({"matchID": 1, "live": {"currentInnings": "1", "striker": {"name": "A", "runs": 4}}})")
            << bare;
        QTest::newRow("complete striker only")
            << QByteArray(R"({"matchID": 1, "live": {"currentInnings": "1",
                "striker": {"name": "A", "runs": 4, "balls": 3}, "bowler": null}})")
            << describe(ZelMatch{.matchID = 1, .currentInnings = "1", .currentStrikerName = "A",
                                 .strikerRuns = 4, .strikerBalls = 3});
        QTest::newRow("numeric bowler overs empties live")
            << QByteArray(R"({"matchID": 1, "live": {"currentInnings": "1",
                "bowler": {"name": "C", "overs": 3.2, "wickets": 1}}})")
            << bare;
        QTest::newRow("fractional runs empty live")
            << QByteArray(R"({"matchID": 1, "live": {"striker": {"name": "A", "runs": 4.5, "balls": 3}}})")
            << bare;
        QTest::newRow("groups of the wrong type")
            << QByteArray(R"({"matchID": 1, "venue": "Pune", "homeTeam": [], "batting": 3,
                "toss": "bat", "result": true, "live": "yes"})")
            << bare;
        // clang-format on
    }

    void decodesGroupsForgivingly()
    {
        QFETCH(QByteArray, json);
        QFETCH(QString, expected);
        QCOMPARE(describe(decodeOne(json)), expected);
    }

    void envelopeFailures_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<QString>("message");

        QTest::newRow("no matches key") << QByteArray("{}") << R"("matches" is missing)";
        QTest::newRow("matches not an array") << QByteArray(R"({"matches": {}})")
                                              << R"("matches" should be an array but is an object)";
        QTest::newRow("fourth matchID is a string")
            << QByteArray(R"({"matches": [{"matchID": 1}, {"matchID": 2}, {"matchID": 3},
                                          {"matchID": "4"}, {"matchID": 5}]})")
            << R"("matches[3].matchID" should be an integer but is a string)";
        QTest::newRow("null matchID") << QByteArray(R"({"matches": [{"matchID": null}]})")
                                      << R"("matches[0].matchID" should be an integer but is null)";
        QTest::newRow("missing matchID") << QByteArray(R"({"matches": [{"status": "live"}]})")
                                         << R"("matches[0].matchID" is missing)";
        QTest::newRow("fractional matchID")
            << QByteArray(R"({"matches": [{"matchID": 7.5}]})")
            << R"("matches[0].matchID" should be an integer but is a number)";
        QTest::newRow("matchID beyond 64 bits")
            << QByteArray(R"({"matches": [{"matchID": 9223372036854775808}]})")
            << R"("matches[0].matchID" should be an integer but is a number)";
        QTest::newRow("matchID of 2^63 written as a decimal")
            << QByteArray(R"({"matches": [{"matchID": 9223372036854775808.0}]})")
            << R"("matches[0].matchID" should be an integer but is a number)";
        QTest::newRow("element not an object")
            << QByteArray(R"({"matches": [{"matchID": 1}, 2]})")
            << R"("matches[1]" should be an object but is a number)";
        QTest::newRow("top-level array")
            << QByteArray("[]") << u"the document should be an object but is an array"_s;
        QTest::newRow("truncated JSON")
            << QByteArray(R"({"matches": [{"matchID": 1)") << u"malformed JSON"_s;
        QTest::newRow("empty body") << QByteArray() << u"malformed JSON"_s;
    }

    void envelopeFailures()
    {
        QFETCH(QByteArray, json);
        QFETCH(QString, message);
        const auto result = MatchesResponse::fromJson(json);
        QVERIFY(!result.isOk());
        QCOMPARE(result.error().domain, u"ZelDecoding"_s);
        QVERIFY2(result.error().description.contains(message),
                 qPrintable(result.error().description));
    }

    void envelopeKeepsOrderAndIgnoresUnknownKeys()
    {
        const auto empty = MatchesResponse::fromJson(QByteArray(R"({"matches": []})"));
        QVERIFY(empty.isOk());
        QVERIFY(empty.value().matches.isEmpty());

        const auto result = MatchesResponse::fromJson(QByteArray(
            R"({"v": 2, "matches": [{"matchID": 9}, {"matchID": -3}, {"matchID": 9}]})"));
        QVERIFY(result.isOk());
        QList<qint64> ids;
        for (const ZelMatch &m : result.value().matches)
            ids.append(m.id());
        QCOMPARE(ids, (QList<qint64>{9, -3, 9}));
    }

    void logoURL_data()
    {
        QTest::addColumn<QString>("logo");
        QTest::addColumn<QString>("expected"); // empty: absent

        QTest::newRow("service path")
            << u"/logos/lions.png"_s << u"https://scores.test/logos/lions.png"_s;
        QTest::newRow("absolute") << u"https://cdn.example/t.svg?v=2"_s
                                  << u"https://cdn.example/t.svg?v=2"_s;
        QTest::newRow("empty") << u""_s << u""_s;
        QTest::newRow("unparseable") << u"http://[::1"_s << u""_s;
    }

    void logoURL()
    {
        QFETCH(QString, logo);
        QFETCH(QString, expected);
        const auto url = ZelMatch::logoURL(logo, u"https://scores.test"_s);
        QCOMPARE(url ? url->toString() : QString(), expected);
    }

    void eachSideHasItsOwnLogo()
    {
        const ZelMatch &m = fullMatchRecord;
        QCOMPARE(m.homeTeamLogoURL(u"https://scores.test"_s)->toString(),
                 u"https://scores.test/logos/lions.png"_s);
        QCOMPARE(m.awayTeamLogoURL(u"https://scores.test"_s)->toString(),
                 u"https://cdn.example/t.svg"_s);
    }

    void teamCodes_data()
    {
        QTest::addColumn<QString>("homeID");
        QTest::addColumn<qint64>("firstID");
        QTest::addColumn<QString>("firstCode");
        QTest::addColumn<QString>("secondCode");
        QTest::addColumn<QString>("homeCode");
        QTest::addColumn<QString>("awayCode");

        QTest::newRow("home batted first")
            << u"11"_s << 11LL << u"LIO"_s << u"TIG"_s << u"LIO"_s << u"TIG"_s;
        QTest::newRow("away batted first")
            << u"11"_s << 22LL << u"TIG"_s << u"LIO"_s << u"LIO"_s << u"TIG"_s;
        QTest::newRow("before the toss")
            << u"11"_s << 0LL << u""_s << u""_s << u"HOM"_s << u"AWY"_s;
        QTest::newRow("empty batting code falls back")
            << u"11"_s << 11LL << u""_s << u"TIG"_s << u"HOM"_s << u"TIG"_s;
        QTest::newRow("negative id as plain text")
            << u"-5"_s << -5LL << u"NEG"_s << u"POS"_s << u"NEG"_s << u"POS"_s;
        QTest::newRow("no leading zeros")
            << u"011"_s << 11LL << u"LIO"_s << u"TIG"_s << u"TIG"_s << u"LIO"_s;
    }

    void teamCodes()
    {
        QFETCH(QString, homeID);
        QFETCH(qint64, firstID);
        QFETCH(QString, firstCode);
        QFETCH(QString, secondCode);
        ZelMatch m;
        m.homeTeamID = homeID;
        m.awayTeamID = "22";
        m.firstBattingTeamID = firstID;
        m.firstBattingTeamCode = firstCode;
        m.secondBattingTeamCode = secondCode;
        m.homeTeamAPICode = "HOM";
        m.awayTeamAPICode = "AWY";
        QTEST(m.homeTeamCode(), "homeCode");
        QTEST(m.awayTeamCode(), "awayCode");
    }

    void formattedToss_data()
    {
        QTest::addColumn<QString>("details");
        QTest::addColumn<qint64>("firstID");
        QTest::addColumn<QString>("firstCode");
        QTest::addColumn<QString>("expected");

        QTest::newRow("empty") << u""_s << 22LL << u"TIG"_s << u""_s;
        QTest::newRow("home named, bowl, home second")
            << u"Lions won the toss and elected to bowl"_s << 22LL << u"TIG"_s
            << u"LIO won the toss, chose to field"_s;
        QTest::newRow("away named, bat, away first")
            << u"Tigers opt to BAT"_s << 22LL << u"TIG"_s << u"TIG won the toss, chose to bat"_s;
        QTest::newRow("field beats bat") << u"Tigers will bat? No, field"_s << 22LL << u"TIG"_s
                                         << u"TIG won the toss, chose to field"_s;
        QTest::newRow("no team named: first batting side")
            << u"Toss won, decided to bat"_s << 22LL << u"TIG"_s
            << u"TIG won the toss, chose to bat"_s;
        QTest::newRow("no team named, no code")
            << u"Toss won, decided to bat"_s << 22LL << u""_s << u"Toss won, decided to bat"_s;
        QTest::newRow("no decision word")
            << u"Lions won the toss"_s << 22LL << u"TIG"_s << u"Lions won the toss"_s;
        QTest::newRow("team names are case-sensitive")
            << u"LIONS chose to field"_s << 22LL << u"TIG"_s
            << u"TIG won the toss, chose to field"_s;
    }

    void formattedToss()
    {
        QFETCH(QString, details);
        QFETCH(qint64, firstID);
        QFETCH(QString, firstCode);
        ZelMatch m;
        m.tossDetails = details;
        m.homeTeamID = "11";
        m.homeTeamName = "Lions";
        m.awayTeamID = "22";
        m.awayTeamName = "Tigers";
        m.firstBattingTeamID = firstID;
        m.firstBattingTeamCode = firstCode;
        m.secondBattingTeamCode = "LIO";
        QTEST(m.formattedTossDetails(), "expected");
    }
};

QTEST_GUILESS_MAIN(MatchDecodingTest)
#include "tst_matchdecoding.moc"
