#include "StateRig.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

using namespace std::chrono_literals;

namespace {

const QByteArray liveToday = R"json({"matches": [
    {"matchID": 7, "status": "live", "startTime": "2026-11-22T13:30:00+05:30",
     "homeTeam": {"id": "1", "name": "Northport", "logoURL": "/logos/nth.png", "code": "NTH"},
     "awayTeam": {"id": "2", "name": "Southshore", "logoURL": "", "code": "STH"},
     "batting": {"firstTeamID": 1, "firstTeamCode": "NTH", "secondTeamCode": "STH",
                 "firstSummary": "50/1 (6.2 Ov)"},
     "live": {"currentInnings": "1"}},
    {"matchID": 8, "status": "finished", "startTime": "2026-11-22T09:30:00+05:30"}]})json";
const QByteArray quietToday = R"({"matches": [
    {"matchID": 9, "status": "upcoming", "startTime": "2026-11-22T19:30:00+05:30"}]})";
const QByteArray fixtures = R"({"matches": [
    {"matchID": 21, "status": "upcoming", "startTime": "2026-11-23T10:00:00+05:30"},
    {"matchID": 22, "status": "upcoming", "startTime": "2026-11-22T23:59:00+05:30"},
    {"matchID": 23, "status": "upcoming"},
    {"matchID": 24, "status": "upcoming", "startTime": "2026-11-23T00:00:00+05:30"},
    {"matchID": 25, "status": "upcoming", "startTime": "2026-11-23T04:30:00.000Z"},
    {"matchID": 26, "status": "upcoming", "startTime": "2026-11-23T10:00:00+05:30"}]})";
const QByteArray scorecard = R"({"innings": [{"inningsNo": 1, "battingTeamName": "Northport",
    "batting": [], "bowling": []}]})";

QList<qint64> idsOf(const QList<ZelMatch> &list)
{
    QList<qint64> ids;
    for (const ZelMatch &match : list)
        ids.append(match.matchID);
    return ids;
}

} // namespace

class TodayViewModelTest : public QObject {
    Q_OBJECT

    std::unique_ptr<StateRig> m_rig;
    FixtureServer *m_server = nullptr;

    std::unique_ptr<TodayViewModel> makeModel() { return m_rig->makeModel(); }
    static bool settled(const TodayViewModel &model) { return StateRig::settled(model); }

private slots:
    void init()
    {
        m_rig = std::make_unique<StateRig>();
        m_server = &m_rig->server();
        m_server->script("/api/matches/today", {200, liveToday});
        m_server->script("/api/matches/upcoming", {200, fixtures});
        m_server->script("/api/matches/7/scorecard", {200, scorecard});
    }

    void loadsTodayAndFixturesOnCreation()
    {
        auto model = makeModel();
        QVERIFY(model->isLoading() && model->isLoadingFixtures() && !model->isLoadingResults());
        model->fetchToday(); // joins the load under way
        QVERIFY(settled(*model));
        QCOMPARE(m_server->requestCount("/api/matches/today"), 1);
        QCOMPARE(idsOf(model->matches()), (QList<qint64>{7, 8}));
        QCOMPARE(model->lastUpdated(), m_rig->now);
        QCOMPARE(model->statusBarTitle().text, u"\U0001F3CF  NTH \U0001F534 50/1 (6.2)"_s);
        QVERIFY(model->error().isEmpty());
        // From tomorrow on, earliest first, equal starts in the service's order.
        QCOMPARE(idsOf(model->fixtureMatches()), (QList<qint64>{24, 21, 25, 26}));
        QVERIFY(m_server->requestedPaths().contains("/logos/nth.png"));
        QCOMPARE(m_server->requestCount("/api/matches/results"), 0);
    }

    void failedLoadKeepsTheLastGoodDataAndRetriesByItself()
    {
        m_rig->firstRetry = 150ms;
        auto model = makeModel();
        QVERIFY(settled(*model));
        const QDateTime loadedAt = model->lastUpdated();
        const QString title = model->statusBarTitle().text;
        model->invalidateAutoRefresh();

        m_rig->now = m_rig->now.addSecs(60); // within the 30 s interval and the minute's grace
        m_server->script("/api/matches/today", {503, "{}"});
        model->fetchToday();
        QVERIFY(model->error().isEmpty());
        QVERIFY(settled(*model));
        QCOMPARE(model->error(), u"HTTP 503"_s);
        QCOMPARE(idsOf(model->matches()), (QList<qint64>{7, 8}));
        QCOMPARE(model->lastUpdated(), loadedAt);
        QCOMPARE(model->statusBarTitle().text, title);
        QVERIFY(!model->isOffline());

        // The next failures come without anyone asking, and the data is now out of date.
        m_rig->now = m_rig->now.addSecs(31);
        QSignalSpy offline(model.get(), &TodayViewModel::offlineChanged);
        QTRY_VERIFY(m_server->requestCount("/api/matches/today") >= 3);
        QVERIFY(model->isOffline());
        QCOMPARE(model->offlineReason(), u"HTTP 503"_s);
        QCOMPARE(offline.count(), 1);

        m_server->script("/api/matches/today", {200, quietToday});
        QTRY_COMPARE_WITH_TIMEOUT(idsOf(model->matches()), QList<qint64>{9}, 5000);
        QVERIFY(model->error().isEmpty());
        QVERIFY(!model->isOffline());
        QCOMPARE(model->lastUpdated(), m_rig->now);
        QCOMPARE(model->autoRefreshInterval(), 600s);
    }

