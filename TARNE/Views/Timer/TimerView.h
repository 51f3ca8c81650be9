#pragma once

#include "DurationSelectionView.h"
#include "RunLoop.h"
#include "Screen.h"
#include "SessionNotesView.h"
#include "SessionReflectionView.h"

#include <QProperty>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <functional>
#include <memory>

namespace tarne {

class NotificationCenter;
class SessionViewModel;
class UserDefaults;

/// How an animated value travels to its target: as a spring with a natural period in seconds and a
/// share of critical damping.
struct SpringAnimation {
    double response;
    double dampingFraction;

    friend bool operator==(const SpringAnimation &, const SpringAnimation &) = default;
};

/// The timer screen: the one place that starts, pauses and ends a session.
///
/// It has two faces, setup and session, and leads through three sheets: length, goal, and after the
/// session the reflection. It keeps its own copies of the controller's time values, which follow
/// the controller while the screen is shown, and leaves all logic to the controller. Main thread
/// only.
class TimerView final : public tarne::Screen {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made with the tabs.")
    Q_PROPERTY(bool isShown READ isShown NOTIFY isShownChanged FINAL)
    Q_PROPERTY(bool isSetupMode READ isSetupMode NOTIFY isSetupModeChanged FINAL)
    Q_PROPERTY(bool isTimerActive READ isTimerActive NOTIFY isTimerActiveChanged FINAL)
    Q_PROPERTY(bool isPaused READ isPaused NOTIFY isPausedChanged FINAL)
    Q_PROPERTY(QString timeText READ timeText NOTIFY timeRemainingChanged FINAL)
    Q_PROPERTY(double orbProgress READ orbProgress NOTIFY orbProgressChanged FINAL)
    Q_PROPERTY(bool showDurationSelection READ showDurationSelection NOTIFY
                   showDurationSelectionChanged FINAL)
    Q_PROPERTY(bool showSessionNotes READ showSessionNotes NOTIFY showSessionNotesChanged FINAL)
    Q_PROPERTY(bool showSessionReflection READ showSessionReflection NOTIFY
                   showSessionReflectionChanged FINAL)
    Q_PROPERTY(tarne::DurationSelectionView *durationSelection READ durationSelection NOTIFY
                   durationSelectionChanged FINAL)
    Q_PROPERTY(
        tarne::SessionNotesView *sessionNotes READ sessionNotes NOTIFY sessionNotesChanged FINAL)
    Q_PROPERTY(tarne::SessionReflectionView *sessionReflection READ sessionReflection NOTIFY
                   sessionReflectionChanged FINAL)

public:
    /// Everything passed outlives the view. The stored preferences give the first length.
    TimerView(SessionViewModel &sessionViewModel, const UserDefaults &defaults, RunLoop &runLoop,
              NotificationCenter &notificationCenter, MakeReflectionView makeReflectionView);
    ~TimerView() override;

    /// Between `appear` and `disappear`. A sheet that falls due while another tab is shown waits
    /// for the screen to come back.
    [[nodiscard]] bool isShown() const { return m_following != nullptr; }
    /// The length for the next session, in seconds.
    [[nodiscard]] double selectedDuration() const { return m_selectedDuration; }
    /// Seconds; the controller's, or the chosen length in setup.
    [[nodiscard]] double timeRemaining() const { return m_timeRemaining; }
    /// The fraction left, as the controller has it.
    [[nodiscard]] double progress() const { return m_progress; }
    [[nodiscard]] bool isTimerActive() const { return m_isTimerActive; }
    [[nodiscard]] bool isSetupMode() const { return m_isSetupMode; }
    /// On the session face with a count-down that does not count.
    [[nodiscard]] bool isPaused() const { return !m_isSetupMode && !m_isTimerActive; }
    [[nodiscard]] QString timeText() const { return formatTime(m_timeRemaining); }
    /// What the orb shows: the fraction elapsed, or a small constant in setup.
    [[nodiscard]] double orbProgress() const;

    [[nodiscard]] bool showDurationSelection() const { return m_showDurationSelection; }
    [[nodiscard]] bool showSessionNotes() const { return m_showSessionNotes; }
    [[nodiscard]] bool showSessionReflection() const { return m_showSessionReflection; }

