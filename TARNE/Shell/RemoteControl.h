#pragma once

#include "NotificationCenter.h"

#include <QObject>
#include <QString>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace tarne {

class SessionViewModel;
class TARNEApp;
class UserDefaults;

/// What the program can be asked and told from outside its window: by a panel's item, by another
/// program on the bus, by a click on a notification. It decides; how one reaches it is others'
/// business. Main thread only.
class RemoteControl : public QObject {
    Q_OBJECT

public:
    enum class State {
        None,    ///< Onboarding is not done.
        Setup,   ///< There is no session.
        Running, ///< The count-down counts.
        Paused,  ///< The display stands still. The wall clock runs on.
        RunOut,  ///< The time is over, and the session waits to be wrapped up.
    };

    /// A session as it is told outside: no goals and no other text of the user.
    struct Status {
        State state = State::None;
        qint64 secondsLeft = 0; ///< As on the timer screen; a fraction of a second is dropped.
        qint64 duration = 0;    ///< Seconds; 0 without a session.
        /// When the time is over, or was, in whole seconds since 1970; 0 without a session. A pause
        /// does not move it.
        qint64 endsAt = 0;

        friend bool operator==(const Status &, const Status &) = default;
    };

    /// An entry of the menu that a panel shows. An id always means the same entry, so a menu that
    /// was opened before a change still does what it says.
    struct Entry {
        int id = 0;
        QString label;
        std::optional<bool> isChecked = {}; ///< None: the entry is no choice of yes or no.
    };

    /// Brings the window to the front. The token lets it come there; it may be empty.
    using ShowWindow = std::function<void(const QString &activationToken)>;

    /// Everything passed outlives the object.
    RemoteControl(TARNEApp &app, UserDefaults &defaults, NotificationCenter &center,
                  ShowWindow showWindow);
    ~RemoteControl() override;

    [[nodiscard]] Status status() const;
    /// One line for a panel: the program's name, and what there is of a session.
    [[nodiscard]] QString title() const;
    /// The same without the name.
    [[nodiscard]] QString summary() const;
    [[nodiscard]] std::vector<Entry> entries() const;
    /// Does what the entry says. An id without an entry now does nothing.
    void trigger(int entry, const QString &activationToken = {});

    /// Whether the desktop can keep other notifications away; the choice is offered only there.
    void setQuietPossible(bool possible);
    /// Whether it should now: where the user has chosen so, while a session runs, and neither in
    /// its last seconds nor while the machine sleeps, so that the notices of its end are seen. Off
    /// unless chosen.
    [[nodiscard]] bool wantsQuiet() const;

    /// Does what "Pause" on the timer screen does; false, and nothing, where no session runs.
    bool pause();
    /// Does what "Resume" on the timer screen does; false, and nothing, where none is paused.
    bool resume();
    void show(const QString &activationToken = {});
    /// Shows the window with the timer screen, which appears as ever, and there does what "Stop"
    /// does. Without a session the window is shown.
    void stop(const QString &activationToken = {});
    /// Shows the window. Where a session that ran out is still there, does what "Stop" does.
    void answerNotice(const QString &activationToken = {});
    void quit();

    /// An action of the application by its name on the bus: "pause", "resume", "show", "quit", and
    /// "notice" for a click on a notification. Any other name shows the window.
    void perform(const QString &action, const QString &activationToken);

Q_SIGNALS:
    /// The state, the duration, the end or an entry is another one. What changes within one turn of
    /// the event loop is told once.
    void changed();
    /// Another second is left. Nothing else has changed.
    void secondsLeftChanged();
    void wantsQuietChanged(bool wanted);

private:
    [[nodiscard]] SessionViewModel *controller() const;
    void followController();
    void tellSoon();
    void tell();
    void tellQuiet();
    void setAsleep(bool isAsleep);
    void toggleTimer();
    void toggleQuiet();

    TARNEApp &m_app;
    UserDefaults &m_defaults;
    ShowWindow m_showWindow;
    Status m_told;
    bool m_isTellingSoon = false;
    bool m_isQuietPossible = false;
    bool m_toldQuiet = false;
    bool m_isAsleep = false;
    NotificationCenter::Registration m_sleep;
    NotificationCenter::Registration m_wake;
    std::unique_ptr<QObject> m_following; ///< The subscriptions' context; none in onboarding.
};

} // namespace tarne
