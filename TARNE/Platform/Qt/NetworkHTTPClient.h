#pragma once

#include "HTTPClient.h"

#include <QList>
#include <QSslCertificate>
#include <QThread>

#include <chrono>
#include <memory>

namespace tarne {

/// HTTP over Qt Network: TLS 1.2 or later with the system's certificate store and proxies, no
/// certificate error ignored, redirects followed within the origin only.
///
/// Each request goes out once, over a connection of its own that is closed with it. Qt's own error
/// texts hold the request's address, so none of them leaves this class. Everything but the call
/// itself happens on one thread of the client's, which begins with the first request.
class NetworkHTTPClient final : public HTTPClient {
public:
    struct Limits {
        /// The longest silence of the peer, from the connection's beginning to the last byte. The
        /// header has no limit in bytes, since Qt hands it over whole; but a header that goes on
        /// counts as silence, so it has this long.
        std::chrono::milliseconds idle{std::chrono::seconds(60)};
        /// The longest body of an answer, in bytes, after decompression.
        qint64 body = qint64{64} * 1024 * 1024;
    };

    NetworkHTTPClient();
    /// `authorities` are trusted in place of the system's certificate store.
    NetworkHTTPClient(Limits limits, QList<QSslCertificate> authorities);
    ~NetworkHTTPClient() override;

    void post(const HTTPRequest &request, Completion done) override;

private:
    Limits m_limits;
    QList<QSslCertificate> m_authorities;
    QThread m_thread;
    std::unique_ptr<QObject> m_exchanges; ///< Parent of all that is under way; on the thread.
};

} // namespace tarne
