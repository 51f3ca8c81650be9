#include "HTTPConnection.h"

#include <cerrno>

#include <netinet/tcp.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using asio::ip::tcp;

namespace tarne {

QString errorText(const std::error_code &error) {
    return QString::fromStdString(error.message());
}

namespace {

std::error_code lastError() {
    return {errno, std::system_category()};
}

/// Hands over as much as the socket's buffer takes: a small response fits in as a whole.
std::size_t sendNow(int descriptor, const QByteArray &response, std::error_code &error) {
    const ssize_t sent =
        ::send(descriptor, response.constData(), static_cast<std::size_t>(response.size()),
               MSG_NOSIGNAL | MSG_DONTWAIT);
    if (sent < 0 && errno != EAGAIN)
        error = lastError();
    return sent < 0 ? 0 : static_cast<std::size_t>(sent);
}

/// Whether something was received that nobody has read.
bool hasUnread(int descriptor) {
    int size = 0;
    return ::ioctl(descriptor, FIONREAD, &size) == 0 && size > 0;
}

} // namespace

void HTTPConnection::handleConnection(const asio::any_io_executor &executor, const tcp &protocol,
                                      int descriptor, Log &log, const Responder &responder) {
    std::array<char, largestReceive> received;
    const ssize_t size = ::recv(descriptor, received.data(), received.size(), MSG_DONTWAIT);
    std::error_code error = size < 0 ? lastError() : std::error_code();
    QByteArray response;
    std::size_t sent = 0;
    if (size > 0) {
        response = responder(QByteArray(received.data(), size));
        sent = sendNow(descriptor, response, error);
        if (sent == static_cast<std::size_t>(response.size()) && !hasUnread(descriptor)) {
            ::close(descriptor);
            return;
        }
    }
    const auto connection = std::make_shared<HTTPConnection>(
        tcp::socket(executor, protocol, descriptor), log, responder);
    if (size > 0)
        connection->continueSending(std::move(response), sent, error);
    else if (size == 0)
        connection->received(asio::error::eof, 0);
    else if (error != std::errc::resource_unavailable_try_again)
        connection->received(error, 0);
    if (size != 0 && !connection->m_isCancelled)
        connection->receiveRequest();
}

HTTPConnection::HTTPConnection(tcp::socket socket, Log &log, Responder responder)
    : m_log(log), m_responder(std::move(responder)), m_socket(std::move(socket)) {}

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
    std::error_code error;
    const std::size_t sent = sendNow(m_socket.native_handle(), response, error);
    continueSending(std::move(response), sent, error);
}

void HTTPConnection::continueSending(QByteArray response, std::size_t sent, std::error_code error) {
    m_response = std::move(response);
    const auto size = static_cast<std::size_t>(m_response.size());
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
