// What the program can be asked and told from outside its window.

#include "RemoteControl.h"
#include "AppFixture.h"

#include <QSignalSpy>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

using State = RemoteControl::State;
using testing::ElementsAre;

class TheRemoteControl : public TARNEAppTest {
protected:
    void SetUp() override { completeOnboardingBefore(); }

    RemoteControl &remote() {
        if (!m_remote) {
            app().windowShown();
            m_remote = std::make_unique<RemoteControl>(app(), defaults, center,
                                                       [this](const QString &token) {
                                                           shown += token;
                                                           app().windowShown();
                                                       });
        }
        return *m_remote;
    }

    SessionViewModel &session() { return app().contentView()->sessionViewModel(); }
    TimerView &timer() { return *app().contentView()->timerView(); }

    void startSession(double seconds) {
        remote();
        session().updateSessionDuration(seconds);
        session().saveGoal(u"a secret plan"_s);
        timer().disappear();
        timer().appear(); // Takes the length.
        timer().startTimer();
        QCoreApplication::processEvents();
    }

    QStringList labels() {
        QStringList all;
        for (const RemoteControl::Entry &entry : remote().entries())
            all += entry.label;
        return all;
    }
    int idOf(const QString &label) {
        for (const RemoteControl::Entry &entry : remote().entries()) {
            if (entry.label == label)
                return entry.id;
        }
        ADD_FAILURE() << "no entry " << qPrintable(label);
        return 0;
    }

    QStringList shown; ///< The tokens with which the window was shown.

private:
    std::unique_ptr<RemoteControl> m_remote;
};

class TheRemoteControlInOnboarding : public TheRemoteControl {
protected:
    void SetUp() override {}
};

TEST_F(TheRemoteControlInOnboarding, CanShowAndQuitAndNothingElse) {
    EXPECT_EQ(remote().status(), RemoteControl::Status{});
    EXPECT_EQ(remote().status().state, State::None);
    EXPECT_EQ(labels(), (QStringList{u"Show TARNE"_s, u"Quit TARNE"_s}));
    EXPECT_EQ(remote().title(), u"TARNE"_s);
    EXPECT_FALSE(remote().pause());
    EXPECT_FALSE(remote().resume());
    remote().stop();
    EXPECT_THAT(shown, ElementsAre(u""_s));
}

TEST_F(TheRemoteControlInOnboarding, FollowsTheSessionOnceTheTabsAreThere) {
    remote();
    QSignalSpy changed(&remote(), &RemoteControl::changed);
    app().mainAppView()->setOnboardingComplete(true);
    QCoreApplication::processEvents();
    EXPECT_EQ(changed.size(), 1);
    EXPECT_EQ(remote().status().state, State::Setup);
    startSession(600);
    EXPECT_EQ(changed.size(), 2);
    EXPECT_EQ(remote().status().state, State::Running);
}

TEST_F(TheRemoteControl, TellsOfNoSessionBeforeOne) {
    EXPECT_EQ(remote().status(), RemoteControl::Status{.state = State::Setup});
    EXPECT_EQ(remote().title(), u"TARNE"_s);
    EXPECT_EQ(remote().summary(), u"no session"_s);
    EXPECT_EQ(labels(), (QStringList{u"Show TARNE"_s, u"Quit TARNE"_s}));
}

TEST_F(TheRemoteControl, TellsTheTimeLeftAndTheEndOfARunningSession) {
    startSession(600);
    const auto end = static_cast<qint64>(std::floor((time.now() + 600).secondsSince1970()));
    pass(75);
    EXPECT_EQ(remote().status(),
              (RemoteControl::Status{
                  .state = State::Running, .secondsLeft = 525, .duration = 600, .endsAt = end}));
    EXPECT_EQ(remote().title(), u"TARNE: 00:08:45 left"_s);
    EXPECT_EQ(remote().summary(), u"00:08:45 left"_s);
    EXPECT_EQ(labels(), (QStringList{u"Show TARNE"_s, u"Pause"_s, u"Stop"_s, u"Quit TARNE"_s}));
}

TEST_F(TheRemoteControl, TellsARestoredSession) {
    storeCountdown(200, 600, u"a secret plan"_s);
    EXPECT_EQ(remote().status().state, State::Running);
    EXPECT_EQ(remote().status().secondsLeft, 400);
    EXPECT_EQ(remote().status().duration, 600);
    EXPECT_EQ(remote().status().endsAt,
              static_cast<qint64>(std::floor((time.now() + 400).secondsSince1970())));
}

