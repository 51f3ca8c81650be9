#pragma once

#include "BackgroundActivityScheduler.h"
#include "Calendar.h"
#include "Clock.h"
#include "FocusSession.h"
#include "HapticFeedback.h"
#include "Log.h"
#include "NotificationCenter.h"
#include "RunLoop.h"
#include "SessionHistoryEntry.h"
#include "SessionOutcome.h"
#include "UserDefaults.h"
#include "UserNotificationCenter.h"
#include "UserPreferences.h"

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QVariantMap>

#include <memory>
#include <optional>
#include <vector>

namespace tarne {

class LocalHTTPServer;

/// What a session controller needs of the platform. Everything outlives the controller.
struct SessionPlatform {
    const Clock &clock;
    RunLoop &runLoop;
    Log &log;
    UserDefaults &defaults;
    NotificationCenter &notificationCenter;
    UserNotificationCenter &userNotifications;
    BackgroundActivityScheduler &backgroundActivities;
    HapticFeedback &haptics;
    CurrentCalendar calendar;
};

/// The hub of the application: owns the current session, its count-down, a live copy of the
/// preferences, the writing of the history and the publication of state for the browser extension.
///
/// The remaining time is never counted down: each tick works it out from the wall clock and the
/// stored start, so a missed tick, a sleeping machine or a busy thread costs nothing. A pause
/// stops the display, not the clock.
///
/// | state   | currentSession | isTimerActive | isTimerComplete                     | tick        |
/// |---------|----------------|---------------|-------------------------------------|-------------|
/// | idle    | absent         | false         | false, or left over from a run-out  | none        |
/// | running | present        | true          | false                               | firing      |
/// | paused  | present        | false         | false                               | no effect   |
/// | run out | present        | false         | true until the timer screen appears | none        |
///
/// A run holds two of them (see docs/architecture.md). Main thread only. Its sources are
/// SessionViewModel.cpp (construction, preferences, session) and SessionViewModel_*.cpp, one a
/// concern; Persistence is the timer keys and the restoration, Sharing what the extension reads.
class SessionViewModel : public QObject {
    Q_OBJECT

public:
    /// Restores a stored count-down and starts publishing.
    explicit SessionViewModel(SessionPlatform platform);
    ~SessionViewModel() override;

    // Observable state. Every change is followed by its signal.

    [[nodiscard]] const std::optional<FocusSession> &currentSession() const {
        return m_currentSession;
    }
    [[nodiscard]] const UserPreferences &userPreferences() const { return m_userPreferences; }
    /// Seconds, never negative.
    [[nodiscard]] double timeRemaining() const { return m_timeRemaining; }
    /// The fraction left: 1.0 at the start, 0.0 at the end.
    [[nodiscard]] double progress() const { return m_progress; }
    [[nodiscard]] bool isTimerActive() const { return m_isTimerActive; }
    /// When the count-down that was started last is over by the wall clock, or was; none after
    /// `stopTimer`. A pause does not move it.
    [[nodiscard]] std::optional<Date> countdownEnd() const;
    [[nodiscard]] bool isTimerComplete() const { return m_isTimerComplete; }
    /// For the timer screen, which lowers the flag when it appears.
    void setTimerComplete(bool complete);

    // A session and its count-down.

    [[nodiscard]] FocusSession createSession(const QString &goal, double durationSeconds);
    void startSession(const FocusSession &session);
    void endSession(const std::optional<QString> &reflection, bool completed);
    void startTimer(double durationSeconds);
    void pauseTimer();
    void resumeTimer();
    void stopTimer();
    void timerCompleted();
    void updateGoalStatuses(const QHash<QUuid, GoalStatus> &statuses);
    void provideHapticFeedback();

    // Preferences.

    void updatePreferences(const UserPreferences &preferences);
    /// Stores the length as the new default when it is 5 to 180 minutes, both included; otherwise
    /// changes nothing and returns false.
    bool updateSessionDuration(double seconds);
    /// "HH:MM:SS" of the argument, or of the default length; a fraction is dropped.
    [[nodiscard]] QString formattedDuration(std::optional<double> seconds = std::nullopt) const;
    void saveGoal(const QString &goal);
    [[nodiscard]] QString loadLastGoal() const;
    [[nodiscard]] static QString getRandomPlaceholder();
    void saveReflection(const QString &reflection);
    [[nodiscard]] QString loadLastReflection() const;

