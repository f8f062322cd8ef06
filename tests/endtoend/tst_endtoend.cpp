#include "DesktopSession.h"
#include "MatchEvents.h"
#include "SettingsPortal.h"
#include "StatusNotifierHost.h"
#include "StoredSession.h"
#include "TodayViewModel.h"
#include "ZelConfig.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QProcess>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QSettings>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

// Collects the labels a StatusNotifierItem announces.
class LabelWatch : public QObject {
    Q_OBJECT

public:
    QStringList received;

public slots:
    void changed(const QString &label, const QString &) { received << label; }
};

// The application as users run it: its own X server, a tray host or a StatusNotifierWatcher on
// a private session bus (CTest starts this under dbus-run-session), the league simulator on
// loopback, and clicks from xdotool.
class EndToEndTest : public QObject {
    Q_OBJECT

    DesktopSession m_desktop;
    StatusNotifierHost m_panel{m_desktop};
    QProcess m_sim;
    QProcess m_app;
    QProcess m_host; // trayer or status-notifier-watcher

    QList<DesktopSession::Window> windows() const
    {
        return m_desktop.windows(u"zel-menubar-e2e"_s);
    }

    QRect popover() const
    {
        for (const auto &window : windows()) {
            if (window.name.startsWith(u"Scores"_s))
                return window.geometry;
        }
        return {};
    }

    bool popoverShown() const { return !popover().isEmpty(); }

    // The tray icon inside trayer: the application's small window.
    QRect trayIcon() const
    {
        for (const auto &window : windows()) {
            if (window.geometry.width() > 1 && window.geometry.width() <= 64 &&
                window.geometry.height() <= 64)
                return window.geometry;
        }
        return {};
    }

    QRect contextMenu() const
    {
        for (const auto &window : windows()) {
            if (!window.name.startsWith(u"Scores"_s) && window.geometry.height() > 64)
                return window.geometry;
        }
        return {};
    }

    bool startSim(const QStringList &arguments)
    {
        DesktopSession::tieToTest(m_sim);
        m_sim.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_sim.start(QStringLiteral(ZEL_LEAGUE_SIM),
                    QStringList{u"--port"_s, QString::number(ZEL_E2E_PORT)} + arguments);
        return m_sim.waitForReadyRead(10000);
    }

    bool startApp()
    {
        DesktopSession::tieToTest(m_app);
        m_app.setProcessEnvironment(m_desktop.environment());
        m_app.setProcessChannelMode(QProcess::ForwardedChannels);
        m_app.start(QStringLiteral(ZEL_E2E_APP));
        return m_app.waitForStarted();
    }

    bool startTrayer(QProcess &trayer)
    {
        DesktopSession::tieToTest(trayer);
        trayer.setProcessEnvironment(m_desktop.environment());
        trayer.start(u"trayer"_s, {u"--edge"_s, u"top"_s, u"--align"_s, u"right"_s,
                                   u"--widthtype"_s, u"request"_s, u"--height"_s, u"24"_s});
        return trayer.waitForStarted();
    }

    // The app beside a StatusNotifierItem watcher: the item's bus name once it registered, else
    // nothing.
    QString startAppWithItem()
    {
        QString item;
        const bool registered =
            m_panel.startWatcher(m_host) && startApp() &&
            QTest::qWaitFor([&] { return !(item = m_panel.registeredItem()).isEmpty(); }, 15000);
        return registered ? item : QString();
    }

    // A click on the item, as a tray host sends it; whether the popover then shows.
    bool activateToOpen(const QString &item)
    {
        m_panel.callItem(item, u"Activate"_s);
        return QTest::qWaitFor([&] { return popoverShown(); }, 5000);
    }

    // The title a fresh state object computes from the simulator right now.
    static QString expectedTitle()
    {
        TodayViewModel::Setup setup;
        setup.serviceURL = u"http://127.0.0.1:%1"_s.arg(ZEL_E2E_PORT);
        TodayViewModel vm(setup);
        const bool loaded =
            QTest::qWaitFor([&] { return !vm.isLoading() && !vm.isLoadingFixtures(); }, 10000);
        return loaded ? vm.statusBarTitle().text : u"(the service did not answer)"_s;
    }

