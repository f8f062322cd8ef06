#include "CryptoHashing.h"
#include "DefaultSignalPayload.h"
#include "DesktopAccessibility.h"
#include "DurationSignalTracker.h"
#include "FixtureServer.h"
#include "SessionManager.h"
#include "SignalManager.h"
#include "TelemetryDeck.h"
#include "TelemetryManager.h"
#include "TelemetryManagerConfiguration.h"

#include <mutex>
#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusVariant>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>
#include <QTimeZone>

using namespace std::chrono_literals;
using namespace Qt::Literals::StringLiterals;

namespace {

// What the client logged, from any thread.
class LogLines {
public:
    LogHandler handler()
    {
        return {LogLevel::Debug, [this](LogLevel level, const QString &message) {
                    std::lock_guard locker(m_lock);
                    m_lines.append(logLevelDescription(level) + u' ' + message);
                }};
    }
    QStringList lines() const
    {
        std::lock_guard locker(m_lock);
        return m_lines;
    }
    QStringList errors() const { return lines().filter(QRegularExpression(u"^ERROR "_s)); }
    void clear()
    {
        std::lock_guard locker(m_lock);
        m_lines.clear();
    }

private:
    mutable std::mutex m_lock;
    QStringList m_lines;
};

SignalPostBody record(int n)
{
    return {QDateTime(QDate(2026, 11, 22), QTime(12, 0), QTimeZone::utc()).addSecs(n),
            u"APP"_s,
            u"user"_s,
            u"SESSION"_s,
            u"signal.%1"_s.arg(n),
            n % 2 ? std::optional(n / 2.0) : std::nullopt,
            {{u"n"_s, QString::number(n)}},
            u"false"_s};
}

// The signal types of every record the ingest received, batch by batch.
QList<QStringList> receivedTypes(const FixtureServer &ingest)
{
    QList<QStringList> batches;
    for (const QByteArray &body : ingest.requestBodies()) {
        QStringList types;
        for (const QJsonValue value : QJsonDocument::fromJson(body).array())
            types.append(value[u"type"_s].toString());
        batches.append(types);
    }
    return batches;
}

// The desktop portal's settings as GNOME publishes them: animations off, inverted lightness on.
class FakePortal : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public slots:
    QDBusVariant Read(const QString &group, const QString &key)
    {
        const QMap<QString, bool> known{
            {u"org.gnome.desktop.interface/enable-animations"_s, false},
            {u"org.gnome.desktop.a11y.magnifier/invert-lightness"_s, true}};
        const QString name = group + u'/' + key;
        if (!known.contains(name))
            sendErrorReply(u"org.freedesktop.portal.Error.NotFound"_s, u"no such setting"_s);
        // Wrapped twice, as older portals answer.
        return QDBusVariant(QVariant::fromValue(QDBusVariant(known.value(name))));
    }

signals:
    void SettingChanged(const QString &group, const QString &key, const QDBusVariant &value);
};

} // namespace

class AnalyticsTest : public QObject {
    Q_OBJECT

    QTemporaryDir m_folder;
    LogLines m_log;
    std::unique_ptr<FixtureServer> m_ingest;

    std::shared_ptr<TelemetryManagerConfiguration>
    configuration(std::optional<QString> namespaceName = {})
    {
        auto config = std::make_shared<TelemetryManagerConfiguration>(
            u"APP-ID"_s, u"salt"_s, QUrl(m_ingest->baseURL()), namespaceName);
        config->cacheDirectory.set(m_folder.filePath(u"cache"_s));
        config->storeDirectory.set(m_folder.filePath(u"config"_s));
        config->logHandler.set(m_log.handler());
        return config;
    }

    // Without the client's own session signals: only what the test sends arrives.
    std::shared_ptr<TelemetryManagerConfiguration> quietConfiguration()
    {
        auto config = configuration();
        config->sendNewSessionBeganSignal.set(false);
        config->sessionStatsEnabled.set(false);
        return config;
    }

    QString cacheFile() const { return m_folder.filePath(u"cache/telemetrysignalcache"_s); }

    void writeCacheFile(const QByteArray &data)
    {
        QDir().mkpath(m_folder.filePath(u"cache"_s));
        QFile file(cacheFile());
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(data);
    }

    // A session manager over a store file of its own, on a clock the test moves.
    struct SessionRig {
        QString path;
        QDateTime now;
        QList<QMap<QString, QString>> announced;
        std::unique_ptr<SessionManager> manager;

