#include "ImageCache.h"
#include "PopoverController.h"
#include "PopoverScene.h"
#include "PopoverStyle.h"
#include "Preferences.h"
#include "StateRig.h"
#include "SymbolIcon.h"

#include <QAbstractItemModelTester>
#include <QBuffer>
#include <QQmlComponent>
#include <QQuickItem>
#include <QQuickView>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <QtQml/qqmlextensionplugin.h>

using namespace Qt::Literals::StringLiterals;

Q_IMPORT_QML_PLUGIN(ZelMenuBarPlugin)

using namespace std::chrono_literals;

namespace {

const QByteArray today = R"json({"matches": [
    {"matchID": 7, "status": "live", "startTime": "2026-11-22T13:30:00+05:30",
     "batting": {"firstTeamID": 1, "firstTeamCode": "NTH", "firstSummary": "50/1 (6.2 Ov)"},
     "live": {"currentInnings": "1"}},
    {"matchID": 8, "status": "finished", "startTime": "2026-11-22T09:30:00+05:30",
     "homeTeam": {"id": "1", "name": "Northport", "logoURL": "", "code": "NTH"},
     "awayTeam": {"id": "2", "name": "Southshore", "logoURL": "", "code": "STH"},
     "batting": {"firstTeamID": 1, "firstSummary": "180/6 (20 Ov)", "secondSummary": "150 (19 Ov)"}},
    {"matchID": 9, "status": "upcoming", "startTime": "2026-11-22T19:30:00+05:30"}]})json";

// One card with a batter at the crease, one out, one yet to come ("—") and one who did not
// bat ("DNB"), figures as wide as the game gives them; its second innings is still to come.
const QByteArray card = R"json({"innings": [{"inningsNo": 1, "battingTeamName": "Northport",
    "batting": [{"name": "Asha", "runs": 30, "balls": 20, "isNotOut": true},
                {"name": "Ravi", "runs": 1000, "balls": 1000, "strikeRate": "1200",
                 "isNotOut": false},
                {"name": "Kiran", "isNotOut": true}],
    "bowling": [{"name": "Dev", "overs": "19.5", "runs": 714, "wickets": 10,
                 "economy": "36.00"}]}]})json";
const QByteArray finishedCard = R"json({"innings": [{"inningsNo": 1, "battingTeamName": "Mira's",
    "batting": [{"name": "Mira", "runs": 0, "balls": 0, "isNotOut": true}], "bowling": []}]})json";
// Each list by the league's days (India's): 18:30 UTC is midnight there.
const QByteArray results = R"json({"matches": [{"matchID": 31, "status": "finished",
    "startTime": "2026-11-21T09:30:00+05:30", "matchOrder": "Match 12",
    "toss": {"details": "Northport won the toss"},
    "venue": {"ground": "Harbour Oval", "city": "Northport"}},
    {"matchID": 32, "status": "finished", "startTime": "2026-11-20T19:00:00Z"},
    {"matchID": 33, "status": "finished", "startTime": "2026-11-20T18:00:00Z"}]})json";
const QByteArray fixtures = R"json({"matches": [
    {"matchID": 42, "status": "upcoming", "startTime": "2026-11-24T19:30:00+05:30"},
    {"matchID": 43, "status": "upcoming", "startTime": "2026-11-23T18:30:00Z"},
    {"matchID": 41, "status": "upcoming", "startTime": "2026-11-23T19:30:00+05:30"}]})json";

// Today as so many finished matches, numbered from 101.
QByteArray finishedMatches(int count)
{
    QByteArray body = R"({"matches": [)";
    for (int id = 101; id < 101 + count; ++id)
        body += (id > 101 ? "," : "") + QByteArray(R"({"matchID": )") + QByteArray::number(id) +
                R"(, "status": "finished", "startTime": "2026-11-22T09:30:00+05:30"})";
    return body + "]}";
}

QQuickItem *child(QQuickItem *root, const char *name)
{
    return root->findChild<QQuickItem *>(QLatin1StringView(name));
}

} // namespace

// The popover's QML, loaded for real off screen, against a scripted score service.
class PopoverViewTest : public QObject {
    Q_OBJECT

    QTemporaryDir m_cacheHome;
    std::unique_ptr<Preferences> m_preferences;
    std::unique_ptr<StateRig> m_rig;
    FixtureServer *m_server = nullptr;
    std::unique_ptr<TodayViewModel> m_vm;
    std::unique_ptr<PopoverController> m_popover;
    std::unique_ptr<QQuickView> m_view;

    bool settled() { return StateRig::settled(*m_vm); }

    QQuickItem *tab(const char *name) { return child(m_view->rootObject(), name); }

