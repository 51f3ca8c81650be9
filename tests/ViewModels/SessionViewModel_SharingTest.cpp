#include "SessionFixture.h"

#include "UuidText.h"

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

using testing::ElementsAre;

class SessionSharing : public test::SessionTest {
protected:
    /// QVariant compares numbers by their value, so their types are looked at beside it.
    static QList<int> typesOf(const QVariantMap &state) {
        QList<int> types;
        for (const QVariant &value : state)
            types += value.typeId();
        return types;
    }

    void expectEmptyKeys() {
        EXPECT_EQ(defaults.objectForKey(keys::sessionActive), DefaultsValue(qint64{0}));
        EXPECT_EQ(defaults.objectForKey(keys::sessionGoals), DefaultsValue(QString()));
        EXPECT_EQ(defaults.objectForKey(keys::sessionId), DefaultsValue(QString()));
        EXPECT_EQ(defaults.objectForKey(keys::timeRemaining), DefaultsValue(0.0));
        EXPECT_EQ(defaults.objectForKey(keys::sessionDuration), DefaultsValue(0.0));
        EXPECT_EQ(defaults.objectForKey(keys::sessionProgress), DefaultsValue(0.0));
    }
};

TEST_F(SessionSharing, PublishesEmptyValuesFromTheFirstSecondWithoutAnUpdateTime) {
    controller();
    expectEmptyKeys();
    pass(10);
    EXPECT_FALSE(defaults.objectForKey(keys::lastUpdate));
}

TEST_F(SessionSharing, PublishesARunningSessionOnceASecondInTheOrderOfTheKeys) {
    start(u"Write report, Review, "_s, 300);
    const QUuid id = controller().currentSession()->id;
    pass(0.5);
    defaults.takeWrites();
    controller().updateSharedData();
    EXPECT_THAT(defaults.takeWrites(),
                ElementsAre(u"SessionActive"_s, u"SessionGoals"_s, u"SessionId"_s,
                            u"TimeRemaining"_s, u"SessionDuration"_s, u"SessionProgress"_s,
                            u"LastUpdate"_s, u"synchronize"_s));
    EXPECT_EQ(defaults.objectForKey(keys::sessionActive), DefaultsValue(qint64{1}));
    EXPECT_EQ(defaults.objectForKey(keys::sessionGoals), DefaultsValue(u"Write report, Review"_s));
    EXPECT_EQ(defaults.objectForKey(keys::sessionId), DefaultsValue(uuidString(id)));
    EXPECT_EQ(defaults.objectForKey(keys::timeRemaining), DefaultsValue(300.0));
    EXPECT_EQ(defaults.objectForKey(keys::sessionDuration), DefaultsValue(300.0));
    EXPECT_EQ(defaults.objectForKey(keys::sessionProgress), DefaultsValue(1.0));
    EXPECT_EQ(defaults.objectForKey(keys::lastUpdate),
              DefaultsValue(time.now().secondsSince1970()));
}

TEST_F(SessionSharing, LogsOneLineASecondForTheWholeLife) {
    controller();
    log.takeLines();
    pass(2);
    const QString cleared = u"📱 Session data cleared: Active=0, Goals='', TimeRemaining=0"_s;
    EXPECT_THAT(log.takeLines(), ElementsAre(cleared, cleared));
    start(u"Review"_s, 300);
    log.takeLines();
    pass(0.5);
    controller().updateSharedData();
    EXPECT_THAT(
        log.takeLines(),
        ElementsAre(u"📱 Session data updated: Active=1, Goals=Review, TimeRemaining=300.0"_s));
}

TEST_F(SessionSharing, PublishesTheRawLineOfASessionWithoutAnyGoal) {
    start(u" , "_s, 300);
    controller().updateSharedData();
    EXPECT_EQ(defaults.stringForKey(keys::sessionGoals), u" , "_s);
}

TEST_F(SessionSharing, APauseEmptiesTheKeysWithinASecondAndAResumptionBringsThemBack) {
    start(u"Review"_s, 300);
    pass(5);
    const double lastUpdate = defaults.doubleForKey(keys::lastUpdate);
    controller().pauseTimer();
    pass(1);
    expectEmptyKeys();
    EXPECT_EQ(defaults.doubleForKey(keys::lastUpdate), lastUpdate);
    controller().resumeTimer();
    pass(1);
    EXPECT_TRUE(defaults.boolForKey(keys::sessionActive));
    EXPECT_EQ(defaults.stringForKey(keys::sessionGoals), u"Review"_s);
}