        SessionRig(const QString &file, QDateTime start)
            : path(file)
            , now(std::move(start))
        {
            QFile::remove(path);
        }
        std::unique_ptr<QSettings> store() const
        {
            return std::make_unique<QSettings>(path, QSettings::IniFormat);
        }
        SessionManager &start()
        {
            manager = std::make_unique<SessionManager>(
                [this] { return store(); },
                [this](const QString &, const QMap<QString, QString> &parameters) {
                    announced.append(parameters);
                },
                [this] { return now; });
            return *manager;
        }
        // Ends the manager, its writes done, and reads what it left.
        QVariant stored(const QString &key)
        {
            manager.reset();
            return store()->value(key);
        }
    };

    // 23:30 on a Saturday in India, 18:00 in UTC.
    static QDateTime saturdayNight()
    {
        return QDateTime(QDate(2026, 11, 21), QTime(23, 30), QTimeZone("Asia/Kolkata"));
    }

private slots:
    void init()
    {
        m_ingest = std::make_unique<FixtureServer>();
        m_ingest->scriptDefault({200, "{}"});
        m_log.clear();
        QFile::remove(cacheFile());
        QDir(m_folder.filePath(u"config"_s)).removeRecursively();
    }

    void cleanup()
    {
        TelemetryDeck::terminate();
        m_ingest.reset();
    }

    void sendsTheOldestHundredAndLogsIt()
    {
        SignalManager manager(configuration());
        for (int n = 0; n < 250; ++n)
            manager.signalCache().push(record(n));
        manager.attemptToSendNextBatchOfCachedSignals();
        QTRY_COMPARE(m_ingest->requestBodies().size(), 1);
        QCOMPARE(m_ingest->requestedPaths(), QStringList{u"/v2/"_s});
        const QJsonArray batch = QJsonDocument::fromJson(m_ingest->requestBodies()[0]).array();
        QCOMPARE(batch.size(), 100);
        QCOMPARE(batch[0][u"type"_s].toString(), u"signal.0"_s);
        QCOMPARE(batch[0][u"receivedAt"_s].toString(), u"2026-11-22T12:00:00+0000"_s);
        QVERIFY(!batch[0].toObject().contains(u"floatValue"_s));
        QCOMPARE(batch[1][u"floatValue"_s].toDouble(), 0.5);
        QCOMPARE(manager.signalCache().count(), 150);
        QVERIFY(
            m_log.lines().contains(u"INFO Sending 100 signals leaving a cache of 150 signals"_s));
    }

    void refusedBatchesComeBackBehindNewerRecords_data()
    {
        QTest::addColumn<FixtureResponse>("answer");
        QTest::addColumn<QString>("logged");
        QTest::newRow("401") << FixtureResponse{401, "{}", 100ms} << u"Unauthorized (401)"_s;
        QTest::newRow("403") << FixtureResponse{403, "{}", 100ms} << u"Forbidden (403)"_s;
        QTest::newRow("413") << FixtureResponse{413, "{}", 100ms}
                             << u"Payload is too large (413)"_s;
        QTest::newRow("500") << FixtureResponse{500, "{}", 100ms} << u"Invalid status code 500"_s;
        QTest::newRow("endless answer")
            << FixtureResponse{200, "{}", 100ms, FixtureResponse::Delivery::Endless}
            << u"The ingest's answer was too large or too slow"_s;
    }

    void refusedBatchesComeBackBehindNewerRecords()
    {
        QFETCH(FixtureResponse, answer);
        QFETCH(QString, logged);
        m_ingest->script(u"/v2/"_s, answer);
        SignalManager manager(configuration());
        manager.signalCache().push({record(1), record(2)});
        manager.attemptToSendNextBatchOfCachedSignals();
        QTRY_COMPARE(m_ingest->requestBodies().size(), 1);
        manager.signalCache().push(record(3)); // while the answer is on its way
        QTRY_COMPARE(manager.signalCache().count(), 3);
        QCOMPARE(m_log.errors().size(), 1);
        QVERIFY2(m_log.errors().first().contains(logged), qPrintable(m_log.errors().first()));

        m_ingest->script(u"/v2/"_s, {200, "{}"});
        manager.attemptToSendNextBatchOfCachedSignals();
        QTRY_COMPARE_WITH_TIMEOUT(m_ingest->requestBodies().size(), 2, 15000);
        QCOMPARE(receivedTypes(*m_ingest).last(),
                 (QStringList{u"signal.3"_s, u"signal.1"_s, u"signal.2"_s}));
        QTRY_COMPARE(manager.signalCache().count(), 0);
    }