TEST_F(TheRemoteControl, PausesAndResumesAsTheButtonDoes) {
    startSession(600);
    const auto end = remote().status().endsAt;
    QSignalSpy scaled(&timer(), &TimerView::timerScaleAnimated);
    EXPECT_FALSE(remote().resume());
    EXPECT_TRUE(remote().pause());
    EXPECT_EQ(scaled.size(), 1) << "the button's own animation";
    EXPECT_TRUE(timer().isPaused());
    EXPECT_EQ(remote().status().state, State::Paused);
    EXPECT_EQ(remote().title(), u"TARNE: paused, 00:10:00 left"_s);
    EXPECT_EQ(labels(), (QStringList{u"Show TARNE"_s, u"Resume"_s, u"Stop"_s, u"Quit TARNE"_s}));
    EXPECT_FALSE(remote().pause());

    pass(100);
    EXPECT_EQ(remote().status().secondsLeft, 600) << "the display stands still";
    EXPECT_EQ(remote().status().endsAt, end) << "the clock does not";
    EXPECT_TRUE(remote().resume());
    pass(1);
    EXPECT_EQ(remote().status().secondsLeft, 499);
}

TEST_F(TheRemoteControl, PausesAndResumesBehindAClosedWindow) {
    startSession(600);
    app().windowClosed();
    EXPECT_TRUE(remote().pause());
    EXPECT_FALSE(session().isTimerActive());
    remote().show();
    EXPECT_TRUE(timer().isPaused());
    EXPECT_FALSE(timer().isSetupMode());
}

TEST_F(TheRemoteControl, PausesAndResumesARestoredSessionBeforeTheWindowIsFirstShown) {
    storeCountdown(200, 600, u"a secret plan"_s);
    RemoteControl early(app(), defaults, center, [](const QString &) {});
    EXPECT_TRUE(early.pause());
    EXPECT_FALSE(session().isTimerActive());
    EXPECT_TRUE(early.resume());
    EXPECT_TRUE(session().isTimerActive());
}

TEST_F(TheRemoteControl, TellsASessionThatRanOutUntilItIsWrappedUp) {
    startSession(600);
    pass(601);
    EXPECT_EQ(remote().status().state, State::RunOut);
    app().windowClosed();
    app().windowShown(); // The screen closes its reflection and forgets that the time ran out.
    EXPECT_EQ(remote().status().state, State::RunOut);
    EXPECT_EQ(remote().status().secondsLeft, 0);
    EXPECT_EQ(remote().title(), u"TARNE: session complete"_s);
    EXPECT_EQ(labels(), (QStringList{u"Show TARNE"_s, u"Stop"_s, u"Quit TARNE"_s}));
    EXPECT_FALSE(remote().pause());
    EXPECT_FALSE(remote().resume());
    // The screen's own button lets the display count again, and the session is over all the same.
    session().resumeTimer();
    EXPECT_EQ(remote().status().state, State::RunOut);
    timer().completeSession();
    EXPECT_EQ(remote().status(), RemoteControl::Status{.state = State::Setup});
}

TEST_F(TheRemoteControl, TellsOfAChangeOnceAndOfEachSecond) {
    remote();
    QSignalSpy changed(&remote(), &RemoteControl::changed);
    QSignalSpy ticked(&remote(), &RemoteControl::secondsLeftChanged);
    startSession(600);
    EXPECT_EQ(changed.size(), 1) << "not the states that a start passes through";
    for (int second = 0; second < 5; ++second) {
        pass(1);
        QCoreApplication::processEvents();
    }
    EXPECT_EQ(changed.size(), 1);
    EXPECT_EQ(ticked.size(), 5);
    remote().pause();
    QCoreApplication::processEvents();
    EXPECT_EQ(changed.size(), 2);
    for (int second = 0; second < 5; ++second) {
        pass(1);
        QCoreApplication::processEvents();
    }
    EXPECT_EQ(changed.size(), 2);
    EXPECT_EQ(ticked.size(), 5);
}

TEST_F(TheRemoteControl, TellsNothingOfWhatTheUserWrote) {
    startSession(600);
    EXPECT_FALSE(remote().title().contains(u"secret"_s));
    EXPECT_FALSE(remote().summary().contains(u"secret"_s));
    EXPECT_FALSE(labels().join(u' ').contains(u"secret"_s));
}

