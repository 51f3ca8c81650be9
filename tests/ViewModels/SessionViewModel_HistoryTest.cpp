#include "SessionFixture.h"

#include <limits>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class SessionHistory : public test::SessionTest {
protected:
    /// A session with these goals that ended so many seconds after the test's beginning.
    FocusSession ended(const QString &goal, double second) {
        FocusSession session;
        session.goal = goal;
        session.goals = FocusSession::parseGoals(goal);
        session.duration = 300.0;
        session.startTime = beginning;
        session.endTime = beginning + second;
        return session;
    }

    const Date beginning = time.now();
};

TEST_F(SessionHistory, IsEmptyWithoutAStoredKeyAndWritesNothing) {
    controller();
    defaults.takeWrites();
    EXPECT_TRUE(history().empty());
    EXPECT_THAT(defaults.takeWrites(), IsEmpty());
}

TEST_F(SessionHistory, AppendsASessionWithItsTexts) {
    log.takeLines();
    controller().saveSessionToHistory(ended(u"Review"_s, 0), u"o"_s, u"p"_s, u"s"_s, u"m"_s,
                                      u"r"_s);
    ASSERT_EQ(history().size(), 1u);
    const SessionHistoryEntry entry = history()[0];
    EXPECT_EQ(entry.sessionDate, beginning);
    EXPECT_EQ(entry.duration, 300.0);
    EXPECT_EQ(entry.overallAssessment, u"o"_s);
    EXPECT_EQ(entry.patternsObserved, u"p"_s);
    EXPECT_EQ(entry.suggestions, u"s"_s);
    EXPECT_EQ(entry.motivation, u"m"_s);
    EXPECT_EQ(entry.reflection, u"r"_s);
    EXPECT_EQ(log.lines().last(), u"📱 Added new session to history: Review"_s);
}

TEST_F(SessionHistory, TakesTheTimeOfSavingForASessionWithoutAnEnd) {
    FocusSession session = ended(u"Review"_s, 0);
    session.endTime.reset();
    pass(77);
    controller().saveSessionToHistory(session);
    EXPECT_EQ(history()[0].sessionDate, time.now());
}

TEST_F(SessionHistory, MergesTheSameGoalsUpTo299SecondsApart) {
    controller().saveSessionToHistory(ended(u"Review"_s, 0), u"first"_s, u"kept"_s);
    const QUuid id = history()[0].id;
    FocusSession again = ended(u"Review"_s, 299);
    again.goals[0].status = GoalStatus::completed;
    again.duration = 1200.0;
    controller().saveSessionToHistory(again, u"second"_s);
    ASSERT_EQ(history().size(), 1u);
    const SessionHistoryEntry entry = history()[0];
    EXPECT_EQ(entry.id, id);
    EXPECT_EQ(entry.sessionDate, beginning) << "it does not move";
    EXPECT_EQ(entry.goals[0].status, GoalStatus::completed);
    EXPECT_EQ(entry.goals[0].id, again.goals[0].id);
    EXPECT_EQ(entry.duration, 1200.0);
    EXPECT_EQ(entry.overallAssessment, u"second"_s);
    EXPECT_EQ(entry.patternsObserved, u"kept"_s) << "an empty text blanks nothing";
    EXPECT_EQ(log.lines().last(), u"📱 Updated existing session in history: Review"_s);
}

TEST_F(SessionHistory, AMergeReplacesEachTextThatIsNotEmptyAndKeepsTheOthers) {
    const auto textsOf = [](const SessionHistoryEntry &entry) {
        return QStringList{entry.overallAssessment, entry.patternsObserved, entry.suggestions,
                           entry.motivation, entry.reflection};
    };
    const FocusSession session = ended(u"Review"_s, 0);
    controller().saveSessionToHistory(session, u"o"_s, u"p"_s, u"s"_s, u"m"_s, u"r"_s);
    controller().saveSessionToHistory(session, u"O"_s, u"P"_s, u"S"_s, u"M"_s, u"R"_s);
    const QStringList replaced{u"O"_s, u"P"_s, u"S"_s, u"M"_s, u"R"_s};
    EXPECT_EQ(textsOf(history()[0]), replaced);
    controller().saveSessionToHistory(session);
    ASSERT_EQ(history().size(), 1u);
    EXPECT_EQ(textsOf(history()[0]), replaced);
}