    void serviceURL_data()
    {
        QTest::addColumn<QString>("base");
        QTest::addColumn<QString>("namespaceName");
        QTest::addColumn<QString>("url");
        QTest::newRow("no slash, no namespace")
            << u"https://ingest.example"_s << QString() << u"https://ingest.example/v2/"_s;
        QTest::newRow("slash and namespace") << u"https://ingest.example/base/"_s << u"ns"_s
                                             << u"https://ingest.example/base/v2/namespace/ns/"_s;
        QTest::newRow("empty namespace")
            << u"https://ingest.example/"_s << u""_s << u"https://ingest.example/v2/"_s;
    }

    void serviceURL()
    {
        QFETCH(QString, base);
        QFETCH(QString, namespaceName);
        QFETCH(QString, url);
        const auto built = SignalManager::getServiceUrl(
            QUrl(base), namespaceName.isNull() ? std::nullopt : std::optional(namespaceName));
        QCOMPARE(built.value_or(QUrl()).toString(), url);
    }

    void pendingRecordsSurviveAQuit()
    {
        {
            SignalManager manager(configuration());
            manager.signalCache().push({record(1), record(2), record(3)});
            manager.appWillTerminate();
        }
        QVERIFY(QFile::exists(cacheFile()));
        QVERIFY(m_log.lines().contains(u"INFO Saved Telemetry cache 455 bytes of 3 signals"_s));
        SignalManager next(configuration());
        QVERIFY(m_log.lines().contains(u"INFO Loaded 3 signals"_s));
        QVERIFY(!QFile::exists(cacheFile()));
        QCOMPARE(next.signalCache().pop(), (QList{record(1), record(2), record(3)}));
    }

    void unreadableCacheFilesStartEmpty_data()
    {
        QTest::addColumn<QByteArray>("contents");
        const QByteArray good = QJsonDocument(QJsonArray{record(1).toCacheJson()}).toJson();
        QJsonObject untyped = record(2).toCacheJson();
        untyped.insert(u"type"_s, 7);
        QJsonObject missing = record(3).toCacheJson();
        missing.remove(u"receivedAt"_s);
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("truncated") << good.left(good.size() / 2);
        QTest::newRow("not JSON") << QByteArray("\x89PNG\r\n");
        QTest::newRow("an object") << QByteArray("{\"cachedSignals\": []}");
        QTest::newRow("a wrongly typed field") << QJsonDocument(QJsonArray{untyped}).toJson();
        QTest::newRow("a missing field")
            << QJsonDocument(QJsonArray{record(1).toCacheJson(), missing}).toJson();
        QTest::newRow("9 MiB") << good.repeated(9 * 1024 * 1024 / good.size() + 1);
    }

    void unreadableCacheFilesStartEmpty()
    {
        QFETCH(QByteArray, contents);
        writeCacheFile(contents);
        SignalManager manager(configuration());
        QCOMPARE(manager.signalCache().count(), 0);
        QVERIFY(!QFile::exists(cacheFile()));
    }

    // Prefixes go on what the app names; reserved names and keys are sent anyway, with a
    // warning each.
    void prefixesAndReservedNames_data()
    {
        QTest::addColumn<QString>("prefix");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("sentName");
        QTest::addColumn<QString>("sentKey");
        QTest::addColumn<QString>("warning");
        QTest::newRow("plain") << u"App."_s << u"launched"_s << u"screen"_s << u"App.launched"_s
                               << u"App.screen"_s << QString();
        QTest::newRow("namespaced key kept")
            << u"App."_s << u"launched"_s << u"TelemetryDeck.Device.modelName"_s
            << u"App.launched"_s << u"TelemetryDeck.Device.modelName"_s
            << u"ERROR Sending parameter with reserved key prefix 'TelemetryDeck.' will cause "
               "unexpected behavior. Please use another prefix instead."_s;
        QTest::newRow("a prefix makes a reserved name safe")
            << u"App."_s << u"Type"_s << u"X"_s << u"App.Type"_s << u"App.X"_s << QString();
        QTest::newRow("reserved name, any case")
            << QString() << u"type"_s << u"k"_s << u"type"_s << u"k"_s
            << u"ERROR Sending signal with reserved name 'type' will cause unexpected behavior. "
               "Please use another name instead."_s;
        QTest::newRow("reserved prefix")
            << QString() << u"telemetrydeck.foo"_s << u"k"_s << u"telemetrydeck.foo"_s << u"k"_s
            << u"ERROR Sending signal with reserved prefix 'TelemetryDeck.' will cause "
               "unexpected behavior. Please use another prefix instead."_s;
        QTest::newRow("reserved key")
            << QString() << u"ok"_s << u"locale"_s << u"ok"_s << u"locale"_s
            << u"ERROR Sending parameter with reserved key 'locale' will cause unexpected "
               "behavior. Please use another key instead."_s;
    }

