// Every chunk gets one whole response, which its first line decides.

#include "FuzzTargets.h"
#include "GoalsResponder.h"
#include "ManualTime.h"
#include "RecordingLog.h"

#include <QJsonDocument>
#include <QUtf8StringView>

using namespace Qt::StringLiterals;

void tarne::fuzz::goalsRequest(Input input) {
    const QByteArray request = input.toByteArray();
    const test::ManualTime clock;
    test::RecordingLog log;
    const GoalsResponder responder(clock, log);
    const auto source = [&request] {
        return QVariantMap{{u"active"_s, true}, {u"goals"_s, QString::fromUtf8(request)}};
    };
    const QByteArray response = responder.processRequest(request, source);
    const qsizetype headerSize = response.indexOf("\r\n\r\n");
    require(headerSize > 0, "a response has a header");
    const QByteArray header = response.first(headerSize + 2);
    const QByteArray body = response.sliced(headerSize + 4);
    require(header.startsWith("HTTP/1.1 200 OK\r\n") ||
                header.startsWith("HTTP/1.1 400 Bad Request\r\n") ||
                header.startsWith("HTTP/1.1 404 Not Found\r\n"),
            "a response begins with its status");
    require(header.contains("\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n"),
            "a response tells its length");
    if (header.contains("application/json"))
        require(QJsonDocument::fromJson(body).isObject(), "a JSON response is an object");
    if (QUtf8StringView(request).isValidUtf8()) {
        const QByteArray line = request.first(std::max<qsizetype>(0, request.indexOf("\r\n")));
        if (!line.isEmpty())
            require(responder.processRequest(line, source) == response,
                    "only the first line matters");
    }
}
