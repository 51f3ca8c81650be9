#include "AnimationClock.h"
#include "HistoryScreenFixture.h"
#include "ItemLook.h"
#include "TARNEStyle.h"
#include "TextLook.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace tarne;
using namespace Qt::StringLiterals;
using test::expectLook;
using test::lookOf;
using test::markBeside;
using test::SymbolLook;
using testing::ElementsAre;

namespace {

/// The screen over three sessions: two of today, the later with everything that a card can have,
/// the earlier with nothing, and one of yesterday.
class HistoryLook : public test::HistoryScreenTest {
protected:
    const QColor label = SystemColors::label;
    const QColor secondary = SystemColors::secondaryLabel;
    const QColor accent = TARNEStyle::Colors::accent;

    void showSessions() {
        controller().saveSessionHistory(
            {{.sessionDate = time.now(),
              .goals = {{.text = u"done"_s, .status = GoalStatus::completed},
                        {.text = u"half"_s, .status = GoalStatus::partiallyCompleted},
                        {.text = u"not"_s, .status = GoalStatus::notCompleted},
                        {.text = u"open"_s}},
              .duration = 1500,
              .overallAssessment = u"assessment"_s,
              .patternsObserved = u"patterns"_s,
              .suggestions = u"suggested"_s,
              .motivation = u"motive"_s,
              .reflection = u"my words"_s},
             {.sessionDate = time.now() - 60.0, .goals = {}, .duration = 120},
             {.sessionDate = time.now() - 86400.0, .goals = {}, .duration = 180}});
        view().appear();
        (void)screen(QSize(900, 1000)).picture();
    }
    const QQuickItem &text(const QString &name) {
        const QQuickItem *const found = screen().findText(name);
        EXPECT_TRUE(found) << qPrintable(name);
        return found ? *found : *screen().root();
    }
    QRectF placeOf(const QString &name) { return test::placeOf(text(name)); }
    /// The card that a text stands on.
    const QQuickItem &cardOf(const QString &name) {
        return *test::around(&text(name), "cornerRadius");
    }
    std::vector<SymbolLook> marksOf(const QString &button) {
        return test::looksOf(test::symbolsIn(screen().find(button, QAccessible::Button)));
    }
};

} // namespace

TEST_F(HistoryLook, TheEmptyMomentHasItsLook) {
    using Type = TARNEStyle::Typography;
    expectLook(screen(), u"Session History"_s, Type::heading1(), TARNEStyle::Colors::primaryText);
    expectLook(screen(), u"Your personal thoughts and reflections over time"_s, Type::body(),
               TARNEStyle::Colors::secondaryText);
    expectLook(screen(), u"No session history yet"_s, Type::system(15, QFont::Medium),
               SystemColors::label);
    expectLook(screen(), u"Complete your first focus session to see your feedback history here"_s,
               Type::system(13), SystemColors::secondaryLabel);
}

TEST_F(HistoryLook, TheHeadStandsAtTheTopAndTheFirstGroupBelowIt) {
    EXPECT_NEAR(test::placeOf(*screen().find(u"Your personal thoughts and reflections over time"_s))
                    .center()
                    .x(),
                450, 1);
    view().appear();
    screen().settle();
    const QRectF head = test::placeOf(*screen().find(u"Session History"_s, QAccessible::Heading));
    EXPECT_EQ(head.top(), 16);
    const QRectF group = placeOf(u"Today"_s);
    EXPECT_GT(group.top(), head.bottom());
    EXPECT_LT(group.top(), 150);
}

