// What the defaults store costs, on the disk that the current folder lies on.
//
//   writeHistory/N     write and commit a changed history of N entries (1,160 bytes each)
//   writeRawFile/N     the same bytes written to a plain file and synchronised, which is the least
//                      that a lasting save can cost
//   handOverHistory/N  what that write costs the main thread: comparing, keeping, handing over
//   loadStore/N        opening a store with such a history, checks included
//   diskBytes/idle     bytes a second that the process sends to the disk while two controllers
//   diskBytes/running  publish in alternation: with no session, and with one that counts down

#include "DefaultsFolder.h"
#include "QtRunLoop.h"
#include "SQLiteFile.h"
#include "StoredUserDefaults.h"
#include "SystemClock.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>
#include <QTimer>

#include <fcntl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace tarne;

namespace {

constexpr qsizetype bytesOfAnEntry = 1160;
const QString historyKey = u"SessionHistory"_s;

/// A folder on the disk of the current one: that of temporary files may be memory.
class Folder {
public:
    QString path() const { return m_directory.path(); }
    QString file() const { return DefaultsFolder(path()).file(); }

private:
    QTemporaryDir m_directory{u"store-benchmark-XXXXXX"_s};
};

/// Text that differs in each save in all its bytes.
QByteArray history(qsizetype entries, int save) {
    return QByteArray(entries * bytesOfAnEntry, static_cast<char>('a' + save % 26));
}

void saveHistory(benchmark::State &state) {
    const Folder folder;
    DefaultsFolder(folder.path()).create();
    SQLiteFile file(folder.file(), SQLiteFile::Access::ReadWrite);
    int save = 0;
    for (auto _ : state) {
        state.PauseTiming();
        const QByteArray document = history(state.range(0), ++save);
        state.ResumeTiming();
        file.write({{historyKey, document}}, SQLiteFile::Commit::Durable);
    }
    state.SetBytesProcessed(state.iterations() * state.range(0) * bytesOfAnEntry);
}

void saveRawFile(benchmark::State &state) {
    const Folder folder;
    const QByteArray path = QFile::encodeName(folder.file());
    const int file = ::open(path.constData(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    int save = 0;
    for (auto _ : state) {
        state.PauseTiming();
        const QByteArray document = history(state.range(0), ++save);
        state.ResumeTiming();
        if (::pwrite(file, document.constData(), static_cast<size_t>(document.size()), 0) !=
                document.size() ||
            ::fdatasync(file) != 0)
            state.SkipWithError("the disk refuses");
    }
    ::close(file);
    state.SetBytesProcessed(state.iterations() * state.range(0) * bytesOfAnEntry);
}

/// Runs nothing but the hand-over that was asked for last, when told.
class HandOverOnly final : public RunLoop {
public:
    void async(Block) override {}
    void asyncAfter(Seconds, Block block) override { m_handOver = std::move(block); }
    Timer scheduleRepeating(Seconds, Block) override { return Timer::None; }
    void invalidate(Timer) override {}
    void run() { m_handOver(); }

private:
    Block m_handOver;
};

void handOver(benchmark::State &state) {
    const Folder folder;
    const SystemClock clock;
    HandOverOnly runLoop;
    StoredUserDefaults defaults(folder.path(), {}, clock, runLoop);
    int save = 0;
    for (auto _ : state) {
        state.PauseTiming();
        const QByteArray document = history(state.range(0), ++save);
        state.ResumeTiming();
        defaults.setObject(historyKey, document);
        defaults.synchronize();
        runLoop.run();
    }
}

void load(benchmark::State &state) {
    const Folder folder;
    const SystemClock clock;
    HandOverOnly runLoop;
    StoredUserDefaults(folder.path(), {}, clock, runLoop)
        .setObject(historyKey, history(state.range(0), 0));
    for (auto _ : state) {
        SQLiteFile file(folder.file(), SQLiteFile::Access::ReadWrite);
        benchmark::DoNotOptimize(file.load());
    }
    state.SetBytesProcessed(state.iterations() * state.range(0) * bytesOfAnEntry);
}

/// Bytes that this process has caused to be sent to the disk.
qint64 bytesSentToDisk() {
    QFile counters(u"/proc/self/io"_s);
    if (!counters.open(QIODevice::ReadOnly))
        return 0;
    const QByteArray text = counters.readAll();
    const QByteArray name = "\nwrite_bytes: ";
    return text.mid(text.indexOf(name) + name.size()).split('\n').constFirst().toLongLong();
}

void publishCleared(UserDefaults &defaults) {
    defaults.setObject(u"SessionActive"_s, qint64{0});
    defaults.setObject(u"SessionGoals"_s, QString());
    defaults.setObject(u"SessionId"_s, QString());
    for (const auto &key : {u"TimeRemaining"_s, u"SessionDuration"_s, u"SessionProgress"_s})
        defaults.setObject(key, 0.0);
    defaults.synchronize();
}

void publishLive(UserDefaults &defaults, double remaining, Date now) {
    defaults.setObject(u"SessionActive"_s, qint64{1});
    defaults.setObject(u"SessionGoals"_s, u"Write report, Review"_s);
    defaults.setObject(u"SessionId"_s, u"D7E2C3A4-6F0B-4B7E-9A51-0C3A9B7F2E11"_s);
    defaults.setObject(u"TimeRemaining"_s, remaining);
    defaults.setObject(u"SessionDuration"_s, 1500.0);
    defaults.setObject(u"SessionProgress"_s, remaining / 1500.0);
    defaults.setObject(u"LastUpdate"_s, now.secondsSince1970());
    defaults.synchronize();
}

void saveTimerState(UserDefaults &defaults, Date start) {
    defaults.setObject(u"TimerStartTime"_s, start);
    defaults.setObject(u"TimerOriginalDuration"_s, 1500.0);
    defaults.setObject(u"TimerIsActive"_s, true);
    defaults.setObject(u"TimerSessionGoal"_s, u"Write report, Review"_s);
}

constexpr std::chrono::seconds observed{20};

void diskBytes(benchmark::State &state, bool sessionRuns) {
    const Folder folder;
    const SystemClock clock;
    QtRunLoop runLoop;
    StoredUserDefaults defaults(folder.path(), {}, clock, runLoop);
    defaults.setObject(u"UserPreferences"_s, QByteArray(400, 'p'));
    defaults.setObject(historyKey, history(100, 0));
    const Date start = clock.now();
    const auto everySecond = [&](RunLoop::Block block) {
        std::ignore = runLoop.scheduleRepeating(RunLoop::Seconds{1}, std::move(block));
    };
    everySecond([&] { publishCleared(defaults); });
    runLoop.asyncAfter(RunLoop::Seconds{0.5}, [&] {
        everySecond([&] {
            if (sessionRuns)
                publishLive(defaults, 1500.0 - (clock.now() - start), clock.now());
            else
                publishCleared(defaults);
        });
    });
    if (sessionRuns)
        everySecond([&] { saveTimerState(defaults, start); });
    const auto runFor = [](std::chrono::milliseconds duration) {
        QTimer::singleShot(duration, QCoreApplication::instance(), &QCoreApplication::quit);
        QCoreApplication::exec();
    };
    runFor(std::chrono::seconds(3)); // What the start writes is no part of it.
    for (auto _ : state) {
        const qint64 before = bytesSentToDisk();
        runFor(observed);
        const auto sent = static_cast<double>(bytesSentToDisk() - before);
        state.counters["disk_bytes_per_second"] = sent / static_cast<double>(observed.count());
    }
}

} // namespace

BENCHMARK(saveHistory)
    ->Name("writeHistory")
    ->RangeMultiplier(10)
    ->Range(100, 100'000)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK(saveRawFile)
    ->Name("writeRawFile")
    ->RangeMultiplier(10)
    ->Range(100, 100'000)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK(handOver)
    ->Name("handOverHistory")
    ->RangeMultiplier(10)
    ->Range(100, 100'000)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(20);
BENCHMARK(load)
    ->Name("loadStore")
    ->RangeMultiplier(10)
    ->Range(100, 100'000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(diskBytes, idle, false)
    ->Name("diskBytes/idle")
    ->Iterations(1)
    ->Repetitions(1)
    ->UseRealTime();
BENCHMARK_CAPTURE(diskBytes, running, true)
    ->Name("diskBytes/running")
    ->Iterations(1)
    ->Repetitions(1)
    ->UseRealTime();

int main(int argc, char **argv) {
    const QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