    /// The sheet's view while its flag is true; afterwards the one that was last shown, for the
    /// time in which the sheet leaves the screen. None before the first presentation.
    [[nodiscard]] DurationSelectionView *durationSelection() const {
        return m_durationSelection.get();
    }
    [[nodiscard]] SessionNotesView *sessionNotes() const { return m_sessionNotes.get(); }
    [[nodiscard]] SessionReflectionView *sessionReflection() const {
        return m_sessionReflection.get();
    }

    /// A value that is animated and that nothing on the screen is scaled by.
    [[nodiscard]] double timerScale() const { return m_timerScale; }

    /// The screen is shown: it takes the controller's values and follows them, lowers the run-out
    /// flag, closes a pending reflection, and chooses its face.
    void appear() override;
    /// The screen is hidden: it no longer follows the controller. Delays that are under way end as
    /// planned.
    void disappear() override;

    /// "Start Session": opens the first sheet.
    Q_INVOKABLE void selectDuration();
    /// "Pause" and "Resume".
    Q_INVOKABLE void toggleTimer();
    /// "Stop": opens the reflection sheet. The count-down goes on behind it; the session ends only
    /// when that sheet completes.
    Q_INVOKABLE void resetTimer();

    /// Begins the session with the stored goal and the chosen length.
    void startTimer();
    /// The count-down has run out: opens the reflection sheet half a second from now.
    void showTimerCompletion();
    /// The reflection is done: ends the session and goes back to setup.
    void completeSession();

    /// "HH:MM:SS"; a fraction of a second is dropped.
    [[nodiscard]] static QString formatTime(double seconds);

Q_SIGNALS:
    void isShownChanged();
    void selectedDurationChanged(double seconds);
    void timeRemainingChanged();
    void isTimerActiveChanged();
    void isSetupModeChanged();
    void isPausedChanged();
    void orbProgressChanged();
    void showDurationSelectionChanged(bool show);
    void showSessionNotesChanged(bool show);
    void showSessionReflectionChanged(bool show);
    void durationSelectionChanged();
    void sessionNotesChanged();
    void sessionReflectionChanged();
    void timerScaleAnimated(double scale, tarne::SpringAnimation spring);

private:
    /// Sheets do not stack: while one is up, or will come by itself, none of a new session opens.
    [[nodiscard]] bool isSheetUpOrDue() const;
    void followController();
    void chooseFace();
    void presentSessionNotesSoon();
    void presentSessionNotes();
    void presentSessionReflection();

    void setTimeRemaining(double seconds);
    void setProgress(double progress);
    void setTimerActive(bool active);
    void setSetupMode(bool setup);
    void animateTimerScale(double scale, SpringAnimation spring);
    /// Runs `step` later on the main queue, unless the view is gone by then.
    void after(RunLoop::Seconds delay, std::function<void()> step);

    SessionViewModel &m_sessionViewModel;
    RunLoop &m_runLoop;
    NotificationCenter &m_notificationCenter;
    MakeReflectionView m_makeReflectionView;

    // The three flags and the length are bound to by the sheets, which set them.
    Q_OBJECT_BINDABLE_PROPERTY(TimerView, double, m_selectedDuration,
                               &TimerView::selectedDurationChanged)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(TimerView, bool, m_showDurationSelection, false,
                                         &TimerView::showDurationSelectionChanged)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(TimerView, bool, m_showSessionNotes, false,
                                         &TimerView::showSessionNotesChanged)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(TimerView, bool, m_showSessionReflection, false,
                                         &TimerView::showSessionReflectionChanged)
    double m_timeRemaining; ///< Seconds.
    double m_progress = 1.0;
    bool m_isTimerActive = false;
    bool m_isSetupMode = true;
    double m_timerScale = 1.0;
    /// Sheets that come by themselves after a delay which is under way.
    bool m_areNotesDue = false;
    int m_dueReflections = 0;

    std::unique_ptr<DurationSelectionView> m_durationSelection;
    std::unique_ptr<SessionNotesView> m_sessionNotes;
    std::unique_ptr<SessionReflectionView> m_sessionReflection;
    std::unique_ptr<QObject> m_following; ///< The subscriptions' context; none while hidden.
};

} // namespace tarne
