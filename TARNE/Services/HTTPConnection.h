#pragma once

#include "Log.h"

#define ASIO_STANDALONE
#define ASIO_NO_DEPRECATED
#include <asio.hpp>

#include <QByteArray>
#include <QString>

#include <array>
#include <functional>
#include <memory>

namespace tarne {

/// The system's words for an error of the transport.
[[nodiscard]] QString errorText(const std::error_code &error);

/// One accepted connection of the goals API: one request, one response. Kept alive by its pending
/// operations; runs on the executor of its socket.
class HTTPConnection : public std::enable_shared_from_this<HTTPConnection> {
public:
    /// Turns a received chunk, which counts as a whole request, into the response to send.
    using Responder = std::function<QByteArray(const QByteArray &chunk)>;

    /// The log, and what `responder` refers to, outlive the run of the executor.
    HTTPConnection(asio::ip::tcp::socket socket, Log &log, Responder responder);

    /// Begins to receive. To be called once, on a connection that a shared pointer owns.
    void receiveRequest();

private:
    static constexpr std::size_t largestReceive = 8192;

    void received(std::error_code error, std::size_t size);
    /// The peer says no more, but may still listen: a response that is under way goes on, and a
    /// connection without a request stays until the peer is gone.
    void awaitFailure();
    void sendResponse(QByteArray response);
    void fail(const QString &what, std::error_code error);
    /// Ends the connection without costing the peer a response that it has not read yet: closing a
    /// socket to which the peer still sends would reset the connection.
    void cancel();
    void drain();
    void close();

    Log &m_log;
    Responder m_responder;
    asio::ip::tcp::socket m_socket;
    asio::steady_timer m_patience{m_socket.get_executor()};
    std::array<char, largestReceive> m_received;
    QByteArray m_response;
    bool m_isCancelled = false;
};

} // namespace tarne
