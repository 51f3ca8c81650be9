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
/// operations; runs on the executor that it is given.
class HTTPConnection : public std::enable_shared_from_this<HTTPConnection> {
public:
    /// Turns a received chunk, which counts as a whole request, into the response to send.
    using Responder = std::function<QByteArray(const QByteArray &chunk)>;

    /// Serves the socket `descriptor`, which does not block, and closes it in the end. A request
    /// that came along with the connection, as most do, is answered at once and in few system
    /// calls: the executor's reactor only learns of a connection that has to be waited for.
    ///
    /// The log, and what `responder` refers to, outlive the run of the executor.
    static void handleConnection(const asio::any_io_executor &executor,
                                 const asio::ip::tcp &protocol, int descriptor, Log &log,
                                 const Responder &responder);

    /// Only for `handleConnection`.
    HTTPConnection(asio::ip::tcp::socket socket, Log &log, Responder responder);

private:
    static constexpr std::size_t largestReceive = 8192;

    void receiveRequest();
    void received(std::error_code error, std::size_t size);
    /// The peer says no more, but may still listen: a response that is under way goes on, and a
    /// connection without a request stays until the peer is gone, which keep-alive finds out.
    void awaitFailure();
    void failed();
    void sendResponse(QByteArray response);
    /// `sent` bytes of the response are on their way, or it failed with `error`.
    void continueSending(QByteArray response, std::size_t sent, std::error_code error);
    void finishSending(std::error_code error);
    void cancel();
    /// Reads away what is still to come, so that closing does not cost the peer the response.
    void drain();

    Log &m_log;
    Responder m_responder;
    asio::ip::tcp::socket m_socket;
    asio::steady_timer m_patience{m_socket.get_executor()};
    std::array<char, largestReceive> m_received;
    QByteArray m_response;
    bool m_isCancelled = false;
};

} // namespace tarne
