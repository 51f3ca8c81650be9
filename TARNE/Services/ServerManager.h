#pragma once

#include "Bundle.h"
#include "ChildProcess.h"
#include "HealthProbe.h"
#include "KeychainManager.h"
#include "Log.h"
#include "PortProbe.h"
#include "ProcessTools.h"
#include "RunLoop.h"

#include <QObject>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace tarne {

/// What the server's manager needs of the platform. Everything outlives the manager.
struct ServerPlatform {
    RunLoop &runLoop;
    Log &log;
    Keychain &keychain;
    Bundle &bundle;
    ProcessTools &tools;
    PortProbe &ports;
    ChildProcessLauncher &launcher;
    HealthProbe &health;
    /// Blocks the calling thread.
    std::function<void(std::chrono::microseconds)> sleep;
};

/// Finds, starts, watches and stops the classification server, the one child process of the
/// application. One instance lives as long as the process.
///
/// What it knows of the server is a belief: `isRunning` goes true after a successful launch, and
/// false when the child exits or is stopped; a failing health check changes `serverError` only.
/// Nothing restarts by itself. The operations belong to the main thread and block it: a start for
/// two seconds and more, a stop for three at most. The child's output and exit arrive on the
/// launcher's thread and touch state by way of the run loop only.
///
/// The sources: ServerManager.cpp (start, stop, key), ServerManager_Supervision.cpp (health,
/// output, ports, strays).
class ServerManager : public QObject {
    Q_OBJECT

public:
    /// Begins the health checks.
    explicit ServerManager(ServerPlatform platform);
    /// Stops the server.
    ~ServerManager() override;

    [[nodiscard]] bool isRunning() const { return m_isRunning; }
    /// The last failure, for display; absent after a successful start or health check.
    [[nodiscard]] const std::optional<QString> &serverError() const { return m_serverError; }

    /// Ends strays of earlier runs and starts the server; does nothing while it is running.
    void startServer();
    void stopServer();
    /// Stops now and starts one second later.
    void restartServer();
    /// Stops the server and ends strays; starts nothing.
    void forceCleanup();

    /// Starts a health check, unless the server is believed down.
    void performHealthCheck();

    /// Stores the key and restarts a running server, which reads it from its environment.
    void updateAPIKey(const QString &key);
    [[nodiscard]] std::optional<QString> getAPIKey() const;

Q_SIGNALS:
    void isRunningChanged();
    void serverErrorChanged();

private:
    void setRunning(bool running);
    void setServerError(const std::optional<QString> &error);

    void launchServer(const QString &executable);
    /// `announced` turns true on the main queue, together with `isRunning`: an exit that gets there
    /// first waits for it.
    [[nodiscard]] std::function<void(int)>
    terminationHandler(const std::shared_ptr<bool> &announced);
    [[nodiscard]] std::function<void(const QByteArray &)> standardOutputHandler();
    [[nodiscard]] std::function<void(const QByteArray &)> standardErrorHandler();

    void setupHealthCheck();
    [[nodiscard]] int findAvailablePort(int start);
    [[nodiscard]] bool isPortAvailable(int port);
    void killProcessOnPort(int port);
    void killProcesses(const QString &lines, int port);
    void killProcessByName(const QString &name);

    ServerPlatform m_platform;
    KeychainManager m_keychain;
    bool m_isRunning = false;
    std::optional<QString> m_serverError;
    std::shared_ptr<ChildProcess> m_serverProcess;
    RunLoop::Timer m_healthCheckTimer = RunLoop::Timer::None;
    /// The port that the server was given, or reported; whatever number it reported.
    qint64 m_serverPort;
};

} // namespace tarne
