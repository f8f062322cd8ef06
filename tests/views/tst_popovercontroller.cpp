#include "PopoverController.h"
#include "StateRig.h"

#include <QSignalSpy>
#include <QTest>

using namespace std::chrono_literals;

using namespace Qt::Literals::StringLiterals;

namespace {

const QByteArray today = R"json({"matches": [
    {"matchID": 7, "status": "live", "startTime": "2026-11-22T13:30:00+05:30",
     "homeTeam": {"id": "1", "name": "Northport", "logoURL": "", "code": "NTH"},
     "awayTeam": {"id": "2", "name": "Southshore", "logoURL": "", "code": "STH"},
     "batting": {"firstTeamID": 1, "firstTeamCode": "NTH", "secondTeamCode": "STH",
                 "firstSummary": "50/1 (6.2 Ov)"},
     "live": {"currentInnings": "1", "striker": {"name": "Asha", "runs": 30, "balls": 20}}},
    {"matchID": 8, "status": "finished", "startTime": "2026-11-22T09:30:00+05:30"}]})json";
const QByteArray liveCard = R"json({"innings": [{"inningsNo": 1, "battingTeamName": "Northport",
    "batting": [{"name": "Asha (c)", "runs": 30, "balls": 20, "isNotOut": true},
                {"name": "Ravi", "runs": 2, "balls": 5, "isNotOut": false},
                {"name": "Kiran", "isNotOut": true}],
    "bowling": [{"name": "Dev", "overs": "1.2", "wickets": 1}]}]})json";
const QByteArray fixtures = R"({"matches": [
    {"matchID": 21, "status": "upcoming", "startTime": "2026-11-24T10:00:00+05:30"},
    {"matchID": 22, "status": "upcoming"}]})";

} // namespace

class PopoverControllerTest : public QObject {
    Q_OBJECT

    std::unique_ptr<StateRig> m_rig;
    FixtureServer *m_server = nullptr;
    std::unique_ptr<TodayViewModel> m_vm;
    std::unique_ptr<PopoverController> m_popover;

    bool settled() { return StateRig::settled(*m_vm); }

private slots:
    void init()
    {
        m_rig = std::make_unique<StateRig>();
        m_server = &m_rig->server();
        m_server->script("/api/matches/today", {200, today});
        m_server->script("/api/matches/upcoming", {200, fixtures});
        m_server->script("/api/matches/results", {200, R"({"matches": [{"matchID": 3}]})"});
        m_server->script("/api/matches/7/scorecard", {200, liveCard});
        m_server->script("/api/matches/8/scorecard", {200, R"({"innings": []})", 100ms});
        m_vm = m_rig->makeModel();
        m_popover = std::make_unique<PopoverController>(*m_vm, m_server->baseURL());
        QVERIFY(settled());
    }

    void cleanup()
    {
        m_popover.reset();
        m_vm.reset();
    }

    void switchingTabsLoadsAsTheRulesSay()
    {
        QCOMPARE(m_popover->activeTab(), Popover::Tab::Today);
        m_popover->setActiveTab(Popover::Tab::Results);
        QVERIFY(settled());
        m_popover->setActiveTab(Popover::Tab::Today);
        m_popover->setActiveTab(Popover::Tab::Results);
        QVERIFY(settled());
        QCOMPARE(m_server->requestCount("/api/matches/results"), 2);

        const auto fixtureLoads = m_server->requestCount("/api/matches/upcoming");
        m_popover->setActiveTab(Popover::Tab::Fixtures);
        QVERIFY(settled());
        QCOMPARE(m_server->requestCount("/api/matches/upcoming"), fixtureLoads);
        QCOMPARE(m_popover->fixturesModel()->rowCount(), 1); // the undated one is not a fixture
    }

