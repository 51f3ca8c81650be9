#include "StandardOutputLog.h"

#include <QFile>

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <csignal>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

/// Puts another file in the place of standard output, until the end of its life.
class OtherOutput {
public:
    explicit OtherOutput(int file) : m_original(::dup(STDOUT_FILENO)) {
        std::fflush(stdout);
        ::dup2(file, STDOUT_FILENO);
    }
    ~OtherOutput() {
        ::dup2(m_original, STDOUT_FILENO);
        ::close(m_original);
    }
    OtherOutput(const OtherOutput &) = delete;
    OtherOutput &operator=(const OtherOutput &) = delete;

private:
    int m_original;
};

/// A pipe that holds 4 KiB.
struct SmallPipe {
    SmallPipe() {
        EXPECT_EQ(::pipe2(ends.data(), O_CLOEXEC), 0);
        ::fcntl(ends[1], F_SETPIPE_SZ, 4096);
    }
    ~SmallPipe() {
        closeReader();
        closeWriter();
    }
    SmallPipe(const SmallPipe &) = delete;
    SmallPipe &operator=(const SmallPipe &) = delete;

    void closeReader() { close(ends[0]); }
    void closeWriter() { close(ends[1]); }

    /// Everything up to the last writer's end.
    QByteArray readAll() const {
        QByteArray all;
        std::array<char, 4096> piece{};
        for (ssize_t size = 0; (size = ::read(ends[0], piece.data(), piece.size())) > 0;)
            all.append(piece.data(), size);
        return all;
    }

    std::array<int, 2> ends{-1, -1};

private:
    static void close(int &end) {
        if (end >= 0)
            ::close(std::exchange(end, -1));
    }
};

TEST(StandardOutputLog, WritesEachLineAtOnce) {
    SmallPipe pipe;
    StandardOutputLog log;
    std::array<char, 64> read{};
    const OtherOutput output(pipe.ends[1]);
    log.line(u"🟢 one"_s);
    EXPECT_EQ(::read(pipe.ends[0], read.data(), read.size()), 9);
    EXPECT_STREQ(read.data(), "🟢 one\n");
}

TEST(StandardOutputLog, KeepsTheLinesOfSeveralThreadsWholeHoweverLong) {
    constexpr int threads = 4;
    constexpr int linesOfEach = 20;
    constexpr qsizetype length = 30'000;
    SmallPipe pipe;
    StandardOutputLog log;
    QByteArray all;
    std::thread reader([&] { all = pipe.readAll(); });
    {
        const OtherOutput output(pipe.ends[1]);
        pipe.closeWriter();
        std::vector<std::thread> writers;
        for (int i = 0; i < threads; ++i) {
            writers.emplace_back([&log, i] {
                for (int line = 0; line < linesOfEach; ++line)
                    log.line(QString(length, QChar(u'a' + i)));
            });
        }
        for (std::thread &writer : writers)
            writer.join();
    }
    reader.join();
    const auto lines = all.split('\n');
    ASSERT_EQ(lines.size(), threads * linesOfEach + 1);
    for (const QByteArray &line : lines.first(lines.size() - 1))
        EXPECT_TRUE(line == QByteArray(length, line.at(0)));
}

TEST(StandardOutputLog, ALineIsWrittenWholeToAPipeThatDoesNotWait) {
    constexpr qsizetype length = 100'000;
    SmallPipe pipe;
    ::fcntl(pipe.ends[1], F_SETFL, O_NONBLOCK);
    StandardOutputLog log;
    QByteArray all;
    std::thread reader([&] { all = pipe.readAll(); });
    {
        const OtherOutput output(pipe.ends[1]);
        pipe.closeWriter();
        log.line(QString(length, u'a'));
        log.line(u"next"_s);
    }
    reader.join();
    EXPECT_TRUE(all == QByteArray(length, 'a') + "\nnext\n") << all.size();
}

std::atomic<int> interruptions = 0;

/// Whether a thread of this process sleeps in the kernel.
bool isAsleep(pid_t thread) {
    QFile status(u"/proc/self/task/%1/stat"_s.arg(thread));
    return status.open(QIODevice::ReadOnly) && status.readAll().contains(") S ");
}

TEST(StandardOutputLog, AnInterruptedLineIsWrittenAllTheSame) {
    struct sigaction interrupt {};
    struct sigaction before {};
    interrupt.sa_handler = [](int) { ++interruptions; };
    sigaction(SIGUSR1, &interrupt, &before); // Without SA_RESTART.
    SmallPipe pipe;
    StandardOutputLog log;
    const QByteArray full(4096, 'f');
    ASSERT_EQ(::write(pipe.ends[1], full.constData(), 4096), 4096);
    std::atomic<pid_t> writerId = 0;
    QByteArray all;
    {
        const OtherOutput output(pipe.ends[1]);
        pipe.closeWriter();
        std::thread writer([&] {
            writerId = ::gettid();
            log.line(u"interrupted"_s);
        });
        while (writerId == 0 || !isAsleep(writerId))
            std::this_thread::yield();
        pthread_kill(writer.native_handle(), SIGUSR1);
#ifndef __SANITIZE_THREAD__ // It keeps signals back while a thread writes.
        while (interruptions == 0)
            std::this_thread::yield();
#endif
        std::array<char, 4096> drained{};
        EXPECT_EQ(::read(pipe.ends[0], drained.data(), drained.size()), 4096);
        writer.join();
    }
    EXPECT_EQ(pipe.readAll(), "interrupted\n");
    sigaction(SIGUSR1, &before, nullptr);
}

TEST(StandardOutputLog, AFullDiskCostsTheLineAndNothingElse) {
    const int file = ::open("/dev/full", O_WRONLY | O_CLOEXEC);
    ASSERT_GE(file, 0);
    StandardOutputLog log;
    {
        const OtherOutput output(file);
        log.line(u"lost"_s);
    }
    ::close(file);
}

TEST(StandardOutputLog, AReaderThatHasGoneCostsTheLineAndNothingElse) {
    const auto before = std::signal(SIGPIPE, SIG_IGN); // As main does.
    SmallPipe pipe;
    pipe.closeReader();
    StandardOutputLog log;
    {
        const OtherOutput output(pipe.ends[1]);
        log.line(u"lost"_s);
    }
    std::signal(SIGPIPE, before);
}

} // namespace
} // namespace tarne::test
