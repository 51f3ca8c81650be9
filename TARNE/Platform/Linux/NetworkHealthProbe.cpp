#include "NetworkHealthProbe.h"

#include "TransportErrorText.h"

#include <QNetworkProxy>
#include <QNetworkReply>

using namespace Qt::StringLiterals;

namespace tarne {

NetworkHealthProbe::NetworkHealthProbe(std::chrono::milliseconds idleLimit)
    : m_idleLimit(idleLimit) {}

void NetworkHealthProbe::get(const QString &address, std::function<void(Reply)> done) {
    const QUrl url(address, QUrl::StrictMode);
    if (!url.isValid()) {
        done(Failure{u"No such address"_s});
        return;
    }
    if (!m_network)
        m_network.emplace().setProxy(QNetworkProxy::NoProxy);
    QNetworkRequest request(url);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::SameOriginRedirectPolicy);
    request.setTransferTimeout(static_cast<int>(m_idleLimit.count()));
    QNetworkReply *reply = m_network->get(request);
    // The body is free, and free to be endless: the head of the answer is all that counts.
    QObject::connect(reply, &QNetworkReply::readyRead, reply, &QNetworkReply::abort);
    QObject::connect(reply, &QNetworkReply::finished, reply, [this, reply, done = std::move(done)] {
        reply->deleteLater();
        const QVariant status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute);
        const bool redirectRefused = reply->error() == QNetworkReply::InsecureRedirectError ||
                                     reply->error() == QNetworkReply::TooManyRedirectsError;
        if (status.isValid() && !redirectRefused)
            done(status.toInt());
        else
            done(Failure{transportErrorText(reply->error())});
        m_network->clearConnectionCache();
    });
}

} // namespace tarne
