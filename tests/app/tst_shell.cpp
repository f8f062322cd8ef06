#include "AppcastFeed.h"
#include "AppDelegate.h"
#include "DBusMenuExporter.h"
#include "DesktopNotifier.h"
#include "FixtureServer.h"
#include "LoginItem.h"
#include "MenuBarController.h"
#include "PlasmaPanels.h"
#include "PopoverWindow.h"
#include "SignalQuitter.h"
#include "SingleInstance.h"
#include "StatusIconArt.h"
#include "StatusNotifierItem.h"
#include "TelemetryManagerConfiguration.h"
#include "UpdateChecker.h"

#include <csignal>
#include <QAbstractButton>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusInterface>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDesktopServices>
#include <QMenu>
#include <QMessageBox>
#include <QPointer>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTextDocument>

using namespace Qt::Literals::StringLiterals;

namespace {

QByteArray feed(const QByteArray &items)
{
    return "<?xml version=\"1.0\"?>\n"
           "<rss version=\"2.0\" "
           "xmlns:sparkle=\"http://www.andymatuschak.org/xml-namespaces/sparkle\">"
           "<channel><title>Zel</title>" +
           items + "</channel></rss>";
}

// Takes the pages the app asks the desktop to open.
class PageCatcher : public QObject {
    Q_OBJECT

public:
    QList<QUrl> opened;

public slots:
    void open(const QUrl &url) { opened.append(url); }
};

// A notification server on the test's bus that says what it can do and keeps what it is sent.
class NotificationServer : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")

public:
    QStringList capabilities;
    QList<QVariantList> received; // each Notify's arguments; an image by its header and size

public slots:
    QStringList GetCapabilities() { return capabilities; }
    uint Notify(const QString &app, uint replaces, const QString &icon, const QString &summary,
                const QString &body, const QStringList &actions, const QVariantMap &hints,
                int timeout)
    {
        QStringList hinted;
        for (auto hint = hints.cbegin(); hint != hints.cend(); ++hint)
            hinted << hint.key() + u' ' + hint.value().toString();
        if (hints.contains(u"image-data"_s)) {
            const auto image = hints[u"image-data"_s].value<QDBusArgument>();
            int width = 0, height = 0, stride = 0, bits = 0, channels = 0;
            bool alpha = false;
            QByteArray pixels;
            image.beginStructure();
            image >> width >> height >> stride >> alpha >> bits >> channels >> pixels;
            image.endStructure();
            hinted.last() += QString::asprintf("%d %d %d %d %d %d %lld", width, height, stride,
                                               int(alpha), bits, channels, pixels.size());
        }
        received.append({app, replaces, icon, summary, body, actions, hinted.join(u' '), timeout});
        return uint(received.size());
    }

signals:
    void ActionInvoked(uint id, const QString &action);
};

// A StatusNotifierWatcher on the test's bus that keeps who registered with it.
class ItemWatcher : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")

public:
    QStringList registered;
    Q_SLOT void RegisterStatusNotifierItem(const QString &item) { registered.append(item); }
    Q_SIGNAL void StatusNotifierItemUnregistered(const QString &item);
};

} // namespace

// The shell's own rules, off screen and on a session bus of the test's own: placement, the
// item's label, the update feed, the menus, one instance per session and signals.
class ShellTest : public QObject {
    Q_OBJECT

    QTemporaryDir m_home;

    // A controller whose service, update feed and files are the test's own.
    struct ControllerRig {
        FixtureServer service;
        QTemporaryDir folder;
        QString stamp = folder.filePath(u"updates.ini"_s);
        UpdateChecker updater{service.baseURL() + u"/appcast.xml"_s, u"1.2.3"_s, stamp};
        MenuBarController controller{{service.baseURL(), u"https://zel.example"_s, u"1.2.3"_s,
                                      folder.filePath(u"settings.ini"_s)},
                                     updater};
    };

    // Runs the event loop with the action queued: 0 when something quits it, 1 after 5 s.
    static int exitCodeAfter(const std::function<void()> &action)
    {
        QTimer::singleShot(0, action);
        QTimer guard;
        guard.setSingleShot(true);
        connect(&guard, &QTimer::timeout, [] { QCoreApplication::exit(1); });
        guard.start(5000);
        return QCoreApplication::exec();
    }

private slots:
    // The controller's logo cache and update stamp go to folders of the test's own.
    void initTestCase()
    {
        qputenv("XDG_CACHE_HOME", m_home.filePath(u"cache"_s).toUtf8());
        qputenv("XDG_CONFIG_HOME", m_home.filePath(u"config"_s).toUtf8());
    }

