#include "SignalPostBody.h"
#include "TelemetryDeck.h"
#include "TelemetryManagerConfiguration.h"

#include <benchmark/benchmark.h>
#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>
#include <QThreadPool>

namespace {

// The main thread's share of one signal: the facade's checks, then the hop that reads the
// metadata and hands the record to a pool thread.
void BM_SignalOnMainThread(benchmark::State &state)
{
    QTemporaryDir folder;
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
BENCHMARK(BM_SignalOnMainThread)->Unit(benchmark::kMicrosecond);

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
    QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
