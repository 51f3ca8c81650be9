#pragma once

#include "Date.h"

#include <QObject>
#include <QSocketNotifier>

#include <memory>

namespace tarne {

/// Rings when the machine's wall clock reaches a moment, also when the clock gets there by being
/// set or while the machine sleeps (then on waking up).
class WallClockAlarm final : public QObject {
    Q_OBJECT

public:
    WallClockAlarm();
    ~WallClockAlarm() override;

    /// Replaces the moment that was set before. One that is past rings soon.
    void set(Date moment);
    void clear();

Q_SIGNALS:
    /// The moment has come, or the clock was set and the moment has to be thought over.
    void rang();

private:
    int m_timer;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace tarne
