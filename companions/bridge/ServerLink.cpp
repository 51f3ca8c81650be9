#include "ServerLink.h"

#include "CompanionsFolder.h"
#include "PeerUser.h"
#include "ProtocolLimits.h"

#include <algorithm>
#include <filesystem>
#include <memory>
#include <tuple>
#include <utility>
#include <vector>

namespace tarne {

namespace {

namespace fs = std::filesystem;
using asio::local::stream_protocol;

const NoAnswer noServer{.error = "no_server", .retryAfter = {}};

/// The sockets that may be a server's, the newest first.
std::deque<std::string> socketsIn(const std::string &folder) {
    std::vector<std::pair<fs::file_time_type, std::string>> found;
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error)) {
        std::error_code gone;
        const auto written = entry->last_write_time(gone);
        if (!gone && portOfQuestionSocket(entry->path().filename().native()))
            found.emplace_back(written, entry->path().native());
    }
    std::ranges::sort(found, std::greater());
    std::deque<std::string> paths;
    for (auto &[written, path] : found)
        paths.push_back(std::move(path));
    return paths;
}

} // namespace

ServerLink::ServerLink(asio::any_io_executor executor, std::string folder,
                       std::function<void()> changed, LinkPatience patience, uid_t user)
    : m_executor(std::move(executor)),
      m_folder(std::move(folder)),
      m_changed(std::move(changed)),
      m_patience(patience),
      m_user(user),
      m_watch(m_executor, m_folder,
              {.matters = [](std::string_view name) -> bool {
                   return portOfQuestionSocket(name).has_value();
               },
               .changed = [this] { lookForServer(); }}),
      m_return(m_executor) {}

void ServerLink::start() {
    m_watch.start();
    lookForServer();
}

void ServerLink::ask(const Question &question, std::string_view goals, Done done) {
    if (m_state == State::Absent) {
        done(noServer);
        return;
    }
    std::string line = writtenQuestion(m_lastId + 1, question, goals);
    if (line.size() >= limits::line) {
        done(NoAnswer{"bad_request", {}});
        return;
    }
    std::ignore = await(m_patience.forAnswer, std::move(done));
    send(std::move(line));
}

void ServerLink::lookForServer() {
    if (m_isLooking || m_socket) {
        m_hasMissedChange = true;
        return;
    }
    m_isLooking = true;
    m_hasMissedChange = false;
    m_wasOneSilent = false;
    m_candidates = socketsIn(m_folder);
    tryNext();
}

void ServerLink::tryNext() {
    m_socket.reset();
    if (m_candidates.empty()) {
        m_isLooking = false;
        setState(State::Absent);
        if (m_hasMissedChange)
            lookForServer();
        else if (m_wasOneSilent)
            lookAgainAfter(m_patience.beforeNextLook);
        return;
    }
    const std::string path = std::move(m_candidates.front());
    m_candidates.pop_front();
    m_socket.emplace(m_executor);
    const auto connection = ++m_connection;
    try {
        const stream_protocol::endpoint server(path);
        m_socket->async_connect(server, [this, connection](std::error_code error) {
            if (connection != m_connection)
                return;
            if (error || !isPeerOf(m_socket->native_handle(), m_user))
                tryNext();
            else
                greet();
        });
    } catch (const std::system_error &) { // The path is longer than names of sockets are.
        tryNext();
    }
}

/// A server tells its state; anything else is a stranger.
void ServerLink::greet() {
    m_received.clear();
    m_toSend.clear();
    const MessageId id =
        await(m_patience.forState, [this, connection = m_connection](const Answer &answer) {
            const auto *state = std::get_if<ServerState>(&answer);
            if (connection != m_connection)
                return;
            if (state == nullptr) {
                m_wasOneSilent = true; // It may be a server of a machine that has much to do.
                lose();
                return;
            }
            m_isLooking = false;
            setState(state->hasKey ? State::Ready : State::NoKey);
        });
    send(writtenQuestion(id, {.kind = Question::Kind::State}, {}));
    read();
}

void ServerLink::read() {
    m_socket->async_read_some(asio::buffer(m_chunk), [this, connection = m_connection](
                                                         std::error_code error, std::size_t size) {
        if (connection != m_connection)
            return;
        if (error) {
            lose();
            return;
        }
        m_received.append(m_chunk.data(), size);
        takeLines();
        if (connection == m_connection)
            read();
    });
}

void ServerLink::takeLines() {
    const auto connection = m_connection;
    for (std::size_t end = 0; (end = m_received.find('\n')) != std::string::npos;) {
        const auto answer = readAnswer(std::string_view(m_received).substr(0, end));
        m_received.erase(0, end + 1);
        if (!answer) {
            lose();
            return;
        }
        resolve(answer->id, answer->answer);
        if (connection != m_connection)
            return;
    }
    if (m_received.size() >= limits::line)
        lose();
}

void ServerLink::send(std::string line) {
    m_toSend.push_back(std::move(line) + '\n');
    if (m_toSend.size() == 1)
        write();
}

void ServerLink::write() {
    // The lines live on where the connection is lost meanwhile.
    auto line = std::make_shared<std::string>(m_toSend.front());
    asio::async_write(*m_socket, asio::buffer(*line),
                      [this, line, connection = m_connection](std::error_code error, std::size_t) {
                          if (connection != m_connection)
                              return;
                          if (error) {
                              lose();
                              return;
                          }
                          m_toSend.pop_front();
                          if (!m_toSend.empty())
                              write();
                      });
}

/// The server has gone, or was none.
void ServerLink::lose() {
    ++m_connection;
    m_socket.reset();
    m_received.clear();
    m_toSend.clear();
    const bool wasServer = m_state != State::Absent;
    if (wasServer)
        setState(State::Absent);
    auto pending = std::exchange(m_pending, {});
    for (auto &[id, question] : pending)
        question.done(noServer);
    if (!wasServer) {
        m_isLooking = true;
        tryNext();
        return;
    }
    // Not at once, since one that hangs up again and again would be asked again and again.
    lookAgainAfter(m_patience.beforeReturn);
}

void ServerLink::lookAgainAfter(std::chrono::milliseconds pause) {
    m_return.expires_after(pause);
    m_return.async_wait([this](std::error_code error) {
        if (!error)
            lookForServer();
    });
}

void ServerLink::resolve(MessageId id, const Answer &answer) {
    auto found = m_pending.extract(id);
    if (found.empty())
        return;
    found.mapped().deadline.cancel();
    found.mapped().done(answer);
}

MessageId ServerLink::await(std::chrono::milliseconds patience, Done done) {
    const MessageId id = ++m_lastId;
    auto &pending =
        m_pending.emplace(id, Pending{std::move(done), asio::steady_timer(m_executor, patience)})
            .first->second;
    pending.deadline.async_wait([this, id](std::error_code error) {
        if (!error)
            resolve(id, noServer);
    });
    return id;
}

void ServerLink::setState(State state) {
    const bool isNew = std::exchange(m_state, state) != state;
    const bool isFirst = !std::exchange(m_hasLooked, true);
    if (isNew || isFirst)
        asio::post(m_executor, m_changed);
}

} // namespace tarne
