#include "CryptoHashing.h"
#include "SignalPostBody.h"
#include "TelemetryDeck.h"
#include "TelemetryManagerConfiguration.h"

#include <benchmark/benchmark.h>
#include <QGuiApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSettings>
#include <QTemporaryDir>
#include <QThreadPool>

namespace {

// The main thread's share of one signal: the facade's checks, then the hop that reads the
// metadata (screen, desktop settings, calendar, retention) and hands the record on. The argument
// is the number of days of use already in the store.
void BM_SignalOnMainThread(benchmark::State &state)
{
    QTemporaryDir folder;
    QStringList days;
    for (int day = 0; day < state.range(0); ++day)
        days.append(QDate(2000, 1, 1).addDays(day).toString(Qt::ISODate));
    {
        QSettings store(
            folder.filePath(QStringLiteral("seprior.") +
                            CryptoHashing::sha256(QStringLiteral("BENCH"), QString()).right(12)),
            QSettings::IniFormat);
        store.setValue(QStringLiteral("distinctDaysUsed"), days);
    }
    auto configuration = std::make_shared<TelemetryManagerConfiguration>(
        QStringLiteral("BENCH"), QString(), QUrl(QStringLiteral("http://127.0.0.1:9/")));
    configuration->cacheDirectory.set(folder.path());
    configuration->storeDirectory.set(folder.path());
    configuration->logHandler.set(std::nullopt);
    configuration->sendNewSessionBeganSignal.set(false);
    TelemetryDeck::initialize(configuration);
    const QMap<QString, QString> parameters{{QStringLiteral("screen"), QStringLiteral("today")}};
    for (auto _ : state) {
        TelemetryDeck::signal(QStringLiteral("bench.signal"), parameters);
        QCoreApplication::sendPostedEvents();
    }
    QThreadPool::globalInstance()->waitForDone();
    TelemetryDeck::terminate();
}
BENCHMARK(BM_SignalOnMainThread)->Arg(0)->Arg(100'000)->Unit(benchmark::kMicrosecond);

void BM_EncodeBatchOf100(benchmark::State &state)
{
    QList<SignalPostBody> batch;
    for (int n = 0; n < 100; ++n) {
        QMap<QString, QString> payload;
        for (int key = 0; key < 40; ++key)
            payload.insert(QStringLiteral("TelemetryDeck.Key%1").arg(key), QStringLiteral("value"));
        batch.append({QDateTime::currentDateTimeUtc(), QStringLiteral("APP"), QString(64, u'a'),
                      QStringLiteral("SESSION"), QStringLiteral("bench"), std::nullopt, payload,
                      QStringLiteral("false")});
    }
    for (auto _ : state) {
        QJsonArray records;
        for (const SignalPostBody &record : batch)
            records.append(record.toWireJson());
        benchmark::DoNotOptimize(QJsonDocument(records).toJson(QJsonDocument::Compact));
    }
}
BENCHMARK(BM_EncodeBatchOf100)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char **argv)
{
    // Screens and palettes as the app has them, without a display.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
