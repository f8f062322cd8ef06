#include "APIClient.h"
#include "FailureText.h"
#include "FixtureServer.h"
#include "MatchesResponse.h"

#include <memory>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

using namespace std::chrono_literals;

namespace {

const QByteArray twoMatches = R"({"matches": [{"matchID": 1, "status": "live"}, {"matchID": 2}]})";

// What a completion received, and whether it arrived before the call returned.
template <typename T> struct Outcome {
    int calls = 0;
    bool duringCall = false;
    std::optional<Result<T>> result;
};

template <typename T, typename Start> std::shared_ptr<Outcome<T>> run(Start start)
{
    auto outcome = std::make_shared<Outcome<T>>();
    bool returned = false;
    start([outcome, &returned](Result<T> result) {
        ++outcome->calls;
        outcome->duringCall = !returned;
        outcome->result = std::move(result);
    });
    returned = true;
    if (!QTest::qWaitFor([&] { return outcome->calls > 0; }, 10000))
        qWarning("completion never arrived");
    // Give a stray second call the chance to show up.
    QTest::qWait(50);
    return outcome;
}

} // namespace

class APIClientTest : public QObject {
    Q_OBJECT

private slots:
    void statusAndBody_data()
    {
        QTest::addColumn<int>("status");
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<QString>("error"); // empty: success
        QTest::addColumn<int>("delay");     // ms

        QTest::newRow("200") << 200 << twoMatches << u""_s << 0;
        QTest::newRow("200 after 2 s, inside the default timeout")
            << 200 << twoMatches << u""_s << 2000;
        QTest::newRow("299") << 299 << twoMatches << u""_s << 0;
        QTest::newRow("199") << 199 << twoMatches << u"HTTP 199"_s << 0;
        QTest::newRow("300") << 300 << twoMatches << u"HTTP 300"_s << 0;
        QTest::newRow("404 with a JSON body")
            << 404 << QByteArray(R"({"error":"no"})") << u"HTTP 404"_s << 0;
        QTest::newRow("407 from the server, not a proxy")
            << 407 << twoMatches << u"HTTP 407"_s << 0;
        QTest::newRow("200 without a body") << 200 << QByteArray() << u"HTTP 200"_s << 0;
        QTest::newRow("204") << 204 << QByteArray() << u"HTTP 204"_s << 0;
    }

    void statusAndBody()
    {
        QFETCH(int, status);
        QFETCH(QByteArray, body);
        QFETCH(QString, error);
        QFETCH(int, delay);

        FixtureServer server;
        server.script("/api/matches/today", {status, body, std::chrono::milliseconds(delay)});
        APIClient client(server.baseURL());
        auto outcome = run<QList<ZelMatch>>(
            [&](auto completion) { client.fetchTodayMatches(std::move(completion)); });

        QCOMPARE(outcome->calls, 1);
        QVERIFY(!outcome->duringCall);
        const auto &result = *outcome->result;
        if (error.isEmpty()) {
            QVERIFY2(result.isOk(), failureText(result));
            QCOMPARE(result.value().size(), 2);
            QCOMPARE(result.value()[0].matchStatus, u"live"_s);
        } else {
            QVERIFY(!result.isOk());
            QCOMPARE(result.error(), (ZelError{"APIClient", status, error}));
        }
    }

    void decodingFailures_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<QString>("message");

