#include "NetworkHTTPClient.h"

#include "HTTPExchange.h"

#include <QNetworkRequest>
#include <QSslConfiguration>

#include <utility>

using namespace Qt::StringLiterals;

namespace tarne {
namespace {

QSslConfiguration tlsConfiguration(const QList<QSslCertificate> &authorities) {
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setProtocol(QSsl::TlsV1_2OrLater);
    if (!authorities.isEmpty())
        configuration.setCaCertificates(authorities);
    return configuration;
}

QNetworkRequest networkRequest(const HTTPRequest &request, const NetworkHTTPClient::Limits &limits,
                               const QList<QSslCertificate> &authorities) {
    QNetworkRequest result(request.url);
    result.setHeader(QNetworkRequest::ContentTypeHeader, request.contentType);
    result.setSslConfiguration(tlsConfiguration(authorities));
    result.setTransferTimeout(static_cast<int>(limits.idle.count()));
    // One request a connection gains nothing from HTTP/2.
    result.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    result.setDecompressedSafetyCheckThreshold(limits.body);
    return result;
}

} // namespace

NetworkHTTPClient::NetworkHTTPClient() : NetworkHTTPClient(Limits{}, {}) {}

NetworkHTTPClient::NetworkHTTPClient(Limits limits, QList<QSslCertificate> authorities)
    : m_limits(limits), m_authorities(std::move(authorities)) {
    m_thread.setObjectName(u"HTTPClient"_s);
}

NetworkHTTPClient::~NetworkHTTPClient() {
    if (!m_exchanges)
        return;
    QMetaObject::invokeMethod(
        m_exchanges.get(), [this] { m_exchanges.reset(); }, Qt::BlockingQueuedConnection);
    m_thread.quit();
    m_thread.wait();
}

void NetworkHTTPClient::post(const HTTPRequest &request, Completion done) {
    if (!m_exchanges) {
        m_exchanges = std::make_unique<QObject>();
        m_exchanges->moveToThread(&m_thread);
        m_thread.start();
    }
    QMetaObject::invokeMethod(
        m_exchanges.get(),
        [parent = m_exchanges.get(), request, limits = m_limits, authorities = m_authorities,
         done = std::move(done)] {
            new HTTPExchange(networkRequest(request, limits, authorities), request.body,
                             limits.body, done, parent);
        },
        Qt::QueuedConnection);
}

} // namespace tarne