    void tabStatesAndMessages()
    {
        PopoverTab &results = *m_popover->resultsTab();
        QCOMPARE(m_popover->todayTab()->content(), Popover::Content::List);
        QCOMPARE(results.content(), Popover::Content::Empty);
        QCOMPARE(results.message(), QStringLiteral("No results yet"));
        QCOMPARE(results.label(), QStringLiteral("Results"));
        QSignalSpy changed(&results, &PopoverTab::changed);

        m_server->script("/api/matches/results", {503, "{}"});
        m_popover->setActiveTab(Popover::Tab::Results);
        QCOMPARE(results.message(), QStringLiteral("Loading results\u2026"));
        QVERIFY(settled());
        QCOMPARE(results.content(), Popover::Content::Error);
        QCOMPARE(results.message(), QStringLiteral("\u26A0\uFE0F  HTTP 503"));
        QCOMPARE(changed.count(), 2);
        m_server->script("/api/matches/results", {200, R"({"matches": [{"matchID": 3}]})"});
        m_popover->retry(Popover::Tab::Results);
        QVERIFY(settled());
        QCOMPARE(m_popover->resultsModel()->rowCount(), 1);
    }

    void openingAFinishedRowLoadsItsScorecardOnce()
    {
        QCOMPARE(m_popover->scorecardContent(8, 0).value("state"), QVariant("none"));
        m_popover->scorecardWanted(8);
        QCOMPARE(m_popover->scorecardContent(8, 0).value("state"), QVariant("loading"));
        m_popover->scorecardWanted(8);
        QVERIFY(settled());
        m_popover->scorecardWanted(8);
        QVERIFY(settled());
        QCOMPARE(m_server->requestCount("/api/matches/8/scorecard"), 1);
        QCOMPARE(m_popover->scorecardContent(8, 0).value("state"), QVariant("card"));
    }

    void liveScorecardMarksTheCrease()
    {
        QCOMPARE(m_popover->initialInnings(7), 0);
        const QVariantMap first = m_popover->inningsView(7, 0, m_popover->revision());
        QCOMPARE(first.value("tab1"), QVariant("1st \u00B7 NTH"));
        QCOMPARE(first.value("score"), QVariant("50/1"));
        QCOMPARE(first.value("overs"), QVariant("6.2 Ov"));
        const QVariantList batting = first.value("batting").toList();
        QCOMPARE(batting.size(), 3);
        QVERIFY(batting[0].toMap().value("emphasised").toBool()); // the striker, despite "(c)"
        QVERIFY(batting[1].toMap().value("dimmed").toBool());
        QCOMPARE(batting[2].toMap().value("placeholder"), QVariant("\u2014"));

        const QVariantMap second = m_popover->inningsView(7, 1, m_popover->revision());
        QCOMPARE(second.value("yetToBat").toMap().value("name"), QVariant("Southshore"));
    }

    void clockTimesFollowTheUsersTimeZone()
    {
        const QByteArray zone = qgetenv("TZ");
        qputenv("TZ", "Asia/Kolkata");
        MatchListModel *rows = m_popover->fixturesModel();
        m_popover->opening();
        const auto shown = [&] {
            return rows->data(rows->index(0), MatchListModel::DisplayTimeRole).toString();
        };
        QCOMPARE(shown(), QLocale::system().toString(QTime(10, 0), u"h:mm AP"_s));
        QSignalSpy changed(rows, &QAbstractItemModel::dataChanged);
        qputenv("TZ", "UTC");
        m_popover->opening();
        QCOMPARE(changed.count(), 1);
        QCOMPARE(shown(), QLocale::system().toString(QTime(4, 30), u"h:mm AP"_s));
        qputenv("TZ", zone);
    }

    void listRowsCarryThePresentersTexts()
    {
        MatchListModel *rows = m_popover->todayModel();
        QCOMPARE(rows->rowCount(), 2);
        const QModelIndex live = rows->index(0);
        QCOMPARE(rows->data(live, MatchListModel::CentreTextRole), QVariant("50/1"));
        QCOMPARE(rows->data(live, MatchListModel::CentreSubTextRole), QVariant("1st Innings"));
        QCOMPARE(rows->data(live, MatchListModel::OpensOnTapRole), QVariant(false));
        QCOMPARE(rows->data(rows->index(1), MatchListModel::OpensOnTapRole), QVariant(true));
        QCOMPARE(m_popover->fixturesModel()
                     ->data(m_popover->fixturesModel()->index(0), MatchListModel::SectionTitleRole)
                     .toString()
                     .isEmpty(),
                 false);
    }
};

QTEST_MAIN(PopoverControllerTest)
#include "tst_popovercontroller.moc"
