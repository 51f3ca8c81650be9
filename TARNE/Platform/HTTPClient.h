#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <functional>
#include <variant>

namespace tarne {

/// A POST: the body as it is sent, and its one header.
struct HTTPRequest {
    QUrl url;
    QByteArray contentType;
    QByteArray body;
};

/// A whole answer. An error status such as 404 or 500 is an answer too.
struct HTTPResponse {
    int status = 0;
    QByteArray body;
    QByteArray retryAfter{}; ///< The header of that name, empty without one.
};

/// There is no whole answer: why, in one line for the user. It never holds the request's address,
/// which may carry a secret.
struct TransportError {
    QString localizedDescription;
};

using HTTPResult = std::variant<HTTPResponse, TransportError>;

/// Sends requests over HTTP, beside the main thread.
class HTTPClient {
public:
    using Completion = std::function<void(HTTPResult result)>;

    virtual ~HTTPClient() = default;

    /// Sends one POST, once. Main thread only.
    ///
    /// `done` runs exactly once, on a thread of the client's: what it does there holds nobody up
    /// but other requests, and it touches nothing that belongs to the main thread. A request that
    /// is under way when the client is destroyed is dropped, and its completion does not run; the
    /// destructor waits for one that is running.
    virtual void post(const HTTPRequest &request, Completion done) = 0;
};

} // namespace tarne
