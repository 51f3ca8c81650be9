#pragma once

#include "NotificationCenter.h"

#include <QDBusConnection>
#include <QGuiApplication>
#include <QObject>

namespace tarne {

/// Posts the machine's sleep and wake, as logind announces them, and the application's losing and
/// getting the focus on the default notification centre.
///
/// Works with a logind that starts later or is restarted, and posts no sleep and no wake without
/// one. `center` must outlive the object.
class DesktopEvents final : public QObject {
    Q_OBJECT

public:
    DesktopEvents(QDBusConnection systemBus, const QGuiApplication &application,
                  NotificationCenter &center);

private Q_SLOTS:
    void handlePrepareForSleep(bool start);

private:
    void handleApplicationState(Qt::ApplicationState state);

    NotificationCenter &m_center;
    bool m_isActive;
};

} // namespace tarne
