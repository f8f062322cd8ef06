#include "ImageCache.h"
#include "LeagueCalendar.h"
#include "StatusTitle.h"

#include <benchmark/benchmark.h>
#include <QCoreApplication>
#include <QTemporaryDir>

namespace {

const QDateTime now = QDateTime::fromString("2026-11-22T14:00:00+05:30", Qt::ISODate);

struct League {
    QList<ZelMatch> matches;
    QList<std::optional<QDateTime>> starts;
};

// A list that makes the title walk every rule: nothing live, today's matches finished without
// a comment, and the one upcoming fixture at the very end.
League league(int count, const QString &status, int firstDayOffset)
{
    League league;
    for (int i = 0; i < count; ++i) {
        ZelMatch match;
        match.matchID = i;
        match.matchStatus = i == count - 1 && status == "upcoming" ? status : "finished";
        match.startTime =
            now.addSecs(qint64(firstDayOffset) * 86400 + i * 60).toString(Qt::ISODate);
        league.starts.append(LeagueCalendar::parseStartTime(match.startTime));
        league.matches.append(match);
    }
    return league;
}

void BM_UpdateStatusBar(benchmark::State &state)
{
    const League today = league(1000, "finished", 0);
    const League fixtures = league(1000, "upcoming", 1);
    for (auto _ : state) {
        StatusTitle::Line title = StatusTitle::compose({today.matches, today.starts},
                                                       {fixtures.matches, fixtures.starts}, now);
        benchmark::DoNotOptimize(title);
    }
}

// Only the call on the main thread is timed: the downloads happen on the cache's own thread.
void BM_PrefetchReturn(benchmark::State &state)
{
    QTemporaryDir folder;
    ImageCache cache(folder.path());
    int batch = 0;
    for (auto _ : state) {
        state.PauseTiming();
        QList<QUrl> urls;
        for (int i = 0; i < 100; ++i)
            urls.append(
                QUrl(QStringLiteral("http://127.0.0.1:9/logos/%1-%2.png").arg(batch).arg(i)));
        ++batch;
        state.ResumeTiming();
        cache.prefetch(urls);
    }
}

} // namespace

BENCHMARK(BM_UpdateStatusBar)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_PrefetchReturn)->Unit(benchmark::kMicrosecond)->Iterations(200);

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
