#include "CryptoHashing.h"
#include "DefaultSignalPayload.h"
#include "DesktopAccessibility.h"
#include "DurationSignalTracker.h"
#include "FixtureServer.h"
#include "SerialWorker.h"
#include "SessionManager.h"
#include "SettingsPortal.h"
#include "SignalManager.h"
#include "TelemetryDeck.h"
#include "TelemetryManager.h"
#include "TelemetryManagerConfiguration.h"

#include <mutex>
#include <QDBusConnection>
#include <QDBusVariant>
#include <QGuiApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSysInfo>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>
#include <QTimeZone>
#include <QWindow>

using namespace std::chrono_literals;
using namespace Qt::Literals::StringLiterals;

namespace {

uint threads()
{
    return QDir(u"/proc/self/task"_s).count();
}

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

// The running kernel's leading numbers, as the system tells them.
QStringList kernelNumbers()
{
    QFile release(u"/proc/sys/kernel/osrelease"_s);
    if (!release.open(QIODevice::ReadOnly))
        return {};
    const QString text = QString::fromLatin1(release.readAll());
    QStringList numbers = text.section(u'-', 0, 0).trimmed().split(u'.');
    while (numbers.size() < 3)
        numbers.append(u"0"_s);
    return numbers.first(3);
}

QString machineModel()
{
    QFile product(u"/sys/class/dmi/id/product_name"_s);
    const QString name =
        product.open(QIODevice::ReadOnly) ? QString::fromUtf8(product.readAll()).trimmed() : u""_s;
    return name.isEmpty() ? QSysInfo::currentCpuArchitecture() : name;
}

} // namespace

class AnalyticsTest : public QObject {
    Q_OBJECT

    QTemporaryDir m_folder;
    LogLines m_log;
    std::unique_ptr<FixtureServer> m_ingest;
    SettingsPortal m_portal;
    QMap<QString, QString> m_expectedMetadata;

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
    QString storeFile() const { return m_folder.filePath(u"config/seprior.4f90459902b1"_s); }

    // The records of the ingest's batch of that number, once the client is asked to send.
    QJsonArray batch(int index = 0)
    {
        auto &manager = TelemetryManager::shared()->signalManager();
        const bool arrived = QTest::qWaitFor(
            [&] {
                manager.attemptToSendNextBatchOfCachedSignals();
                return m_ingest->requestBodies().size() > index;
            },
            8000);
        if (!arrived)
            qWarning("batch %d never arrived", index);
        return QJsonDocument::fromJson(m_ingest->requestBodies().value(index)).array();
    }

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
    void initTestCase()
    {
        QVERIFY2(QDBusConnection::sessionBus().isConnected(),
                 "the test runs under dbus-run-session");
        QVERIFY(m_portal.publish());
        // Slower than the first signal's trip to the main thread: that signal must wait.
        m_portal.settings = SettingsPortal::everythingOn();
        m_portal.delay = 300ms;
    }

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

