#include "GoalsResponder.h"

#include <QDateTime>
#include <QJsonDocument>
#include <QJsonObject>
#include <QUtf8StringView>

#include <cmath>

using namespace Qt::StringLiterals;

namespace tarne {

namespace {

using Headers = std::map<QByteArray, QByteArray>;

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

QByteArray makeResponse(int statusCode, const QByteArray &body, Headers headers = {}) {
    headers["Content-Length"] = QByteArray::number(body.size());
    headers["Connection"] = "close";
    QByteArray text =
        "HTTP/1.1 " + QByteArray::number(statusCode) + ' ' + httpStatusText(statusCode) + "\r\n";
    for (const auto &[name, value] : headers)
        text += name + ": " + value + "\r\n";
    return text + "\r\n" + body;
}

/// Why a value has no JSON form; none when it has one.
std::optional<QString> jsonObstacle(const QVariant &value) {
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
        return std::isfinite(value.toDouble()) ? std::nullopt
                                               : std::optional(u"a number that is not finite"_s);
    case QMetaType::QVariantList:
        for (const QVariant &element : value.toList()) {
            if (const auto obstacle = jsonObstacle(element))
                return obstacle;
        }
        return std::nullopt;
    case QMetaType::QVariantMap:
        for (const QVariant &element : value.toMap()) {
            if (const auto obstacle = jsonObstacle(element))
                return obstacle;
        }
        return std::nullopt;
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
    return makeResponse(200, {},
                        {{"Access-Control-Allow-Origin", "*"},
                         {"Access-Control-Allow-Methods", "GET, POST, OPTIONS"},
                         {"Access-Control-Allow-Headers", "Content-Type, Authorization"},
                         {"Access-Control-Max-Age", "86400"}});
}

QByteArray GoalsResponder::sendJSONResponse(const QVariantMap &data) const {
    if (const auto obstacle = jsonObstacle(data)) {
        m_log.line(u"JSON serialization error: "_s + *obstacle);
        return makeResponse(500, "Internal Server Error");
    }
    const QByteArray body =
        QJsonDocument(QJsonObject::fromVariantMap(data)).toJson(QJsonDocument::Compact);
    return makeResponse(200, body,
                        {{"Content-Type", "application/json"},
                         {"Access-Control-Allow-Origin", "*"},
                         {"Access-Control-Allow-Methods", "GET, POST, OPTIONS"},
                         {"Access-Control-Allow-Headers", "Content-Type"}});
}

} // namespace tarne
