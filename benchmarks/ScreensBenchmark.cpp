// What the screens work out of a history as it grows.
//
//   insightsDrawing/N        one drawing of the insights: the history read and all figures
//   insightsDrawingCold/N    the same in fresh memory
//   insightsFigures/N        the figures alone
//   historyGrouping/N        the history's groups in their order, each entry in its place

#include "BenchmarkHistory.h"
#include "BenchmarkSession.h"
#include "FreshMemory.h"
#include "HistoryGrouping.h"
#include "InsightsView.h"
#include "MemoryDefaults.h"
#include "StoredKeys.h"

#include <benchmark/benchmark.h>

using namespace tarne;
using namespace tarne::benchmarks;

namespace {

void drawInsights(benchmark::State &state, bool isCold) {
    test::MemoryDefaults defaults;
    defaults.setObject(keys::sessionHistory, documentOf(state.range(0)));
    BenchmarkSession session(defaults, endOfHistory(state.range(0)));
    InsightsView view(session.controller, session.time, BenchmarkSession::calendar);
    for (auto _ : state) {
        if (isCold)
            freshMemory(state);
        view.appear();
        view.disappear();
    }
}

void insightsDrawing(benchmark::State &state) {
    drawInsights(state, false);
}

void insightsDrawingCold(benchmark::State &state) {
    drawInsights(state, true);
}

void insightsFigures(benchmark::State &state) {
    const auto outcomes = outcomesOf(historyOf(state.range(0)));
    for (auto _ : state) {
        const Calendar calendar = BenchmarkSession::calendar();
        const InsightsFigures figures(outcomes, calendar, endOfHistory(state.range(0)));
        benchmark::DoNotOptimize(figures.calculateCurrentStreak());
        benchmark::DoNotOptimize(figures.calculateLongestStreak());
        benchmark::DoNotOptimize(figures.goalCompletionPercentages());
        benchmark::DoNotOptimize(figures.calculateProductivityTimes());
        benchmark::DoNotOptimize(figures.totalSessionsThisYear());
        const auto weeks = figures.weeklyData();
        benchmark::DoNotOptimize(InsightsFigures::monthLabels(weeks, calendar));
    }
}

void historyGrouping(benchmark::State &state) {
    const auto history = historyOf(state.range(0));
    for (auto _ : state) {
        const HistoryGrouping grouping(BenchmarkSession::calendar(), endOfHistory(state.range(0)));
        auto groups = grouping.groupedEntries(history);
        for (HistoryGroup &group : groups)
            HistoryGrouping::sortForDisplay(group.value);
        benchmark::DoNotOptimize(groups);
    }
}

} // namespace

#define SCREENS_BENCHMARK(function)                                                                \
    BENCHMARK(function)->RangeMultiplier(10)->Range(100, 100000)->Unit(benchmark::kMillisecond)

SCREENS_BENCHMARK(insightsDrawing);
SCREENS_BENCHMARK(insightsDrawingCold);
SCREENS_BENCHMARK(insightsFigures);
SCREENS_BENCHMARK(historyGrouping);

BENCHMARK_MAIN();
