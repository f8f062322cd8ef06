#include "DesktopSession.h"
#include "MatchEvents.h"
#include "SettingsPortal.h"
#include "StatusNotifierHost.h"
#include "StoredSession.h"
#include "TodayViewModel.h"
#include "ZelConfig.h"

#include <functional>
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
#include <QTest>

using namespace std::chrono_literals;
using namespace Qt::Literals::StringLiterals;

// Collects the labels a StatusNotifierItem announces.
class LabelWatch : public QObject {
    Q_OBJECT

public:
    QStringList received;

public slots:
    void changed(const QString &label, const QString &) { received << label; }
};

// One league day as a user lives it, walked in order by as few runs of the application as it
// takes: its own X server with trayer, then a real StatusNotifierWatcher on a private session
// bus (CTest starts this under dbus-run-session), dunst, the accessibility bus and weston, the
// league simulator on loopback with its analytics ingest, and keys and clicks from xdotool.
class EndToEndTest : public QObject {
    Q_OBJECT

    DesktopSession m_desktop;
    StatusNotifierHost m_panel{m_desktop};
    SettingsPortal m_portal;
    LabelWatch m_labels;
    QProcess m_sim, m_app, m_trayer, m_watcher, m_dunst, m_accessibilityBus;
    QString m_item; // the running application's StatusNotifierItem
    // Today's match and its moments: the toss, the first wicket, the result.
    QJsonObject m_match;
    QDateTime m_toss, m_wicket, m_end;
    qsizetype m_firstRunBatches = 0;

    static inline const QDateTime afternoon =
        QDateTime::fromString(u"2026-11-22T14:00:00+05:30"_s, Qt::ISODate);

    QString ingestLog() const { return m_desktop.path(u"ingest.jsonl"_s); }
    QString cacheFile() const { return m_desktop.path(u"cache/ZelMenuBar/telemetrysignalcache"_s); }
    // The store of the app's own identifier, which a default build sends.
    QVariant stored(const QString &key) const
    {
        return QSettings(m_desktop.path(u"config/ZelMenuBar/seprior.64a5b131124f"_s),
                         QSettings::IniFormat)
            .value(key);
    }

    QRect window(const std::function<bool(const DesktopSession::Window &)> &wanted) const
    {
        for (const auto &window : m_desktop.windows(u"zel-menubar-e2e"_s))
            if (wanted(window))
                return window.geometry;
        return {};
    }
    QRect popover() const
    {
        return window([](const auto &window) { return window.name.startsWith(u"Scores"_s); });
    }
    // The icon inside trayer: the application's small window.
    QRect trayIcon() const
    {
        return window([](const auto &window) {
            return window.geometry.width() > 1 && window.geometry.width() <= 64 &&
                   window.geometry.height() <= 64;
        });
    }
    QRect contextMenu() const
    {
        return window([](const auto &window) {
            return !window.name.startsWith(u"Scores"_s) && window.geometry.height() > 64;
        });
    }
    bool popoverBecomes(bool shown) const
    {
        return QTest::qWaitFor([&] { return popover().isEmpty() != shown; }, 15000);
    }

    bool start(QProcess &process, const QString &program, const QStringList &arguments = {})
    {
        DesktopSession::tieToTest(process);
        process.setProcessEnvironment(m_desktop.environment());
        process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process.start(program, arguments);
        return process.waitForStarted();
    }
    static bool quitsCleanly(QProcess &process)
    {
        return process.waitForFinished(10000) && process.exitStatus() == QProcess::NormalExit &&
               process.exitCode() == 0;
    }

