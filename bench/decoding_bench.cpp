#include "MatchesResponse.h"
#include "ZelScorecard.h"

#include <benchmark/benchmark.h>
#include <QJsonDocument>

namespace {

QByteArray matchList(int count)
{
    QByteArray json = R"({"matches": [)";
    for (int i = 0; i < count; ++i) {
        if (i > 0)
            json += ',';
        const QByteArray n = QByteArray::number(i);
        json += R"json({"matchID": )json" + QByteArray::number(100000 + i) + R"json(,
  "matchOrder": "Match )json" +
                n + R"json(", "matchName": "Lions vs Tigers", "status": "live",
  "startTime": "2026-04-05T19:30:00+05:30",
  "venue": {"ground": "Narmada Oval", "city": "Pune"},
  "homeTeam": {"id": "11", "name": "Lions", "logoURL": "/logos/lio.png", "code": "LIO"},
  "awayTeam": {"id": "22", "name": "Tigers", "logoURL": "https://cdn.zel.example/tig.png", "code": "TIG"},
  "batting": {"firstTeamID": 22, "firstTeamCode": "TIG", "secondTeamCode": "LIO",
              "firstSummary": "182/6 (20 Ov)", "secondSummary": "150/3 (15.2 Ov)"},
  "toss": {"details": "Tigers won the toss and elected to bat"},
  "result": {"winningTeamID": "", "description": ""},
  "live": {"currentInnings": "2",
           "striker": {"name": "Arjun Mehta", "runs": 64, "balls": 41},
           "nonStriker": {"name": "Kabir Rao", "runs": 12, "balls": 10},
           "bowler": {"name": "Dev Iyer", "overs": "3.2", "wickets": 1}}})json";
    }
    return json + "]}";
}

QByteArray scorecard(int innings)
{
    QByteArray json = R"({"innings": [)";
    for (int i = 0; i < innings; ++i) {
        json += i > 0 ? "," : "";
        json += R"({"inningsNo": )" + QByteArray::number(i + 1) +
                R"(, "battingTeamName": "Lions", "batting": [)";
        for (int b = 0; b < 11; ++b) {
            json += b > 0 ? "," : "";
            json += R"({"name": "Batter )" + QByteArray::number(b) +
                    R"(", "runs": 34, "balls": 25, "fours": 3, "sixes": 1,
                       "strikeRate": "136.00", "isNotOut": false})";
        }
        json += R"(], "bowling": [)";
        for (int b = 0; b < 6; ++b) {
            json += b > 0 ? "," : "";
            json +=
                R"({"name": "Bowler )" + QByteArray::number(b) +
                R"(", "overs": "4", "maidens": 0, "runs": 31, "wickets": 2, "economy": "7.75"})";
        }
        json += "]}";
    }
    return json + "]}";
}

void BM_MatchList(benchmark::State &state)
{
    const QByteArray json = matchList(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        auto result = MatchesResponse::fromJson(json);
        benchmark::DoNotOptimize(result);
        if (!result.isOk())
            state.SkipWithError("decode failed");
    }
    state.SetBytesProcessed(state.iterations() * json.size());
}

// Qt's own JSON parser on the same text, the baseline the decoder has to beat.
void BM_QtJsonParseOnly(benchmark::State &state)
{
    const QByteArray json = matchList(static_cast<int>(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(QJsonDocument::fromJson(json));
    state.SetBytesProcessed(state.iterations() * json.size());
}

void BM_Scorecard(benchmark::State &state)
{
    const QByteArray json = scorecard(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        auto result = ZelScorecard::fromJson(json);
        benchmark::DoNotOptimize(result);
        if (!result.isOk())
            state.SkipWithError("decode failed");
    }
    state.SetBytesProcessed(state.iterations() * json.size());
}

} // namespace

BENCHMARK(BM_MatchList)->Arg(1000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_QtJsonParseOnly)->Arg(1000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Scorecard)->Arg(40)->Unit(benchmark::kMicrosecond);
