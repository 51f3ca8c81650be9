// The order of the steps by which a session starts and ends, as an observer in between sees
// it.

#include "SessionFixture.h"

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

using testing::ElementsAre;

class SessionOrder : public test::SessionTest {
protected:
    bool isCountdownStored() const {
        return defaults.objectForKey(keys::timerStartTime).has_value();
    }

    /// What the controller tells from now on, in words.
    std::shared_ptr<const QStringList> watch() {
        const auto seen = std::make_shared<QStringList>();
        const auto note = [seen](const QString &name, auto value) {
            *seen += u"%1 %2"_s.arg(name).arg(value);
        };
        QObject::connect(&controller(), &SessionViewModel::timeRemainingChanged,
                         [note](double seconds) { note(u"time"_s, seconds); });
        QObject::connect(&controller(), &SessionViewModel::progressChanged,
                         [note](double progress) { note(u"progress"_s, progress); });
        QObject::connect(&controller(), &SessionViewModel::isTimerActiveChanged,
                         [seen](bool isActive) { *seen += isActive ? u"active"_s : u"still"_s; });
        QObject::connect(
            &controller(), &SessionViewModel::isTimerCompleteChanged,
            [seen](bool isComplete) { *seen += isComplete ? u"complete"_s : u"not complete"_s; });
        return seen;
    }

    /// How the controller and the store stand, in words.
    QString state() {
        return u"%1, %2, %3"_s.arg(controller().currentSession() ? u"session"_s : u"no session"_s,
                                   controller().isTimerActive() ? u"counting"_s : u"still"_s,
                                   isCountdownStored() ? u"stored"_s : u"cleared"_s);
    }
};

TEST_F(SessionOrder, TheCountdownIsStoredBeforeItsNotificationIsScheduled) {
    controller();
    int additions = 0;
    userNotifications.whenAdding = [&] {
        ++additions;
        EXPECT_TRUE(isCountdownStored());
        EXPECT_EQ(defaults.doubleForKey(keys::timerOriginalDuration), 300.0);
    };
    start(u"Review"_s, 300);
    EXPECT_EQ(additions, 1);
}

TEST_F(SessionOrder, TheNotificationIsScheduledBeforeTheBackgroundActivityBegins) {
    controller();
    userNotifications.whenAdding = [&] { EXPECT_TRUE(activities.activities.empty()); };
    start(u"Review"_s, 300);
    EXPECT_EQ(activities.activities.size(), 1u);
}

TEST_F(SessionOrder, ANewSessionIsTheCurrentOneBeforeItsCountdownRuns) {
    controller();
    QStringList seen;
    QObject::connect(&controller(), &SessionViewModel::currentSessionChanged,
                     [&] { seen += state(); });
    QObject::connect(&controller(), &SessionViewModel::isTimerActiveChanged,
                     [&] { seen += state(); });
    start(u"Review"_s, 300);
    EXPECT_THAT(seen, ElementsAre(u"session, still, cleared"_s, u"session, counting, cleared"_s));
    EXPECT_TRUE(isCountdownStored());
}

TEST_F(SessionOrder, AStartClearsTheKeysOfTheLastCountdownBeforeItTakesTheSession) {
    start(u"First"_s, 300);
    defaults.takeWrites();
    std::vector<qsizetype> clearings;
    QObject::connect(&controller(), &SessionViewModel::currentSessionChanged,
                     [&] { clearings.push_back(defaults.takeWrites().count(u"synchronize"_s)); });
    controller().startSession(FocusSession());
    EXPECT_THAT(clearings, ElementsAre(2)) << "by the stop and by the start";
}

TEST_F(SessionOrder, ACountdownThatReplacesAnotherStopsItBeforeItTakesItsOwnLength) {
    start(u"Review"_s, 300);
    pass(10);
    std::vector<double> shown;
    QObject::connect(&controller(), &SessionViewModel::timeRemainingChanged,
                     [&](double seconds) { shown.push_back(seconds); });
    controller().startTimer(600);
    EXPECT_THAT(shown, ElementsAre(300.0, 600.0));
}

TEST_F(SessionOrder, AStartTellsItsTimeThenItsProgressThenThatItRuns) {
    start(u"Review"_s, 300);
    pass(300);
    const auto seen = watch();
    controller().startTimer(600);
    EXPECT_THAT(*seen, ElementsAre(u"time 300"_s, u"progress 1"_s, u"time 600"_s, u"active"_s,
                                   u"not complete"_s));
}

TEST_F(SessionOrder, AStopTellsThatItIsStillThenItsTimeThenItsProgress) {
    start(u"Review"_s, 300);
    pass(75);
    const auto seen = watch();
    controller().stopTimer();
    EXPECT_THAT(*seen, ElementsAre(u"still"_s, u"time 300"_s, u"progress 1"_s));
}

TEST_F(SessionOrder, ARunOutTellsThatItIsStillThenCompleteThenItsProgressThenItsTime) {
    start(u"Review"_s, 300);
    pass(75);
    const auto seen = watch();
    controller().timerCompleted();
    EXPECT_THAT(*seen, ElementsAre(u"still"_s, u"complete"_s, u"progress 0"_s, u"time 0"_s));
}

TEST_F(SessionOrder, ARunOutShowsNoTimeBeforeItIsFelt) {
    start(u"Review"_s, 300);
    pass(75);
    std::vector<double> shown;
    haptics.whenPerforming = [&] { shown.push_back(controller().timeRemaining()); };
    controller().timerCompleted();
    EXPECT_THAT(shown, ElementsAre(0.0, 0.0));
}