    bool startSim(const QStringList &more = {})
    {
        return start(m_sim, QStringLiteral(ZEL_LEAGUE_SIM),
                     QStringList{u"--port"_s, QString::number(ZEL_E2E_PORT), u"--scenario"_s,
                                 u"next-start-today"_s, u"--start"_s,
                                 afternoon.toString(Qt::ISODate), u"--ingest-log"_s, ingestLog(),
                                 // no update on offer: the notifications are the match's
                                 u"--announce-version"_s, QString::fromUtf8(ZelConfig::version)} +
                         more) &&
               m_sim.waitForReadyRead(10000);
    }
    bool startApp() { return start(m_app, QStringLiteral(ZEL_E2E_APP)); }
    // The app beside the running watcher, and its item once registered.
    bool startAppWithItem()
    {
        const QString previous = m_item;
        return startApp() && QTest::qWaitFor(
                                 [&] {
                                     m_item = m_panel.registeredItem();
                                     return !m_item.isEmpty() && m_item != previous;
                                 },
                                 15000);
    }
    QString label() const { return m_panel.itemProperty(m_item, u"XAyatanaLabel"_s).toString(); }
    // A click on the item, as a tray host sends it.
    bool activateTo(bool shown)
    {
        m_panel.callItem(m_item, u"Activate"_s);
        return popoverBecomes(shown);
    }
    // "Quit Zel Menu Bar", the last entry of the menu the item exports, as a panel runs it.
    bool quitThroughMenu()
    {
        const auto entries = m_panel.menuEntries(m_item);
        if (entries.isEmpty() || entries.last().second != u"Quit Zel Menu Bar"_s)
            return false;
        m_panel.clickMenuEntry(m_item, entries.last().first);
        return quitsCleanly(m_app);
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

    // Today's match as the simulator serves it at this moment of the league.
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

    // The records of each batch the ingest received, in order.
    QList<QJsonArray> ingestBatches() const
    {
        QFile file(ingestLog());
        QList<QJsonArray> batches;
        if (file.open(QIODevice::ReadOnly))
            for (const QByteArray &line : file.readAll().split('\n'))
                if (!line.isEmpty())
                    batches.append(QJsonDocument::fromJson(line).array());
        return batches;
    }
    QStringList ingestTypes() const
    {
        QStringList types;
        for (const QJsonArray &batch : ingestBatches())
            for (const QJsonValue record : batch)
                types.append(record[u"type"_s].toString());
        return types;
    }

    // The popover as a screen reader reads it, over AT-SPI, from a client process of its own.
    QString tree() const
    {
        return m_desktop.run(u"/usr/bin/python3"_s,
                             {QStringLiteral(ZEL_ACCESSIBLE_TREE), u"zel-menubar"_s});
    }
    QString focused() const
    {
        static const QRegularExpression line(u"\\t([^\\t\\n]*\\t[^\\t\\n]*)\\t[^\\n]*focused"_s);
        return line.match(tree()).captured(1);
    }

private slots:
    void initTestCase()
    {
        QVERIFY(QDBusConnection::sessionBus().isConnected());
        QVERIFY(m_desktop.start());
        // A desktop that asks for reduced motion and inverted colours, a screen reader's bus
        // and a notification server.
        m_portal.settings = SettingsPortal::everythingOn();
        m_portal.delay = 300ms;
        QVERIFY(m_portal.publish());
        QVERIFY(start(m_accessibilityBus, u"/usr/libexec/at-spi-bus-launcher"_s,
                      {u"--launch-immediately"_s}));
        QVERIFY(start(m_dunst, u"dunst"_s));
        QDBusConnectionInterface *bus = QDBusConnection::sessionBus().interface();
        QTRY_VERIFY(bus->isServiceRegistered(u"org.a11y.Bus"_s));
        QDBusMessage enable = QDBusMessage::createMethodCall(
            u"org.a11y.Bus"_s, u"/org/a11y/bus"_s, u"org.freedesktop.DBus.Properties"_s, u"Set"_s);
        enable << u"org.a11y.Status"_s << u"IsEnabled"_s << QVariant::fromValue(QDBusVariant(true));
        QCOMPARE(QDBusConnection::sessionBus().call(enable).type(), QDBusMessage::ReplyMessage);
        // Asked before dunst holds its name, the bus would start another one, without a display.
        QTRY_COMPARE(bus->servicePid(u"org.freedesktop.Notifications"_s).value(),
                     uint(m_dunst.processId()));

        QVERIFY(startSim());
        m_match = simMatchAt(afternoon);
        const QDateTime start =
            QDateTime::fromString(m_match[u"startTime"_s].toString(), Qt::ISODate);
        QVERIFY2(start.isValid(), qPrintable(QJsonDocument(m_match).toJson()));
        m_toss = start.addSecs(-25 * 60);
        m_wicket = m_toss;
        while (MatchEvents::wicketsIn(
                   simMatchAt(m_wicket)[u"batting"_s][u"firstSummary"_s].toString()) < 1)
            m_wicket = m_wicket.addSecs(120);
        m_end = start.addSecs(5 * 3600);
        QCOMPARE(simMatchAt(m_end)[u"status"_s].toString(), u"finished"_s);
        simMatchAt(afternoon);

        // Every alert on for the favourite's matches.
        QSettings settings(m_desktop.path(u"config/ZelMenuBar/settings.ini"_s),
                           QSettings::IniFormat);
        settings.setValue(u"favourite/id"_s, m_match[u"homeTeam"_s][u"id"_s].toString());
        settings.setValue(u"favourite/name"_s, m_match[u"homeTeam"_s][u"name"_s].toString());
        for (const char *alert : {"starts", "wickets", "results"})
            settings.setValue(u"notify/"_s + QLatin1StringView(alert), true);
    }

    // The accessibility bus's launcher takes its daemon down with it, if it is asked to.
    void cleanupTestCase()
    {
        for (QProcess *process : {&m_app, &m_watcher, &m_trayer, &m_dunst, &m_accessibilityBus})
            DesktopSession::stop(*process);
    }

    void trayIconClicks()
    {
        QVERIFY(start(m_trayer, u"trayer"_s,
                      {u"--edge"_s, u"top"_s, u"--align"_s, u"right"_s, u"--widthtype"_s,
                       u"request"_s, u"--height"_s, u"24"_s}));
        QVERIFY(startApp());
        QTRY_VERIFY_WITH_TIMEOUT(!trayIcon().isEmpty(), 15000);
        const QPoint icon = trayIcon().center();
        // Closed by the icon, by a click elsewhere and by Escape: the popup holds the keyboard.
        const std::function<void()> closers[] = {[&] { m_desktop.click(icon, 1); },
                                                 [&] {
                                                     m_desktop.click({200, 600}, 1);
                                                 },
                                                 [&] { m_desktop.key(u"Escape"_s); }};
        for (const auto &close : closers) {
            QTest::qWait(400); // a click soon after a closing click would count as that click
            m_desktop.click(icon, 1);
            QVERIFY(popoverBecomes(true));
            QCOMPARE(popover().size(), QSize(380, 500));
            QVERIFY(popover().top() >= trayIcon().bottom());
            QVERIFY(QRect(0, 0, 1280, 800).contains(popover()));
            close();
            QVERIFY(popoverBecomes(false));
        }
        // A second launch shows the running copy's popover and steps aside.
        QProcess second;
        QVERIFY(start(second, QStringLiteral(ZEL_E2E_APP)));
        QVERIFY(quitsCleanly(second));
        QVERIFY(popoverBecomes(true));
        m_desktop.key(u"Escape"_s);
        QVERIFY(popoverBecomes(false));
    }

    // A watcher appears: the tray icon makes way for the item, which a panel reads and clicks.
    void statusNotifierItem()
    {
        QVERIFY(m_panel.startWatcher(m_watcher));
        QTRY_VERIFY_WITH_TIMEOUT(!(m_item = m_panel.registeredItem()).isEmpty(), 10000);
        QTRY_VERIFY_WITH_TIMEOUT(trayIcon().isEmpty(), 5000);
        QVERIFY(QDBusConnection::sessionBus().connect(
            m_item, u"/StatusNotifierItem"_s, u"org.kde.StatusNotifierItem"_s,
            u"XAyatanaNewLabel"_s, &m_labels, SLOT(changed(QString, QString))));
        QTRY_VERIFY_WITH_TIMEOUT(!label().isEmpty(), 15000);
        QCOMPARE(m_panel.itemProperty(m_item, u"Title"_s).toString(), u"Zel Menu Bar"_s);
        QCOMPARE(m_panel.itemProperty(m_item, u"ItemIsMenu"_s).toBool(), false);
        QCOMPARE(m_panel.itemProperty(m_item, u"IconName"_s).toString(), u"zel-menubar"_s);
        QCOMPARE(m_panel.toolTipTitle(m_item), u"\U0001F3CF  "_s + label());

        QVERIFY(activateTo(true));
        QVERIFY(activateTo(false));
        const auto entries = m_panel.menuEntries(m_item);
        QVERIFY(!entries.isEmpty());
        QCOMPARE(entries.first().second, u"Show Scores"_s);
        m_panel.clickMenuEntry(m_item, entries.first().first);
        QVERIFY(popoverBecomes(true));
        QVERIFY(activateTo(false));
    }

    // The simulator's clock moves on between reloads (F5 in the popover): the toss, a wicket
    // and the result reach dunst, and a click on the result opens today's matches.
    void matchAlerts()
    {
        const auto reloadAt = [&](const QDateTime &moment) {
            simMatchAt(moment);
            m_desktop.key(u"F5"_s);
        };
        QVERIFY(activateTo(true));
        reloadAt(m_toss);
        QTRY_COMPARE_WITH_TIMEOUT(notifications().size(), 1, 10000);
        QVERIFY2(notifications().first().endsWith(u" has started"_s),
                 qPrintable(notifications().first()));
        reloadAt(m_wicket);
        QTRY_COMPARE_WITH_TIMEOUT(notifications().size(), 2, 10000);
        QVERIFY2(notifications().last().startsWith(u"Wicket! "_s),
                 qPrintable(notifications().last()));

        m_desktop.key(u"Escape"_s);
        QVERIFY(popoverBecomes(false));
        simMatchAt(m_end);
        QVERIFY(activateTo(true));
        m_desktop.key(u"F5"_s);
        QTRY_COMPARE_WITH_TIMEOUT(m_desktop.run(u"dunstctl"_s, {u"count"_s, u"displayed"_s}),
                                  u"1"_s, 10000);
        m_desktop.key(u"Escape"_s);
        QVERIFY(popoverBecomes(false));
        m_desktop.run(u"dunstctl"_s, {u"action"_s, u"0"_s});
        QVERIFY(popoverBecomes(true));
        QCOMPARE(notifications().size(), 3);
        QVERIFY2(notifications().last().endsWith(u": result"_s),
                 qPrintable(notifications().last()));
    }

    // Label and tool tip follow the score together, to the title a fresh state object computes
    // from the service; a ball bowled between the two loads waits for the next refresh.
    void titleFollowsTheScore()
    {
        simMatchAt(m_wicket);
        m_desktop.key(u"F5"_s);
        QString expected;
        QTRY_COMPARE_WITH_TIMEOUT(u"\U0001F3CF  "_s + label(), expected = expectedTitle(), 45000);
        QCOMPARE(m_panel.toolTipTitle(m_item), expected);
        // Opened by going live, the row says so as one the user opened would.
        static const QRegularExpression live(u"\tlist item\tLive: [^\t]+\t[^\t]*\tExpanded\n"_s);
        QString shown;
        QTRY_VERIFY2_WITH_TIMEOUT(live.match(shown = tree()).hasMatch(), qPrintable(shown), 10000);
        QCOMPARE(m_labels.received.value(m_labels.received.size() - 1), label());
        QVERIFY(activateTo(false));
    }

    // The watcher goes: the tray icon is back, and its menu quits. The first run's signals have
    // reached the ingest: one new installation, on a desktop that said what it asks for.
    void backToTheTrayAndQuit()
    {
        DesktopSession::stop(m_watcher);
        QTRY_VERIFY_WITH_TIMEOUT(!trayIcon().isEmpty(), 10000);
        QTRY_VERIFY_WITH_TIMEOUT(!ingestBatches().isEmpty(), 15000);
        QCOMPARE(ingestTypes().first(3),
                 (QStringList{u"app.launched"_s, u"TelemetryDeck.Acquisition.newInstallDetected"_s,
                              u"TelemetryDeck.Session.started"_s}));
        const QString today = QDate::currentDate().toString(Qt::ISODate);
        const QJsonArray first = ingestBatches().first();
        for (const QJsonValue record : first) {
            QCOMPARE(record[u"appID"_s].toString(), u"5F0C2A7E-3B91-4D6A-9E28-7C4B1D03A6F5"_s);
            const QJsonObject payload = record[u"payload"_s].toObject();
            QCOMPARE(payload[u"TelemetryDeck.Accessibility.isReduceMotionEnabled"_s], u"true"_s);
            QCOMPARE(payload[u"TelemetryDeck.Accessibility.isInvertColorsEnabled"_s], u"true"_s);
            QCOMPARE(payload[u"TelemetryDeck.Acquisition.firstSessionDate"_s], today);
        }

        m_desktop.click(trayIcon().center(), 3);
        QRect menu;
        QTRY_VERIFY_WITH_TIMEOUT(!(menu = contextMenu()).isEmpty(), 5000);
        // "Quit Zel Menu Bar" is the last entry.
        m_desktop.click(QPoint(menu.left() + 40, menu.bottom() - 10), 1);
        QVERIFY(quitsCleanly(m_app));
        QCOMPARE(stored(u"firstSessionDate"_s).toString(), today);
        DesktopSession::stop(m_trayer);
    }

    // A start with the service down shows an error with "Retry" and no title; the service comes
    // back (its ingest refusing), and Return retries. The match is over by then: no alert.
    void serviceDownAtStart()
    {
        DesktopSession::stop(m_sim);
        QVERIFY(m_panel.startWatcher(m_watcher));
        QVERIFY(startAppWithItem());
        QVERIFY(activateTo(true));
        QString shown;
        QTRY_VERIFY2_WITH_TIMEOUT((shown = tree()).contains(u"\tpush button\tRetry\t"_s),
                                  qPrintable(shown), 20000);
        m_desktop.run(u"import"_s,
                      {u"-window"_s, u"root"_s,
                       QCoreApplication::applicationDirPath() + u"/e2e-service-failure.png"_s});
        QCOMPARE(label(), QString());
        QCOMPARE(m_panel.toolTipTitle(m_item), u"\U0001F3CF"_s);

        m_firstRunBatches = ingestBatches().size();
        QVERIFY(startSim({u"--ingest-status"_s, u"500"_s}));
        simMatchAt(m_end);
        m_desktop.key(u"Return"_s);
        QTRY_VERIFY_WITH_TIMEOUT(!label().isEmpty(), 10000);
        QCOMPARE(notifications().size(), 3);
    }

    // A screen reader finds the open popover, its controls and the finished match's scorecard.
    void screenReader()
    {
        // A row says its state in a word and the match in a sentence, and whether it is open.
        static const QRegularExpression row(
            u"\tlist item\t(Result: [^\t]+)\t[^\t]*\tCollapsed\n"_s);
        QString shown;
        QTRY_VERIFY2_WITH_TIMEOUT(row.match(shown = tree()).hasMatch(), qPrintable(shown), 20000);
        for (const QString &part : {u"1\tframe\tScores\t"_s, u"\tpush button\tRefresh\t"_s,
                                    u"\tpage tab list\t"_s, u"\theading\t\U0001F3CF  Zel "_s})
            QVERIFY2(shown.contains(part), qPrintable(part + u'\n' + shown));
        // Each tab by its name, the open one selected.
        for (const QString &tab : {u"Results"_s, u"Today"_s, u"Fixtures"_s}) {
            const QRegularExpressionMatch found =
                QRegularExpression(u"\tpage tab\t%1\t([^\n]*)"_s.arg(tab)).match(shown);
            QVERIFY2(found.hasMatch(), qPrintable(tab + u'\n' + shown));
            QCOMPARE(found.captured(1).split(u',').contains(u"selected"_s), tab == u"Today"_s);
        }
        QVERIFY2(QRegularExpression(u"\timage\t[A-Z]+ logo\t"_s).match(shown).hasMatch(),
                 qPrintable(shown));
        // Nothing that is not shown, and no heading without its text.
        QStringList unseen;
        for (const QString &line : shown.split(u'\n', Qt::SkipEmptyParts))
            if (!line.section(u'\t', 3, 3).split(u',').contains(u"showing"_s))
                unseen << line;
        QVERIFY2(unseen.isEmpty(), qPrintable(unseen.join(u"\n"_s)));
        QVERIFY2(!shown.contains(u"\theading\t\t"_s), qPrintable(shown));
        // Tab reaches the flat tool buttons of the header, which the reader hears focused.
        m_desktop.key(u"Tab"_s);
        QTRY_COMPARE_WITH_TIMEOUT(focused(), u"push button\tRefresh"_s, 5000);
        m_desktop.key(u"Tab"_s);
        QTRY_COMPARE_WITH_TIMEOUT(focused(), u"push button\tSettings"_s, 5000);
        // On through the tabs to the result, which Space opens into a table of named columns.
        for (int presses = 0; presses < 6 && !focused().startsWith(u"list item"_s); ++presses) {
            const QString before = focused();
            m_desktop.key(u"Tab"_s);
            QTRY_VERIFY_WITH_TIMEOUT(focused() != before, 5000);
        }
        QVERIFY2(focused().startsWith(u"list item\tResult: "_s), qPrintable(tree()));
        m_desktop.key(u"space"_s);
        static const QRegularExpression opened(
            u"\tlist item\tResult: [^\t]+\t[^\t]*focused[^\t]*\tExpanded\n"_s);
        QTRY_VERIFY_WITH_TIMEOUT(opened.match(tree()).hasMatch(), 10000);
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

    // SIGTERM is an ordinary quit; the signals the ingest refused wait on disk.
    void terminateKeepsRefusedSignals()
    {
        m_app.terminate();
        QVERIFY(quitsCleanly(m_app));
        QVERIFY(QFile::exists(cacheFile()));
        QCOMPARE(ingestBatches().size(), m_firstRunBatches);
    }

    // Under a Wayland compositor the app runs on Xwayland, whose window manager places ordinary
    // windows itself; the popup still opens where the item asked. The ingest takes signals
    // again: what waited on disk goes, and three runs made one installation.
    void underWestonAndXwayland()
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

        QVERIFY(simCall("PUT", u"/sim/ingest-status"_s, "200").has_value());
        const qsizetype batches = ingestBatches().size();
        QVERIFY(startAppWithItem());
        QVERIFY(activateTo(true)); // at (600, 30)
        QCOMPARE(popover(), QRect(QPoint(600 - 380 / 2, 30 + 1 + 4), QSize(380, 500)));
        m_desktop.key(u"Escape"_s);
        QVERIFY(popoverBecomes(false));
        QVERIFY(activateTo(true));
        QVERIFY(activateTo(false));

        QTRY_VERIFY_WITH_TIMEOUT(ingestBatches().size() > batches, 15000);
        QTRY_VERIFY(!QFile::exists(cacheFile()));
        QVERIFY(quitThroughMenu());
        const QStringList types = ingestTypes();
        QCOMPARE(types.count(u"TelemetryDeck.Acquisition.newInstallDetected"_s), 1);
        QCOMPARE(types.count(u"app.launched"_s), 3);
        QCOMPARE(types.count(u"TelemetryDeck.Session.started"_s), 3);
        QCOMPARE(StoredSession::decode(stored(u"recentSessions"_s).toByteArray()).size(), 3);
    }
};

QTEST_MAIN(EndToEndTest)
#include "tst_endtoend.moc"
