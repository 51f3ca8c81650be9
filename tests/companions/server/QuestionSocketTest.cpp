#include "QuestionSocket.h"

#include "CompanionsFolder.h"
#include "ProtocolLimits.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <chrono>
#include <deque>
#include <optional>
#include <string>

#include <sys/stat.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tarne::test {
namespace {

using asio::local::stream_protocol;

/// A socket that repeats each line, at once or when the test says so, and its clients; all on the
/// test's thread.
class AQuestionSocket : public testing::Test {
protected:
    explicit AQuestionSocket(uid_t user = ::geteuid())
        : m_socket(
              std::in_place, m_context,
              QuestionSocket::Answerer{.answer = [this](const QByteArray &line,
                                                        const auto &reply) { take(line, reply); },
                                       .tooLong = "too long"},
              user) {}

    ~AQuestionSocket() override {
        // They hold connections, which go before their context.
        waiting.clear();
    }

    [[nodiscard]] bool listen() { return m_socket->listen(path()); }

    stream_protocol::socket connect() {
        stream_protocol::socket socket(m_context);
        socket.connect(stream_protocol::endpoint(path()));
        return socket;
    }

    /// Serves until something was read; that, or nothing at the connection's end.
    std::string read(stream_protocol::socket &socket) {
        std::array<char, 65536> chunk{};
        std::optional<std::size_t> size;
        socket.async_read_some(asio::buffer(chunk),
                               [&size](std::error_code, std::size_t read) { size = read; });
        serveUntil([&size] { return size.has_value(); });
        return {chunk.data(), size.value_or(0)};
    }
    std::string readAll(stream_protocol::socket &socket) {
        std::string all;
        for (std::string part = read(socket); !part.empty(); part = read(socket))
            all += part;
        return all;
    }

    template <class Condition>
    void serveUntil(Condition condition) {
        const auto deadline = std::chrono::steady_clock::now() + 20s;
        m_context.restart();
        while (!condition() && std::chrono::steady_clock::now() < deadline)
            m_context.run_one_for(100ms);
        EXPECT_TRUE(condition());
    }

    std::string path() const { return m_folder.filePath(u"server-3000.sock"_s).toStdString(); }
    QString folder() const { return m_folder.path(); }
    void end() { m_socket.reset(); }

    std::deque<QByteArray> lines;
    bool isAnswering = true;
    std::deque<QuestionSocket::Reply> waiting;

private:
    void take(const QByteArray &line, const QuestionSocket::Reply &reply) {
        lines.push_back(line);
        if (isAnswering)
            reply(line);
        else
            waiting.push_back(reply);
    }

