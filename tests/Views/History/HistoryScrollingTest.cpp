#include "HistoryScreenFixture.h"
#include "ItemLook.h"
#include "TARNEStyle.h"
#include "TextLook.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace tarne;
using namespace Qt::StringLiterals;

namespace {

class HistoryScrolling : public test::HistoryScreenTest {
protected:
    double scrolledBy() { return list()->property("contentY").toDouble(); }
    Date beforeMidnight() { return calendar()().startOfDay(time.now() + 86400.0) - 2; }
    /// Sessions of one day, a minute apart, and two of earlier days.
    void storeWithAdvice(int entries) {
        std::vector<SessionHistoryEntry> stored;
        for (int i = 0; i < entries; ++i)
            stored.push_back({.sessionDate = time.now() - i * 60.0,
                              .goals = {},
                              .duration = 0,
                              .suggestions = u"advice %1"_s.arg(i)});
        for (const int days : {1, 20})
            stored.push_back(
                {.sessionDate = time.now() - days * 86400.0, .goals = {}, .duration = 0});
        controller().saveSessionHistory(stored);
    }
    /// Of a running session, with the list a page down. The next load finds the list a page
    /// further.
    void passMidnightInTheMiddleOfTheList() {
        view().appear();
        start(u"A"_s, 1500.0);
        list()->forceActiveFocus();
        screen().key(Qt::Key_PageDown);
        const auto place = uppermost();
        ASSERT_GT(scrolledBy(), 0);
        pass(3);
        screen().settle();
        EXPECT_EQ(uppermost(), place);
        screen().key(Qt::Key_PageDown);
        const auto further = uppermost();
        ASSERT_NE(further, place);
        view().loadHistoryEntries();
        screen().settle();
        EXPECT_EQ(uppermost(), further);
    }
    /// The uppermost clock time in sight of those before midnight, and how far it is from the top.
    std::pair<QString, double> uppermost() {
        std::pair<QString, double> found{QString(), 700};
        for (int minute = 10; minute < 60; ++minute) {
            const QString text = u"11:%1 PM"_s.arg(minute);
            QQuickItem *item = screen().find(text);
            if (const double top = item ? test::placeOf(*item).top() : -1;
                top >= 0 && top < found.second)
                found = {text, top};
        }
        return found;
    }
};

} // namespace

TEST_F(HistoryScrolling, ACoachingTextStaysOpenWhileItsCardIsScrolledAway) {
    std::vector<SessionHistoryEntry> entries;
    for (int i = 0; i < 60; ++i)
        entries.push_back({.sessionDate = time.now() - i * 60.0,
                           .goals = {},
                           .duration = 0,
                           .suggestions = i == 0 ? u"first"_s : u"other"_s});
    controller().saveSessionHistory(entries);
    view().appear();
    ASSERT_TRUE(screen().click(u"Suggestions"_s, QAccessible::Button));
    EXPECT_TRUE(screen().waitUntil([&] { return screen().has(u"first"_s); }));
    list()->forceActiveFocus();
    screen().key(Qt::Key_End);
    EXPECT_FALSE(screen().has(u"first"_s));
    screen().key(Qt::Key_Home);
    EXPECT_TRUE(screen().has(u"first"_s));
    EXPECT_FALSE(screen().has(u"other"_s));
}

TEST_F(HistoryScrolling, TheKeyboardReachesEveryCoachingTextAndOpensIt) {
    view().appear();
    ASSERT_EQ(screen().focusedName(), u"Session History"_s);
    for (const QString &title : {u"Overall Assessment"_s, u"Patterns Observed"_s, u"Suggestions"_s,
                                 u"Motivation"_s, u"Overall Assessment"_s}) {
        screen().tab();
        EXPECT_EQ(screen().focusedName(), title);
    }
    screen().key(Qt::Key_Space);
    EXPECT_TRUE(screen().waitUntil(
        [&] { return screen().has(view().historyEntries()[1].overallAssessment); }));
}

TEST_F(HistoryScrolling, TheKeyboardReachesEveryCoachingTextInEveryRound) {
    controller().saveSessionHistory({{.sessionDate = time.now(),
                                      .goals = {},
                                      .duration = 0,
                                      .overallAssessment = u"Well done."_s,
                                      .motivation = u"Go on."_s}});
    view().appear();
    ASSERT_EQ(screen().focusedName(), u"Session History"_s);
    for (int round = 1; round <= 2; ++round) {
        for (const QString &name :
             {u"Overall Assessment"_s, u"Motivation"_s, u"Session History"_s}) {
            screen().tab();
            EXPECT_EQ(screen().focusedName(), name) << "in round " << round;
        }
    }
}

TEST_F(HistoryScrolling, TheKeyboardComesToLoadMoreBehindTheCoachingTexts) {
    std::vector<SessionHistoryEntry> entries;
    for (int i = 0; i < 10; ++i)
        entries.push_back({.sessionDate = time.now() - i * 60.0,
                           .goals = {},
                           .duration = 0,
                           .motivation = i < 2 ? u"Go on."_s : u""_s});
    controller().saveSessionHistory(entries);
    view().appear();
    ASSERT_EQ(screen().focusedName(), u"Session History"_s);
    for (const QString &name : {u"Motivation"_s, u"Motivation"_s, u"Load More"_s}) {
        screen().tab();
        EXPECT_EQ(screen().focusedName(), name);
    }
}