    // Out of date is told when it becomes so, not at the next failure or tick.
    void offlineSignComesWhenDue()
    {
        m_rig->firstRetry = 3600s;
        auto model = makeModel();
        QVERIFY(settled(*model));
        model->invalidateAutoRefresh();
        m_rig->now = m_rig->now.addSecs(89); // a second before the 30 s interval and the grace
        m_server->script("/api/matches/today", {503, "{}"});
        model->fetchToday();
        QVERIFY(settled(*model));
        QVERIFY(!model->isOffline());
        m_rig->now = m_rig->now.addSecs(2);
        QTest::qWait(200);
        QVERIFY(!model->isOffline());
        QTRY_VERIFY_WITH_TIMEOUT(model->isOffline(), 1500);
    }

    void floodOfLiveMatchesStartsFewScorecardRequests()
    {
        QByteArray body = R"({"matches": [)";
        for (int id = 1; id <= 3000; ++id)
            body += (id > 1 ? "," : "") + QByteArray(R"({"matchID": )") + QByteArray::number(id) +
                    R"(, "status": "live"})";
        m_server->script("/api/matches/today", {200, body + "]}"});
        m_server->scriptDefault({200, scorecard, 100ms});
        auto model = makeModel();
        QTRY_VERIFY(!model->matches().isEmpty());
        QCOMPARE(model->matches().size(), APIClient::maximumMatches);
        QVERIFY(model->loadingScorecards().size() <= TodayViewModel::maximumLiveRefetches);
        QVERIFY(settled(*model));
        QCOMPARE(model->scorecards().size(), TodayViewModel::maximumLiveRefetches);
        QCOMPARE(m_server->requestedPaths().filter("/scorecard").size(),
                 TodayViewModel::maximumLiveRefetches);
    }

    void refreshIntervalFollowsToday()
    {
        auto model = makeModel();
        QVERIFY(settled(*model));
        QVERIFY(model->isAutoRefreshPending());
        QCOMPARE(model->autoRefreshInterval(), 30s); // a match is live

        m_server->script("/api/matches/today", {200, quietToday});
        model->fetchToday();
        QVERIFY(settled(*model));
        QCOMPARE(model->autoRefreshInterval(), 600s); // next start five and a half hours away
    }

    // A scorecard answer touches only its own match; a reload of today clears and refetches
    // the live ones and leaves the rest, errors included, as they were.
    void scorecardOutcomesAndReloads()
    {
        m_server->script("/api/matches/7/scorecard", {500, "{}"});
        auto model = makeModel();
        QVERIFY(settled(*model));
        QCOMPARE(model->scorecardErrors().value(7), u"HTTP 500"_s);
        const QDateTime loadedAt = model->lastUpdated();
        m_rig->now = m_rig->now.addSecs(10);

        model->fetchScorecard(8);
        QVERIFY(settled(*model));
        QCOMPARE(model->scorecardErrors().value(8), u"HTTP 404"_s);
        m_server->script("/api/matches/8/scorecard", {200, scorecard});
        model->fetchScorecard(8);
        QVERIFY(settled(*model));
        QVERIFY(model->scorecards().contains(8));
        QCOMPARE(model->scorecardErrors().value(8), u"HTTP 404"_s); // a success keeps it
        model->fetchScorecard(8);                                   // cached: nothing to do
        QCOMPARE(m_server->requestCount("/api/matches/8/scorecard"), 2);
        QCOMPARE(model->lastUpdated(), loadedAt);

        m_server->script("/api/matches/7/scorecard", {200, scorecard, 150ms});
        QSignalSpy loaded(model.get(), &TodayViewModel::matchesChanged);
        model->fetchToday();
        QTRY_COMPARE(loaded.count(), 1);
        QCOMPARE(model->lastUpdated(), m_rig->now);
        QVERIFY(!model->scorecardErrors().contains(7));
        QVERIFY(model->loadingScorecards().contains(7));
        QVERIFY(model->scorecards().contains(8) && model->scorecardErrors().contains(8));
        QVERIFY(settled(*model));
        QVERIFY(model->scorecards().contains(7));
        QCOMPARE(m_server->requestCount("/api/matches/7/scorecard"), 2);
        QCOMPARE(m_server->requestCount("/api/matches/8/scorecard"), 2);

        // A live scorecard is dropped while it is fetched again.
        model->fetchToday();
        QTRY_COMPARE(loaded.count(), 2);
        QVERIFY(!model->scorecards().contains(7));
        QVERIFY(settled(*model));
    }

