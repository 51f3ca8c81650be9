#include "HealthListener.h"

#include <chrono>
#include <string>
#include <string_view>

using namespace std::chrono_literals;

namespace tarne {

using asio::ip::tcp;

namespace {

constexpr std::size_t largestHead = 8192;
constexpr std::size_t mostConnections = 64;
constexpr auto patienceForRequest = 2s;
constexpr auto patienceForClose = 500ms;

constexpr std::string_view healthy =
    "HTTP/1.1 200 OK\r\nContent-Length: 0\r\nConnection: close\r\n\r\n";
constexpr std::string_view notFound =
    "HTTP/1.1 404 Not Found\r\nContent-Length: 0\r\nConnection: close\r\n\r\n";

std::string_view responseTo(std::string_view head) {
    return head.starts_with("GET /health HTTP/1.") ? healthy : notFound;
}

} // namespace

/// One connection: one request, one response. Kept alive by its pending operations.
class HealthConnection : public std::enable_shared_from_this<HealthConnection> {
public:
    explicit HealthConnection(tcp::socket socket)
        : m_socket(std::move(socket)), m_patience(m_socket.get_executor()) {}

    void receive() {
        closeAfter(patienceForRequest);
        asio::async_read_until(m_socket, asio::dynamic_buffer(m_received, largestHead), "\r\n\r\n",
                               [self = shared_from_this()](std::error_code error, std::size_t) {
                                   if (!error)
                                       self->respond(responseTo(self->m_received));
                                   else if (error == asio::error::not_found)
                                       self->respond(notFound);
                               });
    }

    void close() {
        std::error_code ignored;
        m_patience.cancel();
        m_socket.close(ignored);
    }

private:
    void respond(std::string_view response) {
        asio::async_write(m_socket, asio::buffer(response),
                          [self = shared_from_this()](std::error_code error, std::size_t) {
                              self->closeAfter(patienceForClose);
                              if (!error)
                                  self->awaitClose();
                          });
    }

    /// Who closes first keeps the port for a minute, and TARNE would find it taken at the next
    /// start. So the client is given the time to do it.
    void awaitClose() {
        m_received.resize(largestHead);
        m_socket.async_read_some(asio::buffer(m_received),
                                 [self = shared_from_this()](std::error_code error, std::size_t) {
                                     if (error)
                                         self->close();
                                     else
                                         self->awaitClose();
                                 });
    }

    void closeAfter(std::chrono::milliseconds time) {
        m_patience.expires_after(time);
        m_patience.async_wait([self = shared_from_this()](std::error_code error) {
            if (!error)
                self->close();
        });
    }

    tcp::socket m_socket;
    asio::steady_timer m_patience;
    std::string m_received;
};

namespace {

void bind(tcp::acceptor &acceptor, const tcp::endpoint &endpoint, std::error_code &error) {
    acceptor.open(endpoint.protocol(), error);
    if (!error)
        acceptor.set_option(tcp::acceptor::reuse_address(true), error);
    if (!error && endpoint.protocol() == tcp::v6())
        acceptor.set_option(asio::ip::v6_only(true), error);
    if (!error)
        acceptor.bind(endpoint, error);
    if (!error)
        acceptor.listen(asio::socket_base::max_listen_connections, error);
}

} // namespace

HealthListener::HealthListener(asio::io_context &context)
    : m_version4(context, [this](tcp::socket socket) { serve(std::move(socket)); }),
      m_version6(context, [this](tcp::socket socket) { serve(std::move(socket)); }) {}

bool HealthListener::listen(std::uint16_t port) {
    std::error_code error;
    bind(m_version4.acceptor(), {asio::ip::address_v4::loopback(), port}, error);
    if (error)
        return false;
    m_version4.start();
    bind(m_version6.acceptor(), {asio::ip::address_v6::loopback(), this->port()}, error);
    if (!error)
        m_version6.start();
    return true;
}

std::uint16_t HealthListener::port() {
    std::error_code ignored;
    return m_version4.acceptor().local_endpoint(ignored).port();
}

void HealthListener::serve(tcp::socket socket) {
    std::erase_if(m_connections, [](const auto &connection) { return connection.expired(); });
    // More than that are no health checks, and must not keep one out.
    if (m_connections.size() >= mostConnections) {
        if (const auto oldest = m_connections.front().lock())
            oldest->close();
        m_connections.pop_front();
    }
    const auto connection = std::make_shared<HealthConnection>(std::move(socket));
    m_connections.push_back(connection);
    connection->receive();
}

} // namespace tarne
