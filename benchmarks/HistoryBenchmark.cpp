// Reading and writing a history as it grows, beside what else could read it.
//
//   decodeIntoRecords/N          a stored document into records, strictly
//   decodeIntoOutcomes/N         into what figures need of them, as strictly
//   decodeInto...Cold/N          the same in fresh memory; the others use the last round's
//   simdjsonIntoPlainStructs/N   the same document by the parser alone: keys in their known order,
//                                UTF-8 texts, nothing checked that is not needed
//   qJsonDocumentParse/N         the same document into QJsonDocument, and no further
//   encodeRecords/N, qJsonDocumentWrite/N   and back
//   saveHistory/N                a finished session saved: the history read, merged, written, and
//                                committed so that another process can read it, on the disk of the
//                                current folder

#include "BenchmarkHistory.h"
#include "BenchmarkSession.h"
#include "DefaultsFolder.h"
#include "FreshMemory.h"
#include "SessionOutcome.h"
#include "StoredKeys.h"
#include "StoredUserDefaults.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>

#include <SQLiteCpp/SQLiteCpp.h>
#include <benchmark/benchmark.h>

#include <thread>

#include <simdjson.h>

using namespace Qt::StringLiterals;
using namespace tarne;
using namespace tarne::benchmarks;

namespace {

void setBytes(benchmark::State &state, qsizetype size) {
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * size);
    state.counters["document_MB"] = static_cast<double>(size) / 1e6;
}

template <class Decode>
void decodeInto(benchmark::State &state, Decode decode, bool isCold) {
    const QByteArray &document = documentOf(state.range(0));
    for (auto _ : state) {
        if (isCold)
            freshMemory(state);
        auto history = decode(document);
        benchmark::DoNotOptimize(history);
    }
    setBytes(state, document.size());
}

void decodeIntoRecords(benchmark::State &state) {
    decodeInto(state, decodeHistory, false);
}

void decodeIntoRecordsCold(benchmark::State &state) {
    decodeInto(state, decodeHistory, true);
}

void decodeIntoOutcomes(benchmark::State &state) {
    decodeInto(state, decodeOutcomes, false);
}

void decodeIntoOutcomesCold(benchmark::State &state) {
    decodeInto(state, decodeOutcomes, true);
}

struct PlainGoal {
    std::string id, text, status;
};
struct PlainEntry {
    std::string id;
    double sessionDate;
    std::vector<PlainGoal> goals;
    double duration;
    std::string overallAssessment, patternsObserved, suggestions, motivation, reflection;
};

void simdjsonIntoPlainStructs(benchmark::State &state) {
    const QByteArray &document = documentOf(state.range(0));
    const auto text = [](auto &&value) { return std::string(std::string_view(value)); };
    for (auto _ : state) {
        const simdjson::padded_string padded(document.constData(),
                                             static_cast<std::size_t>(document.size()));
        simdjson::ondemand::parser parser;
        auto parsed = parser.iterate(padded);
        std::vector<PlainEntry> history;
        for (auto entry : parsed.get_array()) {
            PlainEntry &plain = history.emplace_back();
            plain.id = text(entry["id"]);
            plain.sessionDate = double(entry["sessionDate"]);
            for (auto goal : entry["goals"].get_array())
                plain.goals.push_back({text(goal["id"]), text(goal["text"]), text(goal["status"])});
            plain.duration = double(entry["duration"]);
            plain.overallAssessment = text(entry["overallAssessment"]);
            plain.patternsObserved = text(entry["patternsObserved"]);
            plain.suggestions = text(entry["suggestions"]);
            plain.motivation = text(entry["motivation"]);
            plain.reflection = text(entry["reflection"]);
        }
        benchmark::DoNotOptimize(history);
    }
    setBytes(state, document.size());
}

void qJsonDocumentParse(benchmark::State &state) {
    const QByteArray &document = documentOf(state.range(0));
    for (auto _ : state) {
        QJsonDocument parsed = QJsonDocument::fromJson(document);
        benchmark::DoNotOptimize(parsed);
    }
    setBytes(state, document.size());
}

void encodeRecords(benchmark::State &state) {
    const auto history = decodeHistory(documentOf(state.range(0))).value();
    for (auto _ : state) {
        auto document = encodeHistory(history);
        benchmark::DoNotOptimize(document);
    }
    setBytes(state, documentOf(state.range(0)).size());
}

void qJsonDocumentWrite(benchmark::State &state) {
    const QJsonDocument parsed = QJsonDocument::fromJson(documentOf(state.range(0)));
    for (auto _ : state) {
        QByteArray document = parsed.toJson(QJsonDocument::Compact);
        benchmark::DoNotOptimize(document);
    }
    setBytes(state, documentOf(state.range(0)).size());
}

/// Another process's view of the store.
class Reader {
public:
    explicit Reader(const QString &file)
        : m_database(file.toStdString(), SQLite::OPEN_READONLY, 1000), m_seen(version()) {}

    void awaitCommit() {
        int now = version();
        for (; now == m_seen; now = version())
            std::this_thread::sleep_for(std::chrono::microseconds(100));
        m_seen = now;
    }

private:
    int version() { return m_database.execAndGet("PRAGMA data_version").getInt(); }

    SQLite::Database m_database;
    int m_seen;
};

void saveHistory(benchmark::State &state) {
    const QTemporaryDir directory(u"history-benchmark-XXXXXX"_s);
    const Date now = endOfHistory(state.range(0));
    const test::ManualTime clock(now);
    test::ManualTime runLoop;
    StoredUserDefaults defaults(directory.path(), {}, clock, runLoop);
    BenchmarkSession session(defaults, now);
    defaults.setObject(keys::sessionHistory, documentOf(state.range(0)));
    Reader reader(DefaultsFolder(directory.path()).file());
    const auto commit = [&] {
        defaults.synchronize();
        // The store hands over a few milliseconds later, behind both controllers.
        runLoop.advance(std::chrono::milliseconds(100));
        reader.awaitCommit();
    };
    commit();
    FocusSession finished{.goal = u"Write"_s, .goals = {{.text = u"Write"_s}}};
    for (auto _ : state) {
        session.time.setWallClock(session.time.now() + 3600);
        finished.endTime = session.time.now();
        session.controller.saveSessionToHistory(finished);
        commit();
        state.PauseTiming();
        // The writer goes on to merge its log into the file, which no save waits for.
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
        state.ResumeTiming();
    }
    setBytes(state, documentOf(state.range(0)).size());
}

} // namespace

#define HISTORY_BENCHMARK(function)                                                                \
    BENCHMARK(function)->RangeMultiplier(10)->Range(100, 100000)->Unit(benchmark::kMillisecond)

HISTORY_BENCHMARK(decodeIntoRecords);
HISTORY_BENCHMARK(decodeIntoRecordsCold);
HISTORY_BENCHMARK(decodeIntoOutcomes);
HISTORY_BENCHMARK(decodeIntoOutcomesCold);
HISTORY_BENCHMARK(simdjsonIntoPlainStructs);
HISTORY_BENCHMARK(qJsonDocumentParse);
HISTORY_BENCHMARK(encodeRecords);
HISTORY_BENCHMARK(qJsonDocumentWrite);
HISTORY_BENCHMARK(saveHistory)->Iterations(10)->MeasureProcessCPUTime()->UseRealTime();

BENCHMARK_MAIN();
