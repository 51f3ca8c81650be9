// What brings a count-down back after the application's end, and after the machine's sleep.

#include "SessionViewModel.h"

#include "StoredKeys.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace tarne {

void SessionViewModel::saveTimerState() {
    if (!m_sessionStartTime)
        return;
    UserDefaults &defaults = m_platform.defaults;
    defaults.setObject(keys::timerStartTime, *m_sessionStartTime);
    defaults.setObject(keys::timerOriginalDuration, m_originalDuration);
    defaults.setObject(keys::timerIsActive, m_isTimerActive);
    defaults.setObject(keys::timerSessionGoal, m_currentSession ? m_currentSession->goal : u""_s);
}

void SessionViewModel::clearTimerState() {
    UserDefaults &defaults = m_platform.defaults;
    for (const auto key : {keys::timerStartTime, keys::timerOriginalDuration, keys::timerIsActive,
                           keys::timerSessionGoal})
        defaults.removeObjectForKey(key);
    writeEmptySessionKeys();
    defaults.synchronize();
}

void SessionViewModel::restoreTimerState() {
    const UserDefaults &defaults = m_platform.defaults;
    const std::optional<Date> startTime = defaults.dateForKey(keys::timerStartTime);
    if (!startTime || !defaults.boolForKey(keys::timerIsActive))
        return;
    const double savedDuration = defaults.doubleForKey(keys::timerOriginalDuration);
    const QString savedGoal = defaults.stringForKey(keys::timerSessionGoal).value_or(QString());
    const Date now = m_platform.clock.now();
    // Without a length nothing is left, though the start may lie in the future.
    const double remaining =
        savedDuration == 0 ? 0 : std::max(0.0, savedDuration - (now - *startTime));
    if (!(remaining > 0)) {
        handleCompletedSessionOnRestore(savedGoal, savedDuration, *startTime);
        return;
    }
    m_sessionStartTime = startTime;
    m_originalDuration = savedDuration;
    setTimeRemaining(remaining);
    setProgress(remaining / m_originalDuration);
    setTimerActive(true);
    setTimerComplete(false);
    setCurrentSession(plannedSession(savedGoal, savedDuration, now));
    startInternalTimer();
}

void SessionViewModel::handleCompletedSessionOnRestore(const QString &savedGoal,
                                                       double savedDuration, Date startTime) {
    FocusSession finished = plannedSession(savedGoal, savedDuration, startTime);
    finished.endTime = startTime + savedDuration;
    finished.completed = true;
    saveSessionToHistory(finished);
    m_platform.log.line(u"📱 Restored completed session saved to history: "_s + savedGoal);
    clearTimerState();
    setTimeRemaining(0.0);
    setProgress(1.0);
    setTimerActive(false);
    setTimerComplete(false);
    setCurrentSession(std::nullopt);
    m_sessionStartTime.reset();
    m_originalDuration = 0.0;
}

void SessionViewModel::syncTimerWithRealTime() {
    if (!m_sessionStartTime || !m_isTimerActive)
        return;
    const double remaining = remainingByWallClock();
    m_platform.runLoop.async([self = QPointer(this), remaining] {
        if (!self)
            return;
        self->setTimeRemaining(remaining);
        self->setProgress(remaining / self->m_originalDuration);
        if (remaining <= 0 && !self->m_isTimerComplete)
            self->timerCompleted();
    });
}

} // namespace tarne