    // Timer persistence.

    /// Writes the four timer keys while a count-down has a start.
    void saveTimerState();
    /// Goes on with a stored count-down, or puts one that ran out while the application was away
    /// into the history.
    void restoreTimerState();
    /// Removes the timer keys and empties the session keys.
    void clearTimerState();
    /// Takes the time left from the wall clock, after the machine woke or the application became
    /// active. The change arrives over the main queue.
    void syncTimerWithRealTime();

    // History.

    [[nodiscard]] std::vector<SessionHistoryEntry> loadSessionHistory() const;
    /// The outcomes of what `loadSessionHistory` returns.
    [[nodiscard]] std::vector<SessionOutcome> loadSessionOutcomes() const;
    void saveSessionHistory(const std::vector<SessionHistoryEntry> &history);
    void saveSessionToHistory(const FocusSession &session, const QString &overallAssessment = {},
                              const QString &patternsObserved = {}, const QString &suggestions = {},
                              const QString &motivation = {}, const QString &reflection = {});
    /// Replaces the reflection of one entry. Does not post `sessionHistoryUpdated`.
    void updateHistoryReflection(const QUuid &entryId, const QString &reflection);

    // What the extension reads.

    void setupSharedData();
    void updateSharedData();
    /// The state for the local goals API. Reads without a lock, also from the server's queue.
    [[nodiscard]] QVariantMap getCurrentSessionGoals() const;
    /// Starts the local goals API over this controller. Nothing in the application does.
    void setupHTTPServer();
    /// None as long as `setupHTTPServer` was not called.
    [[nodiscard]] LocalHTTPServer *httpServer() const { return m_httpServer.get(); }

Q_SIGNALS:
    void currentSessionChanged();
    void userPreferencesChanged();
    void timeRemainingChanged(double seconds);
    void progressChanged(double progress);
    void isTimerActiveChanged(bool active);
    void isTimerCompleteChanged(bool complete);

private:
    /// A session that is not over, with its line's goals and the block lists of the preferences.
    [[nodiscard]] FocusSession plannedSession(const QString &goal, double durationSeconds,
                                              Date startTime) const;
    void setCurrentSession(std::optional<FocusSession> session);
    void setUserPreferences(UserPreferences preferences);
    void setTimeRemaining(double seconds);
    void setProgress(double progress);
    void setTimerActive(bool active);

    void setupNotificationObservers();
    void handleSleepNotification();
    void handleWakeNotification();
    void handleAppWillResignActive();
    void handleAppDidBecomeActive();
    void requestNotificationPermissions();

    void startInternalTimer();
    void tick();
    void scheduleCompletionNotification();
    void cancelCompletionNotification();
    void sendCompletionNotification();
    void setupBackgroundActivity();
    /// Seconds left by the wall clock, never negative. The count-down must have started.
    [[nodiscard]] double remainingByWallClock() const;

    void handleCompletedSessionOnRestore(const QString &savedGoal, double savedDuration,
                                         Date startTime);
    [[nodiscard]] bool isSessionActive() const;
    void writeEmptySessionKeys();

    SessionPlatform m_platform;

    std::optional<FocusSession> m_currentSession;
    UserPreferences m_userPreferences;
    double m_timeRemaining = 0.0;
    double m_progress = 1.0;
    bool m_isTimerActive = false;
    bool m_isTimerComplete = false;

    RunLoop::Timer m_timer = RunLoop::Timer::None; ///< The tick.
    double m_originalDuration = 0.0; ///< Seconds; the length of the running count-down.
    /// What asks the system to favour the process while the count-down runs; none before the first.
    std::unique_ptr<BackgroundActivity> m_backgroundTaskIdentifier;
    /// Wall-clock start of the count-down, the base of all arithmetic.
    std::optional<Date> m_sessionStartTime;
    std::vector<NotificationCenter::Registration> m_observers;
    /// Last, so that it ends first: a request that is being handled reads all of the above.
    std::unique_ptr<LocalHTTPServer> m_httpServer;
};

} // namespace tarne
