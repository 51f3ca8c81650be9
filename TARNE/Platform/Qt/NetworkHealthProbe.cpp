#include "NetworkHealthProbe.h"

#include "HTTPExchange.h"

#include <QUrl>

#include <utility>

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
    QNetworkRequest request(url);
    request.setTransferTimeout(static_cast<int>(m_idleLimit.count()));
    // The body is free, and free to be endless: the head of the answer is all that counts.
    new HTTPExchange(
        request, std::nullopt, std::nullopt,
        [done = std::move(done)](const HTTPResult &result) {
            if (const auto *response = std::get_if<HTTPResponse>(&result))
                done(response->status);
            else
                done(Failure{std::get<TransportError>(result).localizedDescription});
        },
        &m_exchanges);
}

} // namespace tarne