    // A request to the simulator; its body when it answered 200.
    static std::optional<QByteArray> simCall(const QByteArray &verb, const QString &path,
                                             const QByteArray &body = {})
    {
        QNetworkAccessManager network;
        const QNetworkRequest request(QUrl(u"http://127.0.0.1:%1"_s.arg(ZEL_E2E_PORT) + path));
        std::unique_ptr<QNetworkReply> reply(network.sendCustomRequest(request, verb, body));
        if (!QTest::qWaitFor([&] { return reply->isFinished(); }, 10000) ||
            reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt() != 200)
            return std::nullopt;
        return reply->readAll();
    }

    // Today's first match as the simulator serves it at this moment of the league.
    static QJsonObject simMatchAt(const QDateTime &moment)
    {
        simCall("PUT", u"/sim/clock"_s, moment.toString(Qt::ISODate).toUtf8());
        const auto today = simCall("GET", u"/api/matches/today"_s);
        return QJsonDocument::fromJson(today.value_or("{}"))[u"matches"_s][0].toObject();
    }

    // The summaries of every notification the server received, oldest first; those still on
    // screen are closed first, so that the history holds them all.
    QStringList notifications() const
    {
        m_desktop.run(u"dunstctl"_s, {u"close-all"_s});
        const QJsonDocument history =
            QJsonDocument::fromJson(m_desktop.run(u"dunstctl"_s, {u"history"_s}).toUtf8());
        QStringList summaries;
        for (const QJsonValue note : history[u"data"_s][0].toArray())
            summaries.prepend(note[u"summary"_s][u"data"_s].toString());
        return summaries;
    }

private slots:
    void initTestCase()
    {
        QVERIFY(QDBusConnection::sessionBus().isConnected());
        QVERIFY(m_desktop.start());
    }

    void cleanup()
    {
        DesktopSession::stop(m_app);
        DesktopSession::stop(m_host);
        DesktopSession::stop(m_sim);
    }

    void trayIconClicksAndQuit()
    {
        QVERIFY(startSim({u"--scenario"_s, u"live-second-innings"_s}));
        QVERIFY(startTrayer(m_host));
        QVERIFY(startApp());
        QTRY_VERIFY_WITH_TIMEOUT(!trayIcon().isEmpty(), 15000);
        const QPoint icon = trayIcon().center();

        m_desktop.click(icon, 1);
        QTRY_VERIFY_WITH_TIMEOUT(popoverShown(), 5000);
        const QRect shown = popover();
        QCOMPARE(shown.size(), QSize(380, 500));
        QVERIFY(shown.top() >= trayIcon().bottom());
        QVERIFY(QRect(0, 0, 1280, 800).contains(shown));
        m_desktop.click(icon, 1);
        QTRY_VERIFY_WITH_TIMEOUT(!popoverShown(), 5000);
        // A click elsewhere closes it, and so does Escape: the popup holds the keyboard. A click
        // on the icon soon after a closing click would count as that same click.
        QTest::qWait(400);
        m_desktop.click(icon, 1);
        QTRY_VERIFY_WITH_TIMEOUT(popoverShown(), 5000);
        m_desktop.click(QPoint(200, 600), 1);
        QTRY_VERIFY_WITH_TIMEOUT(!popoverShown(), 5000);
        QTest::qWait(400);
        m_desktop.click(icon, 1);
        QTRY_VERIFY_WITH_TIMEOUT(popoverShown(), 5000);
        m_desktop.key(u"Escape"_s);
        QTRY_VERIFY_WITH_TIMEOUT(!popoverShown(), 5000);

        // A second launch shows the running copy's popover and steps aside.
        QProcess second;
        second.setProcessEnvironment(m_desktop.environment());
        second.start(QStringLiteral(ZEL_E2E_APP));
        QVERIFY(second.waitForFinished(10000));
        QCOMPARE(second.exitCode(), 0);
        QTRY_VERIFY_WITH_TIMEOUT(popoverShown(), 5000);
        m_desktop.click(icon, 1);
        QTRY_VERIFY_WITH_TIMEOUT(!popoverShown(), 5000);

        m_desktop.click(icon, 3);
        QRect menu;
        QTRY_VERIFY_WITH_TIMEOUT(!(menu = contextMenu()).isEmpty(), 5000);
        // "Quit Zel Menu Bar" is the last entry.
        m_desktop.click(QPoint(menu.left() + 40, menu.bottom() - 10), 1);
        QVERIFY(m_app.waitForFinished(10000));
        QCOMPARE(m_app.exitStatus(), QProcess::NormalExit);
        QCOMPARE(m_app.exitCode(), 0);
    }