        QTest::newRow("HTML error page with 200")
            << QByteArray("<html>oops</html>") << u"malformed JSON"_s;
    }

    void decodingFailures()
    {
        QFETCH(QByteArray, body);
        QFETCH(QString, message);
        FixtureServer server;
        server.script("/api/matches/results", {200, body});
        APIClient client(server.baseURL());
        auto outcome = run<QList<ZelMatch>>(
            [&](auto completion) { client.fetchResultMatches(std::move(completion)); });

        QCOMPARE(outcome->calls, 1);
        QVERIFY(!outcome->result->isOk());
        QCOMPARE(outcome->result->error().domain, u"ZelDecoding"_s);
        QVERIFY2(outcome->result->error().description.contains(message),
                 qPrintable(outcome->result->error().description));
    }

    void transportFailures_data()
    {
        QTest::addColumn<FixtureResponse>("response");
        QTest::addColumn<QString>("description");

        QTest::newRow("answer slower than the timeout")
            << FixtureResponse{200, twoMatches, 3s} << u"The request timed out."_s;
        using Delivery = FixtureResponse::Delivery;
        QTest::newRow("connection dropped mid-body")
            << FixtureResponse{200, twoMatches, 0ms, Delivery::DropMidBody}
            << u"The network connection was lost."_s;
        QTest::newRow("endless body") << FixtureResponse{200, twoMatches, 0ms, Delivery::Endless}
                                      << u"The response was too large."_s;
        QTest::newRow("a gigabyte declared")
            << FixtureResponse{200, twoMatches, 0ms, Delivery::DeclaredHuge}
            << u"The response was too large."_s;
        QTest::newRow("body trickling in, byte by byte, past the deadline")
            << FixtureResponse{200, twoMatches, 0ms, Delivery::Trickle}
            << u"The request timed out."_s;
    }

    void transportFailures()
    {
        QFETCH(FixtureResponse, response);
        QFETCH(QString, description);
        FixtureServer server;
        server.script("/api/matches/today", response);
        APIClient client(server.baseURL(), 300ms);
        auto outcome = run<QList<ZelMatch>>(
            [&](auto completion) { client.fetchTodayMatches(std::move(completion)); });

        QCOMPARE(outcome->calls, 1);
        QVERIFY(!outcome->duringCall);
        QVERIFY(!outcome->result->isOk());
        QCOMPARE(outcome->result->error().domain, u"Network"_s);
        QCOMPARE(outcome->result->error().description, description);
    }

    void connectionRefused()
    {
        quint16 closedPort = 0;
        {
            FixtureServer gone;
            closedPort = QUrl(gone.baseURL()).port();
        }
        APIClient client(u"http://127.0.0.1:%1"_s.arg(closedPort));
        auto outcome = run<QList<ZelMatch>>(
            [&](auto completion) { client.fetchTodayMatches(std::move(completion)); });
        QVERIFY(!outcome->result->isOk());
        QCOMPARE(outcome->result->error().description, u"Could not connect to the server."_s);
    }

    void invalidURLCompletesAtOnce_data()
    {
        QTest::addColumn<QString>("url");
        QTest::newRow("unclosed IPv6 host") << u"http://[::1/api"_s;
        QTest::newRow("space in host") << u"http://sc ores.example/api"_s;
        QTest::newRow("relative") << u"/api/matches/today"_s;
        QTest::newRow("empty") << u""_s;
    }

    void invalidURLCompletesAtOnce()
    {
        QFETCH(QString, url);
        APIClient client(u"https://scores.test"_s);
        int calls = 0;
        std::optional<Result<MatchesResponse>> result;
        client.fetch<MatchesResponse>(url, 1024, [&](Result<MatchesResponse> r) {
            ++calls;
            result = std::move(r);
        });
        QCOMPARE(calls, 1);
        QCOMPARE(result->error(), (ZelError{"APIClient", -1, "Invalid URL"}));
        QTest::qWait(20);
        QCOMPARE(calls, 1);
    }

    void destroyedClientDropsItsCompletion()
    {
        FixtureServer server;
        server.script("/api/matches/today", {200, twoMatches, 200ms});
        const APIClient neighbour(server.baseURL()); // keeps the thread's network manager
        auto client = std::make_unique<APIClient>(server.baseURL());
        int calls = 0;
        client->fetchTodayMatches([&](Result<QList<ZelMatch>>) { ++calls; });
        QTRY_COMPARE(server.requestedPaths().size(), 1);
        client.reset();
        QTest::qWait(400);
        QCOMPARE(calls, 0);
    }
};

QTEST_GUILESS_MAIN(APIClientTest)
#include "tst_apiclient.moc"
