#include "GoalsResponder.h"

#include <QDateTime>
#include <QJsonDocument>
#include <QJsonObject>
#include <QUtf8StringView>

#include <cmath>
#include <optional>

using namespace Qt::StringLiterals;

namespace tarne {

namespace {

// The headers of a kind of response, each with its line end.
constexpr QByteArrayView jsonHeaders = "Content-Type: application/json\r\n"
                                       "Access-Control-Allow-Origin: *\r\n"
                                       "Access-Control-Allow-Methods: GET, POST, OPTIONS\r\n"
                                       "Access-Control-Allow-Headers: Content-Type\r\n";
constexpr QByteArrayView preflightHeaders =
    "Access-Control-Allow-Origin: *\r\n"
    "Access-Control-Allow-Methods: GET, POST, OPTIONS\r\n"
    "Access-Control-Allow-Headers: Content-Type, Authorization\r\n"
    "Access-Control-Max-Age: 86400\r\n";

QByteArray httpStatusText(int statusCode) {
    switch (statusCode) {
    case 200:
        return "OK";
    case 400:
        return "Bad Request";
    case 404:
        return "Not Found";
    case 500:
        return "Internal Server Error";
    default:
        return "Unknown";
    }
}

QByteArray makeResponse(int statusCode, QByteArrayView body, QByteArrayView headers = {}) {
    QByteArray text;
    text.reserve(128 + headers.size() + body.size());
    text.append("HTTP/1.1 ").append(QByteArray::number(statusCode)).append(' ');
    text.append(httpStatusText(statusCode)).append("\r\nContent-Length: ");
    text.append(QByteArray::number(body.size())).append("\r\nConnection: close\r\n");
    return text.append(headers).append("\r\n").append(body);
}

using Obstacle = std::optional<QString>;

Obstacle obstacleIn(const QVariant &value);

template <class Container>
Obstacle firstObstacleIn(const Container &values) {
    for (const QVariant &value : values) {
        if (auto obstacle = obstacleIn(value))
            return obstacle;
    }
    return std::nullopt;
}

/// Why a value has no JSON form; none when it has one. Qt would write null, or a text, in its
/// place.
Obstacle obstacleIn(const QVariant &value) {
    switch (value.typeId()) {
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::QString:
    case QMetaType::QStringList:
    case QMetaType::Nullptr:
        return std::nullopt;
    case QMetaType::Double:
        if (std::isfinite(value.toDouble()))
            return std::nullopt;
        return u"a number that is not finite"_s;
    case QMetaType::QVariantList:
        return firstObstacleIn(value.toList());
    case QMetaType::QVariantMap:
        return firstObstacleIn(value.toMap());
    default:
        return u"a value of type %1"_s.arg(QLatin1StringView(value.typeName()));
    }
}

} // namespace

QByteArray GoalsResponder::processRequest(const QByteArray &data, const Source &source) const {
    if (!QUtf8StringView(data).isValidUtf8())
        return makeResponse(400, "Bad Request");
    const auto lineEnd = data.indexOf("\r\n");
    const QByteArrayView line = QByteArrayView(data).first(lineEnd < 0 ? data.size() : lineEnd);
    const auto methodEnd = line.indexOf(' ');
    if (methodEnd < 0)
        return makeResponse(400, "Bad Request");
    const QByteArrayView method = line.first(methodEnd);
    const QByteArrayView rest = line.sliced(methodEnd + 1);
    const auto pathEnd = rest.indexOf(' ');
    const QByteArrayView path = pathEnd < 0 ? rest : rest.first(pathEnd);
    if (method == "GET" && path == "/goals")
        return handleGoalsRequest(source);
    if (method == "GET" && path == "/health")
        return handleHealthRequest();
    if (method == "OPTIONS")
        return handleOptionsRequest();
    return makeResponse(404, "Not Found");
}

QVariantMap GoalsResponder::inactiveSession() {
    return {{u"active"_s, false}, {u"goals"_s, QString()}, {u"sessionId"_s, QString()}};
}

QByteArray GoalsResponder::handleGoalsRequest(const Source &source) const {
    return sendJSONResponse(source ? source() : inactiveSession());
}

QByteArray GoalsResponder::handleHealthRequest() const {
    const auto seconds = static_cast<qint64>(std::floor(m_clock.now().secondsSince1970()));
    return sendJSONResponse(
        {{u"status"_s, u"ok"_s},
         {u"timestamp"_s, QDateTime::fromSecsSinceEpoch(seconds, Qt::UTC).toString(Qt::ISODate)},
         {u"service"_s, u"TARNE Local API"_s}});
}

QByteArray GoalsResponder::handleOptionsRequest() const {
    return makeResponse(200, {}, preflightHeaders);
}

QByteArray GoalsResponder::sendJSONResponse(const QVariantMap &data) const {
    if (const auto obstacle = firstObstacleIn(data)) {
        m_log.line(u"JSON serialization error: "_s + *obstacle);
        return makeResponse(500, "Internal Server Error");
    }
    const QJsonDocument document(QJsonObject::fromVariantMap(data));
    return makeResponse(200, document.toJson(QJsonDocument::Compact), jsonHeaders);
}

} // namespace tarne