TEST_F(HistoryLook, TheEmptyMomentHasItsSymbolAndItsSpaces) {
    QColor pale = secondary;
    pale.setAlphaF(pale.alphaF() * 0.6F);
    const QString title = u"No session history yet"_s;
    EXPECT_EQ(markBeside(&text(title)), (SymbolLook{u"book.closed"_s, 48, pale}));
    const QRectF book = test::placeOf(*test::symbolBeside(&text(title)));
    EXPECT_EQ(book.center().x(), 450);
    EXPECT_EQ(book.top(),
              placeOf(u"Your personal thoughts and reflections over time"_s).bottom() + 24 + 24);
    EXPECT_EQ(placeOf(title).top(), book.bottom() + 20);
    EXPECT_EQ(
        placeOf(u"Complete your first focus session to see your feedback history here"_s).top(),
        placeOf(title).bottom() + 8);
}

TEST_F(HistoryLook, ItLiesOnTheBackground) {
    EXPECT_EQ(screen().root()->property("color").value<QColor>(), TARNEStyle::Colors::background);
}

TEST_F(HistoryLook, TheHeadsLinesAndTheFirstGroupStandApart) {
    showSessions();
    const QRectF title = placeOf(u"Session History"_s);
    const QRectF subtitle = placeOf(u"Your personal thoughts and reflections over time"_s);
    EXPECT_EQ(title.top(), 16);
    EXPECT_EQ(subtitle.top(), title.bottom() + 8);
    EXPECT_EQ(placeOf(u"Today"_s).top(), subtitle.bottom() + 24);
}

TEST_F(HistoryLook, EveryTextOfACardHasItsFontAndColour) {
    showSessions();
    using Type = TARNEStyle::Typography;
    expectLook(screen(), u"Today"_s, Type::system(15, QFont::DemiBold), label);
    expectLook(screen(), u"2 entries"_s, Type::system(10), secondary);
    expectLook(screen(), u"12:00 PM"_s, Type::system(10), secondary);
    expectLook(screen(), u"1/4"_s, Type::system(10, QFont::Medium), secondary);
    expectLook(screen(), u"done"_s, Type::system(14), label);
    for (const QString &title : {u"Overall Assessment"_s, u"Patterns Observed"_s, u"Suggestions"_s,
                                 u"Motivation"_s, u"Your Reflection"_s})
        expectLook(screen(), title, Type::system(13, QFont::Medium), label);
    expectLook(screen(), u"my words"_s, Type::system(13), label);
    expectLook(screen(), u"No reflection provided"_s, Type::system(13), secondary);
    expectLook(screen(), u"25 min"_s, Type::system(10), secondary);
    ASSERT_TRUE(screen().click(u"Suggestions"_s, QAccessible::Button));
    expectLook(screen(), u"suggested"_s, Type::system(13), label);
    for (const QString &several : {u"suggested"_s, u"my words"_s, u"No reflection provided"_s})
        EXPECT_EQ(text(several).property("lineSpacing"), 2) << qPrintable(several);
}

TEST_F(HistoryLook, GoalsTheSummaryAndTheReflectionHaveTheirMarks) {
    showSessions();
    const auto mark = [this](const QString &name) { return markBeside(&text(name)); };
    constexpr int medium = QFont::Medium;
    EXPECT_EQ(mark(u"1/4"_s), (SymbolLook{u"minus.circle.fill"_s, 12, SystemColors::orange}));
    EXPECT_EQ(mark(u"done"_s),
              (SymbolLook{u"checkmark.circle.fill"_s, 12, SystemColors::green, medium}));
    EXPECT_EQ(mark(u"half"_s),
              (SymbolLook{u"minus.circle.fill"_s, 12, SystemColors::orange, medium}));
    EXPECT_EQ(mark(u"not"_s), (SymbolLook{u"xmark.circle.fill"_s, 12, SystemColors::red, medium}));
    EXPECT_EQ(mark(u"open"_s), (SymbolLook{u"circle"_s, 12, SystemColors::gray, medium}));
    EXPECT_EQ(mark(u"Your Reflection"_s), (SymbolLook{u"note.text"_s, 12, accent, medium}));
}

