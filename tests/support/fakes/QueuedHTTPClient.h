#pragma once

#include "HTTPClient.h"

#include <deque>
#include <thread>
#include <utility>
#include <vector>

namespace tarne::test {

/// Keeps requests and answers them when the test says so, on a thread of its own as the real client
/// does. When an answering call returns, the completion has run.
class QueuedHTTPClient final : public HTTPClient {
public:
    void post(const HTTPRequest &request, Completion done) override {
        requests.push_back(request);
        m_waiting.push_back(std::move(done));
    }

    /// Answers the oldest request that waits.
    void answer(const HTTPResult &result) {
        std::thread([done = std::move(m_waiting.front()), &result] { done(result); }).join();
        m_waiting.pop_front();
    }
    void answer(const QByteArray &body, int status = 200) {
        answer(HTTPResponse{.status = status, .body = body});
    }
    void fail(const QString &localizedDescription) { answer(TransportError{localizedDescription}); }

    std::size_t waitingCount() const { return m_waiting.size(); }

    std::vector<HTTPRequest> requests; ///< Every request ever sent.

private:
    std::deque<Completion> m_waiting;
};

} // namespace tarne::test