    // Places no real host of the desktop tests gives. A null anchor is a host that gave no
    // point: the popover hangs from the tray's corner. A panel is the window that holds the
    // item, where it floats off the screen's edge or covers more than it reserves.
    void placement_data()
    {
        QTest::addColumn<QRect>("anchor");
        QTest::addColumn<QRect>("available");
        QTest::addColumn<QRect>("panel");
        QTest::addColumn<QPoint>("expected");
        // The screen below a 24 px panel at the top: (0, 24) to (1279, 799).
        const QRect screen(0, 24, 1280, 776);
        const QRect overBottomPanel(0, 0, 1280, 760);
        QTest::addRow("above an icon at the bottom of the area")
            << QRect(600, 776, 24, 24) << screen << QRect() << QPoint(421, 272);
        QTest::addRow("a screen smaller than the popover shows its top left")
            << QRect(100, 0, 24, 24) << QRect(0, 0, 320, 240) << QRect() << QPoint(0, 0);
        QTest::addRow("no point, a top bar") << QRect() << screen << QRect() << QPoint(900, 24);
        QTest::addRow("no point, a bottom panel")
            << QRect() << overBottomPanel << QRect() << QPoint(900, 260);
        QTest::addRow("no point, no panel")
            << QRect() << QRect(0, 0, 1280, 800) << QRect() << QPoint(900, 0);
        const QRect point(900, 770, 1, 1);
        QTest::addRow("over a floating bottom panel")
            << point << overBottomPanel << QRect(0, 744, 1280, 56) << QPoint(710, 244);
        QTest::addRow("under a floating top panel")
            << QRect(600, 16, 1, 1) << screen << QRect(0, 0, 1280, 48) << QPoint(410, 48);
        QTest::addRow("beside a left panel") << QRect(20, 400, 1, 1) << QRect(40, 0, 1240, 800)
                                             << QRect(0, 0, 48, 800) << QPoint(48, 300);
        QTest::addRow("beside a right panel") << QRect(1260, 100, 1, 1) << QRect(0, 0, 1240, 800)
                                              << QRect(1232, 0, 48, 800) << QPoint(852, 105);
    }

    void placement()
    {
        QFETCH(QRect, anchor);
        QFETCH(QRect, available);
        QFETCH(QRect, panel);
        if (!panel.isNull())
            available = PopoverWindow::clearOfPanel(available, panel, {0, 0, 1280, 800});
        const QRect at =
            anchor.isNull() ? PopoverWindow::trayCorner({0, 0, 1280, 800}, available) : anchor;
        const QPoint placed = PopoverWindow::placement(at, PopoverWindow::size, available);
        QTEST(placed, "expected");
        QVERIFY(available.width() < 380 || available.contains(QRect(placed, PopoverWindow::size)));
    }

    // Plasma's panels as surfaces: a floating one's reaches 8 px beyond it on each side.
    void plasmaPanelSurfaces()
    {
        QCOMPARE(
            PlasmaPanels::surfaces(u"bottom 40 true 0 0 1280 800\nnone\ntop 24 false 1280 0 "
                                   "1920 1080\nleft 48 true 0 0 1280 800\nright 30 false 0 0 "
                                   "1280 800"_s),
            (QList<QRect>{
                {0, 744, 1280, 56}, {1280, 0, 1920, 24}, {0, 0, 64, 800}, {1250, 0, 30, 800}}));
    }

    // DO_NOT_TRACK=1, the convention across tools, turns the analytics off; nothing else does.
    void doNotTrack()
    {
        for (const auto &[value, off] : {std::pair{"1", true}, {"0", false}, {"", false}}) {
            QProcessEnvironment environment;
            environment.insert(u"DO_NOT_TRACK"_s, QString::fromLatin1(value));
            const AppDelegate::Analytics analytics{u"http://127.0.0.1:9/"_s, u"APP"_s};
            QCOMPARE(AppDelegate::analyticsConfiguration(analytics, {}, environment)
                         ->analyticsDisabled.get(),
                     off);
        }
    }

