#pragma once

#include "HTTPClient.h"
#include "RunLoop.h"

#include <deque>
#include <vector>

namespace tarne::test {

/// Keeps requests and answers them when the test says so, through the main queue.
class QueuedHTTPClient final : public HTTPClient {
public:
    explicit QueuedHTTPClient(RunLoop &runLoop) : m_runLoop(runLoop) {}

    void post(const HTTPRequest &request, Completion done) override {
        requests.push_back(request);
        m_waiting.push_back(std::move(done));
    }

    /// Answers the oldest request that waits.
    void answer(HTTPResult result) {
        m_runLoop.async([done = std::move(m_waiting.front()), result] { done(result); });
        m_waiting.pop_front();
    }
    void answer(const QByteArray &body, int status = 200) {
        answer(HTTPResponse{.status = status, .body = body});
    }
    void fail(const QString &localizedDescription) { answer(TransportError{localizedDescription}); }

    std::size_t waitingCount() const { return m_waiting.size(); }

    std::vector<HTTPRequest> requests; ///< Every request ever sent.

private:
    RunLoop &m_runLoop;
    std::deque<Completion> m_waiting;
};

} // namespace tarne::test
