#include "APIClient.h"
#include "FailureText.h"
#include "League.h"
#include "LeagueCalendar.h"
#include "LeagueServer.h"

#include <memory>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QProcess>
#include <QRegularExpression>
#include <QTcpServer>
#include <QTemporaryDir>
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

    RunningLeague(League::Scenario scenario, const QDateTime &moment,
                  FaultInjector::Rates faults = {}, const QString &ingestLog = {},
                  int ingestStatus = 200)
        : now(moment)
        , league(scenario, 7, moment)
        , ingest(ingestLog, ingestStatus)
        , server(
              league, [this] { return now; }, FaultInjector(faults, 7), ingest)
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

        QTest::newRow("season") << "season"
                                << "upcoming"
                                << "";
        QTest::newRow("live-first-innings") << "live-first-innings"
                                            << "live"
                                            << "1";
        QTest::newRow("live-second-innings") << "live-second-innings"
                                             << "live"
                                             << "2";
        QTest::newRow("toss") << "toss"
                              << "live"
                              << "";
        QTest::newRow("rain-delay") << "rain-delay"
                                    << "upcoming"
                                    << "";
        QTest::newRow("next-start-today") << "next-start-today"
                                          << "upcoming"
                                          << "";
        QTest::newRow("todays-result") << "todays-result"
                                       << "finished"
                                       << "";
        QTest::newRow("no-match-today") << "no-match-today"
                                        << ""
                                        << "";
        QTest::newRow("empty") << "empty"
                               << ""
                               << "";
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

    void faults_data()
    {
        QTest::addColumn<FaultInjector::Rates>("rates");
        QTest::addColumn<QString>("domain");

        QTest::newRow("fail") << FaultInjector::Rates{1, 0, 0, 0, 0} << "APIClient";
        QTest::newRow("drop") << FaultInjector::Rates{0, 1, 0, 0, 0} << "Network";
        QTest::newRow("garbage") << FaultInjector::Rates{0, 0, 1, 0, 0} << "ZelDecoding";
        QTest::newRow("endless") << FaultInjector::Rates{0, 0, 0, 1, 0} << "Network";
    }

    void faults()
    {
        QFETCH(FaultInjector::Rates, rates);
        QFETCH(QString, domain);
        RunningLeague running(League::Scenario::Season, afternoon, rates);
        APIClient client(running.server.origin());
        // Several requests, so that every kind of garbage has its turn.
        for (int i = 0; i < 6; ++i) {
            auto result = await<QList<ZelMatch>>(
                [&](auto done) { client.fetchResultMatches(std::move(done)); });
            QVERIFY(!result.isOk());
            QCOMPARE(result.error().domain, domain);
            if (domain == "APIClient")
                QVERIFY(result.error().code == 500 || result.error().code == 503);
        }
    }

    void ingest_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<QByteArray>("contentType");
        QTest::addColumn<int>("configured");
        QTest::addColumn<int>("answered");
        QTest::addColumn<bool>("kept");

        const QByteArray batch = R"([{"type": "app.launched", "appID": "x"}])";
        const QByteArray json = "application/json";
        QTest::newRow("plain") << "/v2/" << batch << json << 200 << 200 << true;
        QTest::newRow("namespace") << "/v2/namespace/zel/" << batch << json << 200 << 200 << true;
        QTest::newRow("fault status") << "/v2/" << batch << json << 503 << 503 << false;
        QTest::newRow("not an array")
            << "/v2/" << QByteArray(R"({"type": 1})") << json << 200 << 400 << false;
        QTest::newRow("not sent as JSON")
            << "/v2/" << batch << QByteArray("text/plain") << 200 << 400 << false;
    }

    void ingest()
    {
        QFETCH(QString, path);
        QFETCH(QByteArray, body);
        QFETCH(int, configured);
        QTemporaryDir dir;
        const QString log = dir.filePath("ingest.jsonl");
        RunningLeague running(League::Scenario::Empty, afternoon, {}, log, configured);

        QNetworkAccessManager network;
        QNetworkRequest request(QUrl(running.server.origin() + path));
        QFETCH(QByteArray, contentType);
        request.setHeader(QNetworkRequest::ContentTypeHeader, contentType);
        std::unique_ptr<QNetworkReply> reply(network.post(request, body));
        QTRY_VERIFY(reply->isFinished());
        QTEST(reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(), "answered");

        QFile file(log);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray lines = file.readAll();
        QFETCH(bool, kept);
        QCOMPARE(lines, kept ? QByteArray(R"([{"appID":"x","type":"app.launched"}])"
                                          "\n")
                             : QByteArray());
    }

    void commandLine_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QString>("says");

        QTest::newRow("help") << QStringList{"--help"} << 0 << "live-second-innings";
        QTest::newRow("unknown option") << QStringList{"--colour"} << 2 << "Unknown option";
        QTest::newRow("unknown scenario")
            << QStringList{"--scenario", "snow"} << 2 << "unknown scenario \"snow\"";
        QTest::newRow("rate out of range")
            << QStringList{"--fail-rate", "2"} << 2 << "--fail-rate takes a number from 0 to 1";
        QTest::newRow("start without offset") << QStringList{"--start", "2026-04-05T19:30:00"} << 2
                                              << "ISO 8601 moment with an offset";
    }

    void commandLine()
    {
        QFETCH(QStringList, arguments);
        QProcess sim;
        sim.start(ZEL_LEAGUE_SIM, arguments);
        QVERIFY(sim.waitForFinished(10000));
        QTEST(sim.exitCode(), "exitCode");
        QFETCH(QString, says);
        const QString output = sim.readAllStandardOutput() + sim.readAllStandardError();
        QVERIFY2(output.contains(says), qPrintable(output));
    }

    void portInUse()
    {
        QTcpServer taken;
        QVERIFY(taken.listen(QHostAddress::LocalHost));
        QProcess sim;
        sim.start(ZEL_LEAGUE_SIM, {"--port", QString::number(taken.serverPort())});
        QVERIFY(sim.waitForFinished(10000));
        QCOMPARE(sim.exitCode(), 2);
        QVERIFY(sim.readAllStandardError().contains("cannot listen on 127.0.0.1"));
    }

    void servesAsAProcess()
    {
        QProcess sim;
        sim.start(ZEL_LEAGUE_SIM, {"--port", "0", "--scenario", "toss", "--seed", "3", "--start",
                                   "2026-11-22T14:00:00+05:30"});
        QVERIFY(sim.waitForReadyRead(10000));
        const QString line = sim.readLine();
        const auto origin = QRegularExpression("http://127\\.0\\.0\\.1:\\d+").match(line);
        QVERIFY2(origin.hasMatch(), qPrintable(line));

        APIClient client(origin.captured());
        const QList<ZelMatch> today = fetchList(client, &APIClient::fetchTodayMatches);
        QCOMPARE(today.size(), 1);
        QCOMPARE(today.first().matchStatus, u"live"_s);
        QVERIFY(today.first().firstBattingSummary.isEmpty());
        sim.kill();
        sim.waitForFinished();
    }
};

Q_DECLARE_METATYPE(FaultInjector::Rates)

QTEST_MAIN(LeagueSimTest)
#include "tst_leaguesim.moc"