    // Every key of the first signal of the process, on a desktop whose settings say "on".
    void defaultMetadata_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("value");
        const QStringList kernel = kernelNumbers();
        const QString system = u"Linux "_s + kernel.join(u'.');
        const QString major = u"Linux "_s + kernel.first();
        const QString majorMinor = u"Linux "_s + kernel.first(2).join(u'.');
        const QString architecture = QSysInfo::currentCpuArchitecture();
        const QDateTime now = QDateTime::currentDateTime();
        const QDate today = now.date();
        // The app's locale is de_CH, the user's languages fr_CA then de, the zone São Paulo's.
        m_expectedMetadata = {
            {u"platform"_s, u"Linux"_s},
            {u"systemVersion"_s, system},
            {u"majorSystemVersion"_s, major},
            {u"majorMinorSystemVersion"_s, majorMinor},
            {u"appVersion"_s, u"1.2.3"_s},
            {u"buildNumber"_s, u"45"_s},
            {u"isSimulator"_s, u"false"_s},
            {u"isDebug"_s, u"false"_s},
            {u"isTestFlight"_s, u"false"_s},
            {u"isAppStore"_s, u"true"_s},
            {u"modelName"_s, machineModel()},
            {u"architecture"_s, architecture},
            {u"operatingSystem"_s, u"Linux"_s},
            {u"targetEnvironment"_s, u"native"_s},
            {u"locale"_s, u"de_CH"_s},
            {u"region"_s, u"CH"_s},
            {u"appLanguage"_s, u"de"_s},
            {u"preferredLanguage"_s, u"fr"_s},
            {u"telemetryClientVersion"_s, u"2.12.0"_s},
            {u"TelemetryDeck.AppInfo.buildNumber"_s, u"45"_s},
            {u"TelemetryDeck.AppInfo.version"_s, u"1.2.3"_s},
            {u"TelemetryDeck.AppInfo.versionAndBuildNumber"_s, u"1.2.3 (build 45)"_s},
            {u"TelemetryDeck.Device.architecture"_s, architecture},
            {u"TelemetryDeck.Device.modelName"_s, machineModel()},
            {u"TelemetryDeck.Device.operatingSystem"_s, u"Linux"_s},
            {u"TelemetryDeck.Device.orientation"_s, u"Fixed"_s},
            {u"TelemetryDeck.Device.platform"_s, u"Linux"_s},
            {u"TelemetryDeck.Device.screenResolutionHeight"_s, u"800.0"_s},
            {u"TelemetryDeck.Device.screenResolutionWidth"_s, u"800.0"_s},
            {u"TelemetryDeck.Device.screenScaleFactor"_s, u"1.0"_s},
            {u"TelemetryDeck.Device.systemMajorMinorVersion"_s, majorMinor},
            {u"TelemetryDeck.Device.systemMajorVersion"_s, major},
            {u"TelemetryDeck.Device.systemVersion"_s, system},
            {u"TelemetryDeck.Device.timeZone"_s, u"UTC--3"_s},
            {u"TelemetryDeck.RunContext.isAppStore"_s, u"true"_s},
            {u"TelemetryDeck.RunContext.isDebug"_s, u"false"_s},
            {u"TelemetryDeck.RunContext.isSimulator"_s, u"false"_s},
            {u"TelemetryDeck.RunContext.isTestFlight"_s, u"false"_s},
            {u"TelemetryDeck.RunContext.language"_s, u"de"_s},
            {u"TelemetryDeck.RunContext.locale"_s, u"de_CH"_s},
            {u"TelemetryDeck.RunContext.targetEnvironment"_s, u"native"_s},
            {u"TelemetryDeck.SDK.name"_s, u"SwiftSDK"_s},
            {u"TelemetryDeck.SDK.nameAndVersion"_s, u"SwiftSDK 2.12.0"_s},
            {u"TelemetryDeck.SDK.version"_s, u"2.12.0"_s},
            {u"TelemetryDeck.UserPreference.colorScheme"_s, u"Light"_s},
            {u"TelemetryDeck.UserPreference.language"_s, u"fr"_s},
            {u"TelemetryDeck.UserPreference.layoutDirection"_s, u"leftToRight"_s},
            {u"TelemetryDeck.UserPreference.region"_s, u"CH"_s},
            {u"TelemetryDeck.Accessibility.isReduceMotionEnabled"_s, u"true"_s},
            {u"TelemetryDeck.Accessibility.isInvertColorsEnabled"_s, u"true"_s},
            {u"TelemetryDeck.Calendar.dayOfMonth"_s, QString::number(today.day())},
            {u"TelemetryDeck.Calendar.dayOfWeek"_s, QString::number(today.dayOfWeek())},
            {u"TelemetryDeck.Calendar.dayOfYear"_s, QString::number(today.dayOfYear())},
            {u"TelemetryDeck.Calendar.weekOfYear"_s, QString::number(today.weekNumber())},
            {u"TelemetryDeck.Calendar.isWeekend"_s,
             today.dayOfWeek() >= 6 ? u"true"_s : u"false"_s},
            {u"TelemetryDeck.Calendar.monthOfYear"_s, QString::number(today.month())},
            {u"TelemetryDeck.Calendar.quarterOfYear"_s, QString::number((today.month() + 2) / 3)},
            {u"TelemetryDeck.Calendar.hourOfDay"_s, QString::number(now.time().hour() + 1)},
            // The store below: three sessions of 30, 50 and 100 s after seven deleted.
            {u"TelemetryDeck.Acquisition.firstSessionDate"_s, u"2026-01-02"_s},
            {u"TelemetryDeck.Retention.averageSessionSeconds"_s, u"40"_s},
            {u"TelemetryDeck.Retention.previousSessionSeconds"_s, u"50"_s},
            {u"TelemetryDeck.Retention.totalSessionsCount"_s, u"10"_s},
            {u"TelemetryDeck.Retention.distinctDaysUsed"_s, u"5"_s},
            {u"TelemetryDeck.Retention.distinctDaysUsedLastMonth"_s, u"3"_s},
            {u"screen"_s, u"today"_s},
        };
        for (auto it = m_expectedMetadata.cbegin(); it != m_expectedMetadata.cend(); ++it)
            QTest::newRow(qPrintable(it.key())) << it.key() << it.value();
    }

    void defaultMetadata()
    {
        QFETCH(QString, key);
        QFETCH(QString, value);
        static QJsonObject payload;
        if (payload.isEmpty()) {
            const QDate today = QDate::currentDate();
            QSettings store(storeFile(), QSettings::IniFormat);
            const QDateTime now = QDateTime::currentDateTime();
            store.setValue(u"recentSessions"_s, StoredSession::encode({{now.addDays(-3), 30},
                                                                       {now.addDays(-2), 50},
                                                                       {now.addDays(-1), 100}}));
            store.setValue(u"deletedSessionsCount"_s, 7);
            store.setValue(u"firstSessionDate"_s, u"2026-01-02"_s);
            // Today joins at start-up; 30 days ago is the first day of the last month.
            QStringList days;
            for (int ago : {83, 31, 30, 3})
                days.append(today.addDays(-ago).toString(Qt::ISODate));
            store.setValue(u"distinctDaysUsed"_s, days);
            store.sync();
            auto config = quietConfiguration();
            config->appVersion.set(u"1.2.3"_s);
            config->buildNumber.set(u"45"_s);
            TelemetryDeck::initialize(config);
            TelemetryDeck::signal(u"probe"_s, {{u"screen"_s, u"today"_s}});
            payload = batch().first()[u"payload"_s].toObject();
            QCOMPARE(QStringList(payload.keys()), QStringList(m_expectedMetadata.keys()));
        }
        QCOMPARE(payload[key].toString(), value);
    }

    // Which user a signal counts for, hashed with the salt; a new installation makes its own
    // identifier once, in the application's own store.
    void clientUser_data()
    {
        QTest::addColumn<QString>("stored");
        QTest::addColumn<QString>("defaultUser");
        QTest::addColumn<QString>("customUser");
        QTest::addColumn<QString>("hashed");
        const QString identifier = u"8E4F2B6A-1C3D-4E5F-9A7B-0C1D2E3F4A5B"_s;
        QTest::newRow("the installation's identifier")
            << identifier << QString() << QString()
            << u"6574267ced68f9a5a19cc635c42f5214e8b9a39d0fa6c73123f2227369e3a695"_s;
        QTest::newRow("the configuration's user over it")
            << identifier << u"bob"_s << QString()
            << u"91b11e65a0128df751cf0e43b1a10cab81e811280e760a0a40dde7a761a6fe16"_s;
        QTest::newRow("the signal's own user over both")
            << identifier << u"bob"_s << u"alice"_s
            << u"dd8028c8192aa4aacee2b93921203475948007290e042ee910c9a42f52f41cae"_s;
        QTest::newRow("a user beyond ASCII, as UTF-8")
            << identifier << QString() << u"é"_s
            << u"8281ca018c53fbb321c14171dc66541a2748f2169b1b7d7f94d6bff291c57c62"_s;
        QTest::newRow("a new installation") << QString() << QString() << QString() << QString();
    }

    void clientUser()
    {
        QFETCH(QString, stored);
        QFETCH(QString, defaultUser);
        QFETCH(QString, customUser);
        QFETCH(QString, hashed);
        if (!stored.isNull())
            QSettings(storeFile(), QSettings::IniFormat)
                .setValue(u"defaultUserIdentifier"_s, stored);
        auto config = quietConfiguration();
        if (!defaultUser.isNull())
            config->defaultUser.set(defaultUser);
        TelemetryDeck::initialize(config);
        TelemetryDeck::signal(u"probe"_s, {}, std::nullopt,
                              customUser.isNull() ? std::nullopt : std::optional(customUser));
        const QString sent = batch().first()[u"clientUser"_s].toString();
        const QString kept = QSettings(storeFile(), QSettings::IniFormat)
                                 .value(u"defaultUserIdentifier"_s)
                                 .toString();
        if (!hashed.isNull()) {
            QCOMPARE(sent, hashed);
            QCOMPARE(kept, stored);
            return;
        }
        QVERIFY(!QUuid(kept).isNull());
        QCOMPARE(sent, CryptoHashing::sha256(kept, u"salt"_s));
        // The next launch counts for the same user.
        TelemetryDeck::terminate();
        TelemetryDeck::initialize(quietConfiguration());
        TelemetryDeck::signal(u"probe"_s);
        QCOMPARE(batch(1).first()[u"clientUser"_s].toString(), sent);
    }

    // Off: nothing is sent, not even what an earlier run left, and nothing is lost.
    void nothingLeavesWhileOff()
    {
        writeCacheFile(
            QJsonDocument(QJsonArray{record(1).toCacheJson(), record(2).toCacheJson()}).toJson());
        auto config = configuration();
        config->analyticsDisabled.set(true);
        TelemetryDeck::initialize(config);
        TelemetryDeck::signal(u"type"_s); // a reserved name: not even checked
        auto &manager = dynamic_cast<SignalManager &>(TelemetryManager::shared()->signalManager());
        QTest::qWait(800); // past the first session
        manager.attemptToSendNextBatchOfCachedSignals();
        QTest::qWait(300);
        QCOMPARE(m_ingest->requestBodies().size(), 0);
        manager.appWillTerminate();
        QCOMPARE(manager.signalCache().count(), 2);
        QVERIFY(QFile::exists(cacheFile()));
        QCOMPARE(m_log.errors(), QStringList());
    }

    // A tray app rarely has the focus: its session runs from the start, and the focus lost and
    // regained afterwards pauses and resumes it.
    void sessionRunsWithoutFocus()
    {
        QCOMPARE(QGuiApplication::applicationState(), Qt::ApplicationInactive);
        SessionRig rig(m_folder.filePath(u"focus.ini"_s), saturdayNight());
        const auto stored = [&rig] {
            return StoredSession::decode(rig.store()->value(u"recentSessions"_s).toByteArray());
        };
        const auto session = [](int seconds) {
            return QList<StoredSession>{{saturdayNight(), seconds}};
        };
        rig.start().startNewSession();
        rig.now = rig.now.addSecs(5);
        QTRY_COMPARE(rig.manager->recentSessions(), session(5));
        QTRY_COMPARE(stored(), session(5)); // the first second reaches the store at once

        QWindow popover;
        popover.show();
        popover.requestActivate();
        QTRY_COMPARE(QGuiApplication::applicationState(), Qt::ApplicationActive);
        rig.now = rig.now.addSecs(3);
        QTRY_COMPARE(rig.manager->recentSessions(), session(8));
        QTest::qWait(200);
        QCOMPARE(stored(), session(5)); // not every second

        emit qGuiApp->applicationStateChanged(Qt::ApplicationInactive);
        QTRY_COMPARE(stored(), session(8)); // a pause writes it
        rig.now = rig.now.addSecs(100);
        QTest::qWait(1200);
        QCOMPARE(rig.manager->recentSessions(), session(8));

        emit qGuiApp->applicationStateChanged(Qt::ApplicationActive);
        rig.now = rig.now.addSecs(61);
        QTRY_COMPARE(rig.manager->recentSessions(), session(69));
        QTRY_COMPARE(stored(), session(69)); // a minute on, written while it runs
        rig.now = rig.now.addSecs(2);
        QTRY_COMPARE(rig.manager->recentSessions(), session(71));
        // A new session starts from nothing: none of the last one's time goes with it.
        rig.now = rig.now.addSecs(3);
        rig.manager->startNewSession();
        QTest::qWait(1200);
        QCOMPARE(rig.manager->recentSessions(), session(71));
        QCOMPARE(StoredSession::decode(rig.stored(u"recentSessions"_s).toByteArray()), session(71));
        QCOMPARE(rig.announced.size(), 1);
    }

    void sendsTheOldestHundred()
    {
        SignalManager manager(configuration());
        const uint idle = threads();
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
        QTRY_VERIFY2(threads() <= idle, "the network manager's thread goes with its last batch");
    }

    // Runs its work in order, on a thread that lives only while there is work.
    void serialWorkRunsInOrderWhileThereIsWork()
    {
        const uint idle = threads();
        QList<int> done;
        {
            SerialWorker worker("test");
            for (int round = 0; round < 2; ++round) {
                for (int n = 0; n < 50; ++n)
                    worker.post([&done, n] { done.append(n); });
                QTRY_VERIFY(threads() <= idle);
            }
            worker.post([&done] { done.append(-1); });
        }
        QCOMPARE(done.size(), 101);
        QCOMPARE(done.last(), -1);
        for (int n = 0; n < 100; ++n)
            QCOMPARE(done[n], n % 50);
    }

    void refusedBatchesComeBackBehindNewerRecords_data()
    {
        QTest::addColumn<FixtureResponse>("answer");
        QTest::newRow("401") << FixtureResponse{401, "{}", 100ms};
        QTest::newRow("413") << FixtureResponse{413, "{}", 100ms};
        QTest::newRow("500") << FixtureResponse{500, "{}", 100ms};
        QTest::newRow("cut short")
            << FixtureResponse{200, "{}", 100ms, FixtureResponse::Delivery::DropMidBody};
        QTest::newRow("endless answer")
            << FixtureResponse{200, "{}", 100ms, FixtureResponse::Delivery::Endless};
    }

    void refusedBatchesComeBackBehindNewerRecords()
    {
        QFETCH(FixtureResponse, answer);
        m_ingest->script(u"/v2/"_s, answer);
        SignalManager manager(configuration());
        manager.signalCache().push({record(1), record(2)});
        manager.attemptToSendNextBatchOfCachedSignals();
        QTRY_COMPARE(m_ingest->requestBodies().size(), 1);
        manager.signalCache().push(record(3)); // while the answer is on its way
        QTRY_COMPARE(manager.signalCache().count(), 3);
        QCOMPARE(m_log.errors().size(), 1);

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
        QFile saved(cacheFile());
        QVERIFY(saved.open(QIODevice::ReadOnly));
        // Dates in seconds since the first moment of 2001, UTC.
        QCOMPARE(QJsonDocument::fromJson(saved.readAll())[0][u"receivedAt"_s], 817041601.0);
        SignalManager next(configuration());
        QVERIFY(!QFile::exists(cacheFile()));
        QCOMPARE(next.signalCache().pop(), (QList{record(1), record(2), record(3)}));
    }

    // What can be read is kept; the rest is dropped with an error, and the file goes.
    void cacheFilesKeepWhatCanBeRead_data()
    {
        QTest::addColumn<QByteArray>("contents");
        QTest::addColumn<QStringList>("kept");
        QTest::addColumn<int>("errors");
        const auto file = [](const QJsonArray &records) { return QJsonDocument(records).toJson(); };
        const QByteArray good = file({record(1).toCacheJson()});
        QJsonObject untyped = record(2).toCacheJson();
        untyped.insert(u"type"_s, 7);
        QTest::newRow("truncated") << good.left(good.size() / 2) << QStringList() << 1;
        QTest::newRow("a wrongly typed record among good ones")
            << file({record(1).toCacheJson(), untyped, record(4).toCacheJson()})
            << QStringList{u"signal.1"_s, u"signal.4"_s} << 1;
    }

    void cacheFilesKeepWhatCanBeRead()
    {
        QFETCH(QByteArray, contents);
        QFETCH(QStringList, kept);
        writeCacheFile(contents);
        SignalManager manager(configuration());
        QStringList types;
        for (const SignalPostBody &body : manager.signalCache().pop())
            types.append(body.type);
        QCOMPARE(types, kept);
        QVERIFY(!QFile::exists(cacheFile()));
        QTEST(int(m_log.errors().size()), "errors");
    }

    // Of a file past 8 MiB, the newest records that fit in 8 MiB.
    void oversizedCacheFilesKeepTheNewest()
    {
        const QByteArray old =
            QJsonDocument(record(1).toCacheJson()).toJson(QJsonDocument::Compact);
        const QByteArray newest =
            QJsonDocument(record(9).toCacheJson()).toJson(QJsonDocument::Compact);
        const qsizetype count = 9 * 1024 * 1024 / (old.size() + 1);
        writeCacheFile('[' + (old + ',').repeated(count) + newest + ']');
        SignalManager manager(configuration());
        const qsizetype kept = manager.signalCache().count();
        QList<SignalPostBody> records;
        while (manager.signalCache().count() > 0)
            records.append(manager.signalCache().pop());
        QCOMPARE(records.last(), record(9));
        QCOMPARE(records.first(), record(1));
        // As many as fit, and not one more.
        QCOMPARE(kept - 1, (8 * 1024 * 1024 - (newest.size() + 1)) / (old.size() + 1));
        QCOMPARE(m_log.errors().size(), 1); // what went is told
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
            << u"parameter with reserved key prefix 'TelemetryDeck.'"_s;
        QTest::newRow("a prefix makes a reserved name safe")
            << u"App."_s << u"Type"_s << u"X"_s << u"App.Type"_s << u"App.X"_s << QString();
        QTest::newRow("reserved name, any case") << QString() << u"type"_s << u"k"_s << u"type"_s
                                                 << u"k"_s << u"signal with reserved name 'type'"_s;
        QTest::newRow("reserved prefix")
            << QString() << u"telemetrydeck.foo"_s << u"k"_s << u"telemetrydeck.foo"_s << u"k"_s
            << u"signal with reserved prefix 'TelemetryDeck.'"_s;
        QTest::newRow("reserved key") << QString() << u"ok"_s << u"locale"_s << u"ok"_s
                                      << u"locale"_s << u"parameter with reserved key 'locale'"_s;
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
        QCOMPARE(m_log.errors().size(), warning.isNull() ? 0 : 1);
        QVERIFY(warning.isNull() || m_log.errors().first().contains(warning));
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
        now = now.addSecs(5); // exactly 10 s after the first
        manager->syncSoon();
        QTest::qWait(200);
        QCOMPARE(m_ingest->requestBodies().size(), 1);
        now = now.addMSecs(5);
        manager->syncSoon();
        QTRY_COMPARE(m_ingest->requestBodies().size(), 2);
    }

    void aReturnWithinFiveMinutesContinuesTheSession_data()
    {
        QTest::addColumn<int>("secondsAway");
        QTest::addColumn<bool>("newSession");
        QTest::newRow("299 s") << 299 << false;
        QTest::newRow("300 s") << 300 << false;
        QTest::newRow("301 s") << 301 << true;
    }

    void aReturnWithinFiveMinutesContinuesTheSession()
    {
        QFETCH(int, secondsAway);
        QDateTime now = QDateTime::currentDateTimeUtc();
        const auto manager = TelemetryManager::create(configuration(), [&] { return now; });
        const QUuid session = manager->configuration()->sessionID();
        manager->didEnterBackground();
        now = now.addSecs(secondsAway);
        manager->willEnterForeground();
        QTEST(manager->configuration()->sessionID() != session, "newSession");
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
        QTest::addColumn<QString>("locale");
        QTest::addColumn<QStringList>("dayWeekendHourWeekQuarter");
        const QTimeZone zone("Asia/Kolkata");
        QTest::newRow("Saturday night")
            << QDateTime(QDate(2026, 11, 21), QTime(23, 30), zone) << u"de_DE"_s
            << QStringList{u"6"_s, u"true"_s, u"24"_s, u"47"_s, u"4"_s};
        QTest::newRow("Sunday, where weeks start on Monday")
            << QDateTime(QDate(2026, 11, 22), QTime(0, 5), zone) << u"en_GB"_s
            << QStringList{u"7"_s, u"true"_s, u"1"_s, u"47"_s, u"4"_s};
        QTest::newRow("Sunday, where weeks start on Sunday")
            << QDateTime(QDate(2026, 11, 22), QTime(0, 5), zone) << u"en_US"_s
            << QStringList{u"7"_s, u"true"_s, u"1"_s, u"48"_s, u"4"_s};
        QTest::newRow("a first week of four days, still December")
            << QDateTime(QDate(2025, 12, 29), QTime(9, 0), zone) << u"de_DE"_s
            << QStringList{u"1"_s, u"false"_s, u"10"_s, u"1"_s, u"4"_s};
        QTest::newRow("a first week of one day, in January")
            << QDateTime(QDate(2022, 1, 1), QTime(9, 0), zone) << u"en_US"_s
            << QStringList{u"6"_s, u"true"_s, u"10"_s, u"1"_s, u"1"_s};
        QTest::newRow("New Year's Day in the last week of the year before")
            << QDateTime(QDate(2021, 1, 1), QTime(9, 0), zone) << u"de_DE"_s
            << QStringList{u"5"_s, u"false"_s, u"10"_s, u"53"_s, u"1"_s};
        QTest::newRow("first of April")
            << QDateTime(QDate(2026, 4, 1), QTime(12, 0), zone) << u"de_DE"_s
            << QStringList{u"3"_s, u"false"_s, u"13"_s, u"14"_s, u"2"_s};
    }

    void calendarKeys()
    {
        QFETCH(QDateTime, moment);
        QFETCH(QString, locale);
        QFETCH(QStringList, dayWeekendHourWeekQuarter);
        const auto keys = DefaultSignalPayload::calendarParameters(moment, QLocale(locale));
        const QString prefix = u"TelemetryDeck.Calendar."_s;
        QCOMPARE(
            (QStringList{keys.value(prefix + u"dayOfWeek"_s), keys.value(prefix + u"isWeekend"_s),
                         keys.value(prefix + u"hourOfDay"_s), keys.value(prefix + u"weekOfYear"_s),
                         keys.value(prefix + u"quarterOfYear"_s)}),
            dayWeekendHourWeekQuarter);
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

    void quitWritesTheSessionsLastSeconds()
    {
        SessionRig rig(m_folder.filePath(u"quit.ini"_s), saturdayNight());
        const auto stored = [&rig] {
            return StoredSession::decode(rig.store()->value(u"recentSessions"_s).toByteArray());
        };
        rig.start().startNewSession();
        rig.now = rig.now.addSecs(2);
        QTRY_COMPARE(stored(), (QList<StoredSession>{{saturdayNight(), 2}}));
        rig.now = rig.now.addSecs(5); // the next write is a minute away
        QVERIFY(QMetaObject::invokeMethod(qApp, "aboutToQuit"));
        QTRY_COMPARE(stored(), (QList<StoredSession>{{saturdayNight(), 7}}));
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
        QTest::newRow("91 days ago goes, 89 stays")
            << QList<int>{91, 89} << QVariant(3) << QStringList{} << 1 << qint64(4) << 1;
        QTest::newRow("second launch of the day")
            << QList<int>{1} << QVariant() << QStringList{u"2026-11-20"_s, u"2026-11-21"_s} << 1
            << qint64(0) << 2;
        QTest::newRow("one earlier day, stored as text")
            << QList<int>{1} << QVariant() << QStringList{u"2026-11-20"_s} << 1 << qint64(0) << 2;
        QTest::newRow("a session in the future stays")
            << QList<int>{-400} << QVariant() << QStringList{} << 1 << qint64(0) << 1;
        QTest::newRow("two kept, the first one is the previous")
            << QList<int>{3, 2} << QVariant() << QStringList{} << 2 << qint64(0) << 1;
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
        QFETCH(int, kept);
        QCOMPARE(rig.manager->previousSessionSeconds(),
                 kept >= 2 ? std::optional(60) : std::optional<int>());
        QCOMPARE(rig.manager->averageSessionSeconds(), kept >= 2 ? 60 : 0);
        QTEST(rig.stored(u"deletedSessionsCount"_s).toLongLong(), "deletedAfter");
        const QStringList days = rig.store()->value(u"distinctDaysUsed"_s).toStringList();
        QTEST(int(days.size()), "daysAfter");
        QCOMPARE(days.last(), u"2026-11-21"_s);
    }

    // Whatever the store holds, start-up reads it as an empty history and goes on.
    void unreadableStoreValuesCountAsNothing_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QVariant>("value");
        QTest::newRow("history not JSON") << u"recentSessions"_s << QVariant(QByteArray("[{"));
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

    // Each desktop's own switches, as its settings portal carries them.
    void desktopAccessibility_data()
    {
        QTest::addColumn<QVariantMap>("portal");
        QTest::addColumn<bool>("reduceMotion");
        QTest::addColumn<bool>("invertColors");
        const QString magnifier = u"org.gnome.desktop.a11y.applications/screen-magnifier-enabled"_s;
        const QString inversion = u"org.gnome.desktop.a11y.magnifier/invert-lightness"_s;
        QTest::newRow("nothing said") << QVariantMap() << false << false;
        QTest::newRow("GNOME, animations off")
            << QVariantMap{{u"org.gnome.desktop.interface/enable-animations"_s, false}} << true
            << false;
        QTest::newRow("GNOME, the magnifier inverting")
            << QVariantMap{{magnifier, true}, {inversion, true}} << false << true;
        QTest::newRow("GNOME, inversion set but no magnifier")
            << QVariantMap{{magnifier, false}, {inversion, true}} << false << false;
        QTest::newRow("the portal's own reduced motion")
            << QVariantMap{{u"org.freedesktop.appearance/reduced-motion"_s, 1u}} << true << false;
        QTest::newRow("KDE") << QVariantMap{{u"org.kde.kdeglobals.KDE/AnimationDurationFactor"_s,
                                             0.0}}
                             << true << false;
    }

    void desktopAccessibility()
    {
        QFETCH(QVariantMap, portal);
        m_portal.settings = portal;
        DesktopAccessibility desktop;
        bool read = false;
        desktop.whenRead(this, [&read] { read = true; });
        QTRY_VERIFY(read);
        QTEST(desktop.reduceMotion(), "reduceMotion");
        QTEST(desktop.invertColors(), "invertColors");
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

int main(int argc, char *argv[])
{
    // A locale, languages and a configuration folder of the test's own, so that every value
    // taken from them is known.
    qputenv("LC_ALL", "fr_CA.UTF-8");
    qputenv("LANGUAGE", "fr_CA:de");
    QLocale::setDefault(QLocale(u"de_CH"_s));
    QTemporaryDir config;
    qputenv("XDG_CONFIG_HOME", config.path().toUtf8());
    QGuiApplication application(argc, argv);
    AnalyticsTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_analytics.moc"
