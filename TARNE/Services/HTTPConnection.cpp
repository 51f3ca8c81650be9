#include "HTTPConnection.h"

using namespace Qt::StringLiterals;
using asio::ip::tcp;

namespace tarne {

QString errorText(const std::error_code &error) {
    return QString::fromStdString(error.message());
}

namespace {

/// The option of a socket that tells, once, which error the system noticed on it.
class PendingError {
public:
    [[nodiscard]] std::error_code code() const { return {m_code, std::system_category()}; }

    static int level(const tcp &) { return SOL_SOCKET; }
    static int name(const tcp &) { return SO_ERROR; }
    int *data(const tcp &) { return &m_code; }
    static std::size_t size(const tcp &) { return sizeof(int); }
    static void resize(const tcp &, std::size_t) {}

private:
    int m_code = 0;
};

} // namespace

HTTPConnection::HTTPConnection(tcp::socket socket, Log &log, Responder responder)
    : m_log(log), m_responder(std::move(responder)), m_socket(std::move(socket)) {}

void HTTPConnection::receiveRequest() {
    m_socket.async_read_some(asio::buffer(m_received),
                             [self = shared_from_this()](std::error_code error, std::size_t size) {
                                 if (!self->m_isCancelled)
                                     self->received(error, size);
                             });
}

void HTTPConnection::received(std::error_code error, std::size_t size) {
    if (error == asio::error::eof) {
        awaitFailure();
    } else if (error) {
        // With a response under way it is the response that the peer will miss.
        fail(m_response.isEmpty() ? u"Receive error: "_s : u"Send error: "_s, error);
    } else {
        sendResponse(m_responder(QByteArray(m_received.data(), static_cast<qsizetype>(size))));
        receiveRequest();
    }
}

void HTTPConnection::awaitFailure() {
    std::error_code ignored;
    // A peer that vanished without a word is found out.
    m_socket.set_option(asio::socket_base::keep_alive(true), ignored);
    m_socket.async_wait(tcp::socket::wait_error, [self = shared_from_this()](std::error_code) {
        if (self->m_isCancelled)
            return;
        PendingError pending;
        std::error_code unused;
        self->m_socket.get_option(pending, unused);
        self->fail(u"Connection failed: "_s, pending.code());
    });
}

void HTTPConnection::sendResponse(QByteArray response) {
    // The end of the first response ends the connection, so a second one has no way out.
    if (!m_response.isEmpty())
        return;
    m_response = std::move(response);
    const auto size = static_cast<std::size_t>(m_response.size());
    asio::async_write(m_socket, asio::buffer(m_response.constData(), size),
                      [self = shared_from_this()](std::error_code error, std::size_t) {
                          if (self->m_isCancelled)
                              return;
                          if (error)
                              self->fail(u"Send error: "_s, error);
                          else
                              self->cancel();
                      });
}

void HTTPConnection::fail(const QString &what, std::error_code error) {
    m_log.line(what + errorText(error));
    cancel();
}

void HTTPConnection::cancel() {
    m_isCancelled = true;
    std::error_code ignored;
    m_socket.cancel(ignored);
    m_socket.shutdown(tcp::socket::shutdown_send, ignored);
    m_patience.expires_after(std::chrono::seconds(2));
    m_patience.async_wait([self = shared_from_this()](std::error_code error) {
        if (!error)
            self->close();
    });
    drain();
}

void HTTPConnection::drain() {
    m_socket.async_read_some(asio::buffer(m_received),
                             [self = shared_from_this()](std::error_code error, std::size_t) {
                                 if (error)
                                     self->close();
                                 else
                                     self->drain();
                             });
}

void HTTPConnection::close() {
    m_patience.cancel();
    std::error_code ignored;
    m_socket.close(ignored);
}

} // namespace tarne
