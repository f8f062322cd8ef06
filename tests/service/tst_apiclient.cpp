#include "APIClient.h"
#include "FixtureServer.h"
#include "MatchesResponse.h"

#include <memory>
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
    // What each answer of the service becomes: the matches, or the error the tab shows.
    void answers_data()
    {
        using Delivery = FixtureResponse::Delivery;
        QTest::addColumn<FixtureResponse>("response");
        QTest::addColumn<int>("timeout"); // ms
        QTest::addColumn<QString>("outcome");
        const int standard = int(APIClient::defaultTimeout.count());
        const QString matches = u"2 matches, the first live"_s;
        QTest::newRow("200") << FixtureResponse{200, twoMatches} << standard << matches;
        QTest::newRow("299") << FixtureResponse{299, twoMatches} << standard << matches;
        // Qt 6.8 takes a 1xx for the interim answer HTTP says it is and waits for a final one,
        // which never comes: a failure all the same.
        QTest::newRow("199") << FixtureResponse{199, twoMatches} << standard
                             << (QT_VERSION >= QT_VERSION_CHECK(6, 8, 0)
                                     ? u"Network: The network connection was lost."_s
                                     : u"APIClient 199: HTTP 199"_s);
        QTest::newRow("300") << FixtureResponse{300, twoMatches} << standard
                             << u"APIClient 300: HTTP 300"_s;
        QTest::newRow("404 with a JSON body") << FixtureResponse{404, R"({"error":"no"})"}
                                              << standard << u"APIClient 404: HTTP 404"_s;
        QTest::newRow("407 from the server, not a proxy")
            << FixtureResponse{407, twoMatches} << standard << u"APIClient 407: HTTP 407"_s;
        QTest::newRow("200 without a body")
            << FixtureResponse{200, {}} << standard << u"APIClient 200: HTTP 200"_s;
        QTest::newRow("HTML error page with 200")
            << FixtureResponse{200, "<html>oops</html>"} << standard << u"ZelDecoding"_s;
        QTest::newRow("answer slower than the timeout")
            << FixtureResponse{200, twoMatches, 3s} << 300 << u"Network: The request timed out."_s;
        QTest::newRow("connection dropped mid-body")
            << FixtureResponse{200, twoMatches, 0ms, Delivery::DropMidBody} << 300
            << u"Network: The network connection was lost."_s;
        QTest::newRow("endless body") << FixtureResponse{200, twoMatches, 0ms, Delivery::Endless}
                                      << 300 << u"Network: The response was too large."_s;
        QTest::newRow("body trickling in, byte by byte, past the deadline")
            << FixtureResponse{200, twoMatches, 0ms, Delivery::Trickle} << 300
            << u"Network: The request timed out."_s;
    }

    void answers()
    {
        QFETCH(FixtureResponse, response);
        QFETCH(int, timeout);
        FixtureServer server;
        server.script("/api/matches/today", response);
        APIClient client(server.baseURL(), std::chrono::milliseconds(timeout));
        auto outcome = run<QList<ZelMatch>>(
            [&](auto completion) { client.fetchTodayMatches(std::move(completion)); });
        QCOMPARE(outcome->calls, 1);
        QVERIFY(!outcome->duringCall);
        const auto &result = *outcome->result;
        if (result.isOk()) {
            const bool live = !result.value().isEmpty() && result.value()[0].matchStatus == "live";
            QTEST(u"%1 matches, the first %2"_s.arg(result.value().size())
                      .arg(live ? u"live"_s : u"not live"_s),
                  "outcome");
            return;
        }
        const ZelError &error = result.error();
        // Decoding errors name the place in the document; their domain is what matters here.
        QTEST(error.domain == u"ZelDecoding"_s ? error.domain
              : error.domain == u"APIClient"_s
                  ? u"%1 %2: %3"_s.arg(error.domain).arg(error.code).arg(error.description)
                  : error.domain + u": "_s + error.description,
              "outcome");
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
        QTest::newRow("relative") << u"/api/matches/today"_s;
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
