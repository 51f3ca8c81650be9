#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <optional>

namespace tarne {

/// The address of the one call to the model: `endpoint` (scheme and host), the fixed path, and the
/// key as it stands, not encoded in any way. What looks like an escape in it is one to `QUrl`,
/// which keeps and sends escapes in their normal form: "%41" as the "A" that it means, "%2f" as
/// "%2F". A receiver takes either form as the same key. A key with characters that no address can
/// carry (by RFC 3986) ends the process: one line, without the key, on standard error, then
/// `abort`.
[[nodiscard]] QUrl geminiAddress(const QString &endpoint, const QString &apiKey);

/// The same address, or none for a key that no address can carry.
[[nodiscard]] std::optional<QUrl> carriedGeminiAddress(const QString &endpoint,
                                                       const QString &apiKey);

/// The JSON body that asks for one answer to `prompt`.
[[nodiscard]] QByteArray geminiRequestBody(const QString &prompt);

} // namespace tarne
