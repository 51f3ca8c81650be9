#include "LocalHTTPServer.h"

#include "FatalError.h"

#define ASIO_STANDALONE
#define ASIO_NO_DEPRECATED
#include <asio.hpp>

#include <array>
#include <atomic>
#include <thread>

#include <netinet/tcp.h>
#include <sys/prctl.h>

using namespace Qt::StringLiterals;
using asio::ip::tcp;

namespace tarne {

namespace {

constexpr std::size_t largestReceive = 8192;

QString text(const std::error_code &error) {
    return QString::fromStdString(error.message());
}

} // namespace

/// The queue, and what is known on both sides of it.
struct LocalHTTPServer::Transport {
    explicit Transport(quint16 wantedPort) : port(wantedPort) {}

    /// Begins to run what is posted, on first use.
    void run() {
        if (thread.joinable())
            return;
        thread = std::thread([this] {
            ::prctl(PR_SET_NAME, "HTTPServer");
            context.run();
        });
    }

    asio::io_context context{1};
    asio::executor_work_guard<asio::io_context::executor_type> work{context.get_executor()};
    std::thread thread;
    std::atomic<quint16> port;
};

/// One accepted connection: one request, one response. Kept alive by its pending operations.
class LocalHTTPServer::Connection : public std::enable_shared_from_this<Connection> {
public:
    Connection(LocalHTTPServer &server, tcp::socket socket)
        : m_server(server), m_socket(std::move(socket)) {}

    void handleConnection() {
        std::error_code ignored;
        m_socket.non_blocking(true, ignored);
        receiveRequest();
    }

private:
    void receiveRequest() {
        m_socket.async_read_some(
            asio::buffer(m_received),
            [self = shared_from_this()](std::error_code error, std::size_t size) {
                self->received(error, size);
            });
    }

    void received(std::error_code error, std::size_t size) {
        if (m_isCancelled)
            return;
        if (error == asio::error::eof) {
            awaitFailure();
        } else if (error) {
            m_server.m_log.line(u"Receive error: "_s + text(error));
            cancel();
        } else {
            sendResponse(m_server.processRequest(
                QByteArray(m_received.data(), static_cast<qsizetype>(size))));
            if (!m_isCancelled)
                receiveRequest();
        }
    }

    /// The peer says no more, but may still listen: a response that is under way goes on, and a
    /// connection without a request stays until the peer is gone, which keep-alive finds out.
    void awaitFailure() {
        std::error_code ignored;
        m_socket.set_option(asio::socket_base::keep_alive(true), ignored);
        m_socket.set_option(asio::detail::socket_option::integer<IPPROTO_TCP, TCP_KEEPIDLE>(60),
                            ignored);
        m_socket.async_wait(tcp::socket::wait_error,
                            [self = shared_from_this()](std::error_code error) {
                                if (!error && !self->m_isCancelled)
                                    self->failed();
                            });
    }

    void failed() {
        int code = 0;
        socklen_t size = sizeof code;
        ::getsockopt(m_socket.native_handle(), SOL_SOCKET, SO_ERROR, &code, &size);
        m_server.m_log.line(u"Connection failed: "_s +
                            text(std::error_code(code, std::system_category())));
        cancel();
    }

    void sendResponse(QByteArray response) {
        // The end of the first response ends the connection, so a second one has no way out.
        if (!m_response.isEmpty())
            return;
        m_response = std::move(response);
        // A small response fits into the socket's buffer: no wait, no further turn of the loop.
        std::error_code error;
        const auto size = static_cast<std::size_t>(m_response.size());
        const std::size_t sent =
            m_socket.write_some(asio::buffer(m_response.constData(), size), error);
        if (error == asio::error::would_block || error == asio::error::try_again)
            error.clear();
        if (error || sent == size) {
            finishSending(error);
            return;
        }
        asio::async_write(m_socket, asio::buffer(m_response.constData() + sent, size - sent),
                          [self = shared_from_this()](std::error_code failure, std::size_t) {
                              if (!self->m_isCancelled)
                                  self->finishSending(failure);
                          });
    }

    void finishSending(std::error_code error) {
        if (error)
            m_server.m_log.line(u"Send error: "_s + text(error));
        cancel();
    }

    void cancel() {
        m_isCancelled = true;
        std::error_code ignored;
        const bool isUnread = m_socket.available(ignored) > 0;
        if (!isUnread) {
            m_socket.close(ignored);
            return;
        }
        // Closing a socket with unread bytes in it resets the connection, which can cost the peer
        // the response that it has not read yet.
        m_socket.cancel(ignored);
        m_socket.shutdown(tcp::socket::shutdown_send, ignored);
        m_patience.expires_after(std::chrono::seconds(2));
        m_patience.async_wait([self = shared_from_this()](std::error_code error) {
            std::error_code unused;
            if (!error)
                self->m_socket.close(unused);
        });
        drain();
    }

    void drain() {
        m_socket.async_read_some(asio::buffer(m_received),
                                 [self = shared_from_this()](std::error_code error, std::size_t) {
                                     if (!error) {
                                         self->drain();
                                         return;
                                     }
                                     std::error_code unused;
                                     self->m_patience.cancel();
                                     self->m_socket.close(unused);
                                 });
    }