TEST_F(TheRemoteControl, StopsByShowingTheWindowAndThenOpeningTheReflection) {
    startSession(600);
    app().windowClosed();
    remote().stop(u"a token"_s);
    EXPECT_THAT(shown, ElementsAre(u"a token"_s));
    EXPECT_TRUE(timer().isShown());
    EXPECT_TRUE(timer().showSessionReflection());
    EXPECT_TRUE(session().isTimerActive()) << "the count-down goes on behind it";
}

TEST_F(TheRemoteControl, StopsFromAnotherTabByGoingToTheTimer) {
    startSession(600);
    app().contentView()->setSelectedTab(2);
    remote().stop();
    EXPECT_EQ(app().contentView()->selectedTab(), 0);
    EXPECT_TRUE(timer().showSessionReflection());
}

TEST_F(TheRemoteControl, StopKeepsAReflectionThatIsUpBeforeTheUser) {
    startSession(600);
    remote().stop();
    const SessionReflectionView *const reflection = timer().sessionReflection();
    remote().stop();
    EXPECT_EQ(timer().sessionReflection(), reflection);
    EXPECT_TRUE(timer().showSessionReflection());
}

TEST_F(TheRemoteControl, StopWithoutASessionShowsTheWindowAlone) {
    remote().stop();
    EXPECT_THAT(shown, ElementsAre(u""_s));
    EXPECT_FALSE(timer().showSessionReflection());
}

TEST_F(TheRemoteControl, AnswersANoticeOfASessionThatRanOutWithItsReflection) {
    startSession(600);
    app().windowClosed();
    pass(601);
    remote().perform(u"notice"_s, u"a token"_s);
    EXPECT_THAT(shown, ElementsAre(u"a token"_s));
    EXPECT_TRUE(timer().showSessionReflection());
    EXPECT_FALSE(session().isTimerComplete()) << "the screen has appeared as ever";
}

TEST_F(TheRemoteControl, AnswersANoticeWithTheWindowAloneWhereNoSessionRanOut) {
    remote().perform(u"notice"_s, {});
    EXPECT_FALSE(timer().showSessionReflection());
    startSession(600);
    remote().perform(u"notice"_s, {});
    EXPECT_FALSE(timer().showSessionReflection());
    EXPECT_THAT(shown, ElementsAre(u""_s, u""_s));
}

TEST_F(TheRemoteControl, DoesWhatAnActionSays) {
    startSession(600);
    QSignalSpy quit(&app(), &TARNEApp::quitRequested);
    remote().perform(u"pause"_s, {});
    EXPECT_EQ(remote().status().state, State::Paused);
    remote().perform(u"pause"_s, {});
    EXPECT_EQ(remote().status().state, State::Paused);
    remote().perform(u"resume"_s, {});
    EXPECT_EQ(remote().status().state, State::Running);
    EXPECT_TRUE(shown.isEmpty());
    remote().perform(u"show"_s, u"1"_s);
    remote().perform({}, u"2"_s);
    remote().perform(u"never heard of"_s, u"3"_s);
    EXPECT_THAT(shown, ElementsAre(u"1"_s, u"2"_s, u"3"_s));
    EXPECT_EQ(quit.size(), 0);
    remote().perform(u"quit"_s, {});
    EXPECT_EQ(quit.size(), 1);
    EXPECT_EQ(remote().status().state, State::Running) << "a session outlives the program";
}

TEST_F(TheRemoteControl, DoesWhatAnEntrySays) {
    startSession(600);
    QSignalSpy quit(&app(), &TARNEApp::quitRequested);
    remote().trigger(idOf(u"Pause"_s));
    EXPECT_EQ(remote().status().state, State::Paused);
    remote().trigger(idOf(u"Resume"_s));
    EXPECT_EQ(remote().status().state, State::Running);
    remote().trigger(idOf(u"Show TARNE"_s), u"a"_s);
    EXPECT_FALSE(timer().showSessionReflection());
    remote().trigger(idOf(u"Stop"_s), u"b"_s);
    EXPECT_TRUE(timer().showSessionReflection());
    EXPECT_THAT(shown, ElementsAre(u"a"_s, u"b"_s));
    remote().trigger(idOf(u"Quit TARNE"_s));
    EXPECT_EQ(quit.size(), 1);
}

TEST_F(TheRemoteControl, AnEntryOfAMenuThatWasOpenedBeforeAChangeDoesNothingElse) {
    startSession(600);
    const int pause = idOf(u"Pause"_s);
    remote().pause();
    remote().trigger(pause);
    EXPECT_EQ(remote().status().state, State::Paused);
    EXPECT_TRUE(shown.isEmpty());
    remote().trigger(4711);
    EXPECT_TRUE(shown.isEmpty());
}

