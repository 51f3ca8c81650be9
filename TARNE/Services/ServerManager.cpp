#include "ServerManager.h"

#include "Description.h"
#include "ServerExecutable.h"

#include <QPointer>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tarne {

namespace {

constexpr int firstPort = 3000;

/// Runs on the main queue, after the launch has been announced there.
void reportExit(const ServerPlatform &platform, int status, const std::shared_ptr<bool> &announced,
                std::function<void()> updateState) {
    if (!*announced) {
        // The child was quicker than the start, whose announcement is still to be queued.
        platform.runLoop.async([platform, status, announced, update = std::move(updateState)] {
            reportExit(platform, status, announced, update);
        });
        return;
    }
    updateState();
    platform.log.line(u"🔴 Server process terminated with status: %1"_s.arg(status));
}

} // namespace

ServerManager::ServerManager(ServerPlatform platform)
    : m_platform(std::move(platform)), m_keychain(m_platform.keychain), m_serverPort(firstPort) {
    setupHealthCheck();
}

ServerManager::~ServerManager() {
    stopServer();
    m_platform.runLoop.invalidate(m_healthCheckTimer);
}

void ServerManager::setRunning(bool running) {
    if (std::exchange(m_isRunning, running) != running)
        Q_EMIT isRunningChanged();
}

void ServerManager::setServerError(const std::optional<QString> &error) {
    if (m_serverError == error)
        return;
    m_serverError = error;
    Q_EMIT serverErrorChanged();
}

void ServerManager::startServer() {
    if (m_isRunning)
        return;
    const auto executable = findServerExecutable(m_platform.bundle, m_platform.log);
    if (!executable) {
        setServerError(u"Server binary not found in app bundle or project root"_s);
        m_platform.log.line(u"❌ Server binary not found at expected paths"_s);
        m_platform.log.line(u"   Checked bundle: "_s + m_platform.bundle.path());
        m_platform.log.line(u"   Checked project root for tarne-server"_s);
        return;
    }
    killProcessOnPort(firstPort);
    killProcessByName(serverExecutableName);
    m_platform.sleep(2'000'000us);
    m_serverPort = findAvailablePort(firstPort);
    m_platform.log.line(
        u"🔍 Using port: %1 (Safari extension will auto-discover)"_s.arg(m_serverPort));
    m_platform.log.line(u"🔍 Will pass port %1 as argument to server"_s.arg(m_serverPort));
    launchServer(*executable);
}

void ServerManager::launchServer(const QString &executable) {
    const QString port = QString::number(m_serverPort);
    const auto announced = std::make_shared<bool>(false);
    ChildLaunch launch;
    launch.executable = executable;
    launch.arguments = {port};
    m_platform.log.line(u"🔍 Starting server with arguments: "_s + description(launch.arguments));
    if (const auto key = m_keychain.load(geminiApiKeyName); key && !key->isEmpty())
        launch.environment[u"GEMINI_API_KEY"_s] = *key;
    launch.environment[u"PORT"_s] = port;
    launch.standardOutput = standardOutputHandler();
    launch.standardError = standardErrorHandler();
    launch.terminated = terminationHandler(announced);

    auto outcome = m_platform.launcher.launch(std::move(launch));
    if (const auto *failure = std::get_if<ChildProcessLauncher::Failure>(&outcome)) {
        setServerError(u"Failed to start server: "_s + failure->description);
        m_platform.log.line(u"❌ Failed to start server: "_s + failure->description);
        return;
    }
    m_serverProcess = std::get<std::shared_ptr<ChildProcess>>(std::move(outcome));
    m_platform.runLoop.async([self = QPointer(this), announced] {
        *announced = true;
        if (!self)
            return;
        self->setRunning(true);
        self->setServerError(std::nullopt);
    });
    m_platform.log.line(u"🟢 Server started successfully on port "_s + port);
    m_platform.runLoop.asyncAfter(2s, [self = QPointer(this)] {
        if (self)
            self->performHealthCheck();
    });
}

std::function<void(int)> ServerManager::terminationHandler(const std::shared_ptr<bool> &announced) {
    return [self = QPointer(this), platform = m_platform, announced](int status) {
        platform.runLoop.async([self, platform, announced, status] {
            reportExit(platform, status, announced, [self, status] {
                if (self)
                    self->setRunning(false);
                if (self && status != 0)
                    self->setServerError(u"Server exited with code %1"_s.arg(status));
            });
        });
    };
}

void ServerManager::stopServer() {
    if (!m_serverProcess || !m_serverProcess->isRunning()) {
        m_platform.log.line(u"🔴 No server process to stop"_s);
        return;
    }
    m_platform.log.line(u"🔴 Stopping server..."_s);
    m_serverProcess->terminate();
    if (!m_serverProcess->waitUntilExit(3s) && m_serverProcess->isRunning()) {
        m_platform.log.line(u"⚠️ Server didn't terminate gracefully, force killing..."_s);
        m_serverProcess->forceKill();
    }
    m_platform.log.line(u"🔴 Server process terminated"_s);
    m_serverProcess.reset();
    m_platform.runLoop.async([self = QPointer(this)] {
        if (self)
            self->setRunning(false);
    });
}

void ServerManager::restartServer() {
    stopServer();
    // The delay lets the stop's report land first: a start does nothing while `isRunning` is true.
    m_platform.runLoop.asyncAfter(1s, [self = QPointer(this)] {
        if (self)
            self->startServer();
    });
}

void ServerManager::forceCleanup() {
    m_platform.log.line(u"🧹 Force cleaning up all server processes..."_s);
    stopServer();
    killProcessOnPort(firstPort);
    m_platform.sleep(1'000'000us);
}

void ServerManager::updateAPIKey(const QString &key) {
    m_keychain.save(geminiApiKeyName, key);
    if (m_isRunning)
        restartServer();
}

std::optional<QString> ServerManager::getAPIKey() const {
    return m_keychain.load(geminiApiKeyName);
}

} // namespace tarne
