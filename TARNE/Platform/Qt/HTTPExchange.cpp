#include "HTTPExchange.h"

#include "TransportErrorText.h"

#include <QHostAddress>
#include <QNetworkProxyFactory>
#include <QNetworkReply>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace tarne {
namespace {

constexpr int maximumRedirects = 20;

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

/// The body of a request, sent once. Where a connection is lost before an answer, Qt would rewind
/// the body and send the request again, up to three times; one without a body it would just send.
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

bool isSameOrigin(const QUrl &a, const QUrl &b) {
    const auto port = [](const QUrl &url) {
        return url.port(url.scheme() == "https"_L1 ? 443 : 80);
    };
    return a.scheme() == b.scheme() && a.host() == b.host() && port(a) == port(b);
}

} // namespace

HTTPExchange::HTTPExchange(const QNetworkRequest &request, std::optional<QByteArray> body,
                           std::optional<qint64> bodyLimit, HTTPClient::Completion done,
                           QObject *parent)
    : QObject(parent),
      m_request(request),
      m_requestBody(std::move(body)),
      m_bodyLimit(bodyLimit),
      m_done(std::move(done)) {
    m_request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                           QNetworkRequest::ManualRedirectPolicy);
    // There are none to send, and Qt would repeat the request to say so to some servers.
    m_request.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
    m_manager.setProxyFactory(new SystemProxies);
    send();
}

void HTTPExchange::send() {
    m_body.clear();
    auto *body = new SingleUseBody(m_requestBody.value_or(QByteArray()), this);
    m_reply = m_requestBody ? m_manager.post(m_request, body)
                            : m_manager.sendCustomRequest(m_request, "GET", body);
    connect(m_reply, &QNetworkReply::readyRead, this, [this] { receive(); });
    connect(m_reply, &QNetworkReply::finished, this, [this] { finish(); });
}

void HTTPExchange::receive() {
    if (!m_bodyLimit) {
        finish();
        return;
    }
    m_body += m_reply->readAll();
    if (m_body.size() > *m_bodyLimit)
        complete(TransportError{u"The answer is too large."_s});
}

void HTTPExchange::finish() {
    if (m_bodyLimit && m_reply->isOpen()) // It is closed where it was given up.
        m_body += m_reply->readAll();
    const QNetworkReply::NetworkError error = m_reply->error();
    const int status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    const QUrl target = m_reply->attribute(QNetworkRequest::RedirectionTargetAttribute).toUrl();
    // Qt reports an error status as an error, and it is an answer all the same.
    const bool isAnswer = error == QNetworkReply::NoError ||
                          (status >= 400 && isErrorStatus(error)) || (status > 0 && !m_bodyLimit);
    // Where the POST would have to be repeated, Qt has found its body spent; see SingleUseBody.
    if ((isAnswer || error == QNetworkReply::ContentReSendError) && target.isValid())
        redirect(m_request.url().resolved(target), status);
    else if (isAnswer)
        complete(HTTPResponse{
            .status = status, .body = m_body, .retryAfter = m_reply->rawHeader("Retry-After")});
    else
        complete(TransportError{transportErrorText(error)});
}

/// Only the statuses that say so repeat the POST, all others turn it into a GET.
void HTTPExchange::redirect(const QUrl &target, int status) {
    if (!isSameOrigin(m_request.url(), target) || ++m_redirects > maximumRedirects) {
        complete(TransportError{transportErrorText(QNetworkReply::InsecureRedirectError)});
        return;
    }
    m_reply->disconnect(this);
    m_reply->deleteLater();
    m_request.setUrl(target);
    if (status != 307 && status != 308)
        m_requestBody.reset();
    send();
}

void HTTPExchange::complete(HTTPResult result) {
    m_reply->disconnect(this);
    deleteLater();
    m_done(std::move(result));
}

} // namespace tarne