const QString quietLabel = u"Do not disturb during sessions"_s;

class TheRemoteControlOfAQuietDesktop : public TheRemoteControl {
protected:
    void SetUp() override {
        TheRemoteControl::SetUp();
        QObject::connect(&remote(), &RemoteControl::wantsQuietChanged,
                         [this](bool wanted) { told += wanted; });
        remote().setQuietPossible(true);
    }

    void passSeconds(int seconds) {
        for (int second = 0; second < seconds; ++second) {
            pass(1);
            QCoreApplication::processEvents();
        }
    }
    std::optional<bool> isChecked() {
        for (const RemoteControl::Entry &entry : remote().entries()) {
            if (entry.label == quietLabel)
                return entry.isChecked;
        }
        return std::nullopt;
    }

    QList<bool> told;
};

TEST_F(TheRemoteControlOfAQuietDesktop, OffersQuietWhereItIsPossibleAndTheTabsAreThere) {
    EXPECT_EQ(isChecked(), false);
    EXPECT_EQ(labels().constLast(), u"Quit TARNE"_s);
    remote().setQuietPossible(false);
    EXPECT_EQ(isChecked(), std::nullopt);
    remote().setQuietPossible(true);
    app().mainAppView()->setOnboardingComplete(false);
    EXPECT_EQ(isChecked(), std::nullopt);
}

TEST_F(TheRemoteControlOfAQuietDesktop, WantsNoneUnlessItWasChosen) {
    startSession(600);
    passSeconds(3);
    EXPECT_TRUE(told.isEmpty());
}

TEST_F(TheRemoteControlOfAQuietDesktop, KeepsTheChoiceInTheStore) {
    remote().trigger(idOf(quietLabel));
    EXPECT_EQ(isChecked(), true);
    EXPECT_TRUE(defaults.boolForKey(u"QuietDuringSessions"_s));
    remote().trigger(idOf(quietLabel));
    EXPECT_EQ(isChecked(), false);
    EXPECT_FALSE(defaults.boolForKey(u"QuietDuringSessions"_s));
}

TEST_F(TheRemoteControlOfAQuietDesktop, WantsQuietWhileTheTimeRunsAndNotInItsLastSeconds) {
    remote().trigger(idOf(quietLabel));
    EXPECT_TRUE(told.isEmpty()) << "there is no session";
    startSession(300);
    EXPECT_EQ(told, (QList<bool>{true}));
    remote().pause();
    QCoreApplication::processEvents();
    EXPECT_EQ(told, (QList<bool>{true, false}));
    remote().resume();
    passSeconds(290);
    EXPECT_EQ(told, (QList<bool>{true, false, true}));
    passSeconds(1);
    EXPECT_EQ(remote().status().secondsLeft, 9);
    EXPECT_EQ(told, (QList<bool>{true, false, true, false}));
    passSeconds(10);
    EXPECT_EQ(told.size(), 4);
}

TEST_F(TheRemoteControlOfAQuietDesktop, WantsQuietNoMoreOnceTheMachineGoesToSleep) {
    remote().trigger(idOf(quietLabel));
    startSession(300);
    center.post(notifications::willSleep);
    EXPECT_EQ(told, (QList<bool>{true, false}));
    passSeconds(2);
    EXPECT_EQ(told, (QList<bool>{true, false})) << "it does not sleep yet";
    center.post(notifications::didWake);
    passSeconds(1);
    EXPECT_EQ(told, (QList<bool>{true, false, true}));
}

TEST_F(TheRemoteControlOfAQuietDesktop, WantsNoQuietAfterASleepInWhichTheTimeRanOut) {
    remote().trigger(idOf(quietLabel));
    startSession(300);
    center.post(notifications::willSleep);
    time.sleep(Seconds{400});
    center.post(notifications::didWake);
    passSeconds(1);
    EXPECT_EQ(remote().status().state, State::RunOut);
    EXPECT_EQ(told, (QList<bool>{true, false}));
}

TEST_F(TheRemoteControlOfAQuietDesktop, TakesAChoiceInTheSessionAtOnce) {
    startSession(300);
    remote().trigger(idOf(quietLabel));
    EXPECT_EQ(told, (QList<bool>{true}));
    remote().trigger(idOf(quietLabel));
    EXPECT_EQ(told, (QList<bool>{true, false}));
}

} // namespace
} // namespace tarne::test
