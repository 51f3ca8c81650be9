#include "GeminiStandIn.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

using namespace Qt::StringLiterals;

namespace tarne::test {

GeminiStandIn::GeminiStandIn() {
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(QStringLiteral(TARNE_PYTHON),
                    {QStringLiteral(TARNE_STAND_IN), m_folder.path()});
    while (!m_process.canReadLine() && m_process.waitForReadyRead(30'000)) {
    }
    m_ports = QJsonDocument::fromJson(m_process.readLine()).object();
    if (m_ports.isEmpty())
        qFatal("the stand-in for Gemini does not start");
}

GeminiStandIn::~GeminiStandIn() {
    m_process.closeWriteChannel();
    m_process.waitForFinished();
}

QString GeminiStandIn::endpoint(const QString &listener) const {
    return u"https://localhost:%1"_s.arg(m_ports.value(listener).toInt());
}

QString GeminiStandIn::authorityFile() const {
    return m_folder.filePath(u"authority.pem"_s);
}

QList<QJsonObject> GeminiStandIn::takeRequests() {
    QList<QJsonObject> requests;
    QFile record(m_folder.filePath(u"requests"_s));
    if (!record.open(QIODevice::ReadOnly) || !record.seek(m_requestsRead))
        return requests;
    while (!record.atEnd())
        requests += QJsonDocument::fromJson(record.readLine()).object();
    m_requestsRead = record.pos();
    return requests;
}

} // namespace tarne::test