    void switchesBetweenTrayAndStatusNotifier()
    {
        QVERIFY(startSim({u"--scenario"_s, u"todays-result"_s}));
        QProcess trayer;
        QVERIFY(startTrayer(trayer));
        QVERIFY(startApp());
        QTRY_VERIFY_WITH_TIMEOUT(!trayIcon().isEmpty(), 15000);

        QVERIFY(m_panel.startWatcher(m_host));
        QTRY_VERIFY_WITH_TIMEOUT(!m_panel.registeredItem().isEmpty(), 10000);
        QTRY_VERIFY_WITH_TIMEOUT(trayIcon().isEmpty(), 5000);

        DesktopSession::stop(m_host);
        QTRY_VERIFY_WITH_TIMEOUT(!trayIcon().isEmpty(), 10000);
        DesktopSession::stop(trayer);

        // SIGTERM is an ordinary quit.
        m_app.terminate();
        QVERIFY(m_app.waitForFinished(10000));
        QCOMPARE(m_app.exitStatus(), QProcess::NormalExit);
        QCOMPARE(m_app.exitCode(), 0);
    }

    void statusNotifierItem()
    {
        // A ball every 10 s: the score moves between two of the app's 30-second refreshes.
        QVERIFY(startSim({u"--scenario"_s, u"live-second-innings"_s, u"--speed"_s, u"4"_s}));
        const QString item = startAppWithItem();
        QVERIFY(!item.isEmpty());
        LabelWatch labels;
        QVERIFY(QDBusConnection::sessionBus().connect(
            item, u"/StatusNotifierItem"_s, u"org.kde.StatusNotifierItem"_s, u"XAyatanaNewLabel"_s,
            &labels, SLOT(changed(QString, QString))));
        QTRY_VERIFY_WITH_TIMEOUT(
            !m_panel.itemProperty(item, u"XAyatanaLabel"_s).toString().isEmpty(), 15000);
        QCOMPARE(m_panel.itemProperty(item, u"Title"_s).toString(), u"Zel Menu Bar"_s);
        QCOMPARE(m_panel.itemProperty(item, u"ItemIsMenu"_s).toBool(), false);
        QCOMPARE(m_panel.itemProperty(item, u"IconName"_s).toString(), u"zel-menubar"_s);
        const QString firstTitle = m_panel.toolTipTitle(item);
        QVERIFY(firstTitle.startsWith(u"\U0001F3CF  "_s));
        QCOMPARE(m_panel.itemProperty(item, u"XAyatanaLabel"_s).toString(), firstTitle.mid(4));

        QVERIFY(activateToOpen(item));
        m_panel.callItem(item, u"Activate"_s);
        QTRY_VERIFY_WITH_TIMEOUT(!popoverShown(), 5000);

        const auto entries = m_panel.menuEntries(item);
        QVERIFY(!entries.isEmpty());
        QCOMPARE(entries.first().second, u"Show Scores"_s);
        m_panel.clickMenuEntry(item, entries.first().first);
        QTRY_VERIFY_WITH_TIMEOUT(popoverShown(), 5000);
        m_panel.callItem(item, u"Activate"_s);
        QTRY_VERIFY_WITH_TIMEOUT(!popoverShown(), 5000);

        // The scenario moves on: at the next refresh label and tool tip change together, to
        // the title a fresh state object computes from the service at that moment. A ball
        // bowled between the two fetches gets another refresh, twice at most.
        bool matched = false;
        QString previous = firstTitle;
        for (int attempt = 0; attempt < 3 && !matched; ++attempt) {
            const QString previousLabel = previous.mid(4);
            QTRY_VERIFY_WITH_TIMEOUT(
                !labels.received.isEmpty() && labels.received.last() != previousLabel, 45000);
            const QString expected = expectedTitle();
            const QString title = m_panel.toolTipTitle(item);
            QCOMPARE(labels.received.last(), title.mid(4));
            QCOMPARE(m_panel.itemProperty(item, u"XAyatanaLabel"_s).toString(), title.mid(4));
            matched = title == expected;
            if (!matched)
                qWarning() << "title" << title << "but a fresh state object says" << expected;
            previous = title;
        }
        QVERIFY(matched);
    }