    LocalHTTPServer &m_server;
    tcp::socket m_socket;
    asio::steady_timer m_patience{m_socket.get_executor()};
    std::array<char, largestReceive> m_received;
    QByteArray m_response;
    bool m_isCancelled = false;
};

/// One port. Kept alive by its pending accept, so that a listener that was only replaced goes on.
class LocalHTTPServer::Listener : public std::enable_shared_from_this<Listener> {
public:
    Listener(LocalHTTPServer &server, quint16 port)
        : m_server(server),
          m_acceptor(server.m_transport->context),
          m_retry(server.m_transport->context),
          m_port(port) {}

    /// Makes the socket, for IPv6 and IPv4, or for IPv4 alone on a machine without IPv6. Binding it
    /// is left to the queue. Throws std::system_error.
    void create() {
        std::error_code error;
        m_acceptor.open(tcp::v6(), error);
        m_isDualStack = !error;
        if (m_isDualStack)
            m_acceptor.set_option(asio::ip::v6_only(false));
        else if (error == std::errc::address_family_not_supported)
            m_acceptor.open(tcp::v4());
        else
            throw std::system_error(error);
        m_acceptor.set_option(tcp::acceptor::reuse_address(true));
    }

    void start() {
        asio::post(m_acceptor.get_executor(), [self = shared_from_this()] { self->listen(); });
    }

    void cancel() {
        asio::post(m_acceptor.get_executor(), [self = shared_from_this()] {
            if (std::exchange(self->m_isCancelled, true))
                return;
            std::error_code ignored;
            self->m_acceptor.close(ignored);
            self->m_retry.cancel();
            self->m_server.m_log.line(u"🛑 TARNE HTTP Server stopped"_s);
        });
    }

private:
    void listen() {
        if (m_isCancelled)
            return;
        std::error_code error;
        m_acceptor.bind(tcp::endpoint(m_isDualStack ? tcp::v6() : tcp::v4(), m_port), error);
        if (!error)
            m_acceptor.listen(asio::socket_base::max_listen_connections, error);
        if (error) {
            m_server.m_log.line(u"❌ TARNE HTTP Server failed on port %1: %2"_s.arg(
                QString::number(m_port), text(error)));
            return;
        }
        m_server.m_log.line(u"🌐 TARNE HTTP Server started on port %1"_s.arg(m_port));
        m_server.m_transport->port = m_port;
        accept();
    }

    void accept() {
        m_acceptor.async_accept([self = shared_from_this()](std::error_code error,
                                                            tcp::socket socket) {
            if (self->m_isCancelled)
                return;
            if (!error) {
                std::make_shared<Connection>(self->m_server, std::move(socket))->handleConnection();
                self->accept();
            } else {
                self->acceptLater();
            }
        });
    }

    /// No descriptor is free, as a rule; the connection waits in the system's queue meanwhile.
    void acceptLater() {
        m_retry.expires_after(std::chrono::milliseconds(100));
        m_retry.async_wait([self = shared_from_this()](std::error_code error) {
            if (!error && !self->m_isCancelled)
                self->accept();
        });
    }

    LocalHTTPServer &m_server;
    tcp::acceptor m_acceptor;
    asio::steady_timer m_retry;
    quint16 m_port;
    bool m_isDualStack = false;
    bool m_isCancelled = false;
};

LocalHTTPServer::LocalHTTPServer(const Clock &clock, Log &log, quint16 port)
    : m_log(log), m_responder(clock, log), m_transport(std::make_unique<Transport>(port)) {}

LocalHTTPServer::~LocalHTTPServer() {
    m_transport->context.stop();
    if (m_transport->thread.joinable())
        m_transport->thread.join();
}

void LocalHTTPServer::start() {
    const quint16 first = getPort();
    if (first >= 65534)
        fatalError("the goals API's port leaves no room for the two behind it");
    const std::array<quint16, 6> candidates{
        first, quint16(first + 1), quint16(first + 2), 8081, 8082, 8083};
    for (const quint16 candidate : candidates) {
        if (startOnPort(candidate))
            return;
    }
    m_log.line(u"❌ Failed to start TARNE HTTP Server on any available port"_s);
}

bool LocalHTTPServer::startOnPort(quint16 port) {
    try {
        const auto listener = std::make_shared<Listener>(*this, port);
        listener->create();
        m_listener = listener;
    } catch (const std::system_error &error) {
        m_log.line(
            u"⚠️  Port %1 unavailable: %2"_s.arg(QString::number(port), text(error.code())));
        return false;
    }
    m_listener->start();
    m_transport->run();
    return true;
}

void LocalHTTPServer::stop() {
    if (m_listener)
        m_listener->cancel();
    m_listener.reset();
}

quint16 LocalHTTPServer::getPort() const {
    return m_transport->port;
}

QByteArray LocalHTTPServer::processRequest(const QByteArray &data) const {
    return m_responder.processRequest(data, getCurrentSessionData);
}

} // namespace tarne
