#include "QuestionSocket.h"

#include "PeerUser.h"
#include "ProtocolLimits.h"

#include <array>
#include <cstdio>
#include <deque>
#include <memory>
#include <utility>

#include <sys/stat.h>

namespace tarne {

using asio::local::stream_protocol;

namespace {

/// While so many questions of a connection are open, or so many answers are not taken, nothing more
/// is read from it.
constexpr std::size_t mostOpen = 64;

/// One connection. Kept alive by what it reads and writes, and by its open questions.
class QuestionConnection : public std::enable_shared_from_this<QuestionConnection> {
public:
    QuestionConnection(stream_protocol::socket socket, const QuestionSocket::Answerer &answerer)
        : m_socket(std::move(socket)), m_answerer(answerer) {}

    void read() {
        if (m_isReading || m_isLast || m_open + m_toSend.size() >= mostOpen)
            return;
        m_isReading = true;
        m_socket.async_read_some(
            asio::buffer(m_chunk),
            [self = shared_from_this()](std::error_code error, std::size_t size) {
                self->m_isReading = false;
                if (error) {
                    self->finish();
                    return;
                }
                self->m_received.append(self->m_chunk.data(), static_cast<qsizetype>(size));
                self->takeLines();
                self->read();
            });
    }

private:
    void takeLines() {
        qsizetype begin = 0;
        for (qsizetype end = 0; (end = m_received.indexOf('\n', begin)) >= 0; begin = end + 1) {
            if (end - begin >= static_cast<qsizetype>(limits::line)) {
                refuse();
                return;
            }
            ask(m_received.sliced(begin, end - begin));
        }
        m_received.remove(0, begin);
        if (m_received.size() >= static_cast<qsizetype>(limits::line))
            refuse();
    }

    void ask(const QByteArray &line) {
        ++m_open;
        m_answerer.answer(line, [self = shared_from_this()](const QByteArray &answer) {
            --self->m_open;
            self->send(answer);
            self->read();
        });
    }

    /// Nobody knows where in this stream the next line begins.
    void refuse() {
        m_received.clear();
        send(m_answerer.tooLong);
        finish();
    }

    /// Nothing more is read, and nothing answered but what is on its way.
    void finish() {
        m_isLast = true;
        if (m_toSend.empty())
            close();
    }

    void close() {
        std::error_code ignored;
        m_socket.close(ignored);
    }

    void send(const QByteArray &line) {
        if (m_isLast)
            return;
        m_toSend.push_back(line + '\n');
        if (m_toSend.size() == 1)
            write();
    }

    void write() {
        asio::async_write(m_socket,
                          asio::buffer(m_toSend.front().constData(),
                                       static_cast<std::size_t>(m_toSend.front().size())),
                          [self = shared_from_this()](std::error_code error, std::size_t) {
                              self->m_toSend.pop_front();
                              self->written(error);
                          });
    }

    void written(std::error_code error) {
        if (error || (m_isLast && m_toSend.empty())) {
            m_toSend.clear();
            m_isLast = true;
            close();
            return;
        }
        if (!m_toSend.empty())
            write();
        read();
    }

    stream_protocol::socket m_socket;
    const QuestionSocket::Answerer &m_answerer;
    std::array<char, 4096> m_chunk{};
    QByteArray m_received; ///< Up to a line, its end not yet there.
    std::deque<QByteArray> m_toSend;
    std::size_t m_open = 0;
    bool m_isReading = false;
    bool m_isLast = false;
};

} // namespace

QuestionSocket::QuestionSocket(asio::io_context &context, Answerer answerer, uid_t user)
    : m_answerer(std::move(answerer)),
      m_user(user),
      m_loop(context, [this](stream_protocol::socket socket) { serve(std::move(socket)); }) {}

QuestionSocket::~QuestionSocket() {
    if (!m_path.empty())
        ::unlink(m_path.c_str());
}

bool QuestionSocket::listen(const std::string &path) {
    const std::string temporary = path + ".new";
    ::unlink(temporary.c_str());
    std::error_code error;
    auto &acceptor = m_loop.acceptor();
    try {
        acceptor.open(stream_protocol(), error);
        // Throws where the path is longer than the system's names of sockets are.
        if (!error)
            acceptor.bind(stream_protocol::endpoint(temporary), error);
    } catch (const std::system_error &tooLong) {
        error = tooLong.code();
    }
    if (!error)
        acceptor.listen(asio::socket_base::max_listen_connections, error);
    if (error || ::chmod(temporary.c_str(), S_IRUSR | S_IWUSR) != 0 ||
        std::rename(temporary.c_str(), path.c_str()) != 0) {
        ::unlink(temporary.c_str());
        return false;
    }
    m_path = path;
    m_loop.start();
    return true;
}

void QuestionSocket::serve(stream_protocol::socket socket) {
    if (isPeerOf(socket.native_handle(), m_user))
        std::make_shared<QuestionConnection>(std::move(socket), m_answerer)->read();
}

} // namespace tarne
