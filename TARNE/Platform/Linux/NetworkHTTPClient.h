#pragma once

#include "HTTPClient.h"

#include <QList>
#include <QObject>
#include <QSslCertificate>

#include <chrono>

namespace tarne {

/// HTTP over Qt Network: TLS 1.2 or later with the system's certificate store and proxies, no
/// certificate error ignored, redirects followed within the origin only.
///
/// Each request goes out once, over a connection of its own that is closed with it. Qt's own error
/// texts hold the request's address, so none of them leaves this class.
class NetworkHTTPClient final : public QObject, public HTTPClient {
    Q_OBJECT

public:
    struct Limits {
        /// The longest silence of the peer, from the connection's beginning to the last byte.
        std::chrono::milliseconds idle{std::chrono::seconds(60)};
        /// The longest body of an answer, in bytes, after decompression.
        qint64 body = 64 * 1024 * 1024;
    };

    NetworkHTTPClient();
    /// `authorities` are trusted in place of the system's certificate store.
    NetworkHTTPClient(Limits limits, QList<QSslCertificate> authorities);

    void post(const HTTPRequest &request, Completion done) override;

private:
    Limits m_limits;
    QList<QSslCertificate> m_authorities;
};

} // namespace tarne