TEST_F(HistoryLook, EveryCoachingTextHasItsIconAndAChevronThatTurns) {
    showSessions();
    constexpr int medium = QFont::Medium;
    const SymbolLook down{u"chevron.down"_s, 10, secondary, medium};
    const SymbolLook up{u"chevron.up"_s, 10, secondary, medium};
    for (const auto &[title, symbol] : {std::pair(u"Overall Assessment"_s, u"chart.bar.fill"_s),
                                        std::pair(u"Patterns Observed"_s, u"magnifyingglass"_s),
                                        std::pair(u"Suggestions"_s, u"lightbulb.fill"_s),
                                        std::pair(u"Motivation"_s, u"heart.fill"_s)}) {
        const SymbolLook icon{symbol, 12, accent, medium};
        EXPECT_THAT(marksOf(title), ElementsAre(icon, down)) << qPrintable(title);
        ASSERT_TRUE(screen().click(title, QAccessible::Button));
        EXPECT_THAT(marksOf(title), ElementsAre(icon, up)) << qPrintable(title);
        ASSERT_TRUE(screen().click(title, QAccessible::Button));
        EXPECT_THAT(marksOf(title), ElementsAre(icon, down)) << qPrintable(title);
    }
}

TEST_F(HistoryLook, ACoachingTextFadesInAndMovesFromTheTopInAFifthOfASecond) {
    showSessions();
    ASSERT_TRUE(screen().click(u"Motivation"_s, QAccessible::Button));
    const QQuickItem &content = *text(u"motive"_s).parentItem()->parentItem();
    const QQuickItem &frame = *content.parentItem();
    EXPECT_LT(content.opacity(), 1);
    EXPECT_LT(content.y(), 8);
    EXPECT_TRUE(frame.clip());
    const auto [duration, easing] = test::animationOf(frame);
    EXPECT_EQ(duration, 200);
    EXPECT_NEAR(easing.valueForProgress(0.25), 0.129, 0.01); // In and out
    EXPECT_NEAR(easing.valueForProgress(0.75), 0.871, 0.01);
    EXPECT_TRUE(screen().waitUntil([&] { return content.opacity() == 1 && content.y() == 8; }));
    const QRectF button = test::placeOf(*screen().find(u"Motivation"_s, QAccessible::Button));
    EXPECT_EQ(placeOf(u"motive"_s).topLeft(), QPointF(56, button.bottom() + 8));
    ASSERT_TRUE(screen().click(u"Motivation"_s, QAccessible::Button));
    EXPECT_TRUE(screen().has(u"motive"_s));
    EXPECT_TRUE(screen().waitUntil([&] { return !screen().has(u"motive"_s); }));
}

TEST_F(HistoryLook, ACoachingTextMakesRoomForItselfWithoutAJump) {
    showSessions();
    test::AnimationClock animations;
    const auto below = [this] { return placeOf(u"Your Reflection"_s).top(); };
    const double closed = below();
    ASSERT_TRUE(screen().click(u"Motivation"_s, QAccessible::Button));
    (void)screen().picture();
    EXPECT_EQ(below(), closed) << "in the first frame";
    const double whole = 8 + text(u"motive"_s).height();
    animations.pass(100);
    (void)screen().picture();
    EXPECT_NEAR(below(), closed + whole / 2, 1);
    animations.pass(100);
    (void)screen().picture();
    EXPECT_EQ(below(), closed + whole);
    ASSERT_TRUE(screen().click(u"Motivation"_s, QAccessible::Button));
    (void)screen().picture();
    EXPECT_EQ(below(), closed + whole) << "in the first frame back";
    animations.pass(200);
    (void)screen().picture();
    EXPECT_EQ(below(), closed);
}

TEST_F(HistoryLook, ACoachingTextsRowIsAsHighAsItsTitleAsTheReflectionsIs) {
    showSessions();
    EXPECT_EQ(screen().find(u"Motivation"_s, QAccessible::Button)->height(), 16);
    EXPECT_EQ(text(u"Your Reflection"_s).height(), 16);
}

