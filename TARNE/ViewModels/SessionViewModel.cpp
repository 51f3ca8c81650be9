#include "SessionViewModel.h"

#include "DurationText.h"
#include "LocalHTTPServer.h"

#include <QRandomGenerator>

#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace tarne {

SessionViewModel::SessionViewModel(SessionPlatform platform)
    : m_platform(std::move(platform)),
      m_userPreferences(UserPreferences::load(m_platform.defaults)) {
    setupNotificationObservers();
    requestNotificationPermissions();
    restoreTimerState();
    setupSharedData();
    m_platform.log.line(
        u"📱 TARNE SessionViewModel initialized - Safari extension can access via shared UserDefaults"_s);
}

// The repeating timers are left to fire: they hold the controller weakly.
SessionViewModel::~SessionViewModel() = default;

void SessionViewModel::setupNotificationObservers() {
    const auto observe = [this](QLatin1StringView name, void (SessionViewModel::*handler)()) {
        m_observers.push_back(m_platform.notificationCenter.addObserver(
            name, [this, handler] { (this->*handler)(); }));
    };
    observe(notifications::willSleep, &SessionViewModel::handleSleepNotification);
    observe(notifications::didWake, &SessionViewModel::handleWakeNotification);
    observe(notifications::willResignActive, &SessionViewModel::handleAppWillResignActive);
    observe(notifications::didBecomeActive, &SessionViewModel::handleAppDidBecomeActive);
}

// Sleep and a turned-away user need no care: the next tick works the rest out from the wall clock.
void SessionViewModel::handleSleepNotification() {}
void SessionViewModel::handleAppWillResignActive() {}
void SessionViewModel::handleWakeNotification() {
    syncTimerWithRealTime();
}
void SessionViewModel::handleAppDidBecomeActive() {
    syncTimerWithRealTime();
}

FocusSession SessionViewModel::createSession(const QString &goal, double durationSeconds) {
    saveGoal(goal);
    return plannedSession(goal, durationSeconds, m_platform.clock.now());
}

FocusSession SessionViewModel::plannedSession(const QString &goal, double durationSeconds,
                                              Date startTime) const {
    return {.goal = goal,
            .goals = FocusSession::parseGoals(goal),
            .duration = durationSeconds,
            .startTime = startTime,
            .blockedApps = m_userPreferences.defaultBlockedApps,
            .blockedWebsites = m_userPreferences.defaultBlockedWebsites};
}

void SessionViewModel::startSession(const FocusSession &session) {
    stopTimer();
    clearTimerState();
    setCurrentSession(session);
    startTimer(session.duration);
    m_platform.log.line(u"📱 Starting new session: "_s + session.goal);
}

void SessionViewModel::endSession(const std::optional<QString> &reflection, bool completed) {
    if (!m_currentSession)
        return;
    FocusSession ended = *m_currentSession;
    m_platform.log.line(u"📱 Ending session: "_s + ended.goal);
    ended.endTime = m_platform.clock.now();
    ended.reflection = reflection;
    ended.completed = completed;
    if (completed) {
        saveSessionToHistory(ended, {}, {}, {}, {}, reflection.value_or(QString()));
        m_platform.log.line(u"📱 Session saved to history: "_s + ended.goal);
    }
    stopTimer();
    clearTimerState();
    setCurrentSession(std::nullopt);
    updateSharedData();
    m_platform.log.line(u"📱 Session ended, server remains running for future sessions"_s);
}

void SessionViewModel::updateGoalStatuses(const QHash<QUuid, GoalStatus> &statuses) {
    if (!m_currentSession)
        return;
    FocusSession rated = *m_currentSession;
    for (SessionGoal &goal : rated.goals) {
        if (const auto status = statuses.constFind(goal.id); status != statuses.cend())
            goal.status = *status;
    }
    setCurrentSession(std::move(rated));
}

void SessionViewModel::updatePreferences(const UserPreferences &preferences) {
    setUserPreferences(preferences);
    m_userPreferences.save(m_platform.defaults);
}

bool SessionViewModel::updateSessionDuration(double seconds) {
    const double minutes = seconds / 60;
    if (!(5 <= minutes && minutes <= 180))
        return false;
    UserPreferences preferences = m_userPreferences;
    preferences.defaultDuration = seconds;
    updatePreferences(preferences);
    return true;
}

QString SessionViewModel::formattedDuration(std::optional<double> seconds) const {
    return hoursMinutesSeconds(seconds.value_or(m_userPreferences.defaultDuration));
}

void SessionViewModel::saveGoal(const QString &goal) {
    UserPreferences preferences = m_userPreferences;
    preferences.lastGoal = goal;
    updatePreferences(preferences);
}

QString SessionViewModel::loadLastGoal() const {
    return m_userPreferences.lastGoal;
}

QString SessionViewModel::getRandomPlaceholder() {
    static const std::array placeholders{u"Write your goal here..."_s,
                                         u"What's your main objective for this session?"_s,
                                         u"What would make this session successful?"_s,
                                         u"What's the one thing you want to accomplish?"_s,
                                         u"Set a clear intention for your work..."_s};
    const auto count = static_cast<quint32>(placeholders.size());
    return placeholders[QRandomGenerator::global()->bounded(count)];
}

void SessionViewModel::saveReflection(const QString &reflection) {
    UserPreferences preferences = m_userPreferences;
    preferences.lastReflection = reflection;
    updatePreferences(preferences);
    if (!m_currentSession)
        return;
    FocusSession reflected = *m_currentSession;
    reflected.reflection = reflection;
    setCurrentSession(std::move(reflected));
}

QString SessionViewModel::loadLastReflection() const {
    return m_userPreferences.lastReflection;
}

void SessionViewModel::setCurrentSession(std::optional<FocusSession> session) {
    // Sessions have no equality: every assignment counts as a change.
    m_currentSession = std::move(session);
    Q_EMIT currentSessionChanged();
}

void SessionViewModel::setUserPreferences(UserPreferences preferences) {
    if (m_userPreferences == preferences)
        return;
    m_userPreferences = std::move(preferences);
    Q_EMIT userPreferencesChanged();
}

void SessionViewModel::setTimeRemaining(double seconds) {
    if (m_timeRemaining == seconds)
        return;
    m_timeRemaining = seconds;
    Q_EMIT timeRemainingChanged(seconds);
}

void SessionViewModel::setProgress(double progress) {
    if (m_progress == progress)
        return;
    m_progress = progress;
    Q_EMIT progressChanged(progress);
}

void SessionViewModel::setTimerActive(bool active) {
    if (m_isTimerActive == active)
        return;
    m_isTimerActive = active;
    Q_EMIT isTimerActiveChanged(active);
}

void SessionViewModel::setTimerComplete(bool complete) {
    if (m_isTimerComplete == complete)
        return;
    m_isTimerComplete = complete;
    Q_EMIT isTimerCompleteChanged(complete);
}

} // namespace tarne
