#include "ServerManager.h"

#include "DecimalInteger.h"
#include "Utf8.h"

#include <QPointer>
#include <QUtf8StringView>

#include <algorithm>
#include <array>
#include <csignal>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tarne {

namespace {

constexpr auto healthCheckInterval = 30s;
constexpr int lastPortOffset = 100;
constexpr auto portMarker = "TARNE Classification Server running on port"_L1;

/// A chunk's text without the white space around it; none when it is no UTF-8.
std::optional<QString> trimmedText(const QByteArray &chunk) {
    if (chunk.isEmpty() || !QUtf8StringView(chunk).isValidUtf8())
        return std::nullopt;
    return textOfUtf8(chunk).trimmed();
}

/// The port that a chunk announces: the number behind the first "port " of the whole chunk, which
/// has to end with the chunk or before a blank.
std::optional<qint64> announcedPort(const QString &text) {
    if (!text.contains(portMarker))
        return std::nullopt;
    const auto pieces = QStringView(text).split(u"port ");
    return pieces.size() < 2 ? std::nullopt : decimalInteger(pieces[1].split(u' ').constFirst());
}

} // namespace

void ServerManager::setupHealthCheck() {
    m_healthCheckTimer =
        m_platform.runLoop.scheduleRepeating(healthCheckInterval, [this] { performHealthCheck(); });
}

void ServerManager::performHealthCheck() {
    if (!m_isRunning)
        return;
    const auto report = [self = QPointer(this), &runLoop = m_platform.runLoop,
                         &log = m_platform.log](const HealthProbe::Reply &reply) {
        runLoop.async([self, &log, reply] {
            const auto setError = [&](const std::optional<QString> &error) {
                if (self)
                    self->setServerError(error);
            };
            if (const auto *failure = std::get_if<HealthProbe::Failure>(&reply)) {
                setError(u"Health check failed: "_s + failure->description);
                log.line(u"⚠️ Server health check failed: "_s + failure->description);
            } else if (std::get<int>(reply) == 200) {
                setError(std::nullopt);
                log.line(u"✅ Server health check passed"_s);
            } else {
                setError(u"Server not responding properly"_s);
                log.line(u"⚠️ Server health check: unexpected response"_s);
            }
        });
    };
    m_platform.health.get(u"http://localhost:%1/health"_s.arg(m_serverPort), report);
}

std::function<void(const QByteArray &)> ServerManager::standardOutputHandler() {
    return [self = QPointer(this), &runLoop = m_platform.runLoop,
            &log = m_platform.log](const QByteArray &chunk) {
        const auto text = trimmedText(chunk);
        if (!text)
            return;
        log.line(u"🖥️ Server: "_s + *text);
        if (const auto port = announcedPort(*text)) {
            runLoop.async([self, &log, port = *port] {
                if (self)
                    self->m_serverPort = port;
                log.line(u"🔍 Server confirmed running on port: %1"_s.arg(port));
            });
        }
    };
}

std::function<void(const QByteArray &)> ServerManager::standardErrorHandler() {
    return [&log = m_platform.log](const QByteArray &chunk) {
        if (const auto text = trimmedText(chunk))
            log.line(u"⚠️ Server Error: "_s + *text);
    };
}

int ServerManager::findAvailablePort(int start) {
    for (int port = start; port <= start + lastPortOffset; ++port) {
        if (isPortAvailable(port))
            return port;
    }
    return start;
}

bool ServerManager::isPortAvailable(int port) {
    return m_platform.ports.canBind(port);
}

void ServerManager::killProcessOnPort(int port) {
    const std::array ports{port, 3000, 3001, 3002, 3003, 3004, 3005, 3006, 3007, 3008, 3009, 3010};
    for (const int candidate : ports) {
        const auto result =
            m_platform.tools.run(u"/usr/bin/lsof"_s, {u"-ti"_s, u":%1"_s.arg(candidate)});
        if (!result) {
            if (candidate == port)
                m_platform.log.line(u"🔍 No existing process found on port %1"_s.arg(port));
            continue;
        }
        if (const auto text = trimmedText(result->output))
            killProcesses(*text, candidate);
    }
    killProcessByName(u"tarne-server"_s);
    killProcessByName(u"node"_s);
}

void ServerManager::killProcesses(const QString &lines, int port) {
    for (const QStringView line : QStringView(lines).split(u'\n')) {
        const auto process = decimalInteger<qint32>(line.trimmed());
        if (!process)
            continue;
        m_platform.log.line(u"🔪 Killing existing process %1 on port %2"_s.arg(*process).arg(port));
        m_platform.tools.sendSignal(*process, SIGTERM);
        m_platform.sleep(500'000us);
        m_platform.tools.sendSignal(*process, SIGKILL);
    }
}

void ServerManager::killProcessByName(const QString &name) {
    const auto result = m_platform.tools.run(u"/usr/bin/pkill"_s, {u"-f"_s, name});
    if (result && result->status == 0)
        m_platform.log.line(u"🔪 Killed processes matching: "_s + name);
}

} // namespace tarne
