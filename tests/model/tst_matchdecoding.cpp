#include "MatchesResponse.h"
#include "ZelConfig.h"

#include <QTest>

// Every field in one line, so that a failed comparison shows exactly what differs.
static QString describe(const ZelMatch &m)
{
    const auto opt = [](const std::optional<QString> &s) {
        return s ? u'"' + *s + u'"' : "absent";
    };
    return QStringList{QString::number(m.matchID),
                       m.matchOrder,
                       m.matchName,
                       m.matchStatus,
                       opt(m.startTime),
                       m.homeTeamID,
                       m.homeTeamName,
                       m.homeTeamLogo,
                       m.homeTeamAPICode,
                       m.awayTeamID,
                       m.awayTeamName,
                       m.awayTeamLogo,
                       m.awayTeamAPICode,
                       QString::number(m.firstBattingTeamID),
                       m.firstBattingTeamCode,
                       m.secondBattingTeamCode,
                       m.firstBattingSummary,
                       m.secondBattingSummary,
                       opt(m.currentInnings),
                       m.currentStrikerName,
                       QString::number(m.strikerRuns),
                       QString::number(m.strikerBalls),
                       m.currentNonStrikerName,
                       QString::number(m.nonStrikerRuns),
                       QString::number(m.nonStrikerBalls),
                       m.currentBowlerName,
                       m.bowlerOvers,
                       QString::number(m.bowlerWickets),
                       m.winningTeamID,
                       m.comments,
                       m.groundName,
                       m.city,
                       m.tossDetails}
        .join(u'|');
}

static ZelMatch decodeOne(const QByteArray &json)
{
    const auto result = MatchesResponse::fromJson("{\"matches\": [" + json + "]}");
    if (!result.isOk())
        qFatal("unexpected decode failure: %s", qPrintable(result.error().description));
    return result.value().matches.at(0);
}

