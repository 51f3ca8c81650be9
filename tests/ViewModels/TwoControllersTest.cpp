#include "SessionFixture.h"

#include "UuidText.h"

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

using testing::Contains;

/// What a run with its two controllers does.
class TwoControllers : public test::SessionTest {
protected:
    /// Makes the second controller `phase` seconds after the first.
    void launch(double phase = 0.0) {
        first = std::make_unique<SessionViewModel>(platform());
        pass(phase);
        second = std::make_unique<SessionViewModel>(platform());
    }

    std::unique_ptr<SessionViewModel> first;
    std::unique_ptr<SessionViewModel> second;
};

TEST_F(TwoControllers, BothRestoreACountdownWithTimeLeft) {
    storeCountdown(100, 300, u"Review"_s);
    launch();
    EXPECT_TRUE(first->isTimerActive());
    EXPECT_TRUE(second->isTimerActive());
    EXPECT_NE(first->currentSession()->id, second->currentSession()->id);
}

TEST_F(TwoControllers, TheOtherGoesOnAfterTheUsersHasEndedAndSavesItsOwn) {
    storeCountdown(100, 600, u"Review"_s);
    launch(0.4);
    second->endSession(std::nullopt, true);
    EXPECT_FALSE(defaults.objectForKey(keys::timerStartTime));
    pass(1);
    EXPECT_TRUE(defaults.dateForKey(keys::timerStartTime)) << "the keys are back within a second";
    pass(0.7);
    EXPECT_TRUE(defaults.boolForKey(keys::sessionActive)) << "and it goes on publishing";
    EXPECT_EQ(defaults.stringForKey(keys::sessionId), uuidString(first->currentSession()->id));
    EXPECT_EQ(first->loadSessionHistory().size(), 1u);
    pass(600);
    EXPECT_TRUE(first->isTimerComplete());
    EXPECT_EQ(first->loadSessionHistory().size(), 2u);
    EXPECT_EQ(userNotifications.added.back().content.title, u"Session Complete"_s);
}

TEST_F(TwoControllers, BothRunOutIntoOneEntryAndNotifyUnderDifferentIdentifiers) {
    storeCountdown(100, 300, u"Review"_s);
    launch(0.4);
    pass(100);
    EXPECT_NEAR(first->timeRemaining(), 100, 1);
    EXPECT_NEAR(second->timeRemaining(), 100, 1);
    userNotifications.added.clear();
    pass(101);
    EXPECT_TRUE(first->isTimerComplete());
    EXPECT_TRUE(second->isTimerComplete());
    EXPECT_EQ(first->loadSessionHistory().size(), 1u);
    ASSERT_EQ(userNotifications.added.size(), 2u);
    for (const NotificationRequest &notice : userNotifications.added)
        EXPECT_EQ(notice.content.title, u"Session Complete"_s);
    EXPECT_NE(userNotifications.added[0].identifier, userNotifications.added[1].identifier);
}

TEST_F(TwoControllers, TheFirstSavesAndClearsASessionThatRanOutWhileAway) {
    storeCountdown(400, 300, u"Review"_s);
    launch();
    EXPECT_EQ(first->loadSessionHistory().size(), 1u);
    EXPECT_EQ(log.lines().count(u"📱 Restored completed session saved to history: Review"_s), 1);
}

TEST_F(TwoControllers, TheKeysAlternateBetweenTheTwoWriters) {
    launch(0.4);
    second->startSession(second->createSession(u"Review"_s, 300));
    std::vector<bool> seen;
    for (int i = 0; i < 4; ++i) {
        pass(0.5);
        seen.push_back(defaults.boolForKey(keys::sessionActive));
    }
    EXPECT_THAT(seen, Contains(false));
    EXPECT_THAT(seen, Contains(true));
}

} // namespace
} // namespace tarne::test
