#include "HistoryScreenFixture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace tarne;
using namespace Qt::StringLiterals;
using test::HistoryScreenTest;

namespace {

void collectTexts(const QQuickItem &item, QStringList &texts) {
    texts += item.property("text").toString();
    for (const QQuickItem *child : item.childItems())
        collectTexts(*child, texts);
}

} // namespace

TEST_F(HistoryScreenTest, BeforeTheFirstLoadItSaysThatThereIsNoHistory) {
    EXPECT_TRUE(screen().has(u"Session History"_s));
    EXPECT_TRUE(screen().has(u"Your personal thoughts and reflections over time"_s));
    EXPECT_TRUE(screen().has(u"No session history yet"_s));
    EXPECT_TRUE(
        screen().has(u"Complete your first focus session to see your feedback history here"_s));
}

TEST_F(HistoryScreenTest, TheFirstOpeningShowsTheSamples) {
    view().appear();
    const QStringList names = screen(QSize(900, 1600)).names();
    for (const QString &text :
         {u"Today"_s, u"1 entry"_s, u"12:00 PM"_s, u"1/2"_s, u"Complete project proposal"_s,
          u"Review client feedback"_s, u"Overall Assessment"_s, u"Patterns Observed"_s,
          u"Suggestions"_s, u"Motivation"_s, u"Your Reflection"_s, u"25 min"_s, u"Yesterday"_s,
          u"45 min"_s,
          u"Felt really productive today. The morning session worked well for creative work."_s})
        EXPECT_TRUE(names.contains(text)) << qPrintable(text);
    EXPECT_FALSE(names.contains(u"No session history yet"_s));
    EXPECT_FALSE(names.contains(u"Load More"_s));
}

TEST_F(HistoryScreenTest, GroupsCountTheirEntries) {
    controller().saveSessionHistory(
        {{.sessionDate = time.now(), .goals = {}, .duration = 0},
         {.sessionDate = time.now() - 60.0, .goals = {}, .duration = 0},
         {.sessionDate = time.now() - 86400.0, .goals = {}, .duration = 0}});
    view().appear();
    EXPECT_TRUE(screen().has(u"2 entries"_s));
    EXPECT_TRUE(screen().has(u"1 entry"_s));
}

TEST_F(HistoryScreenTest, ACoachingTextOpensAndClosesByItself) {
    view().appear();
    const QString text = view().historyEntries()[0].suggestions;
    EXPECT_FALSE(screen().has(text));
    ASSERT_TRUE(screen().click(u"Suggestions"_s, QAccessible::Button));
    EXPECT_TRUE(screen().waitUntil([&] { return screen().has(text); }));
    EXPECT_FALSE(screen().has(view().historyEntries()[0].motivation));
    ASSERT_TRUE(screen().click(u"Suggestions"_s, QAccessible::Button));
    EXPECT_TRUE(screen().waitUntil([&] { return !screen().has(text); }));
}

TEST_F(HistoryScreenTest, ALoadOfAnotherHistoryClosesTheCoachingTexts) {
    view().appear();
    const QString text = view().historyEntries()[0].motivation;
    ASSERT_TRUE(screen().click(u"Motivation"_s, QAccessible::Button));
    EXPECT_TRUE(screen().waitUntil([&] { return screen().has(text); }));
    view().loadHistoryEntries();
    screen().settle();
    EXPECT_TRUE(screen().has(text)) << "the same history";
    controller().saveSessionToHistory({.goals = {{.text = u"another"_s}}, .endTime = time.now()});
    screen().settle();
    EXPECT_TRUE(screen().has(u"Motivation"_s, QAccessible::Button));
    EXPECT_FALSE(screen().has(text));
}