    // Under a Wayland compositor the app runs on Xwayland, whose window manager places ordinary
    // windows itself; the popup still opens where the status item asked.
    void popoverUnderWestonAndXwayland()
    {
        QProcess weston;
        DesktopSession::tieToTest(weston);
        QProcessEnvironment westonEnvironment = m_desktop.environment();
        westonEnvironment.remove(u"DISPLAY"_s);
        weston.setProcessEnvironment(westonEnvironment);
        weston.setProcessChannelMode(QProcess::MergedChannels);
        weston.start(u"weston"_s,
                     {u"--backend=headless-backend.so"_s, u"--xwayland"_s, u"--socket=zel-e2e"_s,
                      u"--width=1280"_s, u"--height=800"_s, u"--idle-time=0"_s});
        static const QRegularExpression listening(u"xserver listening on display (:\\d+)"_s);
        QString log;
        QVERIFY2(QTest::qWaitFor(
                     [&] {
                         log += QString::fromUtf8(weston.readAll());
                         return listening.match(log).hasMatch();
                     },
                     10000),
                 qPrintable(log));
        m_desktop.setDisplay(listening.match(log).captured(1));
        const auto restore = qScopeGuard([&] {
            DesktopSession::stop(m_app);
            DesktopSession::stop(weston);
            m_desktop.setDisplay({});
        });

        QVERIFY(startSim({u"--scenario"_s, u"todays-result"_s}));
        const QString item = startAppWithItem();
        QVERIFY(!item.isEmpty());
        QVERIFY(activateToOpen(item)); // at (600, 30)
        QCOMPARE(popover(), QRect(QPoint(600 - 380 / 2, 30 + 1 + 4), QSize(380, 500)));
        m_desktop.key(u"Escape"_s);
        QTRY_VERIFY_WITH_TIMEOUT(!popoverShown(), 5000);
        QVERIFY(activateToOpen(item));
        m_panel.callItem(item, u"Activate"_s);
        QTRY_VERIFY_WITH_TIMEOUT(!popoverShown(), 5000);
    }