TEST_F(SessionHistory, KeepsTheOrderInWhichItsEntriesWereFirstSaved) {
    controller().saveSessionToHistory(ended(u"first"_s, 1000));
    controller().saveSessionToHistory(ended(u"second"_s, 0));
    controller().saveSessionToHistory(ended(u"third"_s, 500));
    controller().saveSessionToHistory(ended(u"second"_s, 10));
    QStringList order;
    for (const SessionHistoryEntry &entry : history())
        order += entry.goals[0].text;
    EXPECT_EQ(order, (QStringList{u"first"_s, u"second"_s, u"third"_s}));
}

TEST_F(SessionHistory, ForgetsNoEntryHoweverManyThereAre) {
    std::vector<SessionHistoryEntry> many;
    for (int i = 0; i < 1000; ++i)
        many.push_back({.sessionDate = beginning - 86400.0 * i, .goals = {}, .duration = 60.0});
    controller().saveSessionHistory(many);
    controller().saveSessionToHistory(ended(u"Review"_s, 0));
    EXPECT_EQ(history().size(), 1001u);
}

TEST_F(SessionHistory, AnEntryOf50MegabytesIsReadMergedAndWritten) {
    const QString text = u"0123456789"_s.repeated(5'000'000);
    controller().saveSessionToHistory(ended(u"Review"_s, 0), text, u"p"_s);
    ASSERT_GT(defaults.dataForKey(keys::sessionHistory)->size(), 50'000'000);
    controller().saveSessionToHistory(ended(u"Review"_s, 10), {}, u"P"_s);
    ASSERT_EQ(history().size(), 1u);
    EXPECT_TRUE(history()[0].overallAssessment == text);
    EXPECT_EQ(history()[0].patternsObserved, u"P"_s);
}

TEST_F(SessionHistory, Keeps300SecondsApartAsTwoEntries) {
    controller().saveSessionToHistory(ended(u"Review"_s, 0));
    controller().saveSessionToHistory(ended(u"Review"_s, 300));
    EXPECT_EQ(history().size(), 2u);
}

TEST_F(SessionHistory, MergesAlsoWithALaterEntry) {
    controller().saveSessionToHistory(ended(u"Review"_s, 299));
    controller().saveSessionToHistory(ended(u"Review"_s, 0));
    EXPECT_EQ(history().size(), 1u);
}

