#include "QProcessLauncher.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>

#include <gtest/gtest.h>

#include <condition_variable>
#include <csignal>
#include <mutex>

#include <fcntl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tarne::test {
namespace {

constexpr auto patience = 20s;

/// What a child did, gathered on the launcher's thread.
class Report {
public:
    void output(const QByteArray &chunk) {
        change([&] { m_output += chunk; });
    }
    void error(const QByteArray &chunk) {
        change([&] { m_error += chunk; });
    }
    void exit(int status) {
        change([&] { m_status = status; });
    }
    void dropOutput(qsizetype bytes) {
        change([&] { m_dropped += bytes; });
    }

    bool waitForOutput(const QByteArray &part) {
        return wait([&] { return m_output.contains(part); });
    }
    std::optional<int> waitForExit() {
        wait([&] { return m_status.has_value(); });
        const std::lock_guard lock(m_mutex);
        return m_status;
    }
    QByteArray output() const {
        const std::lock_guard lock(m_mutex);
        return m_output;
    }
    QByteArray error() const {
        const std::lock_guard lock(m_mutex);
        return m_error;
    }
    qsizetype dropped() const {
        const std::lock_guard lock(m_mutex);
        return m_dropped;
    }

private:
    void change(const std::function<void()> &what) {
        const std::lock_guard lock(m_mutex);
        what();
        m_changed.notify_all();
    }
    bool wait(const std::function<bool()> &condition) {
        std::unique_lock lock(m_mutex);
        return m_changed.wait_for(lock, patience, condition);
    }

    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    QByteArray m_output;
    QByteArray m_error;
    qsizetype m_dropped = 0;
    std::optional<int> m_status;
};

/// Whether the process is there and no zombie.
bool isAlive(qint64 process) {
    QFile stat(u"/proc/%1/stat"_s.arg(process));
    if (!stat.open(QIODevice::ReadOnly))
        return false;
    const QByteArray line = stat.readAll();
    return line.mid(line.lastIndexOf(')') + 2, 1) != "Z";
}

bool diesWithinPatience(qint64 process) {
    const auto end = std::chrono::steady_clock::now() + patience;
    while (isAlive(process)) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        QThread::msleep(5);
    }
    return true;
}

class QProcessLauncherTest : public testing::Test {
protected:
    ChildLaunch shell(const QString &script) {
        ChildLaunch launch;
        launch.executable = u"/bin/sh"_s;
        launch.arguments = {u"-c"_s, script};
        launch.standardOutput = [this](const QByteArray &chunk) { report.output(chunk); };
        launch.standardError = [this](const QByteArray &chunk) { report.error(chunk); };
        launch.terminated = [this](int status) { report.exit(status); };
        return launch;
    }

    std::shared_ptr<ChildProcess> run(ChildLaunch launch) {
        auto outcome = launcher->launch(std::move(launch));
        auto *child = std::get_if<std::shared_ptr<ChildProcess>>(&outcome);
        return child ? *child : nullptr;
    }
    std::shared_ptr<ChildProcess> run(const QString &script) { return run(shell(script)); }

    QString failureOf(const QString &executable) {
        ChildLaunch launch = shell({});
        launch.executable = executable;
        auto outcome = launcher->launch(std::move(launch));
        const auto *failure = std::get_if<ChildProcessLauncher::Failure>(&outcome);
        return failure ? failure->description : QString();
    }

    Report report;
    std::unique_ptr<QProcessLauncher> launcher = std::make_unique<QProcessLauncher>();
};

TEST_F(QProcessLauncherTest, TheChildGetsItsArgumentsAndOurEnvironmentWithTheAdditions) {
    qputenv("TARNE_INHERITED", "from us");
    qputenv("PORT", "80"); // What is added takes precedence.
    ChildLaunch launch = shell(u"printf '%s|' \"$@\" \"$TARNE_INHERITED\" \"$PORT\""_s);
    launch.arguments += {u"name"_s, u"3000"_s};
    launch.environment = {{u"PORT"_s, u"3001"_s}};
    run(launch);
    EXPECT_EQ(report.waitForExit(), 0);
    EXPECT_EQ(report.output(), "3000|from us|3001|");
}

TEST_F(QProcessLauncherTest, TheChildInheritsOurWorkingDirectory) {
    run(u"pwd -P"_s);
    report.waitForExit();
    char own[4096];
    ASSERT_NE(::getcwd(own, sizeof own), nullptr);
    EXPECT_EQ(report.output().trimmed(), own);
}

