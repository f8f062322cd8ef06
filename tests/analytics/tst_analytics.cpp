#include "DefaultSignalPayload.h"
#include "FixtureServer.h"
#include "SignalManager.h"
#include "TelemetryDeck.h"
#include "TelemetryManager.h"
#include "TelemetryManagerConfiguration.h"

#include <mutex>
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

    QString cacheFile() const { return m_folder.filePath(u"cache/telemetrysignalcache"_s); }

    void writeCacheFile(const QByteArray &data)
    {
        QDir().mkpath(m_folder.filePath(u"cache"_s));
        QFile file(cacheFile());
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(data);
    }

private slots:
    void init()
    {
        m_ingest = std::make_unique<FixtureServer>();
        m_ingest->scriptDefault({200, "{}"});
        m_log.clear();
        QFile::remove(cacheFile());
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
        QTest::newRow("dropped") << FixtureResponse{200, "{\"ok\": true}", 100ms,
                                                    FixtureResponse::Delivery::DropMidBody}
                                 << u"Connection closed"_s;
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

    void prefixesAndReservedNames_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("sentName");
        QTest::addColumn<QString>("sentKey");
        QTest::addColumn<QStringList>("warnings");
        QTest::newRow("plain") << u"launched"_s << u"screen"_s << u"App.launched"_s
                               << u"App.screen"_s << QStringList();
        QTest::newRow("namespaced key kept")
            << u"launched"_s << u"TelemetryDeck.Device.modelName"_s << u"App.launched"_s
            << u"TelemetryDeck.Device.modelName"_s
            << QStringList{u"Sending parameter with reserved key prefix 'TelemetryDeck.'"_s};
        QTest::newRow("reserved names, any case")
            << u"Type"_s << u"X"_s << u"App.Type"_s << u"App.X"_s << QStringList();
        QTest::newRow("reserved prefix")
            << u"telemetrydeck.foo"_s << u"x"_s << u"App.telemetrydeck.foo"_s << u"App.x"_s
            << QStringList();
    }

    void prefixesAndReservedNames()
    {
        QFETCH(QString, name);
        QFETCH(QString, key);
        QFETCH(QString, sentName);
        QFETCH(QString, sentKey);
        QFETCH(QStringList, warnings);
        auto config = configuration();
        config->defaultSignalPrefix.set(u"App."_s);
        config->defaultParameterPrefix.set(u"App."_s);
        config->sendNewSessionBeganSignal.set(false);
        TelemetryDeck::initialize(config);
        TelemetryDeck::signal(name, {{key, u"v"_s}});
        auto &manager = TelemetryManager::shared()->signalManager();
        QTRY_VERIFY(!m_log.lines().filter(u"Process signal"_s).isEmpty());
        manager.attemptToSendNextBatchOfCachedSignals();
        QTRY_COMPARE(m_ingest->requestBodies().size(), 1);
        const QJsonValue sent = QJsonDocument::fromJson(m_ingest->requestBodies()[0]).array()[0];
        QCOMPARE(sent[u"type"_s].toString(), sentName);
        QCOMPARE(sent[u"payload"_s][sentKey].toString(), u"v"_s);
        QCOMPARE(sent[u"appID"_s].toString(), u"APP-ID"_s);
        QCOMPARE(sent[u"clientUser"_s].toString().size(), 64);
        for (const QString &warning : warnings)
            QCOMPARE(m_log.errors().filter(warning).size(), 1);
        QCOMPARE(m_log.errors().size(), warnings.size());
    }

    void reservedSignalNamesWarnButStillSend_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("warning");
        QTest::newRow("reserved name") << u"Type"_s
                                       << u"ERROR Sending signal with reserved name 'Type' will "
                                          "cause unexpected behavior. Please use another name "
                                          "instead."_s;
        QTest::newRow("reserved prefix") << u"telemetrydeck.foo"_s
                                         << u"ERROR Sending signal with reserved prefix "
                                            "'TelemetryDeck.' will cause unexpected behavior. "
                                            "Please use another prefix instead."_s;
        QTest::newRow("reserved key") << u"ok"_s
                                      << u"ERROR Sending parameter with reserved key 'locale' "
                                         "will cause unexpected behavior. Please use another key "
                                         "instead."_s;
    }

    void reservedSignalNamesWarnButStillSend()
    {
        QFETCH(QString, name);
        QFETCH(QString, warning);
        auto config = configuration();
        config->sendNewSessionBeganSignal.set(false);
        TelemetryDeck::initialize(config);
        TelemetryDeck::signal(name, {{name == u"ok"_s ? u"locale"_s : u"k"_s, u"v"_s}});
        QTRY_VERIFY(!m_log.lines().filter(u"Process signal"_s).isEmpty());
        QCOMPARE(m_log.errors(), QStringList{warning});
    }

    void syncRequestsAreThrottled()
    {
        QDateTime now = QDateTime::currentDateTimeUtc();
        auto config = configuration();
        config->sendNewSessionBeganSignal.set(false);
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
        const QJsonValue sent = QJsonDocument::fromJson(m_ingest->requestBodies()[0]).array()[0];
        QCOMPARE(sent[u"type"_s].toString(), u"TelemetryDeck.Session.started"_s);
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

    // Eight threads send while the timer and immediate syncs send: each signal arrives once.
    void everySignalArrivesOnceUnderLoad()
    {
        constexpr int threads = 8;
        constexpr int perThread = 1250;
        auto config = configuration();
        config->sendNewSessionBeganSignal.set(false);
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