    // A screen reader, started on the desktop, finds the open popover and its controls: read
    // over AT-SPI by a client process of its own.
    void screenReaderFindsThePopover()
    {
        QProcess bus;
        DesktopSession::tieToTest(bus);
        bus.setProcessEnvironment(m_desktop.environment());
        bus.start(u"/usr/libexec/at-spi-bus-launcher"_s, {u"--launch-immediately"_s});
        QVERIFY(bus.waitForStarted());
        const auto stopBus = qScopeGuard([&] { DesktopSession::stop(bus); });
        QTRY_VERIFY(
            QDBusConnection::sessionBus().interface()->isServiceRegistered(u"org.a11y.Bus"_s));
        QDBusMessage enable = QDBusMessage::createMethodCall(
            u"org.a11y.Bus"_s, u"/org/a11y/bus"_s, u"org.freedesktop.DBus.Properties"_s, u"Set"_s);
        enable << u"org.a11y.Status"_s << u"IsEnabled"_s << QVariant::fromValue(QDBusVariant(true));
        QCOMPARE(QDBusConnection::sessionBus().call(enable).type(), QDBusMessage::ReplyMessage);

        // A fixed afternoon: at night in India "today" would be the next day's, without the result.
        QVERIFY(startSim(
            {u"--scenario"_s, u"todays-result"_s, u"--start"_s, u"2026-11-22T18:00:00+05:30"_s}));
        const QString item = startAppWithItem();
        QVERIFY(!item.isEmpty());
        QVERIFY(activateToOpen(item));
        const auto tree = [&] {
            return m_desktop.run(u"/usr/bin/python3"_s,
                                 {QStringLiteral(ZEL_ACCESSIBLE_TREE), u"zel-menubar"_s});
        };
        // A row says its state in a word and the match in a sentence, and whether it is open:
        // waited for, since Today may still be loading on a busy machine.
        static const QRegularExpression row(
            u"\tlist item\t(Result: [^\t]+)\t[^\t]*\tCollapsed\n"_s);
        QString shown;
        QTRY_VERIFY2_WITH_TIMEOUT(row.match(shown = tree()).hasMatch(), qPrintable(shown), 20000);
        QVERIFY2(shown.contains(u"1\tframe\tScores\t"_s), qPrintable(shown));
        QVERIFY2(shown.contains(u"\tpush button\tRefresh\t"_s), qPrintable(shown));
        QVERIFY2(shown.contains(u"\tpage tab list\t"_s), qPrintable(shown));
        QVERIFY2(shown.contains(u"\theading\t\U0001F3CF  Zel "_s), qPrintable(shown));
        // Each tab by its name, the open one selected.
        for (const QString &tab : {u"Results"_s, u"Today"_s, u"Fixtures"_s}) {
            const QRegularExpression line(u"\tpage tab\t%1\t([^\n]*)"_s.arg(tab));
            const QRegularExpressionMatch found = line.match(shown);
            QVERIFY2(found.hasMatch(), qPrintable(tab + u'\n' + shown));
            QCOMPARE(found.captured(1).split(u',').contains(u"selected"_s), tab == u"Today"_s);
        }
        static const QRegularExpression badge(u"\timage\t[A-Z]+ logo\t"_s);
        QVERIFY2(badge.match(shown).hasMatch(), qPrintable(shown));
        // Tab reaches the flat tool buttons of the header, which the reader hears focused.
        const auto focused = [&] {
            static const QRegularExpression line(
                u"\\t([^\\t\\n]*\\t[^\\t\\n]*)\\t[^\\n]*focused"_s);
            return line.match(tree()).captured(1);
        };
        m_desktop.key(u"Tab"_s);
        QTRY_COMPARE_WITH_TIMEOUT(focused(), u"push button\tRefresh"_s, 5000);
        m_desktop.key(u"Tab"_s);
        QTRY_COMPARE_WITH_TIMEOUT(focused(), u"push button\tSettings"_s, 5000);
        // On through the tabs to the result, which Space opens into a table of named columns.
        for (int presses = 0; presses < 6 && !focused().startsWith(u"list item"_s); ++presses) {
            m_desktop.key(u"Tab"_s);
            QTest::qWait(300);
        }
        QVERIFY2(focused().startsWith(u"list item\tResult: "_s), qPrintable(tree()));
        m_desktop.key(u"space"_s);
        static const QRegularExpression opened(
            u"\tlist item\tResult: [^\t]+\t[^\t]*focused[^\t]*\tExpanded\n"_s);
        QTRY_VERIFY_WITH_TIMEOUT(opened.match(tree()).hasMatch(), 10000);
        // Its scorecard: tables whose columns have their full names, read a batter at a time.
        const QString card = tree();
        QVERIFY2(card.contains(u"\ttable\tBATTING\t"_s), qPrintable(card));
        QVERIFY(card.contains(u"\ttable column header\tStrike rate\t"_s));
        static const QRegularExpression batter(
            u"\ttable row\t[^\t,]+, Runs \\d+, Balls \\d+, Fours \\d+, Sixes \\d+, Strike rate "_s);
        QVERIFY(batter.match(card).hasMatch());
        // The innings switch is next; Right picks the second innings.
        m_desktop.key(u"Tab"_s);
        QTRY_COMPARE_WITH_TIMEOUT(focused(), u"page tab list\t"_s, 5000);
        m_desktop.key(u"Right"_s);
        static const QRegularExpression second(u"\tpage tab\t2nd [^\t]*\t[^\t]*,selected,"_s);
        QTRY_VERIFY_WITH_TIMEOUT(second.match(tree()).hasMatch(), 5000);
    }