    // Fixtures prefetch from everything they received, today's matches included; results when
    // they load.
    void everyListLoadPrefetchesItsLogos()
    {
        m_server->script("/api/matches/today", {200, R"({"matches": []})"});
        m_server->script("/api/matches/upcoming", {200, R"({"matches": [{"matchID": 31,
            "status": "upcoming", "startTime": "2026-11-22T19:30:00+05:30",
            "homeTeam": {"id": "1", "name": "N", "logoURL": "/logos/tonight.png", "code": "N"}}]})"});
        m_server->script("/api/matches/results", {200, R"({"matches": [{"matchID": 32,
            "awayTeam": {"id": "2", "name": "S", "logoURL": "/logos/result.png", "code": "S"}}]})"});
        auto model = makeModel();
        QVERIFY(settled(*model));
        QVERIFY(model->fixtureMatches().isEmpty());
        QTRY_VERIFY(m_server->requestedPaths().contains("/logos/tonight.png"));
        QVERIFY(!m_server->requestedPaths().contains("/logos/result.png"));
        model->fetchResults();
        QTRY_VERIFY(m_server->requestedPaths().contains("/logos/result.png"));
    }

    // The title reads today's matches and the fixtures, so either load recomputes it.
    void fixturesLoadRecomputesTheTitle()
    {
        m_server->script("/api/matches/today", {200, R"({"matches": []})"});
        m_server->script("/api/matches/upcoming", {200, fixtures, 200ms});
        auto model = makeModel();
        QTRY_VERIFY(!model->isLoading());
        QCOMPARE(model->statusBarTitle().text, u"\U0001F3CF"_s);
        QVERIFY(settled(*model));
        QCOMPARE(model->statusBarTitle().text, u"\U0001F3CF  10h"_s);
    }

    void wakeDropsThePendingRefreshThenReloads()
    {
        auto model = makeModel();
        QVERIFY(settled(*model));
        QVERIFY(model->isAutoRefreshPending());

        m_server->script("/api/matches/today", {200, quietToday, 100ms});
        QSignalSpy resumed(model.get(), &TodayViewModel::resumed);
        model->systemDidWake();
        QCOMPARE(resumed.count(), 1); // what happened while asleep is news no more
        QVERIFY(!model->isAutoRefreshPending());
        QVERIFY(model->isLoading() && model->isLoadingFixtures());
        QVERIFY(settled(*model));
        QVERIFY(model->isAutoRefreshPending());
        QCOMPARE(idsOf(model->matches()), QList<qint64>{9});
    }

    // Only where logind cannot report a resume does the wall clock stand in for it.
    void tickerNoticesASleepByTheWallClock_data()
    {
        QTest::addColumn<bool>("inferSleepFromClock");
        QTest::newRow("no system bus") << true;
        QTest::newRow("logind reports sleep") << false;
    }

    void tickerNoticesASleepByTheWallClock()
    {
        QFETCH(bool, inferSleepFromClock);
        m_rig->inferSleepFromClock = inferSleepFromClock;
        auto model = makeModel();
        QVERIFY(settled(*model));
        const auto todayLoads = m_server->requestCount("/api/matches/today");

        model->tick(); // no time has passed on either clock
        QVERIFY(!model->isLoading());

        m_rig->now =
            m_rig->now.addSecs(3 * 3600); // the wall clock moved on while we were suspended
        model->tick();
        QCOMPARE(model->isLoading() && model->isLoadingFixtures(), inferSleepFromClock);
        QVERIFY(settled(*model));
        QCOMPARE(m_server->requestCount("/api/matches/today"),
                 todayLoads + (inferSleepFromClock ? 1 : 0));

        model->tick(); // the jump is not seen twice
        QVERIFY(!model->isLoading());
    }

    void tickKeepsTheCountdownCurrent()
    {
        m_server->script("/api/matches/today", {200, quietToday});
        auto model = makeModel();
        QVERIFY(settled(*model));
        QCOMPARE(model->statusBarTitle().text, u"\U0001F3CF  5h 30m"_s);
        QSignalSpy titles(model.get(), &TodayViewModel::statusBarTitleChanged);
        m_rig->now = m_rig->now.addSecs(60);
        model->tick();
        QCOMPARE(titles.count(), 1);
        QCOMPARE(model->statusBarTitle().text, u"\U0001F3CF  5h 29m"_s);
    }

    void destroyedModelIgnoresLateAnswers()
    {
        // Under the sanitizers, any late callback touching the dead model would be reported.
        m_server->script("/api/matches/today", {200, liveToday, 100ms});
        auto model = makeModel();
        QTRY_COMPARE(m_server->requestCount("/api/matches/today"), 1);
        model.reset();
        QTest::qWait(300);
    }
};

QTEST_MAIN(TodayViewModelTest)
#include "tst_todayviewmodel.moc"