TEST_F(HistoryScrolling, AfterTheWayBackUpTheRowsAreReadFromTheFirstToTheLast) {
    store(60);
    view().appear();
    list()->forceActiveFocus();
    screen().key(Qt::Key_End);
    for (int page = 0; page < 3; ++page)
        screen().key(Qt::Key_PageUp);
    const QQuickItem *last = nullptr;
    int rows = 0;
    for (const QQuickItem *row :
         list()->property("contentItem").value<QQuickItem *>()->childItems()) {
        if (!row->property("index").isValid() || !row->isVisible())
            continue;
        if (last) {
            EXPECT_GT(row->y(), last->y());
        }
        last = row;
        ++rows;
    }
    EXPECT_GT(rows, 3);
}

TEST_F(HistoryScrolling, TheKeysAndTheWheelScroll) {
    store(60);
    view().appear();
    list()->forceActiveFocus();
    const double top = scrolledBy();
    screen().key(Qt::Key_Down);
    EXPECT_GT(scrolledBy(), top);
    screen().key(Qt::Key_Up);
    EXPECT_EQ(scrolledBy(), top);
    screen().key(Qt::Key_PageDown);
    EXPECT_GT(scrolledBy(), top + 300);
    screen().key(Qt::Key_PageUp);
    EXPECT_EQ(scrolledBy(), top);
    screen().wheel(QPointF(400, 400), -120);
    EXPECT_TRUE(screen().waitUntil([&] { return scrolledBy() > top; }));
    screen().key(Qt::Key_End);
    EXPECT_TRUE(screen().has(u"Load More"_s));
    EXPECT_LT(test::placeOf(*screen().find(u"Load More"_s)).bottom(), 700);
    screen().key(Qt::Key_Home);
    EXPECT_EQ(test::placeOf(*screen().find(u"Session History"_s, QAccessible::Heading)).top(), 16);
}

TEST_F(HistoryScrolling, ADragFarPastTheTopLoadsAnew) {
    store(1);
    view().appear();
    screen();
    store(2);
    dragDown(30);
    EXPECT_EQ(view().historyEntries().size(), 1U);
    dragDown(300);
    EXPECT_EQ(view().historyEntries().size(), 2U);
    EXPECT_TRUE(screen().has(u"2 entries"_s));
}

TEST_F(HistoryScrolling, ADragPastTheTopShowsOnItsWayWhenLettingGoWillLoad) {
    store(1);
    view().appear();
    const auto sign = [this]() -> const SymbolIcon * {
        for (const SymbolIcon *icon : test::symbolsIn(screen().root())) {
            if (test::lookOf(*icon).symbol == u"arrow.clockwise")
                return icon;
        }
        return nullptr;
    };
    EXPECT_FALSE(sign());
    const QPointF from(300, 200);
    const auto pullTo = [&](double distance) {
        for (int step = 1; step <= 10; ++step)
            screen().hover(from + QPointF(0, distance - 10 + step));
    };
    screen().press(from);
    pullTo(45);
    ASSERT_TRUE(sign());
    EXPECT_LT(sign()->opacity(), 1);
    EXPECT_EQ(test::lookOf(*sign()).color, SystemColors::secondaryLabel);
    const double onTheWay = test::placeOf(*sign()).center().y();
    pullTo(200);
    ASSERT_TRUE(sign());
    EXPECT_EQ(sign()->opacity(), 1);
    EXPECT_EQ(test::lookOf(*sign()).color, TARNEStyle::Colors::accent);
    EXPECT_GT(test::placeOf(*sign()).center().y(), onTheWay);
    EXPECT_GT(test::placeOf(*sign()).top(), 0);
    EXPECT_LT(test::placeOf(*sign()).bottom(),
              test::placeOf(*screen().find(u"Session History"_s, QAccessible::Heading)).top());
    screen().release(from + QPointF(0, 200));
    EXPECT_TRUE(screen().waitUntil([&] { return !sign(); }));
}

TEST_F(HistoryScrolling, ALoadKeepsThePlaceInALongList) {
    store(60);
    view().appear();
    list()->forceActiveFocus();
    screen().key(Qt::Key_PageDown);
    const double place = test::placeOf(*screen().find(u"11:54 AM"_s)).top();
    controller().saveSessionToHistory({.goals = {{.text = u"new"_s}}, .endTime = time.now()});
    screen().settle();
    EXPECT_EQ(test::placeOf(*screen().find(u"11:54 AM"_s)).top(), place);
}

TEST_F(HistoryScrolling, TheTurnOfTheDayLeavesTheReaderWhereTheyAre) {
    time.setWallClock(beforeMidnight());
    store(60);
    passMidnightInTheMiddleOfTheList();
    screen().key(Qt::Key_Home);
    EXPECT_TRUE(screen().has(u"Yesterday"_s));
    EXPECT_FALSE(screen().has(u"Today"_s));
}