    // A watcher that drops the item, as GNOME's extension does when its setup fails, is asked
    // again, five times at most; another item's news is not the item's.
    void droppedItemRegistersAgain()
    {
        ItemWatcher watcher;
        QDBusConnection bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"w"_s);
        const auto leave = qScopeGuard([] { QDBusConnection::disconnectFromBus(u"w"_s); });
        QVERIFY(bus.registerObject(u"/StatusNotifierWatcher"_s, &watcher,
                                   QDBusConnection::ExportAllContents));
        QVERIFY(bus.registerService(u"org.kde.StatusNotifierWatcher"_s));
        StatusNotifierItem item([] { return QList<MenuEntry>(); }, {});
        const QString ours =
            u"org.kde.StatusNotifierItem-%1-1"_s.arg(QCoreApplication::applicationPid());
        QTRY_COMPARE(watcher.registered, QStringList{ours});
        // Counted once the item answers a call the watcher's connection made after the drops.
        const auto registeredAfter = [&](const QStringList &dropped) {
            for (const QString &id : dropped)
                emit watcher.StatusNotifierItemUnregistered(id);
            QDBusMessage scroll = QDBusMessage::createMethodCall(
                QDBusConnection::sessionBus().baseService(), u"/StatusNotifierItem"_s,
                u"org.kde.StatusNotifierItem"_s, u"Scroll"_s);
            QDBusPendingCallWatcher call(bus.asyncCall(scroll << 0 << u"vertical"_s));
            return QSignalSpy(&call, &QDBusPendingCallWatcher::finished).wait()
                       ? watcher.registered.size()
                       : -1;
        };
        QCOMPARE(registeredAfter({u"org.kde.StatusNotifierItem-1-1"_s, ours + u"0"_s,
                                  ours + u"/StatusNotifierItem"_s, ours}),
                 3);
        QCOMPARE(registeredAfter({ours, ours, ours, ours}), 6);
    }

    // Hosts that draw no label show only the icon: it carries the state, as the tray icon does.
    void iconCarriesTheState_data()
    {
        using State = StatusTitle::State;
        QTest::addColumn<int>("state");
        QTest::addColumn<bool>("offline");
        QTest::addRow("live") << int(State::Live) << false;
        QTest::addRow("delayed, offline") << int(State::Delayed) << true;
    }

    void iconCarriesTheState()
    {
        QFETCH(int, state);
        QFETCH(bool, offline);
        StatusNotifierItem item([] { return QList<MenuEntry>(); }, m_home.filePath(u"icons"_s));
        item.setTitle({u"\U0001F3CF  A"_s, StatusTitle::State(state)});
        item.setOfflineNote(offline ? u"Offline"_s : QString());
        // Each size as ARGB bytes in network order, row by row.
        QList<int> sides;
        for (const DBusImage &sent : item.iconPixmap()) {
            sides << sent.width;
            const QImage drawn =
                StatusIconArt::image(StatusTitle::State(state), offline, sent.width)
                    .convertToFormat(QImage::Format_ARGB32);
            QCOMPARE(sent.pixels.size(), sent.width * sent.height * 4);
            for (int at = 0; at < sent.width * sent.height; ++at) {
                const auto byte = [&](int k) { return uchar(sent.pixels[at * 4 + k]); };
                QCOMPARE(qRgba(byte(1), byte(2), byte(3), byte(0)),
                         drawn.pixel(at % sent.width, at / sent.width));
            }
        }
        QCOMPARE(sides, (QList<int>{16, 22, 32, 48}));
        // Hosts that draw the named icon show the same picture.
        const QImage named(
            u"%1/hicolor/22x22/apps/%2.png"_s.arg(item.iconThemePath(), item.iconName()));
        QCOMPARE(named.convertToFormat(QImage::Format_ARGB32),
                 StatusIconArt::image(StatusTitle::State(state), offline, 22)
                     .convertToFormat(QImage::Format_ARGB32));
    }

    // What a panel reads from the item: the title without the bat as the label, the whole
    // title, as plain text, in the tool tip, and there what its red circle means in words.
    void itemPublishesTheTitle_data()
    {
        using State = StatusTitle::State;
        QTest::addColumn<QString>("title");
        QTest::addColumn<int>("state");
        QTest::addColumn<QString>("label");
        QTest::addColumn<QString>("words");
        QTest::addColumn<QString>("spoken");
        QTest::addRow("live") << u"\U0001F3CF  NTH \U0001F534 45/2 (6.3)"_s << int(State::Live)
                              << u"NTH \U0001F534 45/2 (6.3)"_s << u"Live"_s
                              << u"Zel Menu Bar, Live: NTH 45/2 (6.3)"_s;
        QTest::addRow("result") << u"\U0001F3CF  NTH won by 5 wkts"_s << int(State::Quiet)
                                << u"NTH won by 5 wkts"_s << QString()
                                << u"Zel Menu Bar, NTH won by 5 wkts"_s;
    }

    void itemPublishesTheTitle()
    {
        QFETCH(QString, title);
        QFETCH(int, state);
        QFETCH(QString, label);
        StatusNotifierItem item([] { return QList<MenuEntry>(); }, {});
        QSignalSpy announced(&item, &StatusNotifierItem::XAyatanaNewLabel);
        QSignalSpy icons(&item, &StatusNotifierItem::NewIcon);
        QSignalSpy newTip(&item, &StatusNotifierItem::NewToolTip);
        // Nothing is announced before a host reads; the first read finds no label, which follows
        // with the icon and tool tip (only such news reliably reaches GNOME's extension's panel).
        item.setTitle({u"\U0001F3CF  Before"_s});
        QCOMPARE(announced.count(), 0);
        icons.clear();
        QDBusInterface host(QDBusConnection::sessionBus().baseService(), u"/StatusNotifierItem"_s,
                            u"org.kde.StatusNotifierItem"_s);
        QCOMPARE(host.property("XAyatanaLabel").toString(), QString());
        QTRY_COMPARE(announced.count(), 1);
        QCOMPARE(icons.count() + newTip.count(), 3);
        QCOMPARE(announced[0][0].toString() + host.property("XAyatanaLabel").toString(),
                 u"BeforeBefore"_s);
        icons.clear();
        item.setTitle({});
        QCOMPARE(host.property("IconAccessibleDesc").toString(), u"Zel Menu Bar"_s);
        announced.clear();
        newTip.clear();
        // The same text in another state changes the tool tip, not the label.
        item.setTitle({title, StatusTitle::State(state == 0 ? 1 : 0)});
        item.setTitle({title, StatusTitle::State(state)});
        item.setTitle({title, StatusTitle::State(state)});
        QCOMPARE(announced.count(), 1);
        QCOMPARE(newTip.count(), 2);
        // GNOME's extension reads the accessible name again on the icon's news, text or state.
        QCOMPARE(icons.count(), 3);
        QTEST(host.property("IconAccessibleDesc").toString(), "spoken");
        QCOMPARE(host.property("Title").toString(), u"Zel Menu Bar"_s);
        QCOMPARE(announced.first().first().toString(), label);
        QCOMPARE(item.label(), label);
        QTextDocument tip;
        tip.setHtml(item.toolTip().title);
        QCOMPARE(tip.toPlainText(), title.simplified()); // markup folds the double space
        QTEST(item.toolTip().description, "words");
        item.setOfflineNote(u"<Offline>"_s);
        QCOMPARE(newTip.count(), 3);
        QVERIFY(item.toolTip().description.endsWith(u"&lt;Offline&gt;"_s));
    }

    // Hosts that do not know the click point send (0, 0); any other point is one, and the item
    // is kept there for the openings that come with no point.
    void activateTellsTheClickPoint()
    {
        StatusNotifierItem item([] { return QList<MenuEntry>(); }, {});
        QSignalSpy clicked(&item, &StatusNotifierItem::leftClicked);
        QCOMPARE(item.anchor(), QRect());
        for (const QPoint at : {QPoint(0, 0), QPoint(0, 9), QPoint(9, 0), QPoint(0, 0)})
            item.Activate(at.x(), at.y());
        QCOMPARE((QList{clicked[0][0].toRect(), clicked[1][0].toRect(), clicked[2][0].toRect()}),
                 (QList{QRect(), QRect(0, 9, 1, 1), QRect(9, 0, 1, 1)}));
        QCOMPARE(item.anchor(), QRect(9, 0, 1, 1));
        item.ContextMenu(30, 7);
        QCOMPARE(item.anchor(), QRect(30, 7, 1, 1));
    }

    // What a notification carries follows what the server says it can do; the notes sent
    // before it answered wait for it, and only a click on one of ours shows the scores.
    void notificationsFollowTheServer_data()
    {
        QTest::addColumn<QStringList>("capabilities");
        QTest::addColumn<QString>("body");
        QTest::addColumn<QStringList>("actions");
        QTest::addColumn<QString>("image"); // its header and size, if one is sent
        QTest::newRow("a plain server") << QStringList{u"icon-static"_s} << u"by 4 & more"_s
                                        << QStringList() << u" image-data 8 4 32 1 8 4 128"_s;
        QTest::newRow("markup and actions")
            << QStringList{u"body-markup"_s, u"actions"_s} << u"by 4 &amp; more"_s
            << QStringList{u"default"_s, u"Show Scores"_s} << QString();
    }

    void notificationsFollowTheServer()
    {
        QFETCH(QStringList, capabilities);
        NotificationServer server;
        server.capabilities = capabilities;
        QDBusConnection bus =
            QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"notes"_s);
        const auto unpublish = qScopeGuard([] { QDBusConnection::disconnectFromBus(u"notes"_s); });
        QVERIFY(bus.registerObject(u"/org/freedesktop/Notifications"_s, &server,
                                   QDBusConnection::ExportAllSlots |
                                       QDBusConnection::ExportAllSignals));
        QVERIFY(bus.registerService(u"org.freedesktop.Notifications"_s));
        DesktopNotifier notifier;
        QSignalSpy clicked(&notifier, &DesktopNotifier::defaultActionInvoked);
        notifier.notify(u"NTH <b>won</b>"_s, u"by 4 & more"_s, QImage(8, 4, QImage::Format_ARGB32));
        notifier.notify(u"second"_s, {});
        QTRY_COMPARE(server.received.size(), 2);
        QFETCH(QString, body);
        QFETCH(QStringList, actions);
        QFETCH(QString, image);
        QCOMPARE(server.received.first(),
                 (QVariantList{u"Zel Menu Bar"_s, 0u, u"zel-menubar"_s, u"NTH <b>won</b>"_s, body,
                               actions, u"desktop-entry example.zel.MenuBar"_s + image, -1}));
        notifier.notify(u"third"_s, {}); // the server's answer is kept
        QTRY_COMPARE(server.received.size(), 3);
        emit server.ActionInvoked(7, u"default"_s); // another app's
        emit server.ActionInvoked(2, u"default"_s);
        QTRY_COMPARE(clicked.count(), 1);
        QTest::qWait(100);
        QCOMPARE(clicked.count(), 1);
    }

    void updateDialogShowsTheFeedsWordsLiterally()
    {
        const UpdateCheck newer{
            UpdateCheck::NewerVersion, u"9.9<h1>Free</h1><img src=x>"_s, {}, {}};
        QTextDocument shown;
        shown.setHtml(MenuBarController::updateDetail(newer, u"1.4"_s));
        QCOMPARE(shown.toPlainText(),
                 u"Zel Menu Bar 9.9<h1>Free</h1><img src=x> is now available — you have 1.4."_s);
    }

    void newestRelease_data()
    {
        QTest::addColumn<QByteArray>("xml");
        QTest::addColumn<QString>("version");
        QTest::addColumn<QString>("page");
        QTest::addRow("elements, highest wins whatever the order")
            << feed("<item><sparkle:shortVersionString>0.9.1</sparkle:shortVersionString>"
                    "<link>https://zel.example/0.9.1</link></item>"
                    "<item><sparkle:shortVersionString>0.10.0</sparkle:shortVersionString>"
                    "<link>https://zel.example/0.10</link></item>"
                    "<item><sparkle:shortVersionString>0.2</sparkle:shortVersionString></item>")
            << u"0.10.0"_s << u"https://zel.example/0.10"_s;
        QTest::addRow("enclosure attributes, download as the page")
            << feed("<item><enclosure url='https://zel.example/zel-1.2.deb' "
                    "sparkle:version='120' sparkle:shortVersionString='1.2'/></item>")
            << u"1.2"_s << u"https://zel.example/zel-1.2.deb"_s;
        QTest::addRow("build number when there is no short version")
            << feed("<item><sparkle:version>7</sparkle:version>"
                    "<sparkle:releaseNotesLink>https://zel.example/notes</sparkle:releaseNotesLink>"
                    "</item>")
            << u"7"_s << u"https://zel.example/notes"_s;
        QTest::addRow("an enclosure's build number, and only what is under the feed's channel")
            << feed("<item><enclosure sparkle:version='3' url='https://zel.example/3.deb'/>"
                    "</item></channel><other><channel><item><sparkle:version>9.9"
                    "</sparkle:version></item></channel></other><channel>")
            << u"3"_s << u"https://zel.example/3.deb"_s;
        QTest::addRow("a page that is not on the web is dropped")
            << feed("<item><sparkle:shortVersionString>2.0</sparkle:shortVersionString>"
                    "<link>file:///etc/passwd</link></item>")
            << u"2.0"_s << QString();
    }

    void newestRelease()
    {
        QFETCH(QByteArray, xml);
        QFETCH(QString, version);
        QFETCH(QString, page);
        const Result<AppcastRelease> newest = AppcastFeed::newest(xml);
        QVERIFY2(newest.isOk(), qPrintable(newest.isOk() ? QString() : newest.error().description));
        QCOMPARE(newest.value().version, version);
        QCOMPARE(newest.value().page.toString(), page);
    }

    void badFeeds_data()
    {
        QTest::addColumn<QByteArray>("xml");
        QTest::addColumn<QString>("error");
        QTest::addRow("html") << QByteArray("<html><body>moved</body></html>")
                              << u"The update feed is not an RSS feed."_s;
        QTest::addRow("no items") << feed("") << u"The update feed lists no version."_s;
        QTest::addRow("cut off") << feed("<item>").left(120)
                                 << u"The update feed is not valid XML"_s;
    }

    void badFeeds()
    {
        QFETCH(QByteArray, xml);
        QFETCH(QString, error);
        const Result<AppcastRelease> newest = AppcastFeed::newest(xml);
        QVERIFY(!newest.isOk());
        QVERIFY2(newest.error().description.startsWith(error),
                 qPrintable(newest.error().description));
    }

    void updateCheckOverHttp_data()
    {
        QTest::addColumn<int>("status");
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<int>("outcome");
        QTest::addColumn<QString>("detail");
        const QByteArray newer =
            feed("<item><sparkle:shortVersionString>9.0</sparkle:shortVersionString></item>");
        const QByteArray same =
            feed("<item><sparkle:shortVersionString>1.4.0</sparkle:shortVersionString></item>");
        QTest::addRow("newer") << 200 << newer << int(UpdateCheck::NewerVersion) << u"9.0"_s;
        QTest::addRow("same") << 200 << same << int(UpdateCheck::UpToDate) << u"1.4.0"_s;
        QTest::addRow("server error") << 503 << newer << int(UpdateCheck::Failed) << u"HTTP 503"_s;
    }

    void updateCheckOverHttp()
    {
        QFETCH(int, status);
        QFETCH(QByteArray, body);
        QFETCH(int, outcome);
        QFETCH(QString, detail);
        FixtureServer server;
        server.script(u"/appcast.xml"_s,
                      {status, body, {}, FixtureResponse::Delivery::Whole, "application/rss+xml"});
        UpdateChecker checker(server.baseURL() + u"/appcast.xml"_s, u"1.4"_s);
        QSignalSpy checked(&checker, &UpdateChecker::checked);
        checker.check();
        checker.check(); // a check already under way is not started twice
        QVERIFY(checked.wait());
        QCOMPARE(server.requestCount(u"/appcast.xml"_s), 1);
        const auto result = checked.first().first().value<UpdateCheck>();
        QCOMPARE(int(result.outcome), outcome);
        QCOMPARE(result.outcome == UpdateCheck::Failed ? result.error : result.version, detail);
    }

    void menuProperties_data()
    {
        QTest::addColumn<QString>("label");
        QTest::addColumn<bool>("enabled");
        QTest::addColumn<QKeySequence>("shortcut");
        QTest::addColumn<QVariantMap>("expected");
        QTest::addRow("separator")
            << QString() << true << QKeySequence() << QVariantMap{{u"type"_s, u"separator"_s}};
        QTest::addRow("disabled") << u"Zel Menu Bar v1.0"_s << false << QKeySequence()
                                  << QVariantMap{{u"label"_s, u"Zel Menu Bar v1.0"_s},
                                                 {u"enabled"_s, false}};
        QTest::addRow("underscore is not a mnemonic")
            << u"a_b"_s << true << QKeySequence() << QVariantMap{{u"label"_s, u"a__b"_s}};
        QTest::addRow("shortcut") << u"Quit Zel Menu Bar"_s << true
                                  << QKeySequence(Qt::CTRL | Qt::Key_Q)
                                  << QVariantMap{{u"label"_s, u"Quit Zel Menu Bar"_s},
                                                 {u"shortcut"_s,
                                                  QVariant::fromValue(
                                                      QList<QStringList>{{u"Control"_s, u"Q"_s}})}};
    }

    void menuProperties()
    {
        QFETCH(QString, label);
        QFETCH(bool, enabled);
        QFETCH(QKeySequence, shortcut);
        QFETCH(QVariantMap, expected);
        QCOMPARE(DBusMenuExporter::propertiesOf(MenuEntry{label, enabled, shortcut, {}}), expected);
    }

    void exportedMenuRunsEntriesAndFollowsChanges()
    {
        QStringList ran;
        QString firstLabel = u"One"_s;
        DBusMenuExporter menu([&] {
            return QList<MenuEntry>{{firstLabel, true, {}, [&] { ran << u"one"_s; }},
                                    MenuEntry::separator(),
                                    {u"Off"_s, false, {}, [&] { ran << u"off"_s; }}};
        });
        DBusMenuLayoutItem layout;
        const uint revision = menu.GetLayout(0, -1, {u"label"_s}, layout);
        QCOMPARE(layout.children.size(), 3);
        QCOMPARE(layout.children[0].properties, (QVariantMap{{u"label"_s, u"One"_s}}));
        QVERIFY(layout.children[1].properties.isEmpty()); // only "label" was asked for

        menu.Event(1, u"clicked"_s, QDBusVariant(0), 0);
        menu.Event(3, u"clicked"_s, QDBusVariant(0), 0); // disabled
        menu.Event(1, u"hovered"_s, QDBusVariant(0), 0);
        menu.Event(9, u"clicked"_s, QDBusVariant(0), 0); // no such item
        QTRY_COMPARE(ran, QStringList{u"one"_s});
        QSignalSpy opened(&menu, &DBusMenuExporter::opened);
        menu.Event(1, u"opened"_s, QDBusVariant(0), 0); // a submenu's
        menu.Event(0, u"opened"_s, QDBusVariant(0), 0);
        QCOMPARE(opened.count(), 1);

        QSignalSpy updated(&menu, &DBusMenuExporter::LayoutUpdated);
        QVERIFY(!menu.AboutToShow(0)); // nothing changed
        firstLabel = u"Uno"_s;
        QVERIFY(menu.AboutToShow(0));
        QCOMPARE(updated.count(), 1);
        QCOMPARE(menu.GetLayout(0, 0, {}, layout), revision + 1);
        QVERIFY(layout.children.isEmpty()); // depth 0: the root alone
    }

    // The menus the controller builds, and the pages their entries open.
    void controllerMenus()
    {
        ControllerRig rig;
        const QList<MenuEntry> entries = rig.controller.exportedMenuEntries();
        QStringList labels;
        for (const MenuEntry &entry : entries)
            labels << entry.label + (entry.enabled ? u""_s : u" [disabled]"_s);
        QCOMPARE(labels, (QStringList{u"Show Scores"_s,
                                      u"Zel Menu Bar v1.2.3 [disabled]"_s,
                                      {},
                                      u"Check for Updates…"_s,
                                      {},
                                      u"Feedback / Report a Bug"_s,
                                      u"\u2665 Support Me"_s,
                                      {},
                                      u"Quit Zel Menu Bar"_s}));
        QCOMPARE(entries.last().shortcut, QKeySequence(Qt::CTRL | Qt::Key_Q));
        QCOMPARE(rig.controller.contextMenuEntries().size(), entries.size() - 1);

        PageCatcher pages;
        QDesktopServices::setUrlHandler(u"https"_s, &pages, "open");
        entries[5].trigger();
        entries[6].trigger();
        QDesktopServices::unsetUrlHandler(u"https"_s);
        QCOMPARE(pages.opened, (QList<QUrl>{QUrl(u"https://zel.example/zel/?feedback=1"_s),
                                            QUrl(u"https://zel.example/zel/#donate"_s)}));
        QVERIFY(MenuBarController::pageURL(u"not a url"_s, u"/zel/#donate"_s).isEmpty());
        QCOMPARE(MenuBarController::versionLabel(QString()), u"Zel Menu Bar v?"_s);
    }

    // A right click on the status item while the popover is open closes it and opens the menu;
    // Ctrl+Q in that menu quits.
    void rightClickWhilePopoverIsOpenThenCtrlQ()
    {
        ControllerRig rig;
        rig.controller.togglePopover(QRect(600, 0, 24, 24));
        QWindow *popover = QGuiApplication::topLevelWindows().value(0);
        for (QWindow *window : QGuiApplication::topLevelWindows())
            if (window->title() == u"Scores"_s)
                popover = window;
        QTRY_VERIFY(popover->isVisible());
        QTest::mouseClick(popover, Qt::LeftButton, {}, popover->mapFromGlobal(QPoint(610, 10)));
        QTRY_VERIFY(!popover->isVisible());
        QVERIFY(!QApplication::activePopupWidget()); // a left click on the item only closes it

        QTest::qWait(400); // a click on the item soon after counts as the closing click
        rig.controller.togglePopover(
            QRect(605, 12, 1, 1)); // a host that tells only its click point
        rig.controller.togglePopover(QRect(605, 12, 1, 1)); // the same click, told twice
        QTRY_VERIFY(popover->isVisible());
        QTest::mousePress(popover, Qt::RightButton, {}, popover->mapFromGlobal(QPoint(610, 10)));
        QTRY_VERIFY(qobject_cast<QMenu *>(QApplication::activePopupWidget()));
        QVERIFY(!popover->isVisible());

        QCOMPARE(exitCodeAfter([] {
                     QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Q,
                                     Qt::ControlModifier);
                 }),
                 0);
    }

    // A newer version found by a scheduled look is announced once, across launches; a look the
    // user asked for only answers in its dialog, whose buttons are never doubled.
    void newerVersionIsAnnouncedOnce()
    {
        ControllerRig rig;
        rig.service.script(
            u"/appcast.xml"_s,
            {200, feed("<item><title>2.0</title><sparkle:version>2.0</sparkle:version>"
                       "<link>https://zel.example/download</link></item>")});
        QSignalSpy announced(&rig.updater, &UpdateChecker::newerVersionFound);
        QSignalSpy checked(&rig.updater, &UpdateChecker::checked);
        rig.updater.check();
        QTRY_COMPARE(checked.count(), 1);
        QCOMPARE(announced.count(), 0);
        rig.updater.scheduledCheck();
        QTRY_COMPARE(checked.count(), 2);
        rig.updater.scheduledCheck();
        QTRY_COMPARE(checked.count(), 3);
        QCOMPARE(announced.count(), 1);
        QCOMPARE(announced.first().first().value<UpdateCheck>().version, u"2.0"_s);
        const QDateTime last =
            QSettings(rig.stamp, QSettings::IniFormat).value(u"lastScheduledCheck"_s).toDateTime();
        QVERIFY(qAbs(last.secsTo(QDateTime::currentDateTimeUtc())) < 60);

        UpdateChecker nextLaunch(rig.service.baseURL() + u"/appcast.xml"_s, u"1.2.3"_s, rig.stamp);
        QSignalSpy announcedAgain(&nextLaunch, &UpdateChecker::newerVersionFound);
        QSignalSpy checkedAgain(&nextLaunch, &UpdateChecker::checked);
        nextLaunch.scheduledCheck();
        QTRY_COMPARE(checkedAgain.count(), 1);
        QCOMPARE(announcedAgain.count(), 0);

        QApplication::setWindowIcon(QPixmap(20, 20));
        rig.controller.checkForUpdates();
        QTRY_COMPARE(checked.count(), 4);
        rig.controller.checkForUpdates();
        QMessageBox *dialog = nullptr;
        for (QWidget *widget : QApplication::topLevelWidgets())
            if (auto *box = qobject_cast<QMessageBox *>(widget))
                dialog = box;
        QVERIFY(dialog && dialog->isVisible());
        const auto buttons = [dialog] {
            QStringList texts;
            for (QAbstractButton *button : dialog->buttons())
                texts << button->text();
            texts.sort();
            return texts;
        };
        QCOMPARE(dialog->text() + u' ' + buttons().join(u','), u"Checking for updates… Cancel"_s);
        QTRY_COMPARE(checked.count(), 5);
        QCOMPARE(buttons(), (QStringList{u"Later"_s, u"Open Download Page"_s}));
        const QPointer<QMessageBox> closed(dialog);
        dialog->close();
        QTRY_VERIFY(!closed); // closing frees it
    }

    // The user's autostart entry, alone or over one the system installs for everyone.
    void startAtLogin_data()
    {
        QTest::addColumn<bool>("systemEntry");
        QTest::newRow("user entry only") << false;
        QTest::newRow("over a system entry") << true;
    }

    void startAtLogin()
    {
        QFETCH(bool, systemEntry);
        QTemporaryDir home;
        const QString user = home.filePath(u"user/autostart"_s);
        const QString system = home.filePath(u"system/autostart"_s);
        if (systemEntry) {
            QVERIFY(QDir().mkpath(system));
            QVERIFY(QFile::copy(u":/zel-menubar-autostart.desktop"_s,
                                system + u'/' + LoginItem::fileName));
        }
        const LoginItem item(user, {system}, u"/opt/zel \"menu\"/zel-menubar"_s);
        QCOMPARE(item.isOn(), systemEntry);

        QVERIFY(item.set(true));
        QVERIFY(item.isOn());
        QFile written(user + u'/' + LoginItem::fileName);
        QVERIFY(written.open(QIODevice::ReadOnly));
        const QByteArray entry = written.readAll();
        QVERIFY2(entry.contains("\nExec=\"/opt/zel \\\"menu\\\"/zel-menubar\"\n"),
                 entry.constData());
        QVERIFY(entry.contains("\nIcon=zel-menubar\n"));
        written.close();

        QVERIFY(item.set(false));
        QVERIFY(!item.isOn());
        QCOMPARE(QFile::exists(written.fileName()), systemEntry); // hidden, not removed
    }

    void oneInstancePerSession()
    {
        QTemporaryDir runtime;
        // The end-to-end journey launches a second copy; here a socket left behind by a crashed
        // copy does not keep the next one out.
        QFile stale(runtime.filePath(u"stale.socket"_s));
        QVERIFY(stale.open(QIODevice::WriteOnly));
        stale.close();
        SingleInstance afterCrash(stale.fileName());
        QVERIFY(afterCrash.claim());
    }

    void terminationSignalsQuitTheLoop_data()
    {
        QTest::addColumn<int>("signal"); // SIGTERM: the end-to-end journey
        QTest::addRow("SIGINT") << SIGINT;
        QTest::addRow("SIGHUP") << SIGHUP;
    }

    void terminationSignalsQuitTheLoop()
    {
        QFETCH(int, signal);
        SignalQuitter quitter;
        QCOMPARE(exitCodeAfter([signal] { std::raise(signal); }), 0);
    }
};

QTEST_MAIN(ShellTest)
#include "tst_shell.moc"
