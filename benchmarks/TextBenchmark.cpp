// Cutting up texts as they grow. Bytes are those of the UTF-16 text.
//
//   parseFeedbackText/N   a model's answer of N characters
//   parseGoals/N          a line of N goals, 30 characters each

#include "FocusSession.h"
#include "ParsedFeedback.h"

#include <benchmark/benchmark.h>

using namespace Qt::StringLiterals;
using namespace tarne;

namespace {

void setBytes(benchmark::State &state, const QString &text) {
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * text.size() *
                            static_cast<int64_t>(sizeof(QChar)));
}

void parseFeedbackText(benchmark::State &state) {
    const QString line =
        u"You kept your focus for most of the session, and it shows in what you got done.\n"_s;
    const qsizetype lines = state.range(0) / 4 / line.size();
    QString answer;
    for (const auto *label : {u"**Overall Assessment:** ", u"**Patterns Observed:** ",
                              u"**Advice:** ", u"**Motivation:** "})
        answer += QString::fromUtf16(label) + line.repeated(lines) + u'\n';
    for (auto _ : state) {
        auto feedback = tarne::parseFeedbackText(answer);
        benchmark::DoNotOptimize(feedback);
    }
    setBytes(state, answer);
}

void parseGoals(benchmark::State &state) {
    const QString line = u" Write the quarterly report ,\t"_s.repeated(state.range(0));
    for (auto _ : state) {
        auto goals = FocusSession::parseGoals(line);
        benchmark::DoNotOptimize(goals);
    }
    setBytes(state, line);
}

} // namespace

BENCHMARK(parseFeedbackText)
    ->RangeMultiplier(10)
    ->Range(10'000, 10'000'000)
    ->Arg(64'000'000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(parseGoals)->RangeMultiplier(10)->Range(10, 100'000)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