    void prefixesAndReservedNames()
    {
        QFETCH(QString, prefix);
        QFETCH(QString, name);
        QFETCH(QString, key);
        QFETCH(QString, sentName);
        QFETCH(QString, sentKey);
        QFETCH(QString, warning);
        auto config = quietConfiguration();
        if (!prefix.isNull()) {
            config->defaultSignalPrefix.set(prefix);
            config->defaultParameterPrefix.set(prefix);
        }
        TelemetryDeck::initialize(config);
        TelemetryDeck::signal(name, {{key, u"v"_s}});
        QTRY_VERIFY(!m_log.lines().filter(u"Process signal"_s).isEmpty());
        TelemetryManager::shared()->signalManager().attemptToSendNextBatchOfCachedSignals();
        QTRY_COMPARE(m_ingest->requestBodies().size(), 1);
        const QJsonValue sent = QJsonDocument::fromJson(m_ingest->requestBodies()[0]).array()[0];
        QCOMPARE(sent[u"type"_s].toString(), sentName);
        QCOMPARE(sent[u"payload"_s][sentKey].toString(), u"v"_s);
        QCOMPARE(sent[u"appID"_s].toString(), u"APP-ID"_s);
        QCOMPARE(sent[u"clientUser"_s].toString().size(), 64);
        QCOMPARE(m_log.errors(), warning.isNull() ? QStringList() : QStringList{warning});
    }

    void syncRequestsAreThrottled()
    {
        QDateTime now = QDateTime::currentDateTimeUtc();
        auto config = quietConfiguration();
        const auto manager = TelemetryManager::create(config, [&] { return now; });
        auto &signalManager = dynamic_cast<SignalManager &>(manager->signalManager());
        for (int n = 0; n < 300; ++n)
            signalManager.signalCache().push(record(n));
        manager->syncSoon();
        QTRY_COMPARE(m_ingest->requestBodies().size(), 1);
        now = now.addSecs(5);
        manager->syncSoon();
        now = now.addSecs(6); // 11 s after the first
        QTest::qWait(200);
        QCOMPARE(m_ingest->requestBodies().size(), 1);
        manager->syncSoon();
        QTRY_COMPARE(m_ingest->requestBodies().size(), 2);
    }

    void firstSessionStartsHalfASecondAfterInitialize()
    {
        TelemetryDeck::initialize(configuration());
        const QUuid before = TelemetryManager::shared()->configuration()->sessionID();
        QTRY_VERIFY(TelemetryManager::shared()->configuration()->sessionID() != before);
        TelemetryManager::shared()->signalManager().attemptToSendNextBatchOfCachedSignals();
        QTRY_COMPARE(m_ingest->requestBodies().size(), 1);
        // A store without sessions is a new installation.
        QCOMPARE(receivedTypes(*m_ingest),
                 QList<QStringList>({{u"TelemetryDeck.Acquisition.newInstallDetected"_s,
                                      u"TelemetryDeck.Session.started"_s}}));
        const QJsonArray batch = QJsonDocument::fromJson(m_ingest->requestBodies()[0]).array();
        const QString today = QDate::currentDate().toString(Qt::ISODate);
        QCOMPARE(batch[0][u"payload"_s][u"TelemetryDeck.Acquisition.firstSessionDate"_s], today);
        QCOMPARE(TelemetryDeck::customDefaults()->value(u"firstSessionDate"_s), today);
        const QJsonValue sent = batch[1];
        const QString session = sent[u"sessionID"_s].toString();
        QCOMPARE(session, session.toUpper());
        QCOMPARE(QUuid(session), TelemetryManager::shared()->configuration()->sessionID());
    }

    void timeZoneText_data()
    {
        QTest::addColumn<int>("offset");
        QTest::addColumn<QString>("text");
        QTest::newRow("five hours behind") << -18000 << u"UTC--5"_s;
        QTest::newRow("three and a half behind") << -12600 << u"UTC--3:30"_s;
        QTest::newRow("India") << 19800 << u"UTC+5:30"_s;
        QTest::newRow("UTC") << 0 << u"UTC+0"_s;
    }

    void timeZoneText()
    {
        QFETCH(int, offset);
        QTEST(DefaultSignalPayload::timeZone(offset), "text");
    }

