#include "GeminiRequest.h"

#include "FatalError.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace tarne {
namespace {

/// Whether the query of an address can carry the character (RFC 3986, section 3.4, and a fragment
/// behind it). The digits behind a percent sign are `QUrl`'s to check.
bool isAddressCharacter(QChar c) {
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || (c >= u'0' && c <= u'9') ||
           u"-._~:/?#@!$&'()*+,;=%"_s.contains(c);
}

} // namespace

QUrl geminiAddress(const QString &endpoint, const QString &apiKey) {
    const auto address = carriedGeminiAddress(endpoint, apiKey);
    if (!address)
        fatalError("the API key holds characters that no address can carry");
    return *address;
}

std::optional<QUrl> carriedGeminiAddress(const QString &endpoint, const QString &apiKey) {
    const QUrl address(endpoint + u"/v1beta/models/gemini-1.5-flash-latest:generateContent?key="_s +
                           apiKey,
                       QUrl::StrictMode);
    if (!address.isValid() || apiKey.count(u'#') > 1 ||
        !std::ranges::all_of(apiKey, isAddressCharacter))
        return std::nullopt;
    return address;
}

QByteArray geminiRequestBody(const QString &prompt) {
    const QJsonObject content{{u"parts"_s, QJsonArray{QJsonObject{{u"text"_s, prompt}}}}};
    const QJsonObject generationConfig{{u"temperature"_s, 0.7},
                                       {u"topK"_s, 40.0},
                                       {u"topP"_s, 0.95},
                                       {u"maxOutputTokens"_s, 1024.0}};
    const QJsonObject body{{u"contents"_s, QJsonArray{content}},
                           {u"generationConfig"_s, generationConfig}};
    return QJsonDocument(body).toJson(QJsonDocument::Compact);
}

} // namespace tarne