    // The records of each batch the simulator's ingest received, in order.
    QList<QJsonArray> ingestBatches(const QString &log)
    {
        QFile file(log);
        QList<QJsonArray> batches;
        if (!file.open(QIODevice::ReadOnly))
            return batches;
        for (const QByteArray &line : file.readAll().split('\n'))
            if (!line.isEmpty())
                batches.append(QJsonDocument::fromJson(line).array());
        return batches;
    }

    // The types of every record of the batches the ingest received.
    QStringList ingestTypes(const QString &log)
    {
        QStringList types;
        for (const QJsonArray &batch : ingestBatches(log))
            for (const QJsonValue record : batch)
                types.append(record[u"type"_s].toString());
        return types;
    }

    // "Quit Zel Menu Bar" from the menu the item exports, as a panel runs it.
    bool quitThroughMenu()
    {
        QString item;
        if (!QTest::qWaitFor([&] { return !(item = m_panel.registeredItem()).isEmpty(); }, 10000))
            return false;
        const auto entries = m_panel.menuEntries(item);
        if (entries.isEmpty() || entries.last().second != u"Quit Zel Menu Bar"_s)
            return false;
        m_panel.clickMenuEntry(item, entries.last().first);
        return m_app.waitForFinished(10000) && m_app.exitCode() == 0;
    }

    // Four runs of a new installation, the popover never opened: one with the ingest refusing
    // and SIGTERM. One new installation in all, one session per run, nothing lost.
    void analyticsOverFourLaunches()
    {
        const QString log = m_desktop.path(u"ingest.jsonl"_s);
        const QString cacheFile = m_desktop.path(u"cache/ZelMenuBar/telemetrysignalcache"_s);
        // What earlier runs left: queued signals, and the store that remembers sessions.
        QFile::remove(cacheFile);
        const QDir config(m_desktop.path(u"config/ZelMenuBar"_s));
        for (const QString &store : config.entryList({u"seprior.*"_s}))
            QVERIFY(QFile::remove(config.filePath(store)));
        // The store of the app's own identifier, which a default build sends.
        const QString storeFile = config.filePath(u"seprior.64a5b131124f"_s);
        const auto store = [&storeFile](const QString &key) {
            return QSettings(storeFile, QSettings::IniFormat).value(key);
        };
        // A desktop that asks for reduced motion and inverted colours.
        SettingsPortal portal;
        portal.settings = SettingsPortal::everythingOn();
        portal.delay = std::chrono::milliseconds(300);
        QVERIFY(portal.publish());
        const auto unpublish = qScopeGuard([] { QDBusConnection::disconnectFromBus(u"portal"_s); });
        QVERIFY(startSim({u"--scenario"_s, u"todays-result"_s, u"--ingest-log"_s, log}));

        QVERIFY(!startAppWithItem().isEmpty());
        QTRY_VERIFY_WITH_TIMEOUT(!ingestBatches(log).isEmpty(), 15000);
        QCOMPARE(ingestTypes(log),
                 (QStringList{u"app.launched"_s, u"TelemetryDeck.Acquisition.newInstallDetected"_s,
                              u"TelemetryDeck.Session.started"_s}));
        const QString today = QDate::currentDate().toString(Qt::ISODate);
        const QJsonArray first = ingestBatches(log).first();
        for (const QJsonValue record : first) {
            QCOMPARE(record[u"appID"_s].toString(), u"5F0C2A7E-3B91-4D6A-9E28-7C4B1D03A6F5"_s);
            const QJsonObject payload = record[u"payload"_s].toObject();
            QCOMPARE(payload[u"TelemetryDeck.Accessibility.isReduceMotionEnabled"_s], u"true"_s);
            QCOMPARE(payload[u"TelemetryDeck.Accessibility.isInvertColorsEnabled"_s], u"true"_s);
            QCOMPARE(payload[u"TelemetryDeck.Acquisition.firstSessionDate"_s], today);
        }
        QVERIFY(quitThroughMenu());
        QCOMPARE(store(u"firstSessionDate"_s).toString(), today);

        // The ingest refuses; what is pending at SIGTERM waits on disk for the next run.
        QVERIFY(simCall("PUT", u"/sim/ingest-status"_s, "500").has_value());
        QVERIFY(startApp());
        QTest::qWait(12000); // a send, refused
        DesktopSession::stop(m_app);
        QCOMPARE(m_app.exitCode(), 0);
        QVERIFY(QFile::exists(cacheFile));
        QCOMPARE(ingestBatches(log).size(), 1);

        QVERIFY(simCall("PUT", u"/sim/ingest-status"_s, "200").has_value());
        QVERIFY(startApp());
        QTRY_COMPARE_WITH_TIMEOUT(ingestBatches(log).size(), 2, 15000);
        QVERIFY(!QFile::exists(cacheFile));
        DesktopSession::stop(m_app);

        QVERIFY(startApp());
        QTRY_COMPARE_WITH_TIMEOUT(ingestBatches(log).size(), 3, 15000);
        QVERIFY(quitThroughMenu());

        const QStringList types = ingestTypes(log);
        QCOMPARE(types.count(u"TelemetryDeck.Acquisition.newInstallDetected"_s), 1);
        QCOMPARE(types.count(u"app.launched"_s), 4);
        QCOMPARE(types.count(u"TelemetryDeck.Session.started"_s), 4);
        QCOMPARE(store(u"firstSessionDate"_s).toString(), today);
        const auto sessions = StoredSession::decode(store(u"recentSessions"_s).toByteArray());
        QCOMPARE(sessions.size(), 4);
        for (const StoredSession &session : sessions)
            QVERIFY2(session.durationInSeconds >= 5, qPrintable(session.startedAt.toString()));
    }

