// Runs the real lsof and pkill, which end other programs: only ever inside a process namespace of
// its own, with the word "node" in the command lines of this program and its ancestors.

#include "SystemProcessTools.h"

#include "Box.h"

#include <QFile>
#include <QProcess>
#include <QTcpServer>
#include <QTcpSocket>

#include <gtest/gtest.h>

#include <csignal>

#include <fcntl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

class SystemProcessToolsTest : public testing::Test {
protected:
    void SetUp() override {
        if (!test::isBoxed()) {
            std::fprintf(stderr, "not in a box of its own: nothing was run\n");
            std::_Exit(1);
        }
    }

    /// Starts a process that waits, with `name` as its command line.
    void plant(QProcess &process, const QString &name) {
        process.start(u"/bin/bash"_s, {u"-c"_s, u"echo; exec -a %1 sleep 1000"_s.arg(name)});
        ASSERT_TRUE(process.waitForReadyRead());
        // The name is there once the shell has become the other program.
        QFile line(u"/proc/%1/cmdline"_s.arg(process.processId()));
        while (!line.open(QIODevice::ReadOnly) || !line.readAll().startsWith(name.toUtf8()))
            line.close();
    }

    /// Starts a process that listens on `port` of the loopback interface.
    void plantListener(QProcess &process, int port) {
        process.start(u"/usr/bin/perl"_s,
                      {u"-MIO::Socket::INET"_s, u"-e"_s,
                       u"$s = IO::Socket::INET->new(Listen => 1, LocalAddr => '127.0.0.1:%1') or "
                       "die; $| = 1; print 1; sleep 1000"_s.arg(port)});
        ASSERT_TRUE(process.waitForReadyRead());
    }

    SystemProcessTools tools;
};

TEST_F(SystemProcessToolsTest, LsofNamesTheProcessOnAPort) {
    QProcess stray;
    plantListener(stray, 3005);
    const auto result = tools.run(u"/usr/bin/lsof"_s, {u"-ti"_s, u":3005"_s});
    ASSERT_TRUE(result);
    EXPECT_EQ(result->output.trimmed(), QByteArray::number(stray.processId()));
    stray.kill();
    stray.waitForFinished();
}

TEST_F(SystemProcessToolsTest, LsofFindsNothingOnAFreePort) {
    const auto result = tools.run(u"/usr/bin/lsof"_s, {u"-ti"_s, u":3009"_s});
    ASSERT_TRUE(result);
    EXPECT_TRUE(result->output.isEmpty());
}

TEST_F(SystemProcessToolsTest, WeAreNeverNamedForAConnectionOfOurs) {
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost, 3001));
    QTcpSocket client;
    client.connectToHost(QHostAddress::LocalHost, 3001);
    ASSERT_TRUE(client.waitForConnected());
    const auto result = tools.run(u"/usr/bin/lsof"_s, {u"-ti"_s, u":3001"_s});
    ASSERT_TRUE(result);
    EXPECT_TRUE(result->output.trimmed().isEmpty()) << result->output.constData();
}

TEST_F(SystemProcessToolsTest, ASignalEndsTheProcessItIsSentTo) {
    QProcess stray;
    plant(stray, u"stray"_s);
    tools.sendSignal(static_cast<qint32>(stray.processId()), SIGTERM);
    ASSERT_TRUE(stray.waitForFinished());
    EXPECT_EQ(stray.exitCode(), SIGTERM);
}

TEST_F(SystemProcessToolsTest, PkillEndsEveryProcessWithTheWordInItsCommandLineButUs) {
    QProcess harmless;
    plant(harmless, u"some-node-tool"_s);
    const auto result = tools.run(u"/usr/bin/pkill"_s, {u"-f"_s, u"node"_s});
    ASSERT_TRUE(result);
    EXPECT_EQ(result->status, 0);
    ASSERT_TRUE(harmless.waitForFinished());
    EXPECT_EQ(harmless.exitCode(), SIGTERM);
}

TEST_F(SystemProcessToolsTest, PkillWithoutAMatchAnswersOne) {
    const auto result = tools.run(u"/usr/bin/pkill"_s, {u"-f"_s, u"tarne-[s]erver"_s});
    ASSERT_TRUE(result);
    EXPECT_EQ(result->status, 1);
}

TEST_F(SystemProcessToolsTest, NoSignalReachesUsOurGroupOrEverybody) {
    QProcess bystander;
    plant(bystander, u"bystander"_s);
    for (const qint32 process : {::getpid(), 0, -1, -::getpgrp()})
        tools.sendSignal(process, SIGKILL);
    EXPECT_FALSE(bystander.waitForFinished(50));
    bystander.kill();
    bystander.waitForFinished();
}

TEST_F(SystemProcessToolsTest, AToolHasNoDescriptorOfOursButTheStandardThree) {
    const int ours = ::open("/dev/null", O_RDONLY);
    ASSERT_GT(ours, STDERR_FILENO);
    const auto result = tools.run(u"/bin/ls"_s, {u"-m"_s, u"/proc/self/fd"_s});
    ASSERT_TRUE(result);
    // The last one is the folder that it lists.
    EXPECT_EQ(result->output, "0, 1, 2, 3\n");
    ::close(ours);
}

TEST_F(SystemProcessToolsTest, AToolThatIsNotThereIsNotLaunched) {
    EXPECT_EQ(tools.run(u"/usr/bin/nonexistent-tool"_s, {}), std::nullopt);
}

} // namespace
} // namespace tarne::test