TEST_F(SessionHistory, KeepsAnEntryThatIs300SecondsLaterApart) {
    controller().saveSessionToHistory(ended(u"Review"_s, 300));
    controller().saveSessionToHistory(ended(u"Review"_s, 0));
    EXPECT_EQ(history().size(), 2u);
    controller().saveSessionToHistory(ended(u"Review"_s, -86'400));
    EXPECT_EQ(history().size(), 3u) << "the clock was set back by a day";
}

TEST_F(SessionHistory, TakesTheSameLettersForTheSameGoalHoweverTheyAreEncoded) {
    controller().saveSessionToHistory(ended(u"Caf\u00E9, b"_s, 0));
    controller().saveSessionToHistory(ended(u"b, Cafe\u0301"_s, 10));
    ASSERT_EQ(history().size(), 1u);
    EXPECT_EQ(texts(history()[0].goals), (QStringList{u"b"_s, u"Cafe\u0301"_s})) << "as typed";
    controller().saveSessionToHistory(ended(u"b, Cafe"_s, 20));
    EXPECT_EQ(history().size(), 2u);
}

TEST_F(SessionHistory, RepeatedMergesDoNotCreepForward) {
    controller().saveSessionToHistory(ended(u"Review"_s, 0));
    controller().saveSessionToHistory(ended(u"Review"_s, 200));
    controller().saveSessionToHistory(ended(u"Review"_s, 400));
    EXPECT_EQ(history().size(), 2u);
}

TEST_F(SessionHistory, ComparesGoalsByTheirTextsInAnyOrderWithTheirRepeats) {
    controller().saveSessionToHistory(ended(u"a, b"_s, 0));
    controller().saveSessionToHistory(ended(u"b, a"_s, 10));
    EXPECT_EQ(history().size(), 1u);
    controller().saveSessionToHistory(ended(u"a"_s, 20));
    controller().saveSessionToHistory(ended(u"a, a"_s, 30));
    EXPECT_EQ(history().size(), 3u);
    controller().saveSessionToHistory(ended(u"A, b"_s, 40));
    EXPECT_EQ(history().size(), 4u) << "case counts";
}

TEST_F(SessionHistory, MatchesSessionsWithoutAnyGoal) {
    controller().saveSessionToHistory(ended(u","_s, 0));
    controller().saveSessionToHistory(ended(u" , "_s, 10));
    EXPECT_EQ(history().size(), 1u);
}

TEST_F(SessionHistory, MergesIntoTheFirstEntryThatMatchesAndInPlace) {
    controller().saveSessionToHistory(ended(u"Review"_s, 0));
    controller().saveSessionToHistory(ended(u"Other"_s, 5));
    controller().saveSessionToHistory(ended(u"Review"_s, 300));
    controller().saveSessionToHistory(ended(u"Review"_s, 150), u"text"_s);
    const auto entries = history();
    ASSERT_EQ(entries.size(), 3u);
    EXPECT_EQ(entries[0].overallAssessment, u"text"_s);
    EXPECT_EQ(entries[2].overallAssessment, QString());
}

TEST_F(SessionHistory, PostsOneNotificationForEachSaveAfterWriting) {
    std::vector<std::size_t> sizes;
    const auto observer = center.addObserver(notifications::sessionHistoryUpdated,
                                             [&] { sizes.push_back(history().size()); });
    controller().saveSessionToHistory(ended(u"Review"_s, 0));
    controller().saveSessionToHistory(ended(u"Review"_s, 10));
    controller().saveSessionToHistory(ended(u"Other"_s, 10));
    EXPECT_THAT(sizes, ElementsAre(1u, 1u, 2u));
}

TEST_F(SessionHistory, PostsAlsoWhenTheListHasNoJsonForm) {
    int posts = 0;
    const auto observer =
        center.addObserver(notifications::sessionHistoryUpdated, [&] { ++posts; });
    FocusSession endless = ended(u"Review"_s, 0);
    endless.duration = std::numeric_limits<double>::infinity();
    controller();
    defaults.takeWrites();
    log.takeLines();
    controller().saveSessionToHistory(endless);
    EXPECT_EQ(posts, 1);
    EXPECT_THAT(defaults.takeWrites(), IsEmpty());
    EXPECT_THAT(log.takeLines(), ElementsAre(u"📱 Added new session to history: Review"_s));
}

TEST_F(SessionHistory, SavingTheWholeListPostsAndLogsNothing) {
    int posts = 0;
    const auto observer =
        center.addObserver(notifications::sessionHistoryUpdated, [&] { ++posts; });
    controller();
    log.takeLines();
    controller().saveSessionHistory({});
    EXPECT_EQ(posts, 0);
    EXPECT_THAT(log.takeLines(), IsEmpty());
    EXPECT_TRUE(defaults.dataForKey(keys::sessionHistory));
}

TEST_F(SessionHistory, AnUnreadableDocumentReadsAsEmptyAndIsOverwrittenByTheNextSave) {
    controller();
    for (const QByteArray &damaged : {QByteArray("[{\"id\":"), QByteArray("{}"), QByteArray(),
                                      QByteArray("[1]"), QByteArray("[] x")}) {
        defaults.setObject(keys::sessionHistory, damaged);
        log.takeLines();
        EXPECT_TRUE(history().empty());
        EXPECT_THAT(log.takeLines(), IsEmpty());
        controller().saveSessionToHistory(ended(u"Review"_s, 0));
        EXPECT_EQ(history().size(), 1u);
    }
}

TEST_F(SessionHistory, AHistoryOfAnotherTypeReadsAsEmpty) {
    defaults.setObject(keys::sessionHistory, u"[]"_s);
    EXPECT_TRUE(history().empty());
}

TEST_F(SessionHistory, AFullDiskCostsTheWriteAndNothingElse) {
    start(u"Review"_s, 300);
    defaults.failsWrites = true;
    pass(300);
    EXPECT_TRUE(controller().isTimerComplete());
    defaults.failsWrites = false;
    controller().endSession(std::nullopt, true);
    EXPECT_EQ(history().size(), 1u);
}

TEST_F(SessionHistory, ReplacesOneReflectionAlsoByAnEmptyOneAndPostsNothing) {
    controller().saveSessionToHistory(ended(u"a"_s, 0), {}, {}, {}, {}, u"old"_s);
    controller().saveSessionToHistory(ended(u"b"_s, 0), {}, {}, {}, {}, u"other"_s);
    int posts = 0;
    const auto observer =
        center.addObserver(notifications::sessionHistoryUpdated, [&] { ++posts; });
    controller().updateHistoryReflection(history()[0].id, u"new"_s);
    EXPECT_EQ(history()[0].reflection, u"new"_s);
    EXPECT_EQ(history()[1].reflection, u"other"_s);
    controller().updateHistoryReflection(history()[0].id, QString());
    EXPECT_EQ(history()[0].reflection, QString());
    EXPECT_EQ(posts, 0);
}

TEST_F(SessionHistory, ReplacingAReflectionChangesNothingElse) {
    FocusSession session = ended(u"a, b"_s, 0);
    session.goals[1].status = GoalStatus::notCompleted;
    controller().saveSessionToHistory(session, u"o"_s, u"p"_s, u"s"_s, u"m"_s, u"old"_s);
    controller().saveSessionToHistory(ended(u"c"_s, 0), u"o"_s, u"p"_s, u"s"_s, u"m"_s, u"r"_s);
    auto expected = history();
    controller().updateHistoryReflection(expected[0].id, u"new"_s);
    expected[0].reflection = u"new"_s;
    EXPECT_EQ(defaults.dataForKey(keys::sessionHistory), encodeHistory(expected));
}

TEST_F(SessionHistory, ReplacesTheReflectionOfTheFirstOfTwoEntriesWithOneId) {
    const SessionHistoryEntry entry{
        .sessionDate = beginning, .goals = {}, .duration = 0, .reflection = u"old"_s};
    controller().saveSessionHistory({entry, entry});
    controller().updateHistoryReflection(entry.id, u"new"_s);
    EXPECT_EQ(history()[0].reflection, u"new"_s);
    EXPECT_EQ(history()[1].reflection, u"old"_s);
}

TEST_F(SessionHistory, ReplacingTheReflectionOfAnUnknownEntryWritesNothing) {
    controller().saveSessionToHistory(ended(u"a"_s, 0));
    defaults.takeWrites();
    controller().updateHistoryReflection(QUuid::createUuid(), u"new"_s);
    EXPECT_THAT(defaults.takeWrites(), IsEmpty());
}

TEST_F(SessionHistory, AWrapUpOfMoreThan300SecondsAfterTheRunOutAppendsASecondEntry) {
    start(u"Review"_s, 300);
    pass(300);
    pass(301);
    controller().saveSessionToHistory(*controller().currentSession(), u"coached"_s);
    ASSERT_EQ(history().size(), 1u) << "the feedback still merges, by the run-out's end";
    controller().endSession(std::nullopt, true);
    ASSERT_EQ(history().size(), 2u);
    EXPECT_EQ(history()[0].overallAssessment, u"coached"_s);
    EXPECT_EQ(history()[1].overallAssessment, QString());
}

TEST_F(SessionHistory, ASessionEndedEarlyMergesItsEndIntoItsFeedback) {
    start(u"Review"_s, 300);
    pass(60);
    controller().saveSessionToHistory(*controller().currentSession(), u"coached"_s);
    pass(100);
    controller().endSession(std::nullopt, true);
    ASSERT_EQ(history().size(), 1u);
    EXPECT_EQ(history()[0].overallAssessment, u"coached"_s);
    EXPECT_EQ(history()[0].sessionDate, beginning + 60);
}

TEST_F(SessionHistory, ASecondShortSessionWithTheSameGoalsWithinFiveMinutesStaysOneEntry) {
    start(u"Review"_s, 120);
    pass(120);
    controller().endSession(std::nullopt, true);
    start(u"Review"_s, 120);
    pass(120);
    controller().endSession(std::nullopt, true);
    EXPECT_EQ(history().size(), 1u);
}

} // namespace
} // namespace tarne::test
