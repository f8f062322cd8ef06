#include "PopoverController.h"
#include "ScorecardModel.h"
#include "StateRig.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>

using namespace std::chrono_literals;

using namespace Qt::Literals::StringLiterals;

namespace {

const QByteArray today = R"json({"matches": [
    {"matchID": 9007199254740993, "status": "live", "startTime": "2026-11-22T13:30:00+05:30",
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
        m_server->script("/api/matches/9007199254740993/scorecard", {200, liveCard});
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
        m_popover->setActiveTab(Popover::Tab::Results); // already there: no visit
        QVERIFY(settled());
        QCOMPARE(m_server->requestCount("/api/matches/results"), 2);
        QCOMPARE(m_popover->activeTab(), Popover::Tab::Results);

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
        QCOMPARE(results.message(), u"No results yet"_s);
        QCOMPARE(results.label(), u"Results"_s);
        QSignalSpy changed(&results, &PopoverTab::changed);

        m_server->script("/api/matches/results", {503, "{}"});
        m_popover->setActiveTab(Popover::Tab::Results);
        QCOMPARE(results.message(), u"Loading results\u2026"_s);
        QVERIFY(settled());
        QCOMPARE(results.content(), Popover::Content::Error);
        QCOMPARE(results.message(), u"\u26A0\uFE0F  HTTP 503"_s);
        QCOMPARE(changed.count(), 2);
        m_server->script("/api/matches/results", {200, R"({"matches": [{"matchID": 3}]})"});
        m_popover->retry(Popover::Tab::Results);
        QVERIFY(settled());
        QCOMPARE(m_popover->resultsModel()->rowCount(), 1);

        // A popover made after the loads shows what they brought at once.
        PopoverController later(*m_vm, m_server->baseURL());
        QCOMPARE(later.todayModel()->rowCount(), 2);
        QCOMPARE(later.resultsModel()->rowCount(), 1);
        QCOMPARE(later.fixturesModel()->rowCount(), 1);
    }

