#include "APIClient.h"
#include "FailureText.h"
#include "League.h"
#include "LeagueCalendar.h"
#include "LeagueServer.h"

#include <QRegularExpression>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

using namespace std::chrono_literals;

namespace {

const QDateTime afternoon = QDateTime::fromString("2026-11-22T14:00:00+05:30", Qt::ISODate);

// A league served in-process on a free port, its clock set by the test.
struct RunningLeague {
    QDateTime now;
    League league;
    IngestSink ingest;
    LeagueServer server;

    RunningLeague(League::Scenario scenario, const QDateTime &moment)
        : now(moment)
        , league(scenario, 7, moment)
        , ingest({}, 200)
        , server(
              league, [this] { return now; }, FaultInjector({}, 7), ingest)
    {
        QString error;
        if (!ingest.open(&error) || !server.start(0, &error))
            qFatal("cannot start the league: %s", qPrintable(error));
    }
};

template <typename T, typename Start> Result<T> await(Start start)
{
    std::optional<Result<T>> result;
    start([&result](Result<T> r) { result = std::move(r); });
    if (!QTest::qWaitFor([&] { return result.has_value(); }, 10000))
        qFatal("no answer from the league");
    return *std::move(result);
}

QList<ZelMatch> fetchList(APIClient &client,
                          void (APIClient::*operation)(APIClient::MatchesCompletion))
{
    auto result = await<QList<ZelMatch>>([&](auto done) { (client.*operation)(std::move(done)); });
    if (!result.isOk())
        qFatal("list failed: %s", qPrintable(result.error().description));
    return std::move(result).value();
}

QDateTime startOf(const ZelMatch &match)
{
    return QDateTime::fromString(match.startTime.value_or(QString()), Qt::ISODate);
}

struct Summary {
    int runs = -1, wickets = -1, balls = -1;
};

// "150/3 (15.2 Ov)"
Summary parseSummary(const QString &text)
{
    static const QRegularExpression form(R"(^(\d+)/(\d+) \((\d+)(?:\.(\d))? Ov\)$)");
    const auto m = form.match(text);
    if (!m.hasMatch())
        return {};
    return {m.captured(1).toInt(), m.captured(2).toInt(),
            m.captured(3).toInt() * 6 + m.captured(4).toInt()};
}

} // namespace

class LeagueSimTest : public QObject {
    Q_OBJECT

private slots:
    void scenarios_data()
    {
        QTest::addColumn<QString>("scenario");
        QTest::addColumn<QString>("todayStatus"); // of the scenario's match; empty: none today
        QTest::addColumn<QString>("innings");     // the live innings, if any

        // clang-format off
        QTest::newRow("season") << u"season"_s << u"upcoming"_s << u""_s;
        QTest::newRow("live-first-innings") << u"live-first-innings"_s << u"live"_s << u"1"_s;
        QTest::newRow("live-second-innings") << u"live-second-innings"_s << u"live"_s << u"2"_s;
        QTest::newRow("toss") << u"toss"_s << u"live"_s << u""_s;
        QTest::newRow("rain-delay") << u"rain-delay"_s << u"upcoming"_s << u""_s;
        QTest::newRow("next-start-today") << u"next-start-today"_s << u"upcoming"_s << u""_s;
        QTest::newRow("todays-result") << u"todays-result"_s << u"finished"_s << u""_s;
        QTest::newRow("no-match-today") << u"no-match-today"_s << u""_s << u""_s;
        QTest::newRow("empty") << u"empty"_s << u""_s << u""_s;
        // clang-format on
    }

