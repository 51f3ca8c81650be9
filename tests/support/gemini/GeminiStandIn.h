#pragma once

#include <QJsonObject>
#include <QList>
#include <QProcess>
#include <QString>
#include <QTemporaryDir>

namespace tarne::test {

/// A stand-in for the Gemini service in a process of its own, on this machine, over TLS; see
/// gemini_stand_in.py for what it can be asked to do.
class GeminiStandIn {
public:
    /// Returns when it listens.
    GeminiStandIn();
    /// Ends it and waits for that.
    ~GeminiStandIn();
    GeminiStandIn(const GeminiStandIn &) = delete;
    GeminiStandIn &operator=(const GeminiStandIn &) = delete;

    /// "https://localhost:PORT" of a listener.
    [[nodiscard]] QString endpoint(const QString &listener = QStringLiteral("main")) const;

    /// The certificate that its clients must trust.
    [[nodiscard]] QString authorityFile() const;

    /// The requests since the last call: "listener", "method", "target", "headers", "body".
    [[nodiscard]] QList<QJsonObject> takeRequests();

private:
    QTemporaryDir m_folder;
    QProcess m_process;
    QJsonObject m_ports;
    qint64 m_requestsRead = 0;
};

} // namespace tarne::test