TEST_F(QProcessLauncherTest, OutputWithoutLineEndsArrivesWhileTheChildRuns) {
    const auto child = run(u"printf partial; sleep 1000"_s);
    EXPECT_TRUE(report.waitForOutput("partial"));
    EXPECT_TRUE(child->isRunning());
}

TEST_F(QProcessLauncherTest, BothStreamsAreReadApart) {
    run(u"echo out; echo err >&2"_s);
    report.waitForExit();
    EXPECT_EQ(report.output(), "out\n");
    EXPECT_EQ(report.error(), "err\n");
}

TEST_F(QProcessLauncherTest, HandlersRunOnAThreadOfTheLauncher) {
    std::atomic<QThread *> thread = nullptr;
    ChildLaunch launch = shell(u"exit 0"_s);
    launch.terminated = [&](int status) {
        thread = QThread::currentThread();
        report.exit(status);
    };
    run(launch);
    report.waitForExit();
    EXPECT_NE(thread, nullptr);
    EXPECT_NE(thread, QThread::currentThread());
}

TEST_F(QProcessLauncherTest, AnExitStatusIsReported) {
    const auto child = run(u"exit 7"_s);
    EXPECT_EQ(report.waitForExit(), 7);
    EXPECT_TRUE(child->waitUntilExit(patience));
    EXPECT_FALSE(child->isRunning());
}

TEST_F(QProcessLauncherTest, AChildEndedByASignalHasItsNumberAsStatus) {
    run(u"kill -15 $$"_s);
    EXPECT_EQ(report.waitForExit(), SIGTERM);
}

TEST_F(QProcessLauncherTest, ATerminatedChildCanEndWithStatusZero) {
    const auto child = run(u"trap 'exit 0' TERM; echo ready; while :; do sleep 0.05; done"_s);
    ASSERT_TRUE(report.waitForOutput("ready"));
    child->terminate();
    EXPECT_TRUE(child->waitUntilExit(patience));
    EXPECT_EQ(report.waitForExit(), 0);
}

TEST_F(QProcessLauncherTest, TheTerminationHandlerHasRunWhenAWaitReturns) {
    std::atomic<bool> handled = false;
    ChildLaunch launch = shell(u"sleep 0.05"_s);
    launch.terminated = [&](int) { handled = true; };
    const auto child = run(launch);
    ASSERT_TRUE(child->waitUntilExit(patience));
    EXPECT_TRUE(handled);
}

TEST_F(QProcessLauncherTest, AChildThatPrintsMuchWhenTerminatedEndsWhileTheCallerBlocks) {
    const auto child = run(u"trap 'head -c 200000 /dev/zero; exit 0' TERM; echo ready;"
                           "while :; do sleep 0.05; done"_s);
    ASSERT_TRUE(report.waitForOutput("ready"));
    child->terminate();
    EXPECT_TRUE(child->waitUntilExit(3s));
    EXPECT_EQ(report.output().size(), qsizetype(6 + 200000));
}

TEST_F(QProcessLauncherTest, AChildThatIgnoresTerminateRunsOnUntilItIsKilled) {
    const auto child = run(u"trap '' TERM; echo ready; while :; do sleep 0.05; done"_s);
    ASSERT_TRUE(report.waitForOutput("ready"));
    child->terminate();
    EXPECT_FALSE(child->waitUntilExit(100ms));
    EXPECT_TRUE(child->isRunning());
    child->forceKill();
    EXPECT_TRUE(child->waitUntilExit(patience));
    EXPECT_EQ(report.waitForExit(), SIGKILL);
}

TEST_F(QProcessLauncherTest, AHundredMegabytesAreReadToTheEnd) {
    ChildLaunch launch = shell(u"head -c 100000000 /dev/zero"_s);
    launch.standardOutput = [this](const QByteArray &chunk) { report.dropOutput(chunk.size()); };
    run(launch);
    EXPECT_EQ(report.waitForExit(), 0);
    EXPECT_EQ(report.dropped(), 100'000'000);
}

TEST_F(QProcessLauncherTest, AChildThatClosesItsOutputIsStillRunning) {
    const auto child = run(u"echo ready; exec sleep 1000 >&- 2>&-"_s);
    ASSERT_TRUE(report.waitForOutput("ready"));
    EXPECT_FALSE(child->waitUntilExit(50ms));
    EXPECT_TRUE(child->isRunning());
}