    void liveScorecardMarksTheCrease()
    {
        ScorecardModel card;
        QAbstractItemModelTester tester(card.batting(),
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        card.setController(m_popover.get());
        card.setMatchKey(u"9007199254740993"_s);
        m_popover->scorecardWanted(u"9007199254740993"_s);
        QVERIFY(settled());
        QCOMPARE(card.state(), Popover::Card::Ready);
        QCOMPARE(card.selectedInnings(), 0);
        QCOMPARE(card.isYetToBat(), false);
        QCOMPARE(card.inningsLabels(), QStringList({u"1st \u00B7 NTH"_s, u"2nd \u00B7 STH"_s}));
        QCOMPARE(card.score(), u"50/1"_s);
        QCOMPARE(card.overs(), u"6.2 Ov"_s);
        // Per row: strong, dim, took wickets, placeholder, first figure.
        const auto rows = [](const ScoreTableModel &table) {
            QStringList shown;
            for (int row = 0; row < table.rowCount(); ++row) {
                const auto cell = [&](ScoreTableModel::Role role) {
                    return table.data(table.index(row), role);
                };
                shown << u"%1%2%3 %4 %5"_s.arg(int(cell(ScoreTableModel::StrongRole).toBool()))
                             .arg(int(cell(ScoreTableModel::DimRole).toBool()))
                             .arg(int(cell(ScoreTableModel::TookWicketsRole).toBool()))
                             .arg(cell(ScoreTableModel::PlaceholderRole).toString(),
                                  cell(ScoreTableModel::FiguresRole).toStringList().value(0));
            }
            return shown;
        };
        // The striker stands out despite "(c)"; the one out and the one waiting are dimmed.
        QCOMPARE(rows(*card.batting()),
                 (QStringList{u"100  30"_s, u"010  2"_s, u"010 \u2014 0"_s}));
        QCOMPARE(rows(*card.bowling()), QStringList{u"001  1.2"_s});
        card.setChosenInnings(1);
        QCOMPARE(card.isYetToBat(), true);
        QCOMPARE(card.yetToBatName(), u"Southshore"_s);

        // A live card being fetched again stays on screen until the new one is in, which
        // changes its rows in place, and brings a new bowler on as one more line.
        QByteArray next = liveCard;
        next.replace(R"("runs": 30)", R"("runs": 34)");
        next.replace(R"("wickets": 1})", R"("wickets": 1}, {"name": "Om"})");
        m_server->script("/api/matches/9007199254740993/scorecard", {200, next, 500ms});
        card.setChosenInnings(0);
        QSignalSpy said(m_popover.get(), &PopoverController::announcement);
        m_popover->refresh();
        QTRY_VERIFY(m_vm->loadingScorecards().contains(9007199254740993));
        QCOMPARE(card.state(), Popover::Card::Ready);
        QCOMPARE(card.score(), u"50/1"_s);
        QSignalSpy reset(card.batting(), &QAbstractItemModel::modelReset);
        QSignalSpy changed(card.batting(), &QAbstractItemModel::dataChanged);
        QSignalSpy bowlerOn(card.bowling(), &QAbstractItemModel::rowsInserted);
        QList<Popover::Card> seen;
        connect(&card, &ScorecardModel::changed, this, [&] { seen << card.state(); });
        QAbstractItemModelTester bowlingTester(
            card.bowling(), QAbstractItemModelTester::FailureReportingMode::QtTest);
        QVERIFY(settled());
        QCOMPARE(m_server->requestCount("/api/matches/9007199254740993/scorecard"), 2);
        QCOMPARE(rows(*card.batting()).first(), u"100  34"_s);
        QCOMPARE(reset.count(), 0);
        QCOMPARE(changed.last().at(1).toModelIndex().row(), card.batting()->rowCount() - 1);
        QCOMPARE(rows(*card.bowling()), (QStringList{u"001  1.2"_s, u"000  0"_s}));
        QCOMPARE(bowlerOn.count(), 1);
        QCOMPARE(seen, QList<Popover::Card>(seen.size(), Popover::Card::Ready)); // never gone
        // The refresh said, once settled, when the data is from; opening says the headline.
        QCOMPARE(said[0][0].toString(), m_popover->updatedLabel());
        m_vm->fetchToday(); // a reload nobody asked for is no news
        QVERIFY(settled());
        QCOMPARE(said.count(), 1);
        QCOMPARE(m_popover->headline(), u"Today. Live: NTH 50/1 (6.2). "_s + said[0][0].toString());
    }

    // What the user did with a row stays with its match in the list, whatever the delegates do.
    void rowsKeepWhatTheUserDid()
    {
        MatchListModel rows(MatchListModel::Kind::Today, m_server->baseURL());
        QAbstractItemModelTester tester(&rows,
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        const auto at = [](qint64 id, const char *status) {
            return ZelMatch{.matchID = id, .matchStatus = status};
        };
        const auto state = [&rows](int row) {
            const QModelIndex index = rows.index(row);
            return u"%1 %2"_s.arg(rows.data(index, MatchListModel::ExpandedRole).toBool())
                .arg(rows.data(index, MatchListModel::ChosenInningsRole).toInt());
        };
        rows.setMatches({at(1, "live"), at(2, "upcoming"), at(3, "finished")});
        QCOMPARE((QStringList{state(0), state(1), state(2)}),
                 (QStringList{u"1 -1"_s, u"0 -1"_s, u"0 -1"_s}));
        rows.setExpanded(2, true);
        rows.chooseInnings(2, 1);
        // The live match ends, the upcoming one goes live: the first stays open, the second
        // opens; the finished row keeps its pick.
        rows.setMatches({at(1, "finished"), at(2, "live"), at(3, "finished")});
        QCOMPARE((QStringList{state(0), state(1), state(2)}),
                 (QStringList{u"1 -1"_s, u"1 -1"_s, u"1 1"_s}));
        // Closed while live, it stays closed as the match goes on.
        rows.setExpanded(1, false);
        ZelMatch scored = at(2, "live");
        scored.firstBattingSummary = "12/0 (2 Ov)";
        rows.setMatches({at(1, "finished"), scored, at(3, "finished")});
        QCOMPARE(state(1), u"0 -1"_s);
        // Reopened, a row forgets its pick; a match that leaves takes its state along.
        rows.setExpanded(2, false);
        rows.setExpanded(2, true);
        QCOMPARE(state(2), u"1 -1"_s);
        rows.chooseInnings(2, 1);
        rows.setMatches({scored});
        rows.setMatches({at(1, "finished"), scored, at(3, "finished")});
        QCOMPARE((QStringList{state(0), state(1), state(2)}),
                 (QStringList{u"0 -1"_s, u"0 -1"_s, u"0 -1"_s}));
        // A new match listed above an open one starts closed; moved rows keep their state.
        rows.setExpanded(0, true);
        rows.setMatches({at(4, "finished"), at(3, "finished"), at(1, "finished"), scored});
        QCOMPARE((QStringList{state(0), state(1), state(2), state(3)}),
                 (QStringList{u"0 -1"_s, u"0 -1"_s, u"1 -1"_s, u"0 -1"_s}));
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
        QCOMPARE(changed.first().at(1).toModelIndex().row(), rows->rowCount() - 1);
        // A new favourite is told to the views of every row, down to the last.
        MatchListModel *today = m_popover->todayModel();
        QSignalSpy marked(today, &QAbstractItemModel::dataChanged);
        today->setFavouriteTeam(u"1"_s);
        QCOMPARE(marked.count(), 1);
        QVERIFY(today->rowCount() > 1);
        QCOMPARE(marked.first().at(1).toModelIndex().row(), today->rowCount() - 1);
    }
};

QTEST_MAIN(PopoverControllerTest)
#include "tst_popovercontroller.moc"