    void calendarKeys_data()
    {
        QTest::addColumn<QDateTime>("moment");
        QTest::addColumn<QStringList>("dayWeekendHourWeekQuarter");
        const QTimeZone zone("Asia/Kolkata");
        QTest::newRow("Saturday night") << QDateTime(QDate(2026, 11, 21), QTime(23, 30), zone)
                                        << QStringList{u"6"_s, u"true"_s, u"24"_s, u"47"_s, u"4"_s};
        QTest::newRow("Sunday just after midnight")
            << QDateTime(QDate(2026, 11, 22), QTime(0, 5), zone)
            << QStringList{u"7"_s, u"true"_s, u"1"_s, u"47"_s, u"4"_s};
        QTest::newRow("Monday of ISO week 1, still December")
            << QDateTime(QDate(2025, 12, 29), QTime(9, 0), zone)
            << QStringList{u"1"_s, u"false"_s, u"10"_s, u"1"_s, u"4"_s};
        QTest::newRow("first of April")
            << QDateTime(QDate(2026, 4, 1), QTime(12, 0), zone)
            << QStringList{u"3"_s, u"false"_s, u"13"_s, u"14"_s, u"2"_s};
    }

    void calendarKeys()
    {
        QFETCH(QDateTime, moment);
        QFETCH(QStringList, dayWeekendHourWeekQuarter);
        const auto keys = DefaultSignalPayload::calendarParameters(moment);
        const QString prefix = u"TelemetryDeck.Calendar."_s;
        QCOMPARE(
            (QStringList{keys.value(prefix + u"dayOfWeek"_s), keys.value(prefix + u"isWeekend"_s),
                         keys.value(prefix + u"hourOfDay"_s), keys.value(prefix + u"weekOfYear"_s),
                         keys.value(prefix + u"quarterOfYear"_s)}),
            dayWeekendHourWeekQuarter);
    }

    // The string, then the salt, as UTF-8, hashed and written in lower-case hex.
    void saltedHash_data()
    {
        QTest::addColumn<QString>("string");
        QTest::addColumn<QString>("salt");
        QTest::addColumn<QString>("digest");
        QTest::newRow("u with salt s")
            << u"u"_s << u"s"_s
            << u"79adb2a2fce5c6ba215fe5f27f532d4e7edbac4b6a5e09e1ef3a08084a904621"_s;
        QTest::newRow("beyond ASCII")
            << u"é"_s << u"salt"_s
            << u"8281ca018c53fbb321c14171dc66541a2748f2169b1b7d7f94d6bff291c57c62"_s;
    }

    void saltedHash()
    {
        QFETCH(QString, string);
        QFETCH(QString, salt);
        QTEST(CryptoHashing::sha256(string, salt), "digest");
    }

    void sessionsOfASecondOrMoreAreKept_data()
    {
        QTest::addColumn<int>("milliseconds");
        QTest::addColumn<int>("keptSeconds");
        QTest::newRow("0.6 s") << 600 << -1;
        QTest::newRow("1.0 s") << 1000 << 1;
        QTest::newRow("2.9 s") << 2900 << 2;
    }

    void sessionsOfASecondOrMoreAreKept()
    {
        QFETCH(int, milliseconds);
        QFETCH(int, keptSeconds);
        SessionRig rig(m_folder.filePath(u"sessions.ini"_s), saturdayNight());
        rig.start().startNewSession();
        rig.now = rig.now.addMSecs(milliseconds);
        rig.manager->didResignActive();
        rig.now = rig.now.addSecs(60); // inactive time does not count
        rig.manager->willBecomeActive();
        rig.manager->didResignActive();
        QCOMPARE(rig.announced.size(), 1); // the first session of an empty store
        const auto kept = StoredSession::decode(rig.stored(u"recentSessions"_s).toByteArray());
        QCOMPARE(kept.isEmpty(), keptSeconds < 0);
        if (keptSeconds >= 0)
            QCOMPARE(kept, (QList<StoredSession>{{saturdayNight(), keptSeconds}}));
    }

    void onlyAnEmptyHistoryIsANewInstallation()
    {
        SessionRig rig(m_folder.filePath(u"install.ini"_s), saturdayNight());
        rig.start().startNewSession();
        QCOMPARE(rig.announced,
                 (QList<QMap<QString, QString>>{
                     {{u"TelemetryDeck.Acquisition.firstSessionDate"_s, u"2026-11-21"_s}}}));
        rig.now = rig.now.addSecs(5);
        rig.manager->didResignActive();
        QCOMPARE(rig.stored(u"firstSessionDate"_s), u"2026-11-21"_s);
        rig.now = rig.now.addDays(1);
        rig.start().startNewSession();
        QCOMPARE(rig.announced.size(), 1);
    }

