#include "DesktopEvents.h"

using namespace Qt::StringLiterals;

namespace tarne {

DesktopEvents::DesktopEvents(QDBusConnection systemBus, const QGuiApplication &application,
                             NotificationCenter &center)
    : m_center(center), m_isActive(QGuiApplication::applicationState() == Qt::ApplicationActive) {
    // Without a bus this is refused, and there is nothing to hear.
    systemBus.connect(u"org.freedesktop.login1"_s, u"/org/freedesktop/login1"_s,
                      u"org.freedesktop.login1.Manager"_s, u"PrepareForSleep"_s, this,
                      SLOT(handlePrepareForSleep(bool)));
    connect(&application, &QGuiApplication::applicationStateChanged, this,
            &DesktopEvents::handleApplicationState);
}

void DesktopEvents::handlePrepareForSleep(bool start) {
    m_center.post(start ? notifications::willSleep : notifications::didWake);
}

void DesktopEvents::handleApplicationState(Qt::ApplicationState state) {
    const bool isActive = state == Qt::ApplicationActive;
    if (std::exchange(m_isActive, isActive) == isActive)
        return;
    m_center.post(isActive ? notifications::didBecomeActive : notifications::willResignActive);
}

} // namespace tarne