    // The delegates of a tab's list that are on screen, in order.
    QList<QQuickItem *> rows(const char *tabName)
    {
        QList<QQuickItem *> found;
        QList<QQuickItem *> pending{tab(tabName)};
        while (!pending.isEmpty()) {
            QQuickItem *item = pending.takeFirst();
            if (item->property("matchKey").isValid() && item->property("expanded").isValid())
                found.append(item);
            else
                pending.append(item->childItems());
        }
        std::sort(found.begin(), found.end(), [](auto *a, auto *b) { return a->y() < b->y(); });
        return found;
    }

    // The visible item under root that shows exactly this text, if any.
    static QQuickItem *textItem(QQuickItem *root, const QString &text)
    {
        QList<QQuickItem *> pending{root};
        while (!pending.isEmpty()) {
            QQuickItem *item = pending.takeFirst();
            if (!item->isVisible())
                continue;
            if (item->property("text").toString() == text)
                return item;
            pending.append(item->childItems());
        }
        return nullptr;
    }

    void tapMainLine(QQuickItem *row)
    {
        QQuickItem *line = row->findChild<QQuickItem *>("mainLine");
        const QPointF centre = line->mapToScene(QPointF(line->width() / 2, line->height() / 2));
        QTest::mouseClick(m_view.get(), Qt::LeftButton, {}, centre.toPoint());
    }

private slots:
    void initTestCase()
    {
        qputenv("XDG_CACHE_HOME", m_cacheHome.path().toUtf8());
        PopoverStyle::apply();
    }