TEST_F(QProcessLauncherTest, WhatAChildHasForkedEndsWithIt) {
    run(u"sleep 1000 & echo $!; exit 0"_s);
    EXPECT_EQ(report.waitForExit(), 0);
    EXPECT_TRUE(diesWithinPatience(report.output().trimmed().toLongLong()));
}

TEST_F(QProcessLauncherTest, KillingAChildKillsWhatItHasForked) {
    const auto child = run(u"sleep 1000 & echo $!; trap '' TERM; wait"_s);
    ASSERT_TRUE(report.waitForOutput("\n"));
    child->forceKill();
    EXPECT_TRUE(diesWithinPatience(report.output().trimmed().toLongLong()));
}

TEST_F(QProcessLauncherTest, DestroyingTheLauncherEndsItsChildrenWithoutACall) {
    run(u"trap '' TERM; echo $$; while :; do sleep 0.05; done"_s);
    ASSERT_TRUE(report.waitForOutput("\n"));
    const qint64 process = report.output().trimmed().toLongLong();
    launcher.reset();
    EXPECT_FALSE(isAlive(process));
}

TEST_F(QProcessLauncherTest, AHandleOutlivesItsLauncher) {
    const auto child = run(u"sleep 1000"_s);
    launcher.reset();
    child->terminate();
    child->forceKill();
    EXPECT_FALSE(child->waitUntilExit(1ms));
}

TEST_F(QProcessLauncherTest, AHandleOfAnEndedChildSignalsNobody) {
    const auto child = run(u"exit 0"_s);
    ASSERT_TRUE(child->waitUntilExit(patience));
    child->terminate();
    child->forceKill();
    run(u"exit 5"_s)->waitUntilExit(patience);
    EXPECT_EQ(report.waitForExit(), 5);
}

TEST_F(QProcessLauncherTest, AFileThatIsNotExecutableFailsWithTheSystemsReason) {
    const QTemporaryDir folder;
    QFile file(folder.filePath(u"tarne-server"_s));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.close();
    EXPECT_EQ(failureOf(file.fileName()), u"Permission denied"_s);
}

TEST_F(QProcessLauncherTest, AMissingFileFails) {
    EXPECT_EQ(failureOf(u"/nonexistent/tarne-server"_s), u"No such file or directory"_s);
}

TEST_F(QProcessLauncherTest, AnEnvironmentThatTheSystemRefusesFails) {
    ChildLaunch launch = shell(u"exit 0"_s);
    launch.environment = {{u"GEMINI_API_KEY"_s, QString(1 << 20, u'k')}};
    EXPECT_TRUE(std::holds_alternative<ChildProcessLauncher::Failure>(launcher->launch(launch)));
}

TEST_F(QProcessLauncherTest, OurOwnBlockedAndIgnoredSignalsAreNotTheChilds) {
    sigset_t blocked;
    sigset_t before;
    ::sigemptyset(&blocked);
    ::sigaddset(&blocked, SIGTERM);
    ::pthread_sigmask(SIG_BLOCK, &blocked, &before);
    QProcessLauncher ours;
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    auto outcome = ours.launch(shell(u"echo ready; exec sleep 1000"_s));
    ASSERT_TRUE(report.waitForOutput("ready"));
    std::get<std::shared_ptr<ChildProcess>>(outcome)->terminate();
    EXPECT_EQ(report.waitForExit(), SIGTERM);
}

TEST_F(QProcessLauncherTest, AChildHasNoDescriptorOfOursButTheStandardThree) {
    const int ours = ::open("/dev/null", O_RDONLY);
    ASSERT_GT(ours, STDERR_FILENO);
    run(u"exec ls /proc/self/fd"_s);
    EXPECT_EQ(report.waitForExit(), 0);
    // The last one is the folder that it lists.
    EXPECT_EQ(report.output(), "0\n1\n2\n3\n");
    ::close(ours);
}

TEST_F(QProcessLauncherTest, AChildDoesNotOutliveAParentThatIsKilled) {
    QProcess parent;
    parent.start(QStringLiteral(TARNE_LAUNCHING_PARENT), QStringList());
    ASSERT_TRUE(parent.waitForReadyRead(20'000));
    const qint64 child = parent.readAllStandardOutput().trimmed().toLongLong();
    ASSERT_TRUE(isAlive(child));
    parent.kill();
    parent.waitForFinished();
    EXPECT_TRUE(diesWithinPatience(child));
}

} // namespace
} // namespace tarne::test
