#pragma once

#include "BackgroundActivityScheduler.h"
#include "RunLoop.h"

#include <QDBusConnection>

namespace tarne {

/// Background activities that keep the idle desktop from suspending the machine, through an
/// inhibitor of logind. The user can still send the machine to sleep. Where there is no logind an
/// activity runs all the same. `runLoop` must outlive scheduler and activities.
class DesktopBackgroundActivityScheduler final : public BackgroundActivityScheduler {
public:
    DesktopBackgroundActivityScheduler(QDBusConnection systemBus, RunLoop &runLoop);

    std::unique_ptr<BackgroundActivity> makeActivity(const QString &identifier) override;

private:
    QDBusConnection m_systemBus;
    RunLoop &m_runLoop;
};

} // namespace tarne