    // What start-up keeps of a prepared store: 90 days of sessions, one entry a day.
    void startUpPrunesAndCountsDays_data()
    {
        QTest::addColumn<QList<int>>("daysAgo");
        QTest::addColumn<QVariant>("deletedBefore");
        QTest::addColumn<QStringList>("daysBefore");
        QTest::addColumn<int>("kept");
        QTest::addColumn<qint64>("deletedAfter");
        QTest::addColumn<int>("daysAfter");
        const qint64 most = std::numeric_limits<qint64>::max();
        QTest::newRow("91 days ago goes, 89 stays")
            << QList<int>{91, 89} << QVariant(3) << QStringList{} << 1 << qint64(4) << 1;
        QTest::newRow("second launch of the day")
            << QList<int>{1} << QVariant() << QStringList{u"2026-11-20"_s, u"2026-11-21"_s} << 1
            << qint64(0) << 2;
        QTest::newRow("a count at the integer's end")
            << QList<int>{100, 95} << QVariant(most - 1) << QStringList{} << 0 << most << 1;
        QTest::newRow("a count that is no number")
            << QList<int>{95} << QVariant(u"many"_s) << QStringList{} << 0 << qint64(1) << 1;
        QTest::newRow("a session in the future stays")
            << QList<int>{-400} << QVariant() << QStringList{} << 1 << qint64(0) << 1;
    }

    void startUpPrunesAndCountsDays()
    {
        QFETCH(QList<int>, daysAgo);
        QFETCH(QVariant, deletedBefore);
        QFETCH(QStringList, daysBefore);
        SessionRig rig(m_folder.filePath(u"prune.ini"_s), saturdayNight());
        QList<StoredSession> sessions;
        for (int days : daysAgo)
            sessions.append({rig.now.addDays(-days), 60});
        rig.store()->setValue(u"recentSessions"_s, StoredSession::encode(sessions));
        if (deletedBefore.isValid())
            rig.store()->setValue(u"deletedSessionsCount"_s, deletedBefore);
        rig.store()->setValue(u"distinctDaysUsed"_s, daysBefore);
        QTEST(int(rig.start().recentSessions().size()), "kept");
        QTEST(rig.stored(u"deletedSessionsCount"_s).toLongLong(), "deletedAfter");
        const QStringList days = rig.store()->value(u"distinctDaysUsed"_s).toStringList();
        QTEST(int(days.size()), "daysAfter");
        QCOMPARE(days.last(), u"2026-11-21"_s);
    }

    void retentionKeysFromTheStore_data()
    {
        QTest::addColumn<bool>("prepared");
        // firstSessionDate, averageSessionSeconds, distinctDaysUsed, distinctDaysUsedLastMonth,
        // totalSessionsCount, previousSessionSeconds
        QTest::addColumn<QStringList>("values");
        QTest::newRow("prepared") << true << QStringList{u"2026-01-02"_s, u"40"_s, u"5"_s,
                                                         u"3"_s,          u"10"_s, u"50"_s};
        QTest::newRow("empty") << false << QStringList{u"2026-11-22"_s, u"0"_s, u"1"_s,
                                                       u"1"_s,          u"0"_s, u"absent"_s};
    }

    void retentionKeysFromTheStore()
    {
        QFETCH(bool, prepared);
        // 02:00 on Sunday in India is still Saturday in UTC: dates follow the user's zone.
        const QDateTime now(QDate(2026, 11, 22), QTime(2, 0), QTimeZone("Asia/Kolkata"));
        SessionRig rig(m_folder.filePath(u"retention.ini"_s), now);
        if (prepared) {
            const auto store = rig.store();
            store->setValue(u"recentSessions"_s, StoredSession::encode({{now.addDays(-3), 30},
                                                                        {now.addDays(-2), 50},
                                                                        {now.addDays(-1), 100}}));
            store->setValue(u"deletedSessionsCount"_s, 7);
            store->setValue(u"firstSessionDate"_s, u"2026-01-02"_s);
            // 30 days before is 2026-10-23 in India; today joins the list at start-up.
            store->setValue(u"distinctDaysUsed"_s, QStringList{u"2026-09-01"_s, u"2026-10-22"_s,
                                                               u"2026-10-23"_s, u"2026-11-20"_s});
        }
        const auto keys = rig.start().retentionParameters(now);
        const QString acquisition = u"TelemetryDeck.Acquisition."_s;
        const QString retention = u"TelemetryDeck.Retention."_s;
        QTEST((QStringList{keys.value(acquisition + u"firstSessionDate"_s),
                           keys.value(retention + u"averageSessionSeconds"_s),
                           keys.value(retention + u"distinctDaysUsed"_s),
                           keys.value(retention + u"distinctDaysUsedLastMonth"_s),
                           keys.value(retention + u"totalSessionsCount"_s),
                           keys.value(retention + u"previousSessionSeconds"_s, u"absent"_s)}),
              "values");
    }

