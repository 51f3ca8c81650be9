#include "HistoryView.h"
#include "SessionFixture.h"
#include "UiDriver.h"

#include "SymbolIcon.h"
#include "TARNEStyle.h"
#include "TextLook.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace tarne;
using namespace Qt::StringLiterals;

namespace {

class HistoryScreenTest : public test::SessionTest {
protected:
    static CurrentCalendar calendar() {
        return [] { return Calendar(QTimeZone::utc(), QLocale(u"en_US"_s)); };
    }
    HistoryView &view() {
        if (!m_view)
            m_view = std::make_unique<HistoryView>(controller(), center, time, calendar());
        return *m_view;
    }
    test::UiDriver &screen(const QSize &size = QSize(900, 700)) {
        if (!m_screen) {
            m_screen = std::make_unique<test::UiDriver>(
                QUrl(u"qrc:/qt/qml/TARNE/Views/HistoryScreen.qml"_s),
                QVariantMap{{u"view"_s, QVariant::fromValue(&view())}}, size);
        }
        return *m_screen;
    }
    QQuickItem *list() { return screen().find(u"Session History"_s, QAccessible::List); }
    double scrolledBy() { return list()->property("contentY").toDouble(); }
    /// Symbol and colour beside a text.
    std::pair<QString, QColor> markBeside(const QString &text) {
        const QQuickItem *const item = screen().find(text);
        for (const QQuickItem *sibling :
             item ? item->parentItem()->childItems() : QList<QQuickItem *>()) {
            if (qobject_cast<const SymbolIcon *>(sibling))
                return {sibling->property("symbol").toString(),
                        sibling->property("color").value<QColor>()};
        }
        return {};
    }
    void dragDown(double distance) {
        const QPointF from(300, 200);
        screen().press(from);
        for (int step = 1; step <= 10; ++step)
            screen().hover(from + QPointF(0, distance * step / 10));
        screen().release(from + QPointF(0, distance));
    }
    void store(int entries) {
        std::vector<SessionHistoryEntry> stored;
        for (int i = 0; i < entries; ++i)
            stored.push_back({.sessionDate = time.now() - i * 60.0, .duration = 60.0});
        controller().saveSessionHistory(stored);
    }

private:
    std::unique_ptr<HistoryView> m_view;
    std::unique_ptr<test::UiDriver> m_screen;
};

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

TEST_F(HistoryScreenTest, TheEmptyMomentHasItsLook) {
    using Type = TARNEStyle::Typography;
    test::expectLook(screen(), u"Session History"_s, Type::heading1(),
                     TARNEStyle::Colors::primaryText);
    test::expectLook(screen(), u"Your personal thoughts and reflections over time"_s, Type::body(),
                     TARNEStyle::Colors::secondaryText);
    test::expectLook(screen(), u"No session history yet"_s, Type::system(15, QFont::Medium),
                     SystemColors::label);
    test::expectLook(screen(),
                     u"Complete your first focus session to see your feedback history here"_s,
                     Type::system(13), SystemColors::secondaryLabel);
}

TEST_F(HistoryScreenTest, TheHeadStandsAtTheTopAndTheFirstGroupBelowIt) {
    EXPECT_NEAR(test::placeOf(*screen().find(u"Your personal thoughts and reflections over time"_s))
                    .center()
                    .x(),
                450, 1);
    view().appear();
    screen().settle();
    const QRectF head = test::placeOf(*screen().find(u"Session History"_s, QAccessible::Heading));
    EXPECT_EQ(head.top(), 16);
    const QRectF group = test::placeOf(*screen().find(u"Today"_s));
    EXPECT_GT(group.top(), head.bottom());
    EXPECT_LT(group.top(), 150);
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

TEST_F(HistoryScreenTest, EveryTextOfACardHasItsLook) {
    view().appear();
    using Type = TARNEStyle::Typography;
    const QColor label = SystemColors::label;
    const QColor secondary = SystemColors::secondaryLabel;
    test::expectLook(screen(), u"Today"_s, Type::system(15, QFont::DemiBold), label);
    test::expectLook(screen(), u"1 entry"_s, Type::system(11), secondary);
    test::expectLook(screen(), u"12:00 PM"_s, Type::system(11), secondary);
    test::expectLook(screen(), u"1/2"_s, Type::system(11, QFont::Medium), secondary);
    test::expectLook(screen(), u"Complete project proposal"_s, Type::system(14), label);
    test::expectLook(screen(), u"Your Reflection"_s, Type::system(13, QFont::Medium), label);
    test::expectLook(screen(), view().historyEntries()[0].reflection, Type::system(13), label);
    test::expectLook(screen(), u"25 min"_s, Type::system(11), secondary);
}

TEST_F(HistoryScreenTest, GoalsAndTheSummaryHaveTheirMarks) {
    controller().saveSessionHistory(
        {{.sessionDate = time.now(),
          .goals = {{.text = u"done"_s, .status = GoalStatus::completed},
                    {.text = u"half"_s, .status = GoalStatus::partiallyCompleted},
                    {.text = u"not"_s, .status = GoalStatus::notCompleted},
                    {.text = u"open"_s}}}});
    view().appear();
    EXPECT_EQ(markBeside(u"1/4"_s), std::pair(u"minus.circle.fill"_s, SystemColors::orange));
    EXPECT_EQ(markBeside(u"done"_s), std::pair(u"checkmark.circle.fill"_s, SystemColors::green));
    EXPECT_EQ(markBeside(u"half"_s), std::pair(u"minus.circle.fill"_s, SystemColors::orange));
    EXPECT_EQ(markBeside(u"not"_s), std::pair(u"xmark.circle.fill"_s, SystemColors::red));
    EXPECT_EQ(markBeside(u"open"_s), std::pair(u"circle"_s, SystemColors::gray));
    EXPECT_EQ(markBeside(u"Your Reflection"_s),
              std::pair(u"note.text"_s, TARNEStyle::Colors::accent));
}

TEST_F(HistoryScreenTest, GroupsCountTheirEntries) {
    controller().saveSessionHistory({{.sessionDate = time.now()},
                                     {.sessionDate = time.now() - 60.0},
                                     {.sessionDate = time.now() - 86400.0}});
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

TEST_F(HistoryScreenTest, ALoadClosesTheCoachingTexts) {
    view().appear();
    const QString text = view().historyEntries()[0].motivation;
    ASSERT_TRUE(screen().click(u"Motivation"_s, QAccessible::Button));
    EXPECT_TRUE(screen().waitUntil([&] { return screen().has(text); }));
    view().loadHistoryEntries();
    screen().settle();
    EXPECT_TRUE(screen().has(u"Motivation"_s, QAccessible::Button));
    EXPECT_FALSE(screen().has(text));
}

TEST_F(HistoryScreenTest, ACoachingTextStaysOpenWhileItsCardIsScrolledAway) {
    std::vector<SessionHistoryEntry> entries;
    for (int i = 0; i < 60; ++i)
        entries.push_back({.sessionDate = time.now() - i * 60.0,
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

TEST_F(HistoryScreenTest, TheKeyboardReachesEveryCoachingTextAndOpensIt) {
    view().appear();
    screen().tab();
    EXPECT_EQ(screen().focusedName(), u"Session History"_s);
    for (const QString &title : {u"Overall Assessment"_s, u"Patterns Observed"_s, u"Suggestions"_s,
                                 u"Motivation"_s, u"Overall Assessment"_s}) {
        screen().tab();
        EXPECT_EQ(screen().focusedName(), title);
    }
    screen().key(Qt::Key_Space);
    EXPECT_TRUE(screen().waitUntil(
        [&] { return screen().has(view().historyEntries()[1].overallAssessment); }));
}

TEST_F(HistoryScreenTest, TheKeysAndTheWheelScroll) {
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

TEST_F(HistoryScreenTest, ADragFarPastTheTopLoadsAnew) {
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

TEST_F(HistoryScreenTest, ALoadKeepsThePlaceInALongList) {
    store(60);
    view().appear();
    list()->forceActiveFocus();
    screen().key(Qt::Key_PageDown);
    const double place = scrolledBy();
    controller().saveSessionToHistory({.goals = {{.text = u"new"_s}}, .endTime = time.now()});
    screen().settle();
    EXPECT_EQ(scrolledBy(), place);
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
    controller().saveSessionHistory(
        {{.sessionDate = time.now(), .goals = {{.text = u"goal"_s}}, .motivation = u"m"_s}});
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
                                      .reflection = u"<img src='x'>"_s}});
    view().appear();
    EXPECT_TRUE(screen().has(u"<b>bold</b>"_s));
    EXPECT_TRUE(screen().has(u"<img src='x'>"_s));
}

TEST_F(HistoryScreenTest, OnlyCardsInSightExist) {
    store(10000);
    view().appear();
    const QStringList names = screen().names();
    EXPECT_LT(names.count(u"Your Reflection"_s), 40);
    EXPECT_GT(names.count(u"Your Reflection"_s), 2);
}

TEST_F(HistoryScreenTest, AnEntryWithoutGoalsShowsItsDurationAndTheWordsForNoReflection) {
    store(1);
    view().appear();
    EXPECT_TRUE(screen().has(u"No reflection provided"_s));
    EXPECT_TRUE(screen().has(u"1 min"_s));
    EXPECT_FALSE(screen().has(u"0/0"_s));
}

TEST_F(HistoryScreenTest, TenThousandGoalsOfOneEntryAreAllOnItsCard) {
    SessionHistoryEntry entry{.sessionDate = time.now(), .duration = 60};
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

TEST_F(HistoryScreenTest, TextsOfAMegabyteAreShownAndScrolledThrough) {
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

TEST_F(HistoryScreenTest, ARightToLeftTextStandsBesideItsMark) {
    const QString text = u"كتابة التقرير"_s;
    controller().saveSessionHistory({{.sessionDate = time.now(), .goals = {{.text = text}}}});
    view().appear();
    const QQuickItem *const goal = screen().find(text);
    ASSERT_TRUE(goal);
    EXPECT_EQ(goal->property("effectiveHorizontalAlignment").toInt(), int(Qt::AlignLeft));
}