TEST_F(HistoryLook, ACardLiesOnARoundedGroundWithAThinOutline) {
    showSessions();
    const QQuickItem &card = cardOf(u"12:00 PM"_s);
    QColor outline = SystemColors::separator;
    outline.setAlphaF(outline.alphaF() * 0.3F);
    EXPECT_EQ(card.property("color").value<QColor>(), SystemColors::controlBackground);
    EXPECT_EQ(card.property("cornerRadius"), 12);
    EXPECT_EQ(card.property("shadowRadius"), 0);
    EXPECT_EQ(card.property("outlineColor").value<QColor>().name(QColor::HexArgb),
              outline.name(QColor::HexArgb));
    EXPECT_EQ(card.property("outlineWidth"), 1);
    const QPoint edge = card.mapToScene(QPointF(0, 100)).toPoint();
    const QImage picture = screen().picture();
    EXPECT_LT(picture.pixelColor(edge).lightness(), 248);
    EXPECT_EQ(picture.pixelColor(edge + QPoint(1, 0)), SystemColors::controlBackground);
}

TEST_F(HistoryLook, GroupsAndTheirCardsStandApartAsTold) {
    showSessions();
    const QRectF full = test::placeOf(cardOf(u"12:00 PM"_s));
    const QRectF bare = test::placeOf(cardOf(u"11:59 AM"_s));
    EXPECT_EQ(full.left(), 16);
    EXPECT_EQ(full.right(), 884);
    EXPECT_EQ(placeOf(u"Today"_s).left(), 20);
    EXPECT_EQ(placeOf(u"2 entries"_s).right(), 880);
    EXPECT_EQ(full.top(), placeOf(u"Today"_s).bottom() + 16);
    EXPECT_EQ(bare.top(), full.bottom() + 12);
    EXPECT_EQ(placeOf(u"Yesterday"_s).top(), bare.bottom() + 24);
}

TEST_F(HistoryLook, TheRowsOfACardStandApartAsTold) {
    showSessions();
    const QRectF card = test::placeOf(cardOf(u"12:00 PM"_s));
    const auto button = [this](const QString &name) {
        return test::placeOf(*screen().find(name, QAccessible::Button));
    };
    EXPECT_EQ(placeOf(u"12:00 PM"_s).topLeft(), card.topLeft() + QPointF(16, 16));
    EXPECT_EQ(placeOf(u"1/4"_s).right(), card.right() - 16);
    EXPECT_EQ(
        placeOf(u"1/4"_s).left() - test::placeOf(*test::symbolBeside(&text(u"1/4"_s))).right(), 4);
    EXPECT_EQ(placeOf(u"done"_s).top(), placeOf(u"12:00 PM"_s).bottom() + 16);
    EXPECT_EQ(placeOf(u"half"_s).top(), placeOf(u"done"_s).bottom() + 8);
    EXPECT_EQ(button(u"Overall Assessment"_s).top(), placeOf(u"open"_s).bottom() + 16);
    EXPECT_EQ(button(u"Patterns Observed"_s).top(), button(u"Overall Assessment"_s).bottom() + 12);
    EXPECT_EQ(placeOf(u"Your Reflection"_s).top(), button(u"Motivation"_s).bottom() + 12);
    EXPECT_EQ(placeOf(u"my words"_s).top(), placeOf(u"Your Reflection"_s).bottom() + 8);
    EXPECT_EQ(placeOf(u"25 min"_s).top(), placeOf(u"my words"_s).bottom() + 16);
    EXPECT_EQ(placeOf(u"25 min"_s).bottomRight(), card.bottomRight() - QPointF(16, 16));
}