TEST_F(SessionOrder, ATickTellsItsTimeThenItsProgressAndIsStoredBeforeItsCue) {
    start(u"Review"_s, 300);
    pass(269);
    defaults.takeWrites();
    const auto seen = watch();
    int cues = 0;
    haptics.whenPerforming = [&] {
        ++cues;
        EXPECT_THAT(*seen, ElementsAre(u"time 30"_s, u"progress 0.1"_s));
        EXPECT_TRUE(defaults.takeWrites().contains(keys::timerStartTime));
    };
    pass(1);
    EXPECT_EQ(cues, 1);
}

TEST_F(SessionOrder, AnEndStopsTheCountdownThenClearsItsKeysThenTheSession) {
    start(u"Review"_s, 300);
    pass(10);
    QStringList seen;
    QObject::connect(&controller(), &SessionViewModel::isTimerActiveChanged,
                     [&] { seen += state(); });
    QObject::connect(&controller(), &SessionViewModel::currentSessionChanged,
                     [&] { seen += state(); });
    controller().endSession(std::nullopt, true);
    EXPECT_THAT(seen, ElementsAre(u"session, still, stored"_s, u"no session, still, cleared"_s));
}

TEST_F(SessionOrder, AnEndInvalidatesTheTimerBeforeItLowersTheFlag) {
    controller();
    const std::size_t others = time.timerCount();
    start(u"Review"_s, 300);
    ASSERT_EQ(time.timerCount(), others + 1);
    std::vector<std::size_t> timers;
    QObject::connect(&controller(), &SessionViewModel::isTimerActiveChanged,
                     [&] { timers.push_back(time.timerCount()); });
    controller().endSession(std::nullopt, true);
    EXPECT_THAT(timers, ElementsAre(others));
}

TEST_F(SessionOrder, ASyncSetsTheTimeBeforeTheProgress) {
    start(u"Review"_s, 300);
    time.sleep(Seconds(100));
    controller().syncTimerWithRealTime();
    std::vector<double> shown;
    QObject::connect(&controller(), &SessionViewModel::progressChanged,
                     [&] { shown.push_back(controller().timeRemaining()); });
    time.runPending();
    EXPECT_THAT(shown, ElementsAre(200.0));
}

TEST_F(SessionOrder, AnEndSavesTheHistoryBeforeItStopsTheCountdown) {
    start(u"Review"_s, 300);
    std::vector<std::size_t> saved;
    QObject::connect(&controller(), &SessionViewModel::isTimerActiveChanged,
                     [&] { saved.push_back(history().size()); });
    controller().endSession(std::nullopt, true);
    EXPECT_THAT(saved, ElementsAre(1u));
}

TEST_F(SessionOrder, ARunOutIsInTheHistoryBeforeItsNoticeIsShown) {
    start(u"Review"_s, 300);
    std::vector<std::size_t> saved;
    userNotifications.whenAdding = [&] { saved.push_back(history().size()); };
    pass(300);
    EXPECT_THAT(saved, ElementsAre(1u));
}

TEST_F(SessionOrder, ARunOutIsFeltBeforeItIsSaved) {
    start(u"Review"_s, 300);
    pass(299);
    const int before = haptics.count;
    std::vector<int> felt;
    const auto observer = center.addObserver(notifications::sessionHistoryUpdated,
                                             [&] { felt.push_back(haptics.count - before); });
    pass(1);
    EXPECT_THAT(felt, ElementsAre(2));
}

TEST_F(SessionOrder, ARunOutEndsItsTimerBeforeItsNoticeIsShown) {
    start(u"Review"_s, 300);
    const std::size_t running = time.timerCount();
    std::vector<std::size_t> timers;
    userNotifications.whenAdding = [&] { timers.push_back(time.timerCount()); };
    pass(300);
    EXPECT_THAT(timers, ElementsAre(running - 1));
}

TEST_F(SessionOrder, AStopClearsItsKeysThenWithdrawsItsNoticeThenEndsTheBackgroundActivity) {
    start(u"Review"_s, 300);
    const auto activity = activities.activities.front();
    QStringList seen;
    userNotifications.whenRemovingAll = [&] {
        seen += state();
        EXPECT_FALSE(activity->invalidated);
    };
    controller().stopTimer();
    EXPECT_THAT(seen, ElementsAre(u"session, still, cleared"_s));
    EXPECT_TRUE(activity->invalidated);
}

TEST_F(SessionOrder, AnEndPublishesOnceTheSessionIsCleared) {
    start(u"Review"_s, 300);
    pass(10);
    log.takeLines();
    defaults.takeWrites();
    std::vector<qsizetype> published;
    std::vector<qsizetype> clearings;
    QObject::connect(&controller(), &SessionViewModel::currentSessionChanged, [&] {
        published.push_back(log.lines().filter(u"Session data"_s).size());
        clearings.push_back(defaults.takeWrites().count(u"synchronize"_s));
    });
    controller().endSession(std::nullopt, false);
    EXPECT_THAT(published, ElementsAre(0));
    EXPECT_THAT(clearings, ElementsAre(2)) << "by the stop and by the end";
    EXPECT_TRUE(
        log.lines().contains(u"📱 Session data cleared: Active=0, Goals='', TimeRemaining=0"_s));
    EXPECT_EQ(defaults.takeWrites().count(u"synchronize"_s), 1);
}

TEST_F(SessionOrder, AnEndWithoutAReflectionSavesNoneWhateverTheSessionHolds) {
    start(u"Review"_s, 300);
    controller().saveReflection(u"went well"_s);
    controller().endSession(std::nullopt, true);
    ASSERT_EQ(history().size(), 1u);
    EXPECT_EQ(history()[0].reflection, QString());
}

} // namespace
} // namespace tarne::test
