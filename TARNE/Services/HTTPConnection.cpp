#include "HTTPConnection.h"

#include <netinet/tcp.h>

using namespace Qt::StringLiterals;
using asio::ip::tcp;

namespace tarne {

QString errorText(const std::error_code &error) {
    return QString::fromStdString(error.message());
}

HTTPConnection::HTTPConnection(tcp::socket socket, Log &log, Responder responder)
    : m_log(log), m_responder(std::move(responder)), m_socket(std::move(socket)) {}

void HTTPConnection::handleConnection() {
    std::error_code ignored;
    m_socket.non_blocking(true, ignored);
    receiveRequest();
}

void HTTPConnection::receiveRequest() {
    m_socket.async_read_some(asio::buffer(m_received),
                             [self = shared_from_this()](std::error_code error, std::size_t size) {
                                 self->received(error, size);
                             });
}

void HTTPConnection::received(std::error_code error, std::size_t size) {
    if (m_isCancelled)
        return;
    if (error == asio::error::eof) {
        awaitFailure();
    } else if (error) {
        m_log.line(u"Receive error: "_s + errorText(error));
        cancel();
    } else {
        sendResponse(m_responder(QByteArray(m_received.data(), static_cast<qsizetype>(size))));
        if (!m_isCancelled)
            receiveRequest();
    }
}

void HTTPConnection::awaitFailure() {
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

void HTTPConnection::failed() {
    int code = 0;
    socklen_t size = sizeof code;
    ::getsockopt(m_socket.native_handle(), SOL_SOCKET, SO_ERROR, &code, &size);
    m_log.line(u"Connection failed: "_s + errorText(std::error_code(code, std::system_category())));
    cancel();
}

void HTTPConnection::sendResponse(QByteArray response) {
    // The end of the first response ends the connection, so a second one has no way out.
    if (!m_response.isEmpty())
        return;
    m_response = std::move(response);
    // A small response fits into the socket's buffer: no wait, no further turn of the loop.
    std::error_code error;
    const auto size = static_cast<std::size_t>(m_response.size());
    const std::size_t sent = m_socket.write_some(asio::buffer(m_response.constData(), size), error);
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

void HTTPConnection::finishSending(std::error_code error) {
    if (error)
        m_log.line(u"Send error: "_s + errorText(error));
    cancel();
}

void HTTPConnection::cancel() {
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

void HTTPConnection::drain() {
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

} // namespace tarne