    // Whatever the store holds, start-up reads it as an empty history and goes on.
    void unreadableStoreValuesCountAsNothing_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QVariant>("value");
        QTest::newRow("history not JSON") << u"recentSessions"_s << QVariant(QByteArray("[{"));
        QTest::newRow("history an object")
            << u"recentSessions"_s << QVariant(QByteArray(R"({"st":1,"dn":2})"));
        QTest::newRow("history with a text date")
            << u"recentSessions"_s << QVariant(QByteArray(R"([{"st":"today","dn":2}])"));
        QTest::newRow("history with a huge date")
            << u"recentSessions"_s << QVariant(QByteArray(R"([{"st":1e300,"dn":2}])"));
        QTest::newRow("history a number") << u"recentSessions"_s << QVariant(12);
        QTest::newRow("first date a list")
            << u"firstSessionDate"_s << QVariant(QStringList{u"a"_s, u"b"_s});
        QTest::newRow("days a number") << u"distinctDaysUsed"_s << QVariant(3.5);
    }

    void unreadableStoreValuesCountAsNothing()
    {
        QFETCH(QString, key);
        QFETCH(QVariant, value);
        SessionRig rig(m_folder.filePath(u"unreadable.ini"_s), saturdayNight());
        rig.store()->setValue(key, value);
        const auto keys = rig.start().retentionParameters(rig.now);
        QCOMPARE(keys.value(u"TelemetryDeck.Retention.totalSessionsCount"_s), u"0"_s);
        QCOMPARE(keys.value(u"TelemetryDeck.Acquisition.firstSessionDate"_s), u"2026-11-21"_s);
        QCOMPARE(keys.value(u"TelemetryDeck.Retention.distinctDaysUsed"_s), u"1"_s);
        rig.manager->startNewSession();
        QCOMPARE(rig.announced.size(), 1);
    }

    void durationLeavesOutInactiveTime_data()
    {
        QTest::addColumn<bool>("includeBackgroundTime");
        QTest::addColumn<double>("seconds");
        QTest::newRow("active time only") << false << 15.0;
        QTest::newRow("with inactive time") << true << 75.0;
    }

    void durationLeavesOutInactiveTime()
    {
        QFETCH(bool, includeBackgroundTime);
        QDateTime now = saturdayNight();
        DurationSignalTracker tracker([&now] { return now; });
        tracker.startTracking(u"read"_s, {{u"tab"_s, u"Today"_s}}, includeBackgroundTime);
        now = now.addSecs(10);
        tracker.didResignActive();
        now = now.addSecs(60);
        tracker.willBecomeActive();
        now = now.addSecs(5);
        const auto elapsed = tracker.stopTracking(u"read"_s);
        QVERIFY(elapsed);
        QTEST(elapsed->seconds, "seconds");
        QCOMPARE(elapsed->parameters.value(u"tab"_s), u"Today"_s);
        QVERIFY(!tracker.stopTracking(u"read"_s));
    }

    void durationText_data()
    {
        QTest::addColumn<double>("seconds");
        QTest::addColumn<QString>("text");
        QTest::newRow("rounded down") << 2.34567 << u"2.345"_s;
        QTest::newRow("whole") << 15.0 << u"15.0"_s;
        QTest::newRow("under a millisecond") << 0.0009 << u"0.0"_s;
    }

    void durationText()
    {
        QFETCH(double, seconds);
        QTEST(DurationSignalTracker::durationText(seconds), "text");
    }

    void durationSignalsCarryTheirSeconds()
    {
        auto config = quietConfiguration();
        TelemetryDeck::initialize(config);
        TelemetryDeck::startDurationSignal(u"read"_s, {{u"tab"_s, u"Today"_s}});
        TelemetryDeck::startDurationSignal(u"dropped"_s);
        TelemetryDeck::cancelDurationSignal(u"dropped"_s);
        TelemetryDeck::stopAndSendDurationSignal(u"dropped"_s);
        TelemetryDeck::stopAndSendDurationSignal(u"never started"_s);
        TelemetryDeck::stopAndSendDurationSignal(u"read"_s, {{u"rows"_s, u"3"_s}});
        auto &sender = TelemetryManager::shared()->signalManager();
        QTRY_VERIFY(
            (sender.attemptToSendNextBatchOfCachedSignals(), !m_ingest->requestBodies().isEmpty()));
        QTest::qWait(200);
        sender.attemptToSendNextBatchOfCachedSignals();
        QTest::qWait(200);
        QCOMPARE(receivedTypes(*m_ingest), QList<QStringList>{{u"read"_s}});
        const QJsonValue payload =
            QJsonDocument::fromJson(m_ingest->requestBodies()[0]).array()[0][u"payload"_s];
        QCOMPARE(payload[u"tab"_s], u"Today"_s);
        QCOMPARE(payload[u"rows"_s], u"3"_s);
        bool isNumber = false;
        payload[u"TelemetryDeck.Signal.durationInSeconds"_s].toString().toDouble(&isNumber);
        QVERIFY(isNumber);
    }

    // The desktop's settings, from a portal on the test's own session bus.
    void accessibilityFollowsThePortal()
    {
        if (!QDBusConnection::sessionBus().isConnected())
            QSKIP("needs a session bus (the test runs under dbus-run-session)");
        // A connection of its own, as the portal's process would have.
        QDBusConnection bus =
            QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"portal"_s);
        const auto disconnect =
            qScopeGuard([] { QDBusConnection::disconnectFromBus(u"portal"_s); });
        FakePortal portal;
        QVERIFY(bus.registerObject(u"/org/freedesktop/portal/desktop"_s, &portal,
                                   QDBusConnection::ExportAllSlots |
                                       QDBusConnection::ExportAllSignals));
        QVERIFY(bus.registerService(u"org.freedesktop.portal.Desktop"_s));
        DesktopAccessibility desktop;
        QTRY_VERIFY(desktop.reduceMotion());
        QTRY_VERIFY(desktop.invertColors());
        emit portal.SettingChanged(u"org.gnome.desktop.interface"_s, u"enable-animations"_s,
                                   QDBusVariant(true));
        QTRY_VERIFY(!desktop.reduceMotion());
        emit portal.SettingChanged(u"org.kde.kdeglobals.KDE"_s, u"AnimationDurationFactor"_s,
                                   QDBusVariant(0.0));
        QTRY_VERIFY(desktop.reduceMotion());
        QVERIFY(desktop.invertColors());
    }

    // Eight threads send while the timer and immediate syncs send: each signal arrives once.
    void everySignalArrivesOnceUnderLoad()
    {
        constexpr int threads = 8;
        constexpr int perThread = 1250;
        auto config = quietConfiguration();
        config->logHandler.set(std::nullopt);
        TelemetryDeck::initialize(config);
        QList<QThread *> senders;
        for (int t = 0; t < threads; ++t) {
            senders.append(QThread::create([t] {
                for (int i = 0; i < perThread; ++i) {
                    TelemetryDeck::signal(u"load"_s,
                                          {{u"n"_s, QString::number(t * perThread + i)}});
                    if (i % 100 == 0)
                        TelemetryDeck::requestImmediateSync();
                }
            }));
            senders.last()->start();
        }
        auto &manager = TelemetryManager::shared()->signalManager();
        QMap<QString, int> seen;
        const bool allArrived = QTest::qWaitFor(
            [&] {
                manager.attemptToSendNextBatchOfCachedSignals();
                return m_ingest->requestBodies().size() * 100 >= threads * perThread &&
                       std::all_of(senders.cbegin(), senders.cend(),
                                   [](QThread *s) { return s->isFinished(); });
            },
            60000);
        QTest::qWait(300);
        for (QThread *sender : senders) {
            sender->wait();
            delete sender;
        }
        QVERIFY(allArrived);
        for (const QByteArray &body : m_ingest->requestBodies())
            for (const QJsonValue value : QJsonDocument::fromJson(body).array())
                ++seen[value[u"payload"_s][u"n"_s].toString()];
        QCOMPARE(seen.size(), threads * perThread);
        QVERIFY(std::all_of(seen.cbegin(), seen.cend(), [](int count) { return count == 1; }));
    }
};

QTEST_GUILESS_MAIN(AnalyticsTest)
#include "tst_analytics.moc"
