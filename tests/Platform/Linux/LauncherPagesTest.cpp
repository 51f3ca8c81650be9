#include "LauncherPages.h"

#include <gmock/gmock.h>

#include <array>
#include <csignal>
#include <utility>

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

const QUrl pageWithOddCharacters(u"https://example.org/a b?q=ü\n"_s);

class LauncherPipe : public testing::Test {
protected:
    LauncherPipe() {
        EXPECT_EQ(pipe2(m_ends.data(), O_CLOEXEC), 0);
        // As in the program.
        m_former = std::signal(SIGPIPE, SIG_IGN);
    }
    ~LauncherPipe() override {
        std::signal(SIGPIPE, m_former);
        close(readEnd());
        close(writeEnd());
    }

    int readEnd() const { return m_ends[0]; }
    void stopReading() { close(std::exchange(m_ends[0], -1)); }
    int writeEnd() const { return m_ends[1]; }
    QByteArray written() {
        std::array<char, 8192> bytes{};
        const auto count = read(readEnd(), bytes.data(), bytes.size());
        return {bytes.data(), count};
    }
    void fill() {
        fcntl(writeEnd(), F_SETFL, O_WRONLY | O_NONBLOCK);
        const QByteArray chunk(4096, 'x');
        while (write(writeEnd(), chunk.constData(), 4096) > 0) {
        }
        fcntl(writeEnd(), F_SETFL, O_WRONLY);
    }

private:
    std::array<int, 2> m_ends{-1, -1};
    void (*m_former)(int) = nullptr;
};

TEST_F(LauncherPipe, GetsEachPageAsOneLineOfItsEncodedAddress) {
    EXPECT_TRUE(LauncherPages(writeEnd()).open(pageWithOddCharacters));
    EXPECT_EQ(written(), "https://example.org/a%20b?q=%C3%BC%0A\n");
}

TEST_F(LauncherPipe, ThatNobodyReadsAnyMoreOpensNothing) {
    stopReading();
    EXPECT_FALSE(LauncherPages(writeEnd()).open(pageWithOddCharacters));
}

TEST_F(LauncherPipe, ThatIsFullBlocksNobody) {
    fill();
    EXPECT_FALSE(LauncherPages(writeEnd()).open(pageWithOddCharacters));
}

TEST_F(LauncherPipe, TakesNoAddressThatItCouldTakeInPartsOnly) {
    const QUrl endless(u"https://example.org/"_s + QString(5000, u'x'));
    EXPECT_FALSE(LauncherPages(writeEnd()).open(endless));
}

TEST_F(LauncherPipe, IsToldFromAnotherProgramsOutput) {
    EXPECT_FALSE(LauncherPages(readEnd()).open(pageWithOddCharacters));
}

TEST(NoLauncherPipe, WritesNothingIntoATerminalAFileOrASocket) {
    std::array<int, 2> sockets{-1, -1};
    ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, sockets.data()), 0);
    EXPECT_FALSE(LauncherPages(sockets[0]).open(pageWithOddCharacters));
    close(sockets[0]);
    close(sockets[1]);

    for (const char *path : {"/dev/null", "/dev/ptmx"}) {
        const int file = open(path, O_RDWR | O_NOCTTY | O_CLOEXEC);
        ASSERT_GE(file, 0);
        EXPECT_FALSE(LauncherPages(file).open(pageWithOddCharacters)) << path;
        close(file);
    }
}

TEST(NoLauncherPipe, IsNothingAtAllWhereTheDescriptorIsClosed) {
    EXPECT_FALSE(LauncherPages(-1).open(pageWithOddCharacters));
}

} // namespace
} // namespace tarne::test
