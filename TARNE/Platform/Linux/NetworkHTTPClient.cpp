#include "NetworkHTTPClient.h"

#include "TransportErrorText.h"

#include <QHostAddress>
#include <QNetworkAccessManager>
#include <QNetworkProxyFactory>
#include <QNetworkReply>
#include <QSslConfiguration>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace tarne {
namespace {

/// The system's proxies, and none towards this machine.
class SystemProxies final : public QNetworkProxyFactory {
public:
    QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery &query) override {
        const QString host = query.peerHostName();
        if (host == "localhost"_L1 || QHostAddress(host).isLoopback())
            return {QNetworkProxy::NoProxy};
        return systemProxyForQuery(query);
    }
};

QSslConfiguration tlsConfiguration(const QList<QSslCertificate> &authorities) {
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setProtocol(QSsl::TlsV1_2OrLater);
    if (!authorities.isEmpty())
        configuration.setCaCertificates(authorities);
    return configuration;
}

/// The body of a request, sent once. Where a connection is lost before an answer, Qt would rewind
/// the body and send the request again, up to three times.
class SingleUseBody final : public QIODevice {
public:
    SingleUseBody(QByteArray bytes, QObject *parent)
        : QIODevice(parent), m_bytes(std::move(bytes)) {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }

    qint64 size() const override { return m_bytes.size(); }
    bool reset() override { return false; }

protected:
    qint64 readData(char *data, qint64 maxSize) override {
        const qint64 count = std::min(maxSize, m_bytes.size() - pos());
        std::copy_n(m_bytes.constData() + pos(), count, data);
        return count;
    }
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    QByteArray m_bytes;
};

QNetworkRequest networkRequest(const HTTPRequest &request, const NetworkHTTPClient::Limits &limits,
                               const QList<QSslCertificate> &authorities) {
    QNetworkRequest result(request.url);
    result.setHeader(QNetworkRequest::ContentTypeHeader, request.contentType);
    result.setSslConfiguration(tlsConfiguration(authorities));
    result.setTransferTimeout(static_cast<int>(limits.idle.count()));
    result.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                        QNetworkRequest::ManualRedirectPolicy);
    // One request a connection gains nothing from HTTP/2.
    result.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    result.setDecompressedSafetyCheckThreshold(limits.body);
    return result;
}

bool isSameOrigin(const QUrl &a, const QUrl &b) {
    const auto port = [](const QUrl &url) {
        return url.port(url.scheme() == "https"_L1 ? 443 : 80);
    };
    return a.scheme() == b.scheme() && a.host() == b.host() && port(a) == port(b);
}

/// One request and its answer. Deletes itself behind its completion.
class Exchange final : public QObject {
public:
    Exchange(const QNetworkRequest &request, QByteArray body, qint64 bodyLimit,
             HTTPClient::Completion done, QObject *parent)
        : QObject(parent),
          m_request(request),
          m_requestBody(std::move(body)),
          m_bodyLimit(bodyLimit),
          m_done(std::move(done)) {
        m_manager.setProxyFactory(new SystemProxies);
        send(true);
    }

private:
    void send(bool isPost) {
        m_body.clear();
        m_reply = isPost ? m_manager.post(m_request, new SingleUseBody(m_requestBody, this))
                         : m_manager.get(m_request);
        connect(m_reply, &QNetworkReply::readyRead, this, [this] { receive(); });
        connect(m_reply, &QNetworkReply::finished, this, [this] { finish(); });
    }

    void receive() {
        m_body += m_reply->readAll();
        if (m_body.size() > m_bodyLimit)
            complete(TransportError{u"The answer is too large."_s});
    }

    void finish() {
        if (m_reply->isOpen()) // It is closed where it was given up.
            m_body += m_reply->readAll();
        const QNetworkReply::NetworkError error = m_reply->error();
        const int status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
        const QUrl target = m_reply->attribute(QNetworkRequest::RedirectionTargetAttribute).toUrl();
        // Where the POST would have to be repeated, Qt has found its body spent; see SingleUseBody.
        if ((error == QNetworkReply::NoError || error == QNetworkReply::ContentReSendError) &&
            target.isValid())
            redirect(m_request.url().resolved(target), status);
        // Qt reports an error status as an error, and it is an answer all the same.
        else if (error == QNetworkReply::NoError || (status >= 400 && isErrorStatus(error)))
            complete(HTTPResponse{.status = status, .body = m_body});
        else
            complete(TransportError{transportErrorText(error)});
    }

    /// Only the statuses that say so repeat the POST, all others turn it into a GET.
    void redirect(const QUrl &target, int status) {
        if (!isSameOrigin(m_request.url(), target) || ++m_redirects > maximumRedirects) {
            complete(TransportError{transportErrorText(QNetworkReply::InsecureRedirectError)});
            return;
        }
        m_reply->deleteLater();
        m_request.setUrl(target);
        const bool isPost = m_reply->operation() == QNetworkAccessManager::PostOperation;
        send(isPost && (status == 307 || status == 308));
    }

    void complete(HTTPResult result) {
        m_reply->disconnect(this);
        deleteLater();
        m_done(std::move(result));
    }

    static constexpr int maximumRedirects = 20;

    QNetworkRequest m_request;
    QByteArray m_requestBody;
    qint64 m_bodyLimit;
    HTTPClient::Completion m_done;
    QByteArray m_body;
    int m_redirects = 0;
    QNetworkAccessManager m_manager;
    QNetworkReply *m_reply = nullptr; ///< The manager's.
};

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
            new Exchange(networkRequest(request, limits, authorities), request.body, limits.body,
                         done, parent);
        },
        Qt::QueuedConnection);
}

} // namespace tarne
