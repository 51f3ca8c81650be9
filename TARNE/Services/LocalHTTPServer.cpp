#include "LocalHTTPServer.h"

#include "FatalError.h"
#include "HTTPConnection.h"

#include <QThread>

#include <array>
#include <atomic>

using namespace Qt::StringLiterals;
using asio::ip::tcp;

namespace tarne {

/// The queue, and what is known on both sides of it.
struct LocalHTTPServer::Transport {
    explicit Transport(quint16 wantedPort) : port(wantedPort) {
        thread->setObjectName(u"HTTPServer"_s);
    }

    asio::io_context context{1};
    asio::executor_work_guard<asio::io_context::executor_type> work{context.get_executor()};
    std::unique_ptr<QThread> thread{QThread::create([this] { context.run(); })};
    std::atomic<quint16> port;
};

/// One port. Kept alive by its pending accept, so that a listener that was only replaced goes on.
class LocalHTTPServer::Listener : public std::enable_shared_from_this<Listener> {
public:
    /// Opens a socket for IPv6 and IPv4, or for IPv4 alone on a machine without IPv6. Binding it is
    /// left to the queue. Throws std::system_error.
    Listener(LocalHTTPServer &server, quint16 port)
        : m_server(server),
          m_acceptor(server.m_transport->context),
          m_retry(server.m_transport->context),
          m_endpoint(tcp::v6(), port) {
        std::error_code error;
        m_acceptor.open(tcp::v6(), error);
        if (!error) {
            m_acceptor.set_option(asio::ip::v6_only(false));
        } else if (error == asio::error::address_family_not_supported) {
            m_endpoint = tcp::endpoint(tcp::v4(), port);
            m_acceptor.open(tcp::v4());
        } else {
            throw std::system_error(error);
        }
        m_acceptor.set_option(tcp::acceptor::reuse_address(true));
    }

    void start() {
        asio::post(m_acceptor.get_executor(), [self = shared_from_this()] { self->listen(); });
    }

    void cancel() {
        asio::post(m_acceptor.get_executor(), [self = shared_from_this()] {
            std::error_code ignored;
            self->m_acceptor.close(ignored);
            self->m_retry.cancel();
            self->m_server.m_log.line(u"🛑 TARNE HTTP Server stopped"_s);
        });
    }

private:
    void listen() {
        std::error_code error;
        m_acceptor.bind(m_endpoint, error);
        if (!error)
            m_acceptor.listen(asio::socket_base::max_listen_connections, error);
        if (error) {
            m_server.m_log.line(u"❌ TARNE HTTP Server failed on port %1: %2"_s.arg(
                QString::number(m_endpoint.port()), errorText(error)));
            return;
        }
        m_server.m_log.line(u"🌐 TARNE HTTP Server started on port %1"_s.arg(m_endpoint.port()));
        m_server.m_transport->port = m_endpoint.port();
        accept();
    }

    void accept() {
        m_acceptor.async_accept(
            [self = shared_from_this()](std::error_code error, tcp::socket socket) {
                if (!self->m_acceptor.is_open())
                    return;
                if (error) {
                    self->acceptLater();
                    return;
                }
                self->handleConnection(std::move(socket));
                self->accept();
            });
    }

    /// No descriptor is free, as a rule; the connection waits in the system's queue meanwhile.
    void acceptLater() {
        m_retry.expires_after(std::chrono::milliseconds(100));
        m_retry.async_wait([self = shared_from_this()](std::error_code error) {
            if (!error && self->m_acceptor.is_open())
                self->accept();
        });
    }

    void handleConnection(tcp::socket socket) {
        std::make_shared<HTTPConnection>(
            std::move(socket), m_server.m_log,
            [&server = m_server](const QByteArray &chunk) { return server.processRequest(chunk); })
            ->receiveRequest();
    }

    LocalHTTPServer &m_server;
    tcp::acceptor m_acceptor;
    asio::steady_timer m_retry;
    tcp::endpoint m_endpoint;
};

LocalHTTPServer::LocalHTTPServer(const Clock &clock, Log &log, quint16 port)
    : m_log(log), m_responder(clock, log), m_transport(std::make_unique<Transport>(port)) {}

LocalHTTPServer::~LocalHTTPServer() {
    m_transport->context.stop();
    m_transport->thread->wait();
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
        m_listener = std::make_shared<Listener>(*this, port);
    } catch (const std::system_error &error) {
        m_log.line(u"⚠️  Port %1 unavailable: %2"_s.arg(QString::number(port),
                                                            errorText(error.code())));
        return false;
    }
    m_listener->start();
    m_transport->thread->start();
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