    // A match played by the simulator, its clock moved on between loads, with every alert on
    // for the favourite's matches and a real notification server under Xvfb.
    void matchAlertsReachTheDesktop()
    {
        QProcess dunst;
        DesktopSession::tieToTest(dunst);
        dunst.setProcessEnvironment(m_desktop.environment());
        dunst.start(u"dunst"_s, {});
        QVERIFY(dunst.waitForStarted());
        const auto stopDunst = qScopeGuard([&] { DesktopSession::stop(dunst); });
        // Asked before it holds its name, the bus would start another one, without a display.
        QTRY_COMPARE(QDBusConnection::sessionBus()
                         .interface()
                         ->servicePid(u"org.freedesktop.Notifications"_s)
                         .value(),
                     uint(dunst.processId()));

        const QDateTime afternoon =
            QDateTime::fromString(u"2026-11-22T14:00:00+05:30"_s, Qt::ISODate);
        QVERIFY(startSim({u"--scenario"_s, u"next-start-today"_s, u"--start"_s,
                          afternoon.toString(Qt::ISODate)}));
        // Moments of the match: the toss, its first wicket, the result.
        const QJsonObject upcoming = simMatchAt(afternoon);
        const QDateTime start =
            QDateTime::fromString(upcoming[u"startTime"_s].toString(), Qt::ISODate);
        QVERIFY2(start.isValid(), qPrintable(QJsonDocument(upcoming).toJson()));
        const QDateTime toss = start.addSecs(-25 * 60);
        QDateTime wicket = toss;
        while (MatchEvents::wicketsIn(
                   simMatchAt(wicket)[u"batting"_s][u"firstSummary"_s].toString()) < 1)
            wicket = wicket.addSecs(120);
        const QDateTime end = start.addSecs(5 * 3600);
        QCOMPARE(simMatchAt(end)[u"status"_s].toString(), u"finished"_s);
        simMatchAt(afternoon);

        QSettings settings(m_desktop.path(u"config/ZelMenuBar/settings.ini"_s),
                           QSettings::IniFormat);
        settings.setValue(u"favourite/id"_s, upcoming[u"homeTeam"_s][u"id"_s].toString());
        settings.setValue(u"favourite/name"_s, upcoming[u"homeTeam"_s][u"name"_s].toString());
        for (const char *alert : {"starts", "wickets", "results"})
            settings.setValue(u"notify/"_s + QLatin1StringView(alert), true);
        settings.sync();

        const QString item = startAppWithItem();
        QVERIFY(!item.isEmpty());
        QTRY_VERIFY_WITH_TIMEOUT(
            !m_panel.itemProperty(item, u"XAyatanaLabel"_s).toString().isEmpty(), 10000);
        QVERIFY(activateToOpen(item));
        QTest::qWait(2000);
        QCOMPARE(notifications(), QStringList()); // what was so at start is not news

        // F5 in the popover reloads today's matches.
        const auto reloadAt = [&](const QDateTime &moment) {
            simMatchAt(moment);
            m_desktop.key(u"F5"_s);
        };
        reloadAt(toss);
        QTRY_COMPARE_WITH_TIMEOUT(notifications().size(), 1, 10000);
        QVERIFY2(notifications().first().endsWith(u" has started"_s),
                 qPrintable(notifications().first()));
        reloadAt(toss.addSecs(60));
        QTest::qWait(2000);
        QCOMPARE(notifications().size(), 1);
        reloadAt(wicket);
        QTRY_COMPARE_WITH_TIMEOUT(notifications().size(), 2, 10000);
        QVERIFY2(notifications().last().startsWith(u"Wicket! "_s),
                 qPrintable(notifications().last()));

        m_desktop.key(u"Escape"_s);
        QTRY_VERIFY_WITH_TIMEOUT(!popoverShown(), 5000);
        simMatchAt(end);
        m_panel.callItem(item, u"Activate"_s);
        QTRY_VERIFY_WITH_TIMEOUT(popoverShown(), 5000);
        m_desktop.key(u"F5"_s);
        QTRY_COMPARE_WITH_TIMEOUT(m_desktop.run(u"dunstctl"_s, {u"count"_s, u"displayed"_s}),
                                  u"1"_s, 10000);
        m_desktop.key(u"Escape"_s);
        QTRY_VERIFY_WITH_TIMEOUT(!popoverShown(), 5000);
        m_desktop.run(u"dunstctl"_s, {u"action"_s, u"0"_s});
        QTRY_VERIFY_WITH_TIMEOUT(popoverShown(), 5000); // the click opens today's matches
        QCOMPARE(notifications().size(), 3);
        QVERIFY2(notifications().last().endsWith(u": result"_s),
                 qPrintable(notifications().last()));

        // A new start with the match over tells nothing.
        DesktopSession::stop(m_app);
        QVERIFY(startApp());
        QTest::qWait(4000);
        QCOMPARE(notifications().size(), 3);
    }

