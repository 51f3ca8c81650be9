#include "SessionFixture.h"

#include <QHash>

#include <limits>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

using testing::ElementsAre;

const QString clearedLine = u"📱 Session data cleared: Active=0, Goals='', TimeRemaining=0"_s;
const QString initializedLine = u"📱 TARNE SessionViewModel initialized - Safari extension can "
                                u"access via shared UserDefaults"_s;

class SessionConstruction : public test::SessionTest {};

TEST_F(SessionConstruction, BeginsIdle) {
    EXPECT_FALSE(controller().currentSession());
    EXPECT_EQ(controller().timeRemaining(), 0.0);
    EXPECT_EQ(controller().progress(), 1.0);
    EXPECT_FALSE(controller().isTimerActive());
    EXPECT_FALSE(controller().isTimerComplete());
    EXPECT_EQ(controller().userPreferences(), UserPreferences());
}

TEST_F(SessionConstruction, LoadsTheStoredPreferences) {
    UserPreferences stored;
    stored.lastGoal = u"Write report"_s;
    stored.save(defaults);
    EXPECT_EQ(controller().userPreferences(), stored);
}

TEST_F(SessionConstruction, LogsItsFirstPublicationBeforeItsInitialization) {
    controller();
    EXPECT_THAT(log.lines(), ElementsAre(clearedLine, initializedLine));
}

TEST_F(SessionConstruction, AsksForPermissionOnceAndIgnoresARefusal) {
    userNotifications.refuses = true;
    controller();
    EXPECT_EQ(userNotifications.authorizationRequests, 1);
    EXPECT_THAT(log.takeLines(), ElementsAre(clearedLine, initializedLine));
    start(u"Review"_s, 300);
    EXPECT_EQ(userNotifications.pending.size(), 1u) << "it is added all the same";
}

TEST_F(SessionConstruction, LogsAPermissionErrorThatComesAfterItsEnd) {
    userNotifications.answersLate = true;
    controller();
    crash();
    log.takeLines();
    ASSERT_EQ(userNotifications.lateAuthorizations.size(), 1u);
    userNotifications.lateAuthorizations[0](false, u"too late"_s);
    EXPECT_THAT(log.takeLines(), ElementsAre(u"Notification permission error: too late"_s));
}

TEST_F(SessionConstruction, AsksForPermissionBeforeItRestores) {
    userNotifications.error = u"no session bus"_s;
    storeCountdown(400, 300, u"Review"_s);
    controller();
    EXPECT_THAT(log.lines(), ElementsAre(u"Notification permission error: no session bus"_s,
                                         u"📱 Added new session to history: Review"_s,
                                         u"📱 Restored completed session saved to history: Review"_s,
                                         clearedLine, initializedLine));
}

TEST_F(SessionConstruction, LogsAPermissionErrorBeforeItsFirstPublication) {
    userNotifications.error = u"no session bus"_s;
    controller();
    EXPECT_THAT(log.lines(), ElementsAre(u"Notification permission error: no session bus"_s,
                                         clearedLine, initializedLine));
}

TEST_F(SessionConstruction, RestoresBeforeItPublishes) {
    storeCountdown(60, 300, u"Review"_s);
    controller();
    EXPECT_THAT(log.lines(), ElementsAre(u"📱 Session data updated: Active=1, Goals=Review, "
                                         u"TimeRemaining=240.0"_s,
                                         initializedLine));
}

TEST_F(SessionConstruction, IgnoresSleepAndResignation) {
    start(u"Review"_s, 300);
    defaults.takeWrites();
    const auto blocks = time.pendingBlockCount();
    time.sleep(Seconds(100)); // There would be something to take from the wall clock.
    center.post(notifications::willSleep);
    center.post(notifications::willResignActive);
    EXPECT_EQ(time.pendingBlockCount(), blocks);
    time.runPending();
    EXPECT_THAT(defaults.takeWrites(), ElementsAre());
    EXPECT_EQ(controller().timeRemaining(), 300.0);
    EXPECT_TRUE(controller().isTimerActive());
}

TEST_F(SessionConstruction, HearsNothingAfterItsDestruction) {
    start(u"Review"_s, 300);
    const auto timers = time.timerCount();
    crash();
    EXPECT_EQ(time.timerCount(), timers) << "it does not stop them";
    center.post(notifications::didWake);
    defaults.takeWrites();
    pass(5);
    EXPECT_THAT(defaults.takeWrites(), ElementsAre()) << "its timers fire for nobody";
}

TEST_F(SessionConstruction, ListensToTheFourEventsOfTheSystemByTheirNames) {
    EXPECT_EQ(notifications::willSleep, "NSWorkspaceWillSleepNotification"_L1);
    EXPECT_EQ(notifications::didWake, "NSWorkspaceDidWakeNotification"_L1);
    EXPECT_EQ(notifications::willResignActive, "NSApplicationWillResignActiveNotification"_L1);
    EXPECT_EQ(notifications::didBecomeActive, "NSApplicationDidBecomeActiveNotification"_L1);
    EXPECT_EQ(notifications::sessionHistoryUpdated, "sessionHistoryUpdated"_L1);
}

class SessionPreferences : public test::SessionTest {};

TEST_F(SessionPreferences, AreReplacedAndSavedAsAWhole) {
    UserPreferences preferences;
    preferences.defaultDuration = 2700.0;
    preferences.defaultBlockedApps = {u"Mail"_s};
    controller().updatePreferences(preferences);
    EXPECT_EQ(controller().userPreferences(), preferences);
    EXPECT_EQ(UserPreferences::load(defaults), preferences);
}