TEST_F(HistoryScrolling, ATurnOfTheDayThatMovesAGroupLeavesTheReaderWhereTheyAre) {
    time.setWallClock(beforeMidnight());
    std::vector<SessionHistoryEntry> entries;
    for (int i = 0; i < 60; ++i)
        entries.push_back({.sessionDate = time.now() - i * 60.0,
                           .goals = {},
                           .duration = 0,
                           .reflection = u"long words "_s.repeated(i % 7 * 20)});
    for (const int days : {1, 20})
        entries.push_back({.sessionDate = time.now() - days * 86400.0, .goals = {}, .duration = 0});
    controller().saveSessionHistory(entries);
    passMidnightInTheMiddleOfTheList();
    screen().key(Qt::Key_End);
    EXPECT_TRUE(screen().has(u"Sunday"_s)); // It stood above February.
}

TEST_F(HistoryScrolling, WhatTheReaderScrolledAwayFromStaysAwayWhenTheWindowComesBack) {
    storeWithAdvice(20);
    view().appear();
    screen().tab();
    screen().key(Qt::Key_PageDown);
    const double before = scrolledBy();
    screen().leaveWindow();
    screen().returnToWindow();
    EXPECT_EQ(scrolledBy(), before);
}

TEST_F(HistoryScrolling, ATurnOfTheDayThatMovesAGroupKeepsTheKeyboardOnItsRow) {
    time.setWallClock(beforeMidnight());
    storeWithAdvice(20);
    view().appear();
    start(u"A"_s, 1500.0);
    for (int row = 0; row < 4; ++row)
        screen().tab();
    screen().key(Qt::Key_Space);
    const auto opened = [&] { return screen().names().filter(u"advice"_s); };
    ASSERT_TRUE(screen().waitUntil([&] { return opened().size() == 1; }));
    const QStringList before = opened();
    pass(3);
    screen().settle();
    EXPECT_EQ(opened(), before);
    ASSERT_EQ(screen().focusedName(), u"Suggestions"_s);
    EXPECT_TRUE(screen().view().activeFocusItem()->property("visualFocus").toBool());
    screen().key(Qt::Key_Space);
    EXPECT_TRUE(screen().waitUntil([&] { return opened().isEmpty(); }));
}

TEST_F(HistoryScrolling, TheKeyboardReachesEveryRowHoweverFastTheKeysCome) {
    storeWithAdvice(40);
    view().appear();
    for (int row = 0; row < 40; ++row) {
        screen().tab();
        ASSERT_EQ(screen().focusedName(), u"Suggestions"_s) << row;
        (void)screen().picture();
    }
    screen().tab();
    EXPECT_EQ(screen().focusedName(), u"Load More"_s);
    for (int row = 0; row < 40; ++row) {
        screen().backtab();
        ASSERT_EQ(screen().focusedName(), u"Suggestions"_s) << row;
        (void)screen().picture();
    }
}

TEST_F(HistoryScrolling, OnlyCardsInSightExist) {
    store(10000);
    view().appear();
    const QStringList names = screen().names();
    EXPECT_LT(names.count(u"Your Reflection"_s), 40);
    EXPECT_GT(names.count(u"Your Reflection"_s), 2);
}

TEST_F(HistoryScrolling, TextsOfAMegabyteAreShownAndScrolledThrough) {
    const QString text = u"long words "_s.repeated(95000);
    controller().saveSessionHistory({{.sessionDate = time.now(),
                                      .goals = {{.text = text}},
                                      .duration = 60,
                                      .suggestions = text,
                                      .reflection = text}});
    view().appear();
    ASSERT_TRUE(screen().has(u"Your Reflection"_s));
    (void)screen().picture();
    list()->forceActiveFocus();
    screen().key(Qt::Key_End);
    EXPECT_TRUE(screen().has(u"1 min"_s));
    (void)screen().picture();
}

TEST_F(HistoryScrolling, OfAnEntryOfHalfAMillionLinesOnlyThoseInSightExist) {
    const QString text = u"a\n"_s.repeated(500'000);
    controller().saveSessionHistory({{.sessionDate = time.now(),
                                      .goals = {{.text = text}},
                                      .duration = 60,
                                      .suggestions = text,
                                      .reflection = text}});
    view().appear();
    const auto expectSomeLines = [this] {
        qsizetype length = 0;
        for (const QString &name : screen().names(QAccessible::StaticText)) {
            if (name.startsWith(u"a\na\n"_s))
                length += name.size();
        }
        EXPECT_GT(length, 0);
        EXPECT_LT(length, 20'000);
    };
    ASSERT_TRUE(screen().has(u"Session History"_s));
    expectSomeLines();
    list()->forceActiveFocus();
    for (int page = 0; page < 20; ++page)
        screen().key(Qt::Key_PageDown);
    expectSomeLines();
    // The end moves a little while it is worked out.
    EXPECT_TRUE(screen().waitUntil([&] {
        screen().key(Qt::Key_End);
        return screen().has(u"1 min"_s);
    }));
}
