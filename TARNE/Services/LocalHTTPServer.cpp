#include "LocalHTTPServer.h"

#include "FatalError.h"
#include "HTTPConnection.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <thread>

#include <sys/prctl.h>
#include <sys/socket.h>

using namespace Qt::StringLiterals;
using asio::ip::tcp;

namespace tarne {

namespace {

/// A child process that is started meanwhile must not hold a connection open.
constexpr int socketFlags = SOCK_CLOEXEC | SOCK_NONBLOCK;

/// So many connections are accepted, and as a rule answered, before anything else has its turn.
constexpr int largestBatch = 16;

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
        int descriptor = ::socket(AF_INET6, SOCK_STREAM | socketFlags, 0);
        m_isDualStack = descriptor >= 0;
        if (!m_isDualStack && errno == EAFNOSUPPORT)
            descriptor = ::socket(AF_INET, SOCK_STREAM | socketFlags, 0);
        if (descriptor < 0)
            throw std::system_error(errno, std::system_category());
        m_acceptor.assign(protocol(), descriptor);
        if (m_isDualStack)
            m_acceptor.set_option(asio::ip::v6_only(false));
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
        m_acceptor.bind(tcp::endpoint(protocol(), m_port), error);
        if (!error)
            m_acceptor.listen(asio::socket_base::max_listen_connections, error);
        if (error) {
            m_server.m_log.line(u"❌ TARNE HTTP Server failed on port %1: %2"_s.arg(
                QString::number(m_port), errorText(error)));
            return;
        }
        m_server.m_log.line(u"🌐 TARNE HTTP Server started on port %1"_s.arg(m_port));
        m_server.m_transport->port = m_port;
        accept();
    }

    void accept() {
        m_acceptor.async_wait(tcp::acceptor::wait_read,
                              [self = shared_from_this()](std::error_code) {
                                  if (!self->m_isCancelled)
                                      self->acceptPending();
                              });
    }

    void acceptPending() {
        for (int turn = 0; turn < largestBatch; ++turn) {
            if (m_server.m_transport->context.stopped())
                return;
            const int descriptor =
                ::accept4(m_acceptor.native_handle(), nullptr, nullptr, socketFlags);
            if (descriptor < 0) {
                if (errno == EAGAIN || errno == ECONNABORTED || errno == EINTR)
                    accept();
                else
                    acceptLater();
                return;
            }
            handleConnection(descriptor);
        }
        // It is the others' turn first: connections that wait, and the end of this listener.
        asio::post(m_acceptor.get_executor(), [self = shared_from_this()] {
            if (!self->m_isCancelled)
                self->acceptPending();
        });
    }

    void handleConnection(int descriptor) {
        HTTPConnection::handleConnection(
            m_acceptor.get_executor(), protocol(), descriptor, m_server.m_log,
            [&server = m_server](const QByteArray &chunk) { return server.processRequest(chunk); });
    }

    [[nodiscard]] tcp protocol() const { return m_isDualStack ? tcp::v6() : tcp::v4(); }

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
        m_log.line(u"⚠️  Port %1 unavailable: %2"_s.arg(QString::number(port),
                                                            errorText(error.code())));
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
