// The count-down of a session: started, ticking, paused, stopped, run out.

#include "SessionViewModel.h"

#include <algorithm>
#include <chrono>
#include <cmath>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tarne {

void SessionViewModel::startTimer(double durationSeconds) {
    stopTimer();
    m_originalDuration = durationSeconds;
    setTimeRemaining(durationSeconds);
    setProgress(1.0);
    setTimerActive(true);
    setTimerComplete(false);
    m_sessionStartTime = m_platform.clock.now();
    saveTimerState();
    scheduleCompletionNotification();
    setupBackgroundActivity();
    startInternalTimer();
}

void SessionViewModel::startInternalTimer() {
    m_platform.runLoop.invalidate(m_timer);
    m_timer = m_platform.runLoop.scheduleRepeating(1s, [self = QPointer(this)] {
        if (self)
            self->tick();
    });
}

double SessionViewModel::remainingByWallClock() const {
    const double elapsed = m_platform.clock.now() - *m_sessionStartTime;
    // In this order a length that is no number counts as run out.
    return std::max(0.0, m_originalDuration - elapsed);
}

std::optional<Date> SessionViewModel::countdownEnd() const {
    return m_sessionStartTime ? std::optional(*m_sessionStartTime + m_originalDuration)
                              : std::nullopt;
}

void SessionViewModel::tick() {
    // A paused controller's timer goes on firing and does nothing.
    if (!m_isTimerActive || !m_sessionStartTime)
        return;
    const double remaining = remainingByWallClock();
    setTimeRemaining(remaining);
    setProgress(remaining / m_originalDuration);
    saveTimerState();
    // The tick does not fall on whole seconds: a cue may be missed or given twice, which is fine.
    const double minutes = std::trunc(remaining / 60);
    const double seconds = std::trunc(std::fmod(remaining, 60));
    if ((minutes == 1 && seconds == 0) || (minutes == 0 && (seconds == 30 || seconds == 10)))
        provideHapticFeedback();
    if (remaining <= 0)
        timerCompleted();
}

void SessionViewModel::pauseTimer() {
    setTimerActive(false);
}

void SessionViewModel::resumeTimer() {
    setTimerActive(true);
}

void SessionViewModel::stopTimer() {
    m_platform.runLoop.invalidate(std::exchange(m_timer, RunLoop::Timer::None));
    setTimerActive(false);
    setTimeRemaining(m_originalDuration);
    setProgress(1.0);
    m_sessionStartTime.reset();
    clearTimerState();
    cancelCompletionNotification();
    if (m_backgroundTaskIdentifier)
        m_backgroundTaskIdentifier->invalidate();
    m_backgroundTaskIdentifier.reset();
}

void SessionViewModel::timerCompleted() {
    setTimerActive(false);
    setTimerComplete(true);
    setProgress(0.0);
    setTimeRemaining(0.0);
    provideHapticFeedback();
    provideHapticFeedback();
    if (m_currentSession) {
        FocusSession finished = *m_currentSession;
        finished.duration = m_originalDuration;
        finished.endTime = m_platform.clock.now();
        finished.reflection.reset();
        finished.completed = true;
        setCurrentSession(finished);
        saveSessionToHistory(finished);
        m_platform.log.line(u"📱 Timer completed - session automatically saved to history: "_s +
                            finished.goal);
    }
    m_platform.runLoop.invalidate(std::exchange(m_timer, RunLoop::Timer::None));
    sendCompletionNotification();
}

void SessionViewModel::provideHapticFeedback() {
    m_platform.haptics.performLevelChange();
}

void SessionViewModel::setupBackgroundActivity() {
    m_backgroundTaskIdentifier = m_platform.backgroundActivities.makeActivity(u"com.tarne.timer"_s);
    m_backgroundTaskIdentifier->schedule(
        [&runLoop = m_platform.runLoop,
         duration = m_originalDuration](const BackgroundActivity::Finished &finished) {
            runLoop.asyncAfter(RunLoop::Seconds(duration), finished);
        });
}

} // namespace tarne