    void serviceFailureAndRecovery()
    {
        QVERIFY(startSim({u"--scenario"_s, u"live-first-innings"_s, u"--fail-rate"_s, u"1"_s}));
        const QString item = startAppWithItem();
        QVERIFY(!item.isEmpty());
        QVERIFY(activateToOpen(item));
        QTest::qWait(1000);
        m_desktop.run(u"import"_s,
                      {u"-window"_s, u"root"_s,
                       QCoreApplication::applicationDirPath() + u"/e2e-service-failure.png"_s});
        QVERIFY(m_app.state() == QProcess::Running);
        QCOMPARE(m_panel.itemProperty(item, u"XAyatanaLabel"_s).toString(), QString());
        QCOMPARE(m_panel.toolTipTitle(item), u"\U0001F3CF"_s);

        // The service comes back; Return on the failed tab retries it.
        DesktopSession::stop(m_sim);
        QVERIFY(startSim({u"--scenario"_s, u"live-first-innings"_s}));
        m_desktop.key(u"Return"_s);
        QTRY_VERIFY_WITH_TIMEOUT(
            !m_panel.itemProperty(item, u"XAyatanaLabel"_s).toString().isEmpty(), 10000);
        QVERIFY(m_app.state() == QProcess::Running);
    }
};

QTEST_MAIN(EndToEndTest)
#include "tst_endtoend.moc"