TEST_F(SessionPreferences, TakeALengthOfFiveTo180MinutesBothIncluded) {
    EXPECT_FALSE(controller().updateSessionDuration(299));
    EXPECT_EQ(controller().userPreferences().defaultDuration, 1500.0);
    EXPECT_TRUE(controller().updateSessionDuration(300));
    EXPECT_EQ(UserPreferences::load(defaults).defaultDuration, 300.0);
    EXPECT_TRUE(controller().updateSessionDuration(10800));
    EXPECT_EQ(UserPreferences::load(defaults).defaultDuration, 10800.0);
    EXPECT_FALSE(controller().updateSessionDuration(10801));
    EXPECT_EQ(controller().userPreferences().defaultDuration, 10800.0);
}

TEST_F(SessionPreferences, AreNotRoundedIntoRange) {
    EXPECT_FALSE(controller().updateSessionDuration(299.999));
    EXPECT_FALSE(controller().updateSessionDuration(10800.001));
    EXPECT_TRUE(controller().updateSessionDuration(333.25));
    EXPECT_EQ(controller().userPreferences().defaultDuration, 333.25);
}

TEST_F(SessionPreferences, AreNotTouchedByALengthThatIsRefused) {
    controller();
    defaults.takeWrites();
    int changes = 0;
    QObject::connect(&controller(), &SessionViewModel::userPreferencesChanged, [&] { ++changes; });
    EXPECT_FALSE(controller().updateSessionDuration(299));
    EXPECT_FALSE(controller().updateSessionDuration(10801));
    EXPECT_THAT(defaults.takeWrites(), ElementsAre());
    EXPECT_EQ(changes, 0);
}

TEST_F(SessionPreferences, RefuseALengthThatIsNoNumber) {
    EXPECT_FALSE(controller().updateSessionDuration(std::numeric_limits<double>::quiet_NaN()));
}

TEST_F(SessionPreferences, KeepAllButTheFieldThatAnOperationIsFor) {
    UserPreferences expected{.defaultDuration = 900.0,
                             .defaultBlockedApps = {u"Mail"_s},
                             .defaultBlockedWebsites = {u"news.example"_s},
                             .notificationsEnabled = false,
                             .soundEnabled = false,
                             .lastGoal = u"goal"_s,
                             .lastReflection = u"reflection"_s,
                             .hasCompletedOnboarding = true};
    controller().updatePreferences(expected);
    controller().updateSessionDuration(expected.defaultDuration = 1800.0);
    EXPECT_EQ(controller().userPreferences(), expected);
    controller().saveGoal(expected.lastGoal = u"another goal"_s);
    EXPECT_EQ(controller().userPreferences(), expected);
    controller().saveReflection(expected.lastReflection = u"another reflection"_s);
    EXPECT_EQ(controller().userPreferences(), expected);
    EXPECT_EQ(UserPreferences::load(defaults), expected);
}

TEST_F(SessionPreferences, FormatTheGivenOrTheDefaultLength) {
    EXPECT_EQ(controller().formattedDuration(3725.9), u"01:02:05"_s);
    EXPECT_EQ(controller().formattedDuration(), u"00:25:00"_s);
    EXPECT_EQ(controller().formattedDuration(0.0), u"00:00:00"_s);
    controller().updateSessionDuration(5400);
    EXPECT_EQ(controller().formattedDuration(), u"01:30:00"_s);
}

TEST_F(SessionPreferences, KeepTheLastGoalUntrimmed) {
    controller().saveGoal(u"  Write report, "_s);
    EXPECT_EQ(controller().loadLastGoal(), u"  Write report, "_s);
    EXPECT_EQ(UserPreferences::load(defaults).lastGoal, u"  Write report, "_s);
}

TEST_F(SessionPreferences, OfOneControllerAreNotSeenByAnotherUntilItIsMadeAnew) {
    controller();
    const auto other = std::make_unique<SessionViewModel>(platform());
    controller().saveGoal(u"Write report"_s);
    EXPECT_EQ(other->loadLastGoal(), QString());
    const SessionViewModel later(platform());
    EXPECT_EQ(later.loadLastGoal(), u"Write report"_s);
}

TEST_F(SessionPreferences, TellTheirObserversOfEachChange) {
    int changes = 0;
    QObject::connect(&controller(), &SessionViewModel::userPreferencesChanged, [&] { ++changes; });
    controller().saveGoal(u"a"_s);
    controller().saveGoal(u"a"_s);
    controller().saveReflection(u"b"_s);
    EXPECT_EQ(changes, 2);
}

TEST(SessionPlaceholder, IsOneOfFiveAndEachComesEquallyOften) {
    QHash<QString, int> seen;
    for (int i = 0; i < 10'000; ++i)
        ++seen[SessionViewModel::getRandomPlaceholder()];
    const QStringList all{u"Write your goal here..."_s,
                          u"What's your main objective for this session?"_s,
                          u"What would make this session successful?"_s,
                          u"What's the one thing you want to accomplish?"_s,
                          u"Set a clear intention for your work..."_s};
    EXPECT_EQ(seen.size(), all.size());
    for (const QString &text : all) {
        // 2,000 and seven and a half standard deviations.
        EXPECT_GT(seen.value(text), 1700) << text.toStdString();
        EXPECT_LT(seen.value(text), 2300) << text.toStdString();
    }
}

} // namespace
} // namespace tarne::test
