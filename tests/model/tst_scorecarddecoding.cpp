#include "ZelScorecard.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

// The first line of one innings whose batting and bowling lists hold just the given objects.
static ZelInnings inningsWith(const QByteArray &batting, const QByteArray &bowling)
{
    const auto result = ZelScorecard::fromJson(
        R"({"innings": [{"inningsNo": 1, "battingTeamName": "L", "batting": [)" + batting +
        R"(], "bowling": [)" + bowling + "]}]}");
    if (!result.isOk())
        qFatal("unexpected decode failure: %s", qPrintable(result.error().description));
    return result.value().innings.at(0);
}

static QString describe(const ZelBattingEntry &e)
{
    return QStringList{e.name, e.runs, e.balls, e.fours, e.sixes, e.strikeRate, e.isNotOut}.join(
        u'|');
}

static QString describe(const ZelBowlingEntry &e)
{
    return QStringList{e.name, e.overs, e.maidens, e.runs, e.wickets, e.economy}.join(u'|');
}

static QByteArray innings(int number, const char *extra = "")
{
    return QByteArray(R"({"inningsNo": )") + QByteArray::number(number) +
           R"(, "battingTeamName": "Lions", "batting": [{"name": "A"}], "bowling": [{"name": "B"}])" +
           extra + "}";
}

class ScorecardDecodingTest : public QObject {
    Q_OBJECT

private slots:
    void strikeRate_data()
    {
        QTest::addColumn<QString>("sent");
        QTest::addColumn<QString>("shown");

        QTest::newRow("one decimal") << u"87.5"_s << u"87.5"_s;
        QTest::newRow("rounded to one decimal") << u"66.666"_s << u"66.7"_s;
        QTest::newRow("integer gains a decimal") << u"0"_s << u"0.0"_s;
        QTest::newRow("five characters drop decimals") << u"133.33"_s << u"133"_s;
        QTest::newRow("100.0 is five characters") << u"100.0"_s << u"100"_s;
        QTest::newRow("rounding up to five characters") << u"99.99"_s << u"100"_s;
        QTest::newRow("four digits") << u"1000"_s << u"1000"_s;
        QTest::newRow("exponent") << u"1e2"_s << u"100"_s;
        QTest::newRow("printf rounds the binary value") << u"0.05"_s << u"0.1"_s;
        QTest::newRow("printf rounds an exact tie to even") << u"0.25"_s << u"0.2"_s;
        QTest::newRow("negative") << u"-5.25"_s << u"-5.2"_s;
        QTest::newRow("empty") << u""_s << u"-"_s;
        QTest::newRow("dash kept") << u"-"_s << u"-"_s;
        QTest::newRow("text kept") << u"NA"_s << u"NA"_s;
        QTest::newRow("leading space kept verbatim") << u" 87.5"_s << u" 87.5"_s;
        QTest::newRow("trailing space kept verbatim") << u"87.5 "_s << u"87.5 "_s;
        QTest::newRow("trailing garbage kept verbatim") << u"87.5x"_s << u"87.5x"_s;
        QTest::newRow("decimal comma kept verbatim") << u"87,5"_s << u"87,5"_s;
    }

    void strikeRate()
    {
        QFETCH(QString, sent);
        QTEST(ZelBattingEntry::normalisedStrikeRate(sent), "shown");
    }

    void battingEntry_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<QString>("expected");