TEST_F(HistoryScreenTest, ASessionFinishedWhileItIsShownIsThereAtOnce) {
    store(1);
    view().appear();
    EXPECT_FALSE(screen().has(u"Write report"_s));
    controller().saveSessionToHistory({.goal = u"Write report"_s,
                                       .goals = {{.text = u"Write report"_s}},
                                       .endTime = time.now() + 1});
    screen().settle();
    EXPECT_TRUE(screen().has(u"Write report"_s));
    EXPECT_TRUE(screen().has(u"2 entries"_s));
}

TEST_F(HistoryScreenTest, WithTenEntriesLoadMoreStandsAtTheEndAndDoesNothing) {
    store(10);
    view().appear();
    screen(QSize(900, 3000));
    ASSERT_TRUE(screen().has(u"Load More"_s, QAccessible::Button));
    defaults.takeWrites();
    const QStringList before = screen().names();
    ASSERT_TRUE(screen().click(u"Load More"_s));
    screen().settle();
    EXPECT_EQ(screen().names(), before);
    EXPECT_EQ(defaults.takeWrites(), QStringList());
}

TEST_F(HistoryScreenTest, WithNineEntriesThereIsNoLoadMore) {
    store(9);
    view().appear();
    EXPECT_FALSE(screen(QSize(900, 3000)).has(u"Load More"_s));
}

TEST_F(HistoryScreenTest, OnlyLoadMoreAndTheCoachingTextsCanBePressed) {
    controller().saveSessionHistory({{.sessionDate = time.now(),
                                      .goals = {{.text = u"goal"_s}},
                                      .duration = 0,
                                      .motivation = u"m"_s}});
    view().appear();
    EXPECT_EQ(screen().names(QAccessible::Button), QStringList{u"Motivation"_s});
    EXPECT_EQ(screen().cursorOver(u"Motivation"_s), Qt::PointingHandCursor);
    EXPECT_EQ(screen().cursorOver(u"goal"_s), Qt::ArrowCursor);
}

TEST_F(HistoryScreenTest, AHistoryThatTurnsUnreadableIsShownUntilTheNextLoad) {
    store(2);
    view().appear();
    EXPECT_TRUE(screen().has(u"2 entries"_s));
    defaults.setObject(keys::sessionHistory, "broken"_ba);
    screen().settle();
    EXPECT_TRUE(screen().has(u"2 entries"_s));
    dragDown(300);
    EXPECT_TRUE(screen().has(u"Complete project proposal"_s));
    EXPECT_EQ(history().size(), 3U);
}

TEST_F(HistoryScreenTest, MarkupInATextIsShownAsItIs) {
    controller().saveSessionHistory({{.sessionDate = time.now(),
                                      .goals = {{.text = u"<b>bold</b>"_s}},
                                      .duration = 0,
                                      .reflection = u"<img src='x'>"_s}});
    view().appear();
    EXPECT_TRUE(screen().has(u"<b>bold</b>"_s));
    EXPECT_TRUE(screen().has(u"<img src='x'>"_s));
}

TEST_F(HistoryScreenTest, AnEntryWithoutGoalsShowsItsDurationAndTheWordsForNoReflection) {
    store(1);
    view().appear();
    EXPECT_TRUE(screen().has(u"No reflection provided"_s));
    EXPECT_TRUE(screen().has(u"1 min"_s));
    EXPECT_FALSE(screen().has(u"0/0"_s));
    EXPECT_EQ(screen().names(QAccessible::Button), QStringList()); // No coaching text either.
}

TEST_F(HistoryScreenTest, TenThousandGoalsOfOneEntryAreAllOnItsCard) {
    SessionHistoryEntry entry{.sessionDate = time.now(), .goals = {}, .duration = 60};
    for (int i = 0; i < 10000; ++i)
        entry.goals.push_back({.text = QString::number(i), .status = GoalStatus::completed});
    controller().saveSessionHistory({entry});
    view().appear();
    // Not found by the driver, which asks each of so many siblings for all of them.
    QStringList texts;
    collectTexts(*screen().root(), texts);
    EXPECT_TRUE(texts.contains(u"10000/10000"_s));
    EXPECT_TRUE(texts.contains(u"9999"_s));
}
