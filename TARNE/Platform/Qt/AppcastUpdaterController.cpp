#include "AppcastUpdaterController.h"

#include "Appcast.h"
#include "VersionOrder.h"

#include <QHostAddress>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QSslConfiguration>

using namespace Qt::StringLiterals;

namespace tarne {

namespace {

constexpr qsizetype maximumBody = qsizetype{64} * 1024 * 1024;
constexpr int idleTimeoutMilliseconds = 60'000;

UpdateCheckResult failure(const QString &text) {
    return {UpdateCheckResult::Kind::Failure, {}, {}, text};
}

/// What comes over an open network could send the user to anybody's page.
bool isTrustworthy(const QUrl &feed) {
    return feed.isValid() &&
           (feed.scheme() == "https"_L1 ||
            (feed.scheme() == "http"_L1 && QHostAddress(feed.host()).isLoopback()));
}

QNetworkRequest requestFor(const QUrl &feed) {
    QNetworkRequest request(feed);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::SameOriginRedirectPolicy);
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute,
                         QNetworkRequest::AlwaysNetwork);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    request.setTransferTimeout(idleTimeoutMilliseconds);
    QSslConfiguration tls = QSslConfiguration::defaultConfiguration();
    tls.setProtocol(QSsl::TlsV1_2OrLater);
    request.setSslConfiguration(tls);
    return request;
}

} // namespace

AppcastUpdaterController::AppcastUpdaterController(QUrl feed, QString version, Done foundAtStart)
    : m_feed(std::move(feed)), m_version(std::move(version)) {
    if (m_feed.isEmpty())
        return;
    checkForUpdates([foundAtStart = std::move(foundAtStart)](const UpdateCheckResult &result) {
        if (foundAtStart && result.kind == UpdateCheckResult::Kind::NewerVersion)
            foundAtStart(result);
    });
}

AppcastUpdaterController::~AppcastUpdaterController() = default;

QUrl AppcastUpdaterController::builtInFeed() {
    return QUrl(QStringLiteral(TARNE_APPCAST_URL), QUrl::StrictMode);
}

void AppcastUpdaterController::checkForUpdates(Done done) {
    m_waiting.push_back(std::move(done));
    if (m_isFetching)
        return;
    m_isFetching = true;
    QMetaObject::invokeMethod(this, &AppcastUpdaterController::fetch, Qt::QueuedConnection);
}

void AppcastUpdaterController::fetch() {
    if (m_feed.isEmpty())
        return answer({});
    if (!isTrustworthy(m_feed))
        return answer(failure(u"The update feed's address is not a secure one."_s));
    if (!m_network)
        m_network = std::make_unique<QNetworkAccessManager>();
    m_body.clear();
    m_isTooLarge = false;
    QNetworkReply *reply = m_network->get(requestFor(m_feed));
    // Bounds what Qt reads ahead, so that the cap holds for memory too.
    reply->setReadBufferSize(qint64{1024} * 1024);
    connect(reply, &QNetworkReply::readyRead, this, [this, reply] { take(*reply); });
    connect(reply, &QNetworkReply::finished, this, [this, reply] {
        reply->deleteLater();
        if (!m_isTooLarge)
            take(*reply);
        finish(*reply);
    });
}

void AppcastUpdaterController::take(QNetworkReply &reply) {
    m_body += reply.readAll();
    if (m_body.size() <= maximumBody || m_isTooLarge)
        return;
    m_isTooLarge = true;
    reply.abort();
}

void AppcastUpdaterController::finish(const QNetworkReply &reply) {
    const UpdateCheckResult result = resultOf(reply);
    m_body.clear();
    answer(result);
}

UpdateCheckResult AppcastUpdaterController::resultOf(const QNetworkReply &reply) const {
    if (m_isTooLarge)
        return failure(u"The update feed is too large."_s);
    const int status = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (status >= 300)
        return failure(u"The update server answered with status %1."_s.arg(status));
    if (reply.error() != QNetworkReply::NoError)
        return failure(u"The update feed could not be loaded: %1."_s.arg(reply.errorString()));
    const auto releases = parseAppcast(m_body);
    if (!releases)
        return failure(u"The update feed could not be read."_s);
    const auto newest = newestRelease(*releases);
    if (!newest || compareVersions(newest->version, m_version) <= 0)
        return {UpdateCheckResult::Kind::UpToDate, m_version, {}, {}};
    return {UpdateCheckResult::Kind::NewerVersion, newest->displayVersion, newest->page, {}};
}

void AppcastUpdaterController::answer(const UpdateCheckResult &result) {
    m_isFetching = false;
    for (const Done &done : std::exchange(m_waiting, {}))
        done(result);
}

} // namespace tarne
