#include "RemoteControl.h"

#include "ContentView.h"
#include "DurationText.h"
#include "SessionViewModel.h"
#include "StoredKeys.h"
#include "TARNEApp.h"
#include "TimerView.h"
#include "UserDefaults.h"

#include <algorithm>
#include <cmath>
#include <utility>

using namespace Qt::StringLiterals;

namespace tarne {

namespace {

constexpr int timerTab = 0;

enum EntryId { Show = 1, Pause, Resume, Stop, Quit, Quiet };

/// The notice of a session's end may come a second before the last tick, and the main thread may
/// be busy for some more: a server that is started takes at least two seconds.
constexpr qint64 lastSeconds = 9;

/// A stored length may be any number.
qint64 wholeSeconds(double seconds) {
    constexpr double most = 1e15;
    return std::isnan(seconds) ? 0
                               : static_cast<qint64>(std::floor(std::clamp(seconds, -most, most)));
}

RemoteControl::State stateOf(const SessionViewModel &controller) {
    const auto &session = controller.currentSession();
    if (!session)
        return RemoteControl::State::Setup;
    if (session->completed)
        return RemoteControl::State::RunOut;
    return controller.isTimerActive() ? RemoteControl::State::Running
                                      : RemoteControl::State::Paused;
}

} // namespace

RemoteControl::RemoteControl(TARNEApp &app, UserDefaults &defaults, NotificationCenter &center,
                             ShowWindow showWindow)
    : m_app(app),
      m_defaults(defaults),
      m_showWindow(std::move(showWindow)),
      m_sleep(center.addObserver(notifications::willSleep, [this] { setAsleep(true); })),
      m_wake(center.addObserver(notifications::didWake, [this] {
          // Behind the controller, which looks at the clock in a turn of its own.
          QMetaObject::invokeMethod(
              this, [this] { setAsleep(false); }, Qt::QueuedConnection);
      })) {
    connect(&m_app, &TARNEApp::gateChanged, this, &RemoteControl::followController);
    followController();
    m_told = status();
}

RemoteControl::~RemoteControl() = default;

SessionViewModel *RemoteControl::controller() const {
    return m_app.contentView() ? &m_app.contentView()->sessionViewModel() : nullptr;
}

void RemoteControl::followController() {
    m_following.reset();
    tellSoon();
    const SessionViewModel *const followed = controller();
    if (!followed)
        return;
    m_following = std::make_unique<QObject>();
    QObject *const context = m_following.get();
    const auto tell = [this] { tellSoon(); };
    connect(followed, &SessionViewModel::currentSessionChanged, context, tell);
    connect(followed, &SessionViewModel::isTimerActiveChanged, context, tell);
    connect(followed, &SessionViewModel::timeRemainingChanged, context, tell);
}

// A session that starts or ends passes through states which nobody is to see.
void RemoteControl::tellSoon() {
    if (!std::exchange(m_isTellingSoon, true))
        QMetaObject::invokeMethod(this, &RemoteControl::tell, Qt::QueuedConnection);
}

void RemoteControl::tell() {
    m_isTellingSoon = false;
    const Status now = status();
    Status sameSecond = now;
    sameSecond.secondsLeft = m_told.secondsLeft;
    const bool isAnother = sameSecond != m_told;
    const bool isTick = now.secondsLeft != m_told.secondsLeft;
    m_told = now;
    if (isAnother)
        Q_EMIT changed();
    else if (isTick)
        Q_EMIT secondsLeftChanged();
    tellQuiet();
}

void RemoteControl::tellQuiet() {
    const bool wanted = wantsQuiet();
    if (std::exchange(m_toldQuiet, wanted) != wanted)
        Q_EMIT wantsQuietChanged(wanted);
}

// The time may be over before the machine wakes, and then its notice comes at once.
void RemoteControl::setAsleep(bool isAsleep) {
    m_isAsleep = isAsleep;
    if (isAsleep)
        tellQuiet();
    else
        tellSoon();
}

void RemoteControl::setQuietPossible(bool possible) {
    if (std::exchange(m_isQuietPossible, possible) != possible)
        Q_EMIT changed();
}

bool RemoteControl::wantsQuiet() const {
    const Status now = status();
    return now.state == State::Running && now.secondsLeft > lastSeconds && !m_isAsleep &&
           m_defaults.boolForKey(keys::quietDuringSessions);
}

void RemoteControl::toggleQuiet() {
    m_defaults.setObject(keys::quietDuringSessions,
                         !m_defaults.boolForKey(keys::quietDuringSessions));
    m_defaults.synchronize();
    tellQuiet();
    Q_EMIT changed();
}

RemoteControl::Status RemoteControl::status() const {
    const SessionViewModel *const session = controller();
    if (!session)
        return {};
    const State state = stateOf(*session);
    if (state == State::Setup)
        return {.state = state};
    const auto end = session->countdownEnd();
    return {.state = state,
            .secondsLeft = wholeSeconds(session->timeRemaining()),
            .duration = wholeSeconds(session->currentSession()->duration),
            .endsAt = end ? wholeSeconds(end->secondsSince1970()) : 0};
}

QString RemoteControl::title() const {
    const State state = status().state;
    const bool hasSession = state != State::None && state != State::Setup;
    return hasSession ? u"TARNE: "_s + summary() : u"TARNE"_s;
}

QString RemoteControl::summary() const {
    const Status now = status();
    const QString left = hoursMinutesSeconds(static_cast<double>(now.secondsLeft));
    switch (now.state) {
    case State::Running:
        return left + u" left"_s;
    case State::Paused:
        return u"paused, "_s + left + u" left"_s;
    case State::RunOut:
        return u"session complete"_s;
    case State::None:
    case State::Setup:
        break;
    }
    return u"no session"_s;
}

std::vector<RemoteControl::Entry> RemoteControl::entries() const {
    std::vector<Entry> entries{{Show, u"Show TARNE"_s}};
    const State state = status().state;
    if (state == State::Running)
        entries.push_back({Pause, u"Pause"_s});
    if (state == State::Paused)
        entries.push_back({Resume, u"Resume"_s});
    if (state != State::None && state != State::Setup)
        entries.push_back({Stop, u"Stop"_s});
    if (state != State::None && m_isQuietPossible)
        entries.push_back({Quiet, u"Do not disturb during sessions"_s,
                           m_defaults.boolForKey(keys::quietDuringSessions)});
    entries.push_back({Quit, u"Quit TARNE"_s});
    return entries;
}

void RemoteControl::trigger(int entry, const QString &activationToken) {
    const auto all = entries();
    if (std::ranges::none_of(all, [&](const Entry &one) { return one.id == entry; }))
        return;
    switch (entry) {
    case Show:
        return show(activationToken);
    case Pause:
        pause();
        return;
    case Resume:
        resume();
        return;
    case Stop:
        return stop(activationToken);
    case Quiet:
        return toggleQuiet();
    case Quit:
        return quit();
    default:
        return;
    }
}

bool RemoteControl::pause() {
    if (status().state != State::Running)
        return false;
    toggleTimer();
    return true;
}

bool RemoteControl::resume() {
    if (status().state != State::Paused)
        return false;
    toggleTimer();
    return true;
}

void RemoteControl::toggleTimer() {
    if (TimerView *const screen = m_app.contentView()->timerView())
        screen->toggleTimer();
    else if (SessionViewModel &session = *controller(); session.isTimerActive())
        session.pauseTimer();
    else
        session.resumeTimer();
}

void RemoteControl::show(const QString &activationToken) {
    m_showWindow(activationToken);
}

void RemoteControl::stop(const QString &activationToken) {
    show(activationToken);
    const State state = status().state;
    if (state == State::None || state == State::Setup)
        return;
    ContentView &content = *m_app.contentView();
    content.setSelectedTab(timerTab);
    if (TimerView *const screen = content.timerView())
        screen->resetTimer();
}

void RemoteControl::answerNotice(const QString &activationToken) {
    if (status().state == State::RunOut)
        stop(activationToken);
    else
        show(activationToken);
}

void RemoteControl::quit() {
    m_app.quit();
}

void RemoteControl::perform(const QString &action, const QString &activationToken) {
    if (action == "pause"_L1)
        pause();
    else if (action == "resume"_L1)
        resume();
    else if (action == "quit"_L1)
        quit();
    else if (action == "notice"_L1)
        answerNotice(activationToken);
    else
        show(activationToken);
}

} // namespace tarne