    // Every scenario serves data that makes sense through the app's own client.
    void scenarios()
    {
        QFETCH(QString, scenario);
        QFETCH(QString, todayStatus);
        QFETCH(QString, innings);
        RunningLeague running(*League::scenarioNamed(scenario), afternoon);
        APIClient client(running.server.origin());

        const QList<ZelMatch> today = fetchList(client, &APIClient::fetchTodayMatches);
        const QList<ZelMatch> fixtures = fetchList(client, &APIClient::fetchUpcomingMatches);
        const QList<ZelMatch> results = fetchList(client, &APIClient::fetchResultMatches);

        QCOMPARE(today.isEmpty(), todayStatus.isEmpty());
        if (!today.isEmpty())
            QCOMPARE(today.first().matchStatus, todayStatus);
        if (scenario == "empty")
            QVERIFY(fixtures.isEmpty() && results.isEmpty());
        else
            QVERIFY(!fixtures.isEmpty() && !results.isEmpty());

        const QDateTime tomorrow = LeagueCalendar::startOfNextDay(afternoon);
        for (const ZelMatch &fixture : fixtures) {
            QVERIFY2(startOf(fixture) >= tomorrow, qPrintable(*fixture.startTime));
            QCOMPARE(fixture.matchStatus, u"upcoming"_s);
        }
        for (const ZelMatch &match : today + results) {
            QVERIFY(match.homeTeamLogoURL(running.server.origin()) &&
                    match.awayTeamLogoURL(running.server.origin()));
            if (match.matchStatus == "finished") {
                QVERIFY(parseSummary(match.firstBattingSummary).runs >= 0);
                QVERIFY(parseSummary(match.secondBattingSummary).runs >= 0);
                QVERIFY(!match.comments.isEmpty());
            }
        }

        if (todayStatus == "live") {
            const ZelMatch &live = today.first();
            QVERIFY(!live.formattedTossDetails().isEmpty());
            QCOMPARE(live.currentInnings.value_or(QString()), innings);
            QCOMPARE(live.currentStrikerName.isEmpty(), innings.isEmpty());
            QCOMPARE(live.currentNonStrikerName.isEmpty(), innings.isEmpty());
            QCOMPARE(live.currentBowlerName.isEmpty(), innings.isEmpty());
            auto card = await<ZelScorecard>(
                [&](auto done) { client.fetchScorecard(live.matchID, std::move(done)); });
            QVERIFY2(card.isOk(), failureText(card));
            QCOMPARE(card.value().innings.size(), innings.toInt());
        }
        if (scenario == "rain-delay")
            QVERIFY(today.first().comments.contains("Rain"));
    }

    // A whole match from toss to result, fetched every few simulated minutes over HTTP.
    void fullMatchAtHighSpeed()
    {
        RunningLeague running(League::Scenario::Toss, afternoon);
        APIClient client(running.server.origin());
        Summary previous[2];
        int fetches = 0;
        ZelMatch match;
        do {
            running.now = running.now.addSecs(150);
            const QList<ZelMatch> today = fetchList(client, &APIClient::fetchTodayMatches);
            QVERIFY(!today.isEmpty());
            match = today.first();
            const Summary scores[2] = {parseSummary(match.firstBattingSummary),
                                       parseSummary(match.secondBattingSummary)};
            for (int i = 0; i < 2; ++i) {
                QVERIFY(scores[i].runs >= previous[i].runs);
                QVERIFY(scores[i].wickets >= previous[i].wickets);
                QVERIFY(scores[i].wickets <= 10);
                QVERIFY(scores[i].balls <= 120);
                QVERIFY(scores[i].balls >= previous[i].balls);
                if (match.currentInnings == QString::number(i + 1))
                    QVERIFY2(scores[i].balls > previous[i].balls || scores[i].balls == 0,
                             "overs must advance during an innings");
                previous[i] = scores[i];
            }
            QVERIFY(++fetches < 200);
        } while (match.matchStatus != "finished");

        const Summary first = previous[0];
        const Summary second = previous[1];
        const bool chased = second.runs > first.runs;
        const QString winnerCode =
            chased ? match.secondBattingTeamCode : match.firstBattingTeamCode;
        QCOMPARE(match.winningTeamID,
                 winnerCode == match.homeTeamAPICode ? match.homeTeamID : match.awayTeamID);
        const QString margin = chased ? u"won by %1 wicket"_s.arg(10 - second.wickets)
                                      : u"won by %1 run"_s.arg(first.runs - second.runs);
        QVERIFY2(match.comments.contains(margin), qPrintable(match.comments));
        QVERIFY(chased || second.wickets == 10 || second.balls == 120);
    }
};

QTEST_MAIN(LeagueSimTest)
#include "tst_leaguesim.moc"
