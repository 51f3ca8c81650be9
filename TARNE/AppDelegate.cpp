#include "AppDelegate.h"

#include "MainWindow.h"

namespace tarne {

AppDelegate::AppDelegate(Server server) : m_server(std::move(server)) {}

void AppDelegate::applicationDidFinishLaunching(MainWindow *firstWindow) {
    m_server.start();
    // The window was made with these properties and has been painted; nothing moves.
    if (firstWindow)
        firstWindow->applyProperties();
    // An X11 or Wayland client with a window is a regular application; there is no policy to set.
}

void AppDelegate::applicationWillTerminate() {
    m_server.stop();
    // It observes no notifications, so there is no registration to end.
}

} // namespace tarne
