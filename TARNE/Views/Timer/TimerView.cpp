#include "TimerView.h"

#include "DurationText.h"
#include "SessionViewModel.h"
#include "UserPreferences.h"

#include <QPointer>

#include <chrono>
#include <utility>

using namespace std::chrono_literals;

namespace tarne {

namespace {

constexpr double orbProgressInSetup = 0.1;
constexpr auto pauseBetweenSheets = 300ms;

} // namespace

TimerView::TimerView(SessionViewModel &sessionViewModel, const UserDefaults &defaults,
                     RunLoop &runLoop, NotificationCenter &notificationCenter,
                     MakeReflectionView makeReflectionView)
    : m_sessionViewModel(sessionViewModel),
      m_runLoop(runLoop),
      m_notificationCenter(notificationCenter),
      m_makeReflectionView(std::move(makeReflectionView)),
      m_timeRemaining(UserPreferences::load(defaults).defaultDuration) {
    m_selectedDuration = m_timeRemaining;
    connect(this, &TimerView::showSessionNotesChanged, this, [this](bool show) {
        if (!show)
            m_sessionNotes->disappear();
    });
}

TimerView::~TimerView() = default;

double TimerView::orbProgress() const {
    return m_isSetupMode ? orbProgressInSetup : 1.0 - m_progress;
}

void TimerView::appear() {
    if (m_following)
        return;
    followController();
    m_showSessionReflection = false;
    m_sessionViewModel.setTimerComplete(false);
    chooseFace();
    Q_EMIT isShownChanged();
}

void TimerView::chooseFace() {
    if (m_sessionViewModel.isTimerActive()) {
        setSetupMode(false);
        return;
    }
    m_selectedDuration = m_sessionViewModel.userPreferences().defaultDuration;
    // The controller's time is that of the last count-down, or 0 before the first one; setup shows
    // the chosen length also where it has not changed by this.
    if (m_isSetupMode)
        setTimeRemaining(m_selectedDuration);
}

void TimerView::disappear() {
    if (!m_following)
        return;
    m_following.reset();
    Q_EMIT isShownChanged();
}

void TimerView::followController() {
    m_following = std::make_unique<QObject>();
    QObject *const context = m_following.get();
    SessionViewModel *const controller = &m_sessionViewModel;

    connect(controller, &SessionViewModel::timeRemainingChanged, context,
            [this](double seconds) { setTimeRemaining(seconds); });
    connect(controller, &SessionViewModel::progressChanged, context,
            [this](double progress) { setProgress(progress); });
    connect(controller, &SessionViewModel::isTimerActiveChanged, context,
            [this](bool active) { setTimerActive(active); });
    connect(controller, &SessionViewModel::isTimerCompleteChanged, context, [this](bool complete) {
        if (complete)
            showTimerCompletion();
    });
    connect(this, &TimerView::selectedDurationChanged, context,
            [this](double seconds) { setTimeRemaining(seconds); });

    setTimeRemaining(controller->timeRemaining());
    setProgress(controller->progress());
    setTimerActive(controller->isTimerActive());
}

// A sheet's view is there before its flag is raised: bindings hear of the flag before anybody else.
// The view before it is deleted last, when nothing on the screen refers to it any more.

bool TimerView::isSheetUpOrDue() const {
    return m_showDurationSelection || m_showSessionNotes || m_showSessionReflection ||
           m_areNotesDue || m_dueReflections > 0;
}

void TimerView::selectDuration() {
    if (isSheetUpOrDue())
        return;
    const auto previous = std::exchange(
        m_durationSelection, std::make_unique<DurationSelectionView>(
                                 m_sessionViewModel, &m_selectedDuration, &m_showDurationSelection,
                                 [this] { presentSessionNotesSoon(); }));
    m_durationSelection->appear();
    Q_EMIT durationSelectionChanged();
    m_showDurationSelection = true;
}

void TimerView::presentSessionNotesSoon() {
    if (std::exchange(m_areNotesDue, true))
        return;
    after(pauseBetweenSheets, [this] {
        m_areNotesDue = false;
        presentSessionNotes();
    });
}

void TimerView::presentSessionNotes() {
    if (m_showSessionNotes)
        return;
    const auto previous = std::exchange(
        m_sessionNotes,
        std::make_unique<SessionNotesView>(m_sessionViewModel, m_notificationCenter, m_runLoop,
                                           &m_showSessionNotes, [this] { startTimer(); }));
    m_sessionNotes->appear();
    Q_EMIT sessionNotesChanged();
    m_showSessionNotes = true;
}

void TimerView::startTimer() {
    setSetupMode(false);
    // The notes sheet has stored it there.
    const QString goal = m_sessionViewModel.loadLastGoal();
    m_sessionViewModel.startSession(m_sessionViewModel.createSession(goal, m_selectedDuration));
    constexpr SpringAnimation spring{.response = 0.3, .dampingFraction = 0.6};
    animateTimerScale(1.05, spring);
    after(200ms, [=, this] { animateTimerScale(1.0, spring); });
}

void TimerView::toggleTimer() {
    if (m_sessionViewModel.isTimerActive())
        m_sessionViewModel.pauseTimer();
    else
        m_sessionViewModel.resumeTimer();
    constexpr SpringAnimation spring{.response = 0.2, .dampingFraction = 0.6};
    animateTimerScale(0.98, spring);
    after(100ms, [=, this] { animateTimerScale(1.0, spring); });
}

void TimerView::presentSessionReflection() {
    if (m_showSessionReflection)
        return;
    const auto previous =
        std::exchange(m_sessionReflection, m_makeReflectionView(&m_showSessionReflection,
                                                                [this] { completeSession(); }));
    m_sessionReflection->appear();
    Q_EMIT sessionReflectionChanged();
    m_showSessionReflection = true;
}

void TimerView::resetTimer() {
    presentSessionReflection();
}

void TimerView::showTimerCompletion() {
    constexpr SpringAnimation spring{.response = 0.5, .dampingFraction = 0.6};
    animateTimerScale(1.2, spring);
    after(300ms, [=, this] { animateTimerScale(1.0, spring); });
    ++m_dueReflections;
    after(500ms, [this] {
        --m_dueReflections;
        presentSessionReflection();
    });
}

void TimerView::completeSession() {
    m_sessionViewModel.endSession(std::nullopt, true);
    setSetupMode(true);
}

QString TimerView::formatTime(double seconds) {
    return hoursMinutesSeconds(seconds);
}

void TimerView::after(RunLoop::Seconds delay, std::function<void()> step) {
    m_runLoop.asyncAfter(delay, [self = QPointer(this), step = std::move(step)] {
        if (self)
            step();
    });
}

void TimerView::animateTimerScale(double scale, SpringAnimation spring) {
    m_timerScale = scale;
    Q_EMIT timerScaleAnimated(scale, spring);
}

void TimerView::setTimeRemaining(double seconds) {
    if (m_timeRemaining == seconds)
        return;
    m_timeRemaining = seconds;
    Q_EMIT timeRemainingChanged();
}

void TimerView::setProgress(double progress) {
    if (m_progress == progress)
        return;
    m_progress = progress;
    if (!m_isSetupMode)
        Q_EMIT orbProgressChanged();
}

void TimerView::setTimerActive(bool active) {
    if (m_isTimerActive == active)
        return;
    m_isTimerActive = active;
    Q_EMIT isTimerActiveChanged();
    if (!m_isSetupMode)
        Q_EMIT isPausedChanged();
}

void TimerView::setSetupMode(bool setup) {
    if (m_isSetupMode == setup)
        return;
    m_isSetupMode = setup;
    Q_EMIT isSetupModeChanged();
    Q_EMIT orbProgressChanged();
    if (!m_isTimerActive)
        Q_EMIT isPausedChanged();
}

} // namespace tarne