        QTest::newRow("empty object") << QByteArray("{}") << u"|0|0|0|0|-|0"_s;
        QTest::newRow("complete")
            << QByteArray(R"({"name": "Asha", "runs": 52, "balls": 39, "fours": 6, "sixes": 1,
                              "strikeRate": "133.33", "isNotOut": true})")
            << u"Asha|52|39|6|1|133|1"_s;
        QTest::newRow("wrong types give placeholders")
            << QByteArray(R"({"name": 5, "runs": "12", "balls": 3.5, "fours": null,
                              "sixes": [], "strikeRate": 87.5, "isNotOut": 1})")
            << u"|0|0|0|0|-|0"_s;
        QTest::newRow("figures past 64 bits give placeholders")
            << QByteArray(R"({"name": "Asha", "runs": 99999999999999999999999,
                              "balls": -99999999999999999999})")
            << u"Asha|0|0|0|0|-|0"_s;
        QTest::newRow("not-out as text")
            << QByteArray(R"({"isNotOut": "true"})") << u"|0|0|0|0|-|0"_s;
        QTest::newRow("integral float and negative runs")
            << QByteArray(R"({"runs": 12.0, "balls": -1})") << u"|12|-1|0|0|-|0"_s;
        QTest::newRow("spaces and tabs trimmed, line break kept")
            << QByteArray(R"({"name": "  Asha\t"})") << u"Asha|0|0|0|0|-|0"_s;
        QTest::newRow("trailing line break kept")
            << QByteArray(R"({"name": "Asha\n"})") << u"Asha\n|0|0|0|0|-|0"_s;
    }

    void battingEntry()
    {
        QFETCH(QByteArray, json);
        QTEST(describe(inningsWith(json, {}).batting.at(0)), "expected");
    }

    void bowlingEntry_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<QString>("expected");

        QTest::newRow("empty object") << QByteArray("{}") << u"|0|0|0|0|-"_s;
        QTest::newRow("complete")
            << QByteArray(R"({"name": " Ravi ", "overs": "3.4", "maidens": 1, "runs": 28,
                              "wickets": 2, "economy": "7.64"})")
            << u"Ravi|3.4|1|28|2|7.64"_s;
        QTest::newRow("numbers where text is expected")
            << QByteArray(R"({"overs": 4, "economy": 7.5, "wickets": "2"})") << u"|0|0|0|0|-"_s;
        QTest::newRow("economy not normalised")
            << QByteArray(R"({"economy": "7.6666"})") << u"|0|0|0|0|7.6666"_s;
    }

    void bowlingEntry()
    {
        QFETCH(QByteArray, json);
        QTEST(describe(inningsWith({}, json).bowling.at(0)), "expected");
    }

    void scorecardFailures_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<QString>("message");

        QTest::newRow("no innings") << QByteArray("{}") << R"("innings" is missing)";
        QTest::newRow("bowling missing in the second innings")
            << (QByteArray(R"({"innings": [)") + innings(1) +
                R"(, {"inningsNo": 2, "battingTeamName": "Tigers", "batting": []}]})")
            << R"("innings[1].bowling" is missing)";
        QTest::newRow("inningsNo as text")
            << QByteArray(R"({"innings": [{"inningsNo": "1", "battingTeamName": "L",
                                           "batting": [], "bowling": []}]})")
            << R"("innings[0].inningsNo" should be an integer but is a string)";
        QTest::newRow("null team name")
            << QByteArray(R"({"innings": [{"inningsNo": 1, "battingTeamName": null,
                                           "batting": [], "bowling": []}]})")
            << R"("innings[0].battingTeamName" should be a string but is null)";
        QTest::newRow("batting line not an object")
            << QByteArray(R"({"innings": [{"inningsNo": 1, "battingTeamName": "L",
                                           "batting": [{}, {}, "Asha"], "bowling": []}]})")
            << R"("innings[0].batting[2]" should be an object but is a string)";
        QTest::newRow("bowling is an object")
            << QByteArray(R"({"innings": [{"inningsNo": 1, "battingTeamName": "L",
                                           "batting": [], "bowling": {}}]})")
            << R"("innings[0].bowling" should be an array but is an object)";
        QTest::newRow("not JSON") << QByteArray("<html>") << u"malformed JSON"_s;
    }

    void scorecardFailures()
    {
        QFETCH(QByteArray, json);
        QFETCH(QString, message);
        const auto result = ZelScorecard::fromJson(json);
        QVERIFY(!result.isOk());
        QVERIFY2(result.error().description.contains(message),
                 qPrintable(result.error().description));
    }

    void scorecardKeepsOrderAndDuplicates()
    {
        const auto empty = ZelScorecard::fromJson(QByteArray(R"({"innings": []})"));
        QVERIFY(empty.isOk());
        QVERIFY(empty.value().innings.isEmpty());

        const QByteArray json = QByteArray(R"({"innings": [)") + innings(2) + "," +
                                innings(1, R"(, "extra": 1)") + "]}";
        const auto result = ZelScorecard::fromJson(json);
        QVERIFY2(result.isOk(), qPrintable(result.isOk() ? QString() : result.error().description));
        const auto &all = result.value().innings;
        QCOMPARE(all.size(), 2);
        QCOMPARE(all[0].id(), 2);
        QCOMPARE(all[1].id(), 1);
        QCOMPARE(all[1].battingTeamName, u"Lions"_s);

        const auto duplicates = ZelScorecard::fromJson(QByteArray(R"({"innings": [{"inningsNo": 1,
            "battingTeamName": "L", "batting": [{"name": "A", "runs": 1}, {"name": "A", "runs": 2}],
            "bowling": []}]})"));
        QVERIFY(duplicates.isOk());
        const auto &batting = duplicates.value().innings[0].batting;
        QCOMPARE(batting.size(), 2);
        QCOMPARE(batting[1].runs, u"2"_s);
    }
};

QTEST_GUILESS_MAIN(ScorecardDecodingTest)
#include "tst_scorecarddecoding.moc"
