#pragma once

#include "AcceptLoop.h"
#include "Asio.h"

#include <QByteArray>

#include <functional>
#include <string>

#include <sys/types.h>
#include <unistd.h>

namespace tarne {

/// The Unix socket over which questions come, one a line; see docs/companions-protocol.md. Who is
/// another user is hung up on before a byte is read. On the thread of its context.
class QuestionSocket {
public:
    /// Takes one answer, a line without its line feed, on the context's thread. What comes after
    /// the connection's end is dropped.
    using Reply = std::function<void(const QByteArray &line)>;
    struct Answerer {
        /// Answers one line, given without its line feed.
        std::function<void(const QByteArray &line, const Reply &reply)> answer;
        /// The last answer to whoever sends a longer line than lines may be.
        QByteArray tooLong;
    };

    /// `user` alone is served. The context's run outlives no question socket.
    QuestionSocket(asio::io_context &context, Answerer answerer, uid_t user = ::geteuid());
    /// Takes the socket's name away.
    ~QuestionSocket();
    QuestionSocket(const QuestionSocket &) = delete;
    QuestionSocket &operator=(const QuestionSocket &) = delete;

    /// Listens under this path, in the place of what is there. The name appears when it listens.
    /// False where that cannot be.
    [[nodiscard]] bool listen(const std::string &path);

private:
    void serve(asio::local::stream_protocol::socket socket);

    Answerer m_answerer;
    uid_t m_user;
    std::string m_path; ///< Empty before it listens.
    AcceptLoop<asio::local::stream_protocol> m_loop;
};

} // namespace tarne