static ZelMatch withID(qint64 id)
{
    ZelMatch m;
    m.matchID = id;
    return m;
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

static ZelMatch fullMatchRecord()
{
    ZelMatch m = withID(42);
    m.matchOrder = "Match 12";
    m.matchName = "Lions v Tigers";
    m.matchStatus = "live";
    m.startTime = "2026-04-05T19:30:00+05:30";
    m.groundName = "Eden Park";
    m.city = "Pune";
    m.homeTeamID = "11";
    m.homeTeamName = "Lions";
    m.homeTeamLogo = "/logos/lions.png";
    m.homeTeamAPICode = "LIO";
    m.awayTeamID = "22";
    m.awayTeamName = "Tigers";
    m.awayTeamLogo = "https://cdn.example/t.svg";
    m.awayTeamAPICode = "TIG";
    m.firstBattingTeamID = 22;
    m.firstBattingTeamCode = "TIG";
    m.secondBattingTeamCode = "LIO";
    m.firstBattingSummary = "180/6 (20 Ov)";
    m.secondBattingSummary = "150/3 (15.2 Ov)";
    m.tossDetails = "Tigers won the toss and chose to bat";
    m.comments = "Lions need 31 runs";
    m.currentInnings = "2";
    m.currentStrikerName = "A";
    m.strikerRuns = 40;
    m.strikerBalls = 30;
    m.currentNonStrikerName = "B";
    m.nonStrikerRuns = 12;
    m.nonStrikerBalls = 9;
    m.currentBowlerName = "C";
    m.bowlerOvers = "3.2";
    m.bowlerWickets = 1;
    return m;
}

class MatchDecodingTest : public QObject {
    Q_OBJECT

private slots:
    void decodesGroupsForgivingly_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<QString>("expected");

        QTest::newRow("every group") << fullMatch << describe(fullMatchRecord());
        QTest::newRow("only matchID") << QByteArray(R"({"matchID": 7})") << describe(withID(7));
        QTest::newRow("integral 7.0 as matchID")
            << QByteArray(R"({"matchID": 7.0})") << describe(withID(7));

        ZelMatch m = withID(1);
        QTest::newRow("null status, numeric name")
            << QByteArray(R"({"matchID": 1, "status": null, "matchName": 5})") << describe(m);

        m = withID(1);
        m.matchStatus = "Live";
        QTest::newRow("status kept verbatim")
            << QByteArray(R"({"matchID": 1, "status": "Live", "startTime": 1700000000})")
            << describe(m);

        m = withID(1);
        m.homeTeamID = "11";
        m.homeTeamName = "Lions";
        m.homeTeamLogo = "l.png";
        QTest::newRow("home team without code")
            << QByteArray(
                   R"({"matchID": 1, "homeTeam": {"id": "11", "name": "Lions", "logoURL": "l.png"}})")
            << describe(m);

        m = withID(1);
        m.awayTeamID = "22";
        m.awayTeamName = "Tigers";
        m.awayTeamLogo = "t.png";
        m.awayTeamAPICode = "TIG";
        QTest::newRow("numeric home id empties the home team only") << QByteArray(R"({"matchID": 1,
                "homeTeam": {"id": 11, "name": "Lions", "logoURL": "l.png", "code": "LIO"},
                "awayTeam": {"id": "22", "name": "Tigers", "logoURL": "t.png", "code": "TIG"}})")
                                                                    << describe(m);

        QTest::newRow("team code of the wrong type fails the team") << QByteArray(R"({"matchID": 1,
                "homeTeam": {"id": "11", "name": "Lions", "logoURL": "l.png", "code": 3}})")
                                                                    << describe(withID(1));

        QTest::newRow("venue without city")
            << QByteArray(R"({"matchID": 1, "venue": {"ground": "Eden Park"}})")
            << describe(withID(1));

        QTest::newRow("string firstTeamID empties batting")
            << QByteArray(R"({"matchID": 1, "batting": {"firstTeamID": "22",
                "firstTeamCode": "TIG", "secondTeamCode": "LIO", "firstSummary": "1/0"}})")
            << describe(withID(1));

        m = withID(1);
        m.firstBattingTeamCode = "TIG";
        QTest::newRow("null optional batting keys are absent")
            << QByteArray(R"({"matchID": 1, "batting": {"firstTeamID": null,
                "firstTeamCode": "TIG", "secondTeamCode": null}})")
            << describe(m);

        QTest::newRow("numeric toss details")
            << QByteArray(R"({"matchID": 1, "toss": {"details": 3}})") << describe(withID(1));

        QTest::newRow("numeric winner empties the result")
            << QByteArray(R"({"matchID": 1, "result": {"winningTeamID": 22, "description": "x"}})")
            << describe(withID(1));

        QTest::newRow("striker without balls empties live")
            << QByteArray(R"({"matchID": 1, "live": {"currentInnings": "1",
                "striker": {"name": "A", "runs": 4}}})")
            << describe(withID(1));

        m = withID(1);
        m.currentInnings = "1";
        m.currentStrikerName = "A";
        m.strikerRuns = 4;
        m.strikerBalls = 3;
        QTest::newRow("complete striker only")
            << QByteArray(R"({"matchID": 1, "live": {"currentInnings": "1",
                "striker": {"name": "A", "runs": 4, "balls": 3}, "bowler": null}})")
            << describe(m);

        QTest::newRow("numeric bowler overs empties live")
            << QByteArray(R"({"matchID": 1, "live": {"currentInnings": "1",
                "bowler": {"name": "C", "overs": 3.2, "wickets": 1}}})")
            << describe(withID(1));

        QTest::newRow("fractional runs empty live") << QByteArray(R"({"matchID": 1, "live": {
                "striker": {"name": "A", "runs": 4.5, "balls": 3}}})")
                                                    << describe(withID(1));

        QTest::newRow("groups of the wrong type")
            << QByteArray(R"({"matchID": 1, "venue": "Pune", "homeTeam": [], "batting": 3,
                "toss": "bat", "result": true, "live": "yes"})")
            << describe(withID(1));
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
        QTest::newRow("element not an object")
            << QByteArray(R"({"matches": [{"matchID": 1}, 2]})")
            << R"("matches[1]" should be an object but is a number)";
        QTest::newRow("top-level array")
            << QByteArray("[]") << "the document should be an object but is an array";
        QTest::newRow("truncated JSON")
            << QByteArray(R"({"matches": [{"matchID": 1)") << "malformed JSON";
        QTest::newRow("empty body") << QByteArray() << "malformed JSON";
    }

    void envelopeFailures()
    {
        QFETCH(QByteArray, json);
        QFETCH(QString, message);
        const auto result = MatchesResponse::fromJson(json);
        QVERIFY(!result.isOk());
        QCOMPARE(result.error().domain, QStringLiteral("ZelDecoding"));
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

        QTest::newRow("service path") << "/logos/lions.png"
                                      << "https://scores.test/logos/lions.png";
        QTest::newRow("absolute") << "https://cdn.example/t.svg?v=2"
                                  << "https://cdn.example/t.svg?v=2";
        QTest::newRow("empty") << ""
                               << "";
        QTest::newRow("unparseable") << "http://[::1"
                                     << "";
    }

    void logoURL()
    {
        QFETCH(QString, logo);
        QFETCH(QString, expected);
        const auto url = ZelMatch::logoURL(logo, QStringLiteral("https://scores.test"));
        QCOMPARE(url ? url->toString() : QString(), expected);
    }

    void teamLogoURLsUseTheScoreService()
    {
        const ZelMatch m = fullMatchRecord();
        QCOMPARE(m.homeTeamLogoURL()->toString(),
                 QLatin1StringView(ZelConfig::scoreServiceURL) + "/logos/lions.png");
        QCOMPARE(m.awayTeamLogoURL()->toString(), QStringLiteral("https://cdn.example/t.svg"));
    }

    void teamCodes_data()
    {
        QTest::addColumn<QString>("homeID");
        QTest::addColumn<qint64>("firstID");
        QTest::addColumn<QString>("firstCode");
        QTest::addColumn<QString>("secondCode");
        QTest::addColumn<QString>("homeCode");
        QTest::addColumn<QString>("awayCode");

        QTest::newRow("home batted first") << "11" << 11LL << "LIO"
                                           << "TIG"
                                           << "LIO"
                                           << "TIG";
        QTest::newRow("away batted first") << "11" << 22LL << "TIG"
                                           << "LIO"
                                           << "LIO"
                                           << "TIG";
        QTest::newRow("before the toss") << "11" << 0LL << ""
                                         << ""
                                         << "HOM"
                                         << "AWY";
        QTest::newRow("empty batting code falls back") << "11" << 11LL << ""
                                                       << "TIG"
                                                       << "HOM"
                                                       << "TIG";
        QTest::newRow("negative id as plain text") << "-5" << -5LL << "NEG"
                                                   << "POS"
                                                   << "NEG"
                                                   << "POS";
        QTest::newRow("no leading zeros") << "011" << 11LL << "LIO"
                                          << "TIG"
                                          << "TIG"
                                          << "LIO";
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

        QTest::newRow("empty") << "" << 22LL << "TIG"
                               << "";
        QTest::newRow("home named, bowl, home second")
            << "Lions won the toss and elected to bowl" << 22LL << "TIG"
            << "LIO won the toss, chose to field";
        QTest::newRow("away named, bat, away first") << "Tigers opt to BAT" << 22LL << "TIG"
                                                     << "TIG won the toss, chose to bat";
        QTest::newRow("field beats bat") << "Tigers will bat? No, field" << 22LL << "TIG"
                                         << "TIG won the toss, chose to field";
        QTest::newRow("no team named: first batting side")
            << "Toss won, decided to bat" << 22LL << "TIG"
            << "TIG won the toss, chose to bat";
        QTest::newRow("no team named, no code") << "Toss won, decided to bat" << 22LL << ""
                                                << "Toss won, decided to bat";
        QTest::newRow("no decision word") << "Lions won the toss" << 22LL << "TIG"
                                          << "Lions won the toss";
        QTest::newRow("team names are case-sensitive") << "LIONS chose to field" << 22LL << "TIG"
                                                       << "TIG won the toss, chose to field";
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