    QTemporaryDir m_folder;
    asio::io_context m_context{1};
    std::optional<QuestionSocket> m_socket;
};

TEST_F(AQuestionSocket, AnswersEachLineWithALine) {
    ASSERT_TRUE(listen());
    auto client = connect();
    asio::write(client, asio::buffer(std::string("one\ntw")));
    EXPECT_EQ(read(client), "one\n");
    asio::write(client, asio::buffer(std::string("o\n\n")));
    std::string rest = read(client);
    if (rest == "two\n")
        rest += read(client);
    EXPECT_EQ(rest, "two\n\n");
}

TEST_F(AQuestionSocket, CanOnlyBeOpenedByItsUserAndAppearsWhole) {
    ASSERT_TRUE(listen());
    struct stat status {};
    ASSERT_EQ(::stat(path().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0600u);
    EXPECT_FALSE(QFileInfo::exists(QString::fromStdString(path() + ".new")));
}

TEST_F(AQuestionSocket, GoesWithItsName) {
    ASSERT_TRUE(listen());
    end();
    EXPECT_FALSE(QFileInfo::exists(QString::fromStdString(path())));
}

TEST_F(AQuestionSocket, TakesThePlaceOfOneThatWasLeftOver) {
    {
        asio::io_context context;
        stream_protocol::acceptor left(context, stream_protocol::endpoint(path()));
    }
    ASSERT_TRUE(QFileInfo::exists(QString::fromStdString(path())));
    ASSERT_TRUE(listen());
    auto client = connect();
    asio::write(client, asio::buffer(std::string("line\n")));
    EXPECT_EQ(read(client), "line\n");
}

TEST_F(AQuestionSocket, IsNotThereWhereItsFolderIsNot) {
    asio::io_context context;
    QuestionSocket socket(context, {});
    EXPECT_FALSE(socket.listen("/nonexistent/server-3000.sock"));
    EXPECT_FALSE(socket.listen('/' + std::string(200, 'x') + "/server-3000.sock"));
}

TEST_F(AQuestionSocket, AnswersALineOfTheGreatestLength) {
    ASSERT_TRUE(listen());
    auto client = connect();
    const std::string line(limits::line - 1, 'x');
    asio::write(client, asio::buffer(line + '\n'));
    std::string answer;
    while (answer.size() < limits::line)
        answer += read(client);
    EXPECT_EQ(answer, line + '\n');
}

TEST_F(AQuestionSocket, RefusesALongerLineAndHangsUp) {
    ASSERT_TRUE(listen());
    for (const std::string &line :
         {std::string(limits::line, 'x'), std::string(limits::line, 'x') + '\n'}) {
        auto client = connect();
        asio::write(client, asio::buffer(line));
        EXPECT_EQ(readAll(client), "too long\n");
    }
    EXPECT_TRUE(lines.empty());
}

TEST_F(AQuestionSocket, DropsALineThatIsCutOffByTheEnd) {
    ASSERT_TRUE(listen());
    auto client = connect();
    asio::write(client, asio::buffer(std::string("whole\ncut off")));
    client.shutdown(stream_protocol::socket::shutdown_send);
    EXPECT_EQ(readAll(client), "whole\n");
    EXPECT_EQ(lines, std::deque<QByteArray>{"whole"});
}

TEST_F(AQuestionSocket, AnswersInAnyOrderAndDropsWhatComesAfterTheEnd) {
    ASSERT_TRUE(listen());
    isAnswering = false;
    auto client = connect();
    asio::write(client, asio::buffer(std::string("1\n2\n3\n")));
    serveUntil([this] { return waiting.size() == 3; });
    waiting[2]("third");
    EXPECT_EQ(read(client), "third\n");
    client.close();
    waiting[0]("first");
    auto other = connect();
    asio::write(other, asio::buffer(std::string("4\n")));
    serveUntil([this] { return waiting.size() == 4; });
    waiting[1]("second");
    waiting[3]("fourth");
    EXPECT_EQ(read(other), "fourth\n");
}

TEST_F(AQuestionSocket, ReadsNoFurtherWhile64QuestionsAreOpen) {
    ASSERT_TRUE(listen());
    isAnswering = false;
    auto client = connect();
    // A line a reading, so that the limit is hit exactly.
    std::string all;
    for (int number = 0; number < 70; ++number)
        all += std::string(4095, 'x') + '\n';
    bool isSent = false;
    asio::async_write(client, asio::buffer(all),
                      [&isSent](std::error_code, std::size_t) { isSent = true; });
    serveUntil([this] { return waiting.size() == 64; });
    serveUntil([&isSent] { return isSent; }); // What is left fits into the system's buffers.
    EXPECT_EQ(waiting.size(), 64u);
    for (int number = 0; number < 6; ++number)
        waiting[static_cast<std::size_t>(number)]("answer");
    serveUntil([this] { return waiting.size() == 70; });
}

/// A socket that takes another user for its own, so that this one is a stranger.
class AQuestionSocketOfAnotherUser : public AQuestionSocket {
protected:
    AQuestionSocketOfAnotherUser() : AQuestionSocket(::geteuid() + 1) {}
};

TEST_F(AQuestionSocketOfAnotherUser, HangsUpBeforeItReadsAByte) {
    ASSERT_TRUE(listen());
    auto client = connect();
    asio::write(client, asio::buffer(std::string("line\n")));
    EXPECT_EQ(readAll(client), "");
    EXPECT_TRUE(lines.empty());
}

TEST(TheNameOfASocket, IsItsPortBetween3000And3100) {
    EXPECT_EQ(questionSocketName(3000), "server-3000.sock");
    EXPECT_EQ(portOfQuestionSocket("server-3000.sock"), 3000);
    EXPECT_EQ(portOfQuestionSocket("server-3100.sock"), 3100);
    for (const char *name : {"", "server-.sock", "server-2999.sock", "server-3101.sock",
                             "server-03000.sock", "server-+3000.sock", "server-3000.sock.new",
                             "server-3000x.sock", "server-99999999999.sock", "server.sock"})
        EXPECT_EQ(portOfQuestionSocket(name), std::nullopt) << name;
}

TEST(TheCompanionsFolder, IsInTheRuntimeFolderElseThatOfTheStore) {
    qputenv("XDG_DATA_HOME", "/data");
    qputenv("XDG_RUNTIME_DIR", "/run/user/7");
    EXPECT_EQ(companionsFolder(), "/run/user/7/com.tarne.app");
    EXPECT_EQ(storeFolder(), "/data/com.tarne.app");
    qunsetenv("XDG_RUNTIME_DIR");
    EXPECT_EQ(companionsFolder(), "/data/com.tarne.app");
    qputenv("XDG_DATA_HOME", "relative");
    qputenv("HOME", "/home/user");
    EXPECT_EQ(companionsFolder(), "/home/user/.local/share/com.tarne.app");
    qunsetenv("HOME");
    EXPECT_EQ(companionsFolder(), "");
}

TEST(APrivateFolder, IsMadeAndOneThatOthersCanEnterIsRefused) {
    const QTemporaryDir place;
    const std::string folder = place.filePath(u"above/folder"_s).toStdString();
    EXPECT_TRUE(makePrivateFolder(folder));
    struct stat status {};
    ASSERT_EQ(::stat(folder.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0700u);
    EXPECT_TRUE(makePrivateFolder(folder));
    ASSERT_EQ(::chmod(folder.c_str(), 0755), 0);
    EXPECT_FALSE(makePrivateFolder(folder));
    ASSERT_EQ(::chmod(folder.c_str(), 0700), 0);
    const std::string link = place.filePath(u"link"_s).toStdString();
    ASSERT_EQ(::symlink(folder.c_str(), link.c_str()), 0);
    EXPECT_FALSE(makePrivateFolder(link));
}

} // namespace
} // namespace tarne::test
