#pragma once

#include "SessionViewModel.h"

#include <QPointer>

#include <functional>

namespace tarne {

class MainWindow;

/// What the application does when it has launched, when its last window closes and when it ends.
class AppDelegate {
public:
    /// The classification server's part in launch and termination.
    struct Server {
        std::function<void()> start; ///< Blocks for seconds.
        std::function<void()> stop;  ///< Blocks for seconds at most.
    };

    explicit AppDelegate(Server server);

    /// Starts the classification server, treats the window, if there is one, and makes the process
    /// a regular application.
    void applicationDidFinishLaunching(MainWindow *firstWindow);
    /// No: a session runs on behind a closed window.
    [[nodiscard]] bool applicationShouldTerminateAfterLastWindowClosed() const { return false; }
    /// Always, without a question.
    [[nodiscard]] bool applicationShouldTerminate() const { return true; }
    void applicationWillTerminate();

    /// The tab screen's controller. Nothing here uses it.
    QPointer<SessionViewModel> sessionViewModel;

private:
    Server m_server;
};

} // namespace tarne
