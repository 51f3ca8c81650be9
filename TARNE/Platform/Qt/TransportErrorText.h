#pragma once

#include <QNetworkReply>
#include <QString>

namespace tarne {

/// What to tell the user about a request that got no whole answer.
[[nodiscard]] QString transportErrorText(QNetworkReply::NetworkError error);

/// Whether the error is but the status of an answer that arrived.
[[nodiscard]] bool isErrorStatus(QNetworkReply::NetworkError error);

} // namespace tarne
