#pragma once

#include "Asio.h"
#include "FolderWatch.h"
#include "Messages.h"

#include <array>
#include <chrono>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include <sys/types.h>
#include <unistd.h>

namespace tarne {

/// How long a server is waited for.
struct LinkPatience {
    std::chrono::milliseconds forState{5'000};
    std::chrono::milliseconds forAnswer{20'000};
    std::chrono::milliseconds beforeReturn{100};      ///< After a server has gone.
    std::chrono::milliseconds beforeNextLook{30'000}; ///< At one that accepted and said nothing.
};

/// The connection to the classification server, whichever socket it has now: it is found by its
/// name in the companions' folder, and found anew when it comes back with another key or port. On
/// the thread of its executor.
///
/// Only a server of the same user is spoken to, and only one that tells its state is one.
class ServerLink {
public:
    enum class State { Ready, NoKey, Absent };
    using Done = std::function<void(const Answer &answer)>;

    /// `changed` is called when the state has changed and when the first look is over, never from
    /// within a call. It begins Absent.
    ServerLink(asio::any_io_executor executor, std::string folder, std::function<void()> changed,
               LinkPatience patience = {}, uid_t user = ::geteuid());

    void start();

    [[nodiscard]] State state() const { return m_state; }
    /// Whether the first look for a server is over; before it nobody knows.
    [[nodiscard]] bool hasLooked() const { return m_hasLooked; }

    /// Asks; `done` is called once, at once or later, with "no_server" where there is none.
    void ask(const Question &question, std::string_view goals, Done done);

private:
    using Socket = asio::local::stream_protocol::socket;

    struct Pending {
        Done done;
        asio::steady_timer deadline;
    };

    void lookForServer();
    void lookAgainAfter(std::chrono::milliseconds pause);
    void tryNext();
    void greet();
    void read();
    void takeLines();
    void take(const NumberedAnswer &answer);
    void send(std::string line);
    void write();
    void lose();
    void resolve(MessageId id, const Answer &answer);
    void setState(State state);
    [[nodiscard]] MessageId await(std::chrono::milliseconds patience, Done done);

    asio::any_io_executor m_executor;
    std::string m_folder;
    std::function<void()> m_changed;
    LinkPatience m_patience;
    uid_t m_user;
    FolderWatch m_watch;
    asio::steady_timer m_return;

    State m_state = State::Absent;
    bool m_hasLooked = false;
    bool m_isLooking = false;
    bool m_hasMissedChange = false;
    bool m_wasOneSilent = false; ///< In this look.
    std::deque<std::string> m_candidates;

    std::optional<Socket> m_socket;
    /// Of the connection; what belongs to an earlier one is dropped.
    std::uint64_t m_connection = 0;
    std::array<char, 4096> m_chunk{};
    std::string m_received;
    std::deque<std::string> m_toSend;
    std::map<MessageId, Pending> m_pending;
    MessageId m_lastId = 0;
};

} // namespace tarne
