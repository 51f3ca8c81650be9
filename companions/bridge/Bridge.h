#pragma once

#include "Asio.h"
#include "NativeMessages.h"
#include "ServerLink.h"
#include "StoreSignals.h"

#include <functional>
#include <optional>
#include <string>

namespace tarne {

/// Tells the extension of session and server, and relays its questions: with the goals of the
/// session that is active, so that it cannot ask about another one. On the thread of its executor.
class Bridge {
public:
    struct Places {
        std::string storeFolder;
        std::string companionsFolder;
        int input = 0;  ///< Taken over.
        int output = 1; ///< Taken over.
    };

    /// `ended` is called once, when the browser has gone.
    Bridge(const asio::any_io_executor &executor, const Places &places,
           std::function<void()> ended);

    void start();

private:
    void received(const std::string &message);
    void handle(const Hello &);
    void handle(const NumberedQuestion &asked);
    void handle(const Malformed &message);
    void relay(const NumberedQuestion &asked);
    void tellSession(const SessionState &state);
    void tellServer();

    bool m_isGreeted = false;
    StoreSignals m_store;
    ServerLink m_server;
    std::optional<ServerLink::State> m_toldServer;
    NativeMessages m_messages;
};

} // namespace tarne
