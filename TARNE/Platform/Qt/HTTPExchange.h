#pragma once

#include "HTTPClient.h"

#include <QNetworkAccessManager>
#include <QNetworkRequest>

#include <optional>

class QNetworkReply;

namespace tarne {

/// One request over Qt Network and its answer, on the thread that makes it. Deletes itself behind
/// its completion, and its connection with it.
///
/// The request goes out once, over a connection of its own and without credentials. Redirects are
/// followed within the origin only. The proxies are the system's, and none towards this machine.
class HTTPExchange final : public QObject {
public:
    /// A POST of `body`, or a GET where there is none. Without a `bodyLimit` the answer's body is
    /// not read: it is empty, and its head is the whole answer.
    HTTPExchange(const QNetworkRequest &request, std::optional<QByteArray> body,
                 std::optional<qint64> bodyLimit, HTTPClient::Completion done, QObject *parent);

private:
    void send();
    void receive();
    void finish();
    void redirect(const QUrl &target, int status);
    void complete(HTTPResult result);

    QNetworkRequest m_request;
    std::optional<QByteArray> m_requestBody;
    std::optional<qint64> m_bodyLimit;
    HTTPClient::Completion m_done;
    QByteArray m_body;
    int m_redirects = 0;
    QNetworkAccessManager m_manager;
    QNetworkReply *m_reply = nullptr; ///< The manager's.
};

} // namespace tarne