    void init()
    {
        QTest::failOnWarning(QRegularExpression(u"."_s));
        m_rig = std::make_unique<StateRig>();
        m_server = &m_rig->server();
        m_server->script("/api/matches/today", {200, today});
        m_server->script("/api/matches/upcoming", {200, R"({"matches": []})"});
        m_server->script("/api/matches/results", {503, "{}"});
        m_server->script("/api/matches/7/scorecard", {200, R"({"innings": []})"});
        m_server->script("/api/matches/8/scorecard", {200, R"({"innings": []})", 100ms});
        m_vm = m_rig->makeModel();
        QFile::remove(m_cacheHome.filePath(u"settings.ini"_s));
        m_preferences = std::make_unique<Preferences>(m_cacheHome.filePath(u"settings.ini"_s));
        m_popover =
            std::make_unique<PopoverController>(*m_vm, m_server->baseURL(), m_preferences.get());
        m_view = std::make_unique<QQuickView>();
        QVERIFY(PopoverScene::load(*m_view, *m_popover));
        m_view->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_view.get()));
        QVERIFY(settled());
    }

    void cleanup()
    {
        m_view.reset();
        m_popover.reset();
        m_vm.reset();
    }

    // Every view file, with data that reaches each of its parts, and not one QML warning.
    void everyViewShowsItsData()
    {
        // The header's buttons show their symbols.
        for (const char *button : {"refreshButton", "settingsButton"}) {
            const auto icons = tab(button)->findChildren<SymbolIcon *>();
            QVERIFY(icons.size() == 1 && !icons[0]->property("name").toString().isEmpty());
        }
        // Each tab is made when first chosen, and its list when it first has rows to show.
        QVERIFY(!tab("resultsTab") && !tab("fixturesTab"));
        m_popover->setActiveTab(Popover::Tab::Fixtures);
        QTRY_VERIFY(tab("fixturesTab"));
        QVERIFY(!tab("fixturesTab")->property("list").value<QQuickItem *>());
        m_popover->setActiveTab(Popover::Tab::Today);

        m_server->script("/api/matches/7/scorecard", {200, card});
        m_server->script("/api/matches/8/scorecard", {200, finishedCard});
        m_server->script("/api/matches/31/scorecard", {200, finishedCard});
        m_server->script("/api/matches/results", {200, results});
        m_server->script("/api/matches/upcoming", {200, fixtures});
        m_popover->refresh();
        QVERIFY(settled());
        QTRY_COMPARE(rows("todayTab").size(), 3);
        QQuickItem *live = rows("todayTab")[0];
        QTRY_VERIFY(textItem(live, "\u2014"));
        QVERIFY(textItem(live, "BOWLING"));
        QVERIFY(textItem(live, "(6.2 Ov)"));
        tapMainLine(rows("todayTab")[1]);
        QVERIFY(settled());
        QTRY_VERIFY(textItem(rows("todayTab")[1], "DNB"));
        // The widest figures show whole, and "DNB" spans the figure columns.
        for (const QString &figure : {u"1000"_s, u"1200"_s, u"19.5"_s, u"714"_s, u"36.00"_s}) {
            const QQuickItem *shown = textItem(live, figure);
            QVERIFY2(shown && !shown->property("truncated").toBool(), qPrintable(figure));
        }
        QQuickItem *header = textItem(live, u"BATTING"_s)->parentItem();
        QQuickItem *runs = textItem(header, u"R"_s);
        QQuickItem *rate = textItem(header, u"SR"_s);
        QCOMPARE(rate->x() + rate->width() - runs->x(),
                 textItem(rows("todayTab")[1], u"DNB"_s)->width());

        QQuickItem *innings = live->findChild<QQuickItem *>("inningsBar");
        QVERIFY(innings);
        QMetaObject::invokeMethod(innings, "activated", Q_ARG(int, 1));
        QTRY_VERIFY(textItem(live, "Yet to bat"));
        QCOMPARE(innings->property("currentIndex").toInt(), 1);
        // New labels (the second innings begun) keep the tabs, and so the focus on one.
        QQuickItem *tabRow = innings->childItems().value(0);
        const QList<QQuickItem *> tabs = tabRow->childItems();
        innings->setProperty("labels", QStringList{u"1st"_s, u"2nd \u00B7 STH"_s});
        QCOMPARE(tabRow->childItems(), tabs);
        QVERIFY(textItem(innings, u"2nd \u00B7 STH"_s));

        m_popover->setActiveTab(Popover::Tab::Results);
        QVERIFY(settled());
        QTRY_COMPARE(rows("resultsTab").size(), 3);
        // The latest result first, the soonest fixture first.
        const auto order = [](MatchListModel *list) {
            QStringList keys;
            for (int row = 0; row < list->rowCount(); ++row)
                keys << list->index(row).data(MatchListModel::MatchKeyRole).toString() + u' ' +
                            list->index(row).data(MatchListModel::SectionTitleRole).toString();
            return keys;
        };
        QCOMPARE(order(m_popover->resultsModel()),
                 (QStringList{"31 Saturday, 21 November", "32 Saturday, 21 November",
                              "33 Friday, 20 November"}));
        QCOMPARE(order(m_popover->fixturesModel()),
                 (QStringList{"41 Monday, 23 November", "43 Tuesday, 24 November",
                              "42 Tuesday, 24 November"}));
        tapMainLine(rows("resultsTab")[0]);
        QVERIFY(settled());
        QTRY_VERIFY(textItem(tab("resultsTab"), "Northport won the toss"));
        QVERIFY(textItem(tab("resultsTab"), "Harbour Oval, Northport"));
        QVERIFY(textItem(tab("resultsTab"), "Match 12"));

        m_popover->setActiveTab(Popover::Tab::Fixtures);
        QVERIFY(settled());
        QTRY_VERIFY(textItem(tab("fixturesTab"), "Monday, 23 November"));
        QTRY_VERIFY(textItem(tab("fixturesTab"), "Tuesday, 24 November"));
    }

    void openedRowAndScrollSurviveAReloadThatKeepsTheirMatches()
    {
        QByteArray many = finishedMatches(24);
        m_server->script("/api/matches/today", {200, many});
        m_popover->refresh();
        QVERIFY(settled());
        QQuickItem *list = tab("todayTab")->property("list").value<QQuickItem *>();
        QTRY_VERIFY(list->property("contentHeight").toReal() > list->height());
        list->setProperty("contentY", 120);
        QQuickItem *opened = nullptr;
        for (QQuickItem *row : rows("todayTab")) {
            if (row->property("matchKey").toString() == u"106"_s)
                opened = row;
        }
        QVERIFY(opened);
        QMetaObject::invokeMethod(opened, "activate");
        QVERIFY(opened->property("expanded").toBool());
        QVERIFY(settled());
        const auto onScreen = [&] { return opened->mapToItem(list, QPointF(0, 0)).y(); };
        const qreal shownAt = onScreen();

        // The same matches with a new comment on one, and the last one gone.
        many.replace(R"("matchID": 106, "status": "finished")",
                     R"("matchID": 106, "result": {"description": "won"}, "status": "finished")");
        many.truncate(many.lastIndexOf(",{"));
        m_server->script("/api/matches/today", {200, many + "]}"});
        m_popover->refresh();
        QVERIFY(settled());
        QCOMPARE(m_popover->todayModel()->rowCount(), 23);
        QVERIFY2(opened->property("expanded").toBool(), "the opened row stays open");
        QCOMPARE(opened->property("comments").toString(), u"won"_s);
        QCOMPARE(onScreen(), shownAt);

        // A tab out of sight gives its rows up, and shows them where they were when it is back.
        const qreal scrolled = list->property("contentY").toReal();
        m_popover->setActiveTab(Popover::Tab::Results);
        QTRY_VERIFY(rows("todayTab").isEmpty());
        m_popover->setActiveTab(Popover::Tab::Today);
        QTRY_VERIFY(!rows("todayTab").isEmpty());
        QCOMPARE(list->property("contentY").toReal(), scrolled);
    }

    // A badge looks its logo up again when its URL changes, and shows one that failed for now
    // once the next reload brings it.
    void badgeFollowsItsLogo()
    {
        QByteArray png;
        QBuffer buffer(&png);
        buffer.open(QIODevice::WriteOnly);
        QImage(8, 8, QImage::Format_RGB32).save(&buffer, "PNG");
        m_server->script("/logos/first.png", {200, png});
        m_server->script("/logos/second.png", {503, "busy"});
        QQmlComponent component(m_view->engine());
        component.setData("import ZelMenuBar\nCricketBadge {}", QUrl());
        std::unique_ptr<QObject> badge(component.create());
        QVERIFY(badge);
        const QUrl first(m_server->baseURL() + u"/logos/first.png"_s);
        badge->setProperty("url", first);
        QTRY_VERIFY(badge->property("showsLogo").toBool());
        std::unique_ptr<QObject> again(component.create());
        again->setProperty("url", first);
        QVERIFY(again->property("showsLogo").toBool()); // from memory, at once
        const QUrl second(m_server->baseURL() + u"/logos/second.png"_s);
        badge->setProperty("url", second);
        QVERIFY(!badge->property("showsLogo").toBool());
        QTRY_COMPARE(m_server->requestCount("/logos/second.png"), 1);
        // Once that try is over (a reload joins it while it runs), the next reload tries again.
        bool over = false;
        ImageCache::shared().prefetch({second}, [&over] { over = true; });
        QTRY_VERIFY(over);
        QVERIFY(!badge->property("showsLogo").toBool());
        m_server->script("/logos/second.png", {200, png});
        ImageCache::shared().prefetch({second});
        QTRY_VERIFY(badge->property("showsLogo").toBool());
    }

    // The gear or Ctrl+, turns the body into the settings page; a team chosen there is marked
    // in the lists, and Escape goes back.
    void settingsPage()
    {
        QAbstractItemModelTester tester(m_popover->settings()->teams(),
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        m_view->rootObject()->forceActiveFocus();
        QTest::keyClick(m_view.get(), Qt::Key_Comma, Qt::ControlModifier);
        QVERIFY(m_popover->settingsOpen());
        QQuickItem *page = tab("settingsPage");
        QTRY_VERIFY(page->isVisible() && child(page, "teamList"));
        QVERIFY(!tab("todayTab")->isVisible());
        QVERIFY(textItem(page, "NOTIFY ME ABOUT EVERY MATCH"));

        QQuickItem *teams = child(page, "teamList");
        const int offered = m_popover->settings()->teams()->rowCount();
        teams->forceActiveFocus();
        QTest::keyClick(m_view.get(), Qt::Key_Down);
        QTest::keyClick(m_view.get(), Qt::Key_Space);
        QCOMPARE(m_preferences->favouriteTeamID(), u"1"_s);
        QCOMPARE(m_popover->settings()->teams()->rowCount(), offered); // each team once, still
        QVERIFY(m_popover->settings()->teams()->index(1).data(TeamListModel::ChosenRole).toBool());
        QVERIFY(textItem(page, "NOTIFY ME ABOUT MY TEAM'S MATCHES"));
        QMetaObject::invokeMethod(child(page, "notifyWickets"), "toggled");
        QVERIFY(m_preferences->alerts(Preferences::Alert::Wickets));
        QVERIFY(!m_preferences->alerts(Preferences::Alert::Starts));

        QTest::keyClick(m_view.get(), Qt::Key_Escape);
        QVERIFY(!m_popover->settingsOpen());
        QTRY_VERIFY(tab("todayTab")->isVisible());
        QTRY_COMPARE(rows("todayTab")[1]->property("homeFavourite").toBool(), true);
        QCOMPARE(rows("todayTab")[1]->property("awayFavourite").toBool(), false);
        PopoverController later(*m_vm, m_server->baseURL(), m_preferences.get());
        QVERIFY(later.todayModel()->index(1).data(MatchListModel::HomeFavouriteRole).toBool());
        QMetaObject::invokeMethod(tab("settingsButton"), "clicked");
        QTRY_VERIFY(child(tab("settingsPage"), "teamList"));
        QTest::keyClick(m_view.get(), Qt::Key_Escape);
        QVERIFY(!m_popover->settingsOpen());
    }
};

QTEST_MAIN(PopoverViewTest)
#include "tst_popoverview.moc"
