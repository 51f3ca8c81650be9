#pragma once

#include "Clock.h"
#include "GoalsResponder.h"
#include "Log.h"

#include <QtGlobal>

#include <memory>

namespace tarne {

/// A very small HTTP/1.1 server on all interfaces: answers what the current session's goals are,
/// one response a connection. It knows nothing of sessions; its owner installs the source of what
/// it answers. Nothing starts it in a run of the application.
///
/// Everything after `start` happens on one thread, labelled "HTTPServer": binding, so that a port
/// held by another program is reported in the log after `start` has returned, accepting, receiving,
/// the call of the source, sending. Requests are handled one at a time. There is no limit to the
/// connections and no read time-out. Destroying the server closes all of them and waits for a
/// request that is being handled.
class LocalHTTPServer {
public:
    using SessionData = GoalsResponder::Source;

    /// Opens no socket. Clock and log outlive the server and are used on its thread.
    LocalHTTPServer(const Clock &clock, Log &log, quint16 port = 8080);
    ~LocalHTTPServer();
    LocalHTTPServer(const LocalHTTPServer &) = delete;
    LocalHTTPServer &operator=(const LocalHTTPServer &) = delete;

    /// Tries the port, the two behind it, 8081, 8082 and 8083, until a listener could be made; its
    /// port may still turn out to be taken. The outcome is only logged. A port of 65534 or above
    /// ends the process.
    void start();
    /// Makes the listener for one port; true when that was possible.
    bool startOnPort(quint16 port);
    /// Ends the last listener. Connections go on.
    void stop();

    /// The port asked for, or the one that became ready.
    [[nodiscard]] quint16 getPort() const;

    /// Called on the server's thread for each `/goals`. Set it before `start`.
    SessionData getCurrentSessionData;

private:
    class Listener;
    struct Transport;

    [[nodiscard]] QByteArray processRequest(const QByteArray &data) const;

    Log &m_log;
    GoalsResponder m_responder;
    std::unique_ptr<Transport> m_transport;
    std::shared_ptr<Listener> m_listener;
};

} // namespace tarne
