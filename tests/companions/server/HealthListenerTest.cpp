#include "HealthListener.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <thread>
#include <vector>

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

using namespace std::chrono_literals;

namespace tarne::test {
namespace {

using asio::ip::tcp;

const std::string healthy = "HTTP/1.1 200 OK\r\nContent-Length: 0\r\nConnection: close\r\n\r\n";
const std::string notFound =
    "HTTP/1.1 404 Not Found\r\nContent-Length: 0\r\nConnection: close\r\n\r\n";

/// A listener on a thread of its own, and clients as they come.
class AHealthListener : public testing::Test {
protected:
    AHealthListener() {
        EXPECT_TRUE(m_health->listen(0));
        m_port = m_health->port();
        m_thread = std::thread([this] { m_context->run(); });
    }
    ~AHealthListener() override { stop(); }

    /// Ends the listener with all of its connections, as the program's end does.
    void stop() {
        if (!m_thread.joinable())
            return;
        m_context->stop();
        m_thread.join();
        m_health.reset();
        m_context.reset();
    }

    /// A client over the address family.
    std::optional<tcp::socket> connect(const char *address = "127.0.0.1") {
        tcp::socket socket(m_clients);
        std::error_code error;
        socket.connect({asio::ip::make_address(address), m_port}, error);
        return error ? std::nullopt : std::optional(std::move(socket));
    }
    /// What a client that says this is answered, up to the end of the connection.
    std::string answerTo(const std::string &request, const char *address = "127.0.0.1") {
        auto socket = connect(address);
        if (!socket)
            return "no connection";
        asio::write(*socket, asio::buffer(request));
        return restOf(*socket);
    }
    static std::string restOf(tcp::socket &socket) {
        std::string answer;
        std::error_code error;
        asio::read(socket, asio::dynamic_buffer(answer), error);
        return answer;
    }

    std::uint16_t port() const { return m_port; }

private:
    std::optional<asio::io_context> m_context{std::in_place, 1};
    asio::io_context m_clients{1};
    std::optional<HealthListener> m_health{std::in_place, *m_context};
    std::uint16_t m_port = 0;
    std::thread m_thread;
};

TEST_F(AHealthListener, AnswersGetHealthWith200AndAnEmptyBody) {
    EXPECT_EQ(answerTo("GET /health HTTP/1.1\r\nHost: localhost\r\n\r\n"), healthy);
    EXPECT_EQ(answerTo("GET /health HTTP/1.0\r\n\r\n"), healthy);
}

TEST_F(AHealthListener, AnswersOnBothLoopbackAddresses) {
    const int socket = ::socket(AF_INET6, SOCK_STREAM, 0);
    if (socket < 0)
        GTEST_SKIP() << "a machine without IPv6";
    ::close(socket);
    EXPECT_EQ(answerTo("GET /health HTTP/1.1\r\n\r\n", "::1"), healthy);
}

TEST_F(AHealthListener, AnswersAnythingElseWith404) {
    for (const char *request :
         {"GET / HTTP/1.1\r\n\r\n", "POST /health HTTP/1.1\r\nContent-Length: 0\r\n\r\n",
          "HEAD /health HTTP/1.1\r\n\r\n", "OPTIONS /health HTTP/1.1\r\n\r\n",
          "GET /healthy HTTP/1.1\r\n\r\n", "GET /health?goals HTTP/1.1\r\n\r\n",
          "GET http://localhost/health HTTP/1.1\r\n\r\n", "\r\n\r\n",
          "{\"v\":1,\"id\":8,\"op\":\"state\"}\n\r\n\r\n"})
        EXPECT_EQ(answerTo(request), notFound) << request;
}

TEST_F(AHealthListener, NeverSaysWhereARequestOfAPageCameFromOrWhoMayReadTheAnswer) {
    EXPECT_EQ(answerTo("GET /health HTTP/1.1\r\nHost: rebound.example:3000\r\n"
                       "Origin: https://attacker.example\r\n\r\n"),
              healthy);
}

TEST_F(AHealthListener, AnswersAHeadWithoutAnEndWith404) {
    EXPECT_EQ(answerTo("GET /health HTTP/1.1\r\n" + std::string(9000, 'x')).substr(0, 12),
              notFound.substr(0, 12));
}

TEST_F(AHealthListener, HangsUpOnAClientThatSaysNothing) {
    auto socket = connect();
    ASSERT_TRUE(socket);
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(restOf(*socket), "");
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 30s);
}

TEST_F(AHealthListener, LeavesItsPortFreeForTheNextStartAfterItsChecks) {
    for (int check = 0; check < 5; ++check) {
        auto socket = connect();
        ASSERT_TRUE(socket);
        asio::write(*socket, asio::buffer(std::string("GET /health HTTP/1.1\r\n\r\n")));
        std::string answer(healthy.size(), '\0');
        asio::read(*socket, asio::buffer(answer));
        EXPECT_EQ(answer, healthy);
        // As a client of HTTP does when it is told so.
        socket->close();
    }
    stop();
    // As TARNE looks for a port: bound without any option.
    const int probe = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port());
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    EXPECT_EQ(::bind(probe, reinterpret_cast<const sockaddr *>(&address), sizeof address), 0);
    ::close(probe);
}

TEST_F(AHealthListener, GoesOnServingBesideConnectionsThatHang) {
    std::vector<std::optional<tcp::socket>> hanging;
    for (int number = 0; number < 200; ++number)
        hanging.push_back(connect());
    std::string answer;
    for (int attempt = 0; attempt < 50 && answer != healthy; ++attempt)
        answer = answerTo("GET /health HTTP/1.1\r\n\r\n");
    EXPECT_EQ(answer, healthy);
}

TEST(AHealthListenerOnATakenPort, SaysSo) {
    asio::io_context context;
    HealthListener first(context);
    ASSERT_TRUE(first.listen(0));
    HealthListener second(context);
    EXPECT_FALSE(second.listen(first.port()));
}

} // namespace
} // namespace tarne::test