TEST_F(SessionSharing, ARunOutSessionIsNotActive) {
    start(u"Review"_s, 300);
    pass(301);
    expectEmptyKeys();
}

TEST_F(SessionSharing, ARunOutSessionThatIsResumedIsActive) {
    start(u"Review"_s, 300);
    pass(301);
    controller().resumeTimer();
    pass(1);
    EXPECT_EQ(defaults.objectForKey(keys::sessionActive), DefaultsValue(qint64{1}));
    EXPECT_EQ(defaults.objectForKey(keys::sessionGoals), DefaultsValue(u"Review"_s));
    EXPECT_EQ(defaults.objectForKey(keys::sessionDuration), DefaultsValue(300.0));
    EXPECT_EQ(defaults.objectForKey(keys::timeRemaining), DefaultsValue(0.0)) << "no tick is left";
    EXPECT_EQ(controller().getCurrentSessionGoals()[u"active"_s], QVariant(true));
}

TEST_F(SessionSharing, ACountdownWithoutASessionIsNotActive) {
    controller().startTimer(300);
    pass(1);
    EXPECT_TRUE(controller().isTimerActive());
    expectEmptyKeys();
    EXPECT_EQ(controller().getCurrentSessionGoals()[u"active"_s], QVariant(false));
}

TEST_F(SessionSharing, AnIdleControllerThatIsResumedIsNotActive) {
    controller().resumeTimer();
    pass(1);
    expectEmptyKeys();
    EXPECT_EQ(controller().getCurrentSessionGoals()[u"active"_s], QVariant(false));
}

TEST_F(SessionSharing, TheEndEmptiesTheKeysAtOnce) {
    start(u"Review"_s, 300);
    pass(5.5);
    controller().endSession(std::nullopt, true);
    expectEmptyKeys();
}

TEST_F(SessionSharing, TheDictionaryHasFiveKeysAndIntegersWithoutASession) {
    const QVariantMap state = controller().getCurrentSessionGoals();
    EXPECT_EQ(state.keys(), (QStringList{u"active"_s, u"duration"_s, u"goals"_s, u"sessionId"_s,
                                         u"timeRemaining"_s}));
    EXPECT_EQ(typesOf(state), (QList<int>{QMetaType::Bool, QMetaType::Int, QMetaType::QString,
                                          QMetaType::QString, QMetaType::Int}));
    EXPECT_EQ(state[u"active"_s], QVariant(false));
    EXPECT_EQ(state[u"goals"_s], QVariant(QString()));
    EXPECT_EQ(state[u"sessionId"_s], QVariant(QString()));
    EXPECT_EQ(state[u"timeRemaining"_s], QVariant(0));
    EXPECT_EQ(state[u"duration"_s], QVariant(0));
}

TEST_F(SessionSharing, TheDictionaryOfARunningSessionHasSevenKeysAndDoubles) {
    const FocusSession session = controller().createSession(u"Write report, Review"_s, 300);
    const Date created = time.now();
    pass(20);
    controller().startSession(session);
    pass(100);
    const QVariantMap state = controller().getCurrentSessionGoals();
    EXPECT_EQ(state.keys(), (QStringList{u"active"_s, u"duration"_s, u"goals"_s, u"progress"_s,
                                         u"sessionId"_s, u"startTime"_s, u"timeRemaining"_s}));
    EXPECT_EQ(typesOf(state),
              (QList<int>{QMetaType::Bool, QMetaType::Double, QMetaType::QString, QMetaType::Double,
                          QMetaType::QString, QMetaType::Double, QMetaType::Double}));
    EXPECT_EQ(state[u"active"_s], QVariant(true));
    EXPECT_EQ(state[u"goals"_s], QVariant(u"Write report, Review"_s));
    EXPECT_EQ(state[u"sessionId"_s], QVariant(uuidString(controller().currentSession()->id)));
    EXPECT_EQ(state[u"timeRemaining"_s], QVariant(200.0));
    EXPECT_EQ(state[u"duration"_s], QVariant(300.0));
    EXPECT_DOUBLE_EQ(state[u"progress"_s].toDouble(), 200.0 / 300.0);
    EXPECT_EQ(state[u"startTime"_s], QVariant(created.secondsSince1970()))
        << "the session's, not the count-down's";
}

TEST_F(SessionSharing, TheDictionaryOfAPausedSessionIsInactive) {
    start(u"Review"_s, 300);
    controller().pauseTimer();
    EXPECT_EQ(controller().getCurrentSessionGoals()[u"active"_s], QVariant(false));
}

} // namespace
} // namespace tarne::test