TEST_F(HistoryLook, TheEmptyGoalsOfACardStandApartOnBothSides) {
    controller().saveSessionHistory(
        {{.sessionDate = time.now(), .goals = {}, .duration = 120, .motivation = u"motive"_s},
         {.sessionDate = time.now() - 60.0, .goals = {}, .duration = 180}});
    view().appear();
    (void)screen().picture();
    const QRectF coached = test::placeOf(cardOf(u"12:00 PM"_s));
    EXPECT_EQ(placeOf(u"12:00 PM"_s).topLeft(), coached.topLeft() + QPointF(16, 16));
    EXPECT_EQ(test::placeOf(*screen().find(u"Motivation"_s, QAccessible::Button)).top(),
              placeOf(u"12:00 PM"_s).bottom() + 16 + 16);
    EXPECT_EQ(placeOf(u"2 min"_s).bottomRight(), coached.bottomRight() - QPointF(16, 16));
    const QRectF bare = test::placeOf(cardOf(u"11:59 AM"_s));
    EXPECT_EQ(placeOf(u"11:59 AM"_s).topLeft(), bare.topLeft() + QPointF(16, 16));
    const QQuickItem &words = *test::around(&text(u"3 min"_s), "cornerRadius");
    EXPECT_EQ(&words, &cardOf(u"11:59 AM"_s));
    EXPECT_EQ(placeOf(u"3 min"_s).bottomRight(), bare.bottomRight() - QPointF(16, 16));
    // Head, empty goals, the reflection's title and text, and foot.
    EXPECT_EQ(placeOf(u"3 min"_s).top() - placeOf(u"11:59 AM"_s).bottom(),
              16 + 16 + (16 + 8 + placeOf(u"No reflection provided"_s).height()) + 16);
}

TEST_F(HistoryLook, IconsStandInFramesOf16AndTheirTexts8Behind) {
    showSessions();
    const double left = test::placeOf(cardOf(u"12:00 PM"_s)).left() + 16;
    for (const QString &name : {u"done"_s, u"Suggestions"_s, u"Your Reflection"_s}) {
        EXPECT_EQ(test::placeOf(*test::symbolBeside(&text(name))).center().x(), left + 8)
            << qPrintable(name);
        EXPECT_EQ(placeOf(name).left(), left + 24) << qPrintable(name);
    }
    EXPECT_EQ(placeOf(u"my words"_s).left(), left + 24);
    const auto marks = test::symbolsIn(screen().find(u"Suggestions"_s, QAccessible::Button));
    EXPECT_EQ(test::placeOf(*marks.back()).right(), placeOf(u"25 min"_s).right());
}

TEST_F(HistoryLook, LoadMoreIsABorderedButtonWithRoomAboveAndBelow) {
    store(10);
    view().appear();
    list()->forceActiveFocus();
    screen().key(Qt::Key_End);
    (void)screen().picture();
    const QQuickItem *const more = screen().find(u"Load More"_s, QAccessible::Button);
    ASSERT_TRUE(more);
    EXPECT_EQ(more->property("isProminent"), false);
    const QRectF place = test::placeOf(*more);
    EXPECT_NEAR(place.center().x(), 450, 0.5);
    EXPECT_EQ(place.bottom(), 700 - 20 - 16);
    double lowest = 0;
    for (const QQuickItem *row :
         list()->property("contentItem").value<QQuickItem *>()->childItems()) {
        const QVariant card = row->property("sectionLabel");
        if (card.isValid() && row->isVisible())
            lowest = std::max(lowest, test::placeOf(*row).bottom());
    }
    EXPECT_EQ(place.top(), lowest + 20); // The last row ends 24 below its card.
}

TEST_F(HistoryLook, ARightToLeftTextStandsBesideItsMark) {
    const QString text = u"كتابة التقرير"_s;
    controller().saveSessionHistory(
        {{.sessionDate = time.now(), .goals = {{.text = text}}, .duration = 0}});
    view().appear();
    const QQuickItem *const goal = screen().find(text);
    ASSERT_TRUE(goal);
    EXPECT_EQ(goal->property("effectiveHorizontalAlignment").toInt(), int(Qt::AlignLeft));
}
