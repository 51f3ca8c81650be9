#pragma once

#include "Asio.h"

#include <chrono>
#include <functional>
#include <utility>

namespace tarne {

/// Accepts connections until it is destroyed, on the thread of its context.
template <class Protocol>
class AcceptLoop {
public:
    using Accepted = std::function<void(typename Protocol::socket socket)>;

    AcceptLoop(asio::io_context &context, Accepted accepted)
        : m_acceptor(context), m_retry(context), m_accepted(std::move(accepted)) {}

    typename Protocol::acceptor &acceptor() { return m_acceptor; }

    /// The acceptor listens; the loop outlives the context's run.
    void start() {
        m_acceptor.async_accept([this](std::error_code error, typename Protocol::socket socket) {
            if (error == asio::error::operation_aborted)
                return;
            if (error) {
                startLater();
                return;
            }
            m_accepted(std::move(socket));
            start();
        });
    }

private:
    /// No descriptor is free, as a rule; the connection waits in the system's queue meanwhile.
    void startLater() {
        m_retry.expires_after(std::chrono::milliseconds(100));
        m_retry.async_wait([this](std::error_code error) {
            if (!error)
                start();
        });
    }

    typename Protocol::acceptor m_acceptor;
    asio::steady_timer m_retry;
    Accepted m_accepted;
};

} // namespace tarne
