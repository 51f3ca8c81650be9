#include "AnimationClock.h"
#include "ScheduleLook.h"
#include "ScheduleScreenFixture.h"

namespace tarne::test {
namespace {

using testing::ElementsAre;

/// Fonts, colours, symbols and places of the sheet, where it has its full height.
class TheAddGoalSheetsLook : public ScheduleScreenTest, public ScheduleLook {
protected:
    TheAddGoalSheetsLook() : ScheduleLook([this]() -> UiDriver & { return ui(); }) {
        m_size = QSize(900, 840);
        openSheet();
    }
    QRectF sheet() { return placeOf(*ui().find(u"New Goal"_s, QAccessible::Dialog)); }
    const QQuickItem &picker() { return *ui().find(u"10:00 AM"_s, QAccessible::Grouping); }
    /// The line under the goal's field.
    const QQuickItem &rule() {
        return *around(goalField(), "ruleHeight")->childItems().constLast();
    }
};

TEST_F(TheAddGoalSheetsLook, ItsTextsHaveTheirFontsAndColours) {
    using Type = TARNEStyle::Typography;
    for (const auto &[words, size, weight, hex] :
         std::vector<TextLook>{{u"New Goal"_s, 20, QFont::DemiBold, u"1F2937"_s},
                               {u"Schedule a focus session"_s, 14, QFont::Normal, u"6B7280"_s},
                               {u"Date"_s, 17, QFont::DemiBold, u"1F2937"_s},
                               {u"Time"_s, 17, QFont::DemiBold, u"1F2937"_s},
                               {u"Goal"_s, 17, QFont::DemiBold, u"1F2937"_s},
                               {u"Reminder"_s, 14, QFont::DemiBold, u"374151"_s},
                               {u"1 hour before"_s, 13, QFont::Normal, u"6B7280"_s}})
        expectText(words, Type::system(size, weight), color(hex));
    expectTextOfButton(u"Cancel"_s, Type::system(16, QFont::DemiBold), color(u"6B7280"_s));
    expectTextOfButton(u"Schedule Goal"_s, Type::system(16, QFont::DemiBold), Qt::white);
    const QQuickItem *const field = goalField();
    EXPECT_EQ(field->property("font").value<QFont>().pixelSize(), 16);
    EXPECT_EQ(field->property("font").value<QFont>().weight(), QFont::Normal);
    EXPECT_EQ(field->property("color").value<QColor>(), color(u"1F2937"_s));
}

TEST_F(TheAddGoalSheetsLook, ItsSymbolsHaveTheirSizesWeightsAndColours) {
    for (const auto &[section, symbol] :
         {std::pair(u"Date"_s, u"calendar"_s), std::pair(u"Time"_s, u"clock"_s),
          std::pair(u"Goal"_s, u"target"_s)}) {
        EXPECT_EQ(mark(section), (SymbolLook{symbol, 16, color(u"4F46E5"_s), QFont::DemiBold}));
        const QQuickItem &disc = *symbolBeside(&text(section))->parentItem();
        EXPECT_EQ(disc.size(), QSizeF(32, 32));
        EXPECT_EQ(groundOf(disc), std::pair(pale(u"4F46E5"_s, 0.1F), 16.0));
        EXPECT_EQ(place(section).left(), placeOf(disc).right() + 10);
    }
    EXPECT_EQ(mark(u"Reminder"_s),
              (SymbolLook{u"bell.fill"_s, 14, color(u"F59E0B"_s), QFont::Medium}));
    EXPECT_THAT(marksOf(u"Close"_s),
                ElementsAre(SymbolLook{u"xmark"_s, 16, color(u"6B7280"_s), QFont::Medium}));
    EXPECT_THAT(marksOf(u"Schedule Goal"_s), testing::IsEmpty());
    ui().type(u"a"_s);
    EXPECT_THAT(marksOf(u"Schedule Goal"_s),
                ElementsAre(SymbolLook{u"calendar.badge.plus"_s, 14, Qt::white, QFont::DemiBold}));
}

TEST_F(TheAddGoalSheetsLook, ItsGroundIsPaleAndItsHeadAndFootAreWhiteWithARule) {
    EXPECT_EQ(ui().find(u"New Goal"_s, QAccessible::Dialog)->property("color").value<QColor>(),
              color(u"FAFAFA"_s));
    const double head = place(u"Schedule a focus session"_s).bottom() + 20;
    const double foot = place(u"Cancel"_s).top() - 24;
    const int x = int(sheet().center().x());
    const QColor rule = color(u"E5E7EB"_s);
    EXPECT_EQ(colorAt(x, int(head) - 2), QColor(Qt::white));
    EXPECT_EQ(colorAt(x, int(head) - 1), rule);
    EXPECT_EQ(colorAt(int(sheet().left()) + 3, int(head) + 1), color(u"FAFAFA"_s));
    EXPECT_EQ(colorAt(x, int(foot)), rule);
    EXPECT_EQ(colorAt(x, int(foot) + 1), QColor(Qt::white));
}

TEST_F(TheAddGoalSheetsLook, ItsHeadHoldsTheTitleAndTheSameCloseButtonAsTheScreen) {
    expectCloseButton(u"Close"_s);
    EXPECT_EQ(place(u"New Goal"_s).topLeft(), sheet().topLeft() + QPointF(24, 20));
    EXPECT_EQ(place(u"Schedule a focus session"_s).topLeft(),
              place(u"New Goal"_s).bottomLeft() + QPointF(0, 4));
    EXPECT_EQ(place(u"Close"_s).right(), sheet().right() - 24);
}

TEST_F(TheAddGoalSheetsLook, ItsSectionsStandApartAsTold) {
    const double left = sheet().left() + 24 + 24;
    const auto disc = [this](const QString &section) {
        return placeOf(*symbolBeside(&text(section))->parentItem());
    };
    for (const QString &section : {u"Date"_s, u"Time"_s, u"Goal"_s})
        EXPECT_EQ(disc(section).left(), left) << qPrintable(section);
    const QQuickItem *const month = ui().find(u"March 2026"_s, QAccessible::Grouping);
    ASSERT_TRUE(month);
    EXPECT_EQ(placeOf(*month).topLeft(), QPointF(left + 12, disc(u"Date"_s).bottom() + 24));
    EXPECT_EQ(placeOf(*month).right(), sheet().right() - 24 - 24 - 12);
    EXPECT_EQ(month->property("accent").value<QColor>(), color(u"4F46E5"_s));
    EXPECT_EQ(disc(u"Time"_s).top(), placeOf(*month).bottom() + 28 + 24 + 28);
    const QRectF note = placeOf(*rectangleAround(&text(u"Reminder"_s)));
    EXPECT_EQ(disc(u"Goal"_s).top(), note.bottom() + 28 + 24 + 28);
    EXPECT_EQ(placeOf(*goalField()).topLeft(), QPointF(left + 4, disc(u"Goal"_s).bottom() + 24));
    EXPECT_EQ(goalField()->property("topPadding"), 16);
    EXPECT_EQ(goalField()->property("bottomPadding"), 16);
}

TEST_F(TheAddGoalSheetsLook, ItsBodyHasRoomAboveItsFirstSectionAndBelowItsLast) {
    const double head = place(u"Schedule a focus session"_s).bottom() + 20;
    EXPECT_EQ(placeOf(*symbolBeside(&text(u"Date"_s))->parentItem()).top(), head + 24 + 28);
    const QQuickItem &rule = this->rule();
    EXPECT_TRUE(ui().waitUntil([&] { return rule.height() == 2; }));
    const QQuickItem &body = *around(&text(u"Goal"_s), "contentY");
    const auto *const content = body.property("contentItem").value<QQuickItem *>();
    ASSERT_TRUE(content);
    EXPECT_EQ(body.property("contentHeight").toDouble(),
              placeOf(rule).bottom() - placeOf(*content).top() + 28 + 24);
}

TEST_F(TheAddGoalSheetsLook, TheTimeStandsAtTheLeftAndTheFixedNoteAtTheRight) {
    const double left = sheet().left() + 24 + 24;
    EXPECT_EQ(placeOf(picker()).left(), left);
    EXPECT_EQ(picker().scale(), 1.05);
    EXPECT_EQ(picker().property("accent").value<QColor>(), color(u"4F46E5"_s));
    const QQuickItem &note = *rectangleAround(&text(u"Reminder"_s));
    EXPECT_EQ(groundOf(note), std::pair(color(u"FEF3C7"_s), 8.0));
    const QRectF frame = placeOf(note);
    EXPECT_EQ(frame.right(), sheet().right() - 24 - 24);
    EXPECT_EQ(place(u"Reminder"_s).topRight(), frame.topRight() + QPointF(-12, 8));
    EXPECT_EQ(place(u"1 hour before"_s).topRight(),
              place(u"Reminder"_s).bottomRight() + QPointF(0, 6));
    EXPECT_EQ(place(u"1 hour before"_s).bottom(), frame.bottom() - 8);
    const QRectF bell = placeOf(*symbolBeside(&text(u"Reminder"_s)));
    EXPECT_EQ(place(u"Reminder"_s).left(), bell.right() + 6);
}

TEST_F(TheAddGoalSheetsLook, ItsTwoButtonsFillTheFoot) {
    const QRectF cancel = place(u"Cancel"_s);
    const QRectF schedule = place(u"Schedule Goal"_s);
    EXPECT_EQ(cancel.left(), sheet().left() + 24);
    EXPECT_EQ(schedule.left(), cancel.right() + 16);
    EXPECT_EQ(schedule.right(), sheet().right() - 24);
    EXPECT_EQ(cancel.size(), schedule.size());
    EXPECT_EQ(cancel.height(), 48);
    EXPECT_EQ(cancel.bottom(), sheet().bottom() - 24);
    const QQuickItem &ground = background(u"Cancel"_s);
    EXPECT_EQ(groundOf(ground), std::pair(color(u"F9FAFB"_s), 12.0));
    EXPECT_EQ(ground.property("outlineColor").value<QColor>(), color(u"E5E7EB"_s));
    EXPECT_EQ(ground.property("outlineWidth"), 1.5);
}

TEST_F(TheAddGoalSheetsLook, TheScheduleButtonGetsItsGradientAndShadowInAFifthOfASecond) {
    const auto shown = [this] {
        const auto items = background(u"Schedule Goal"_s).childItems();
        return std::pair(items.constFirst()->opacity(), items.constLast()->opacity());
    };
    EXPECT_EQ(shown(), std::pair(0.0, 0.0));
    ui().type(u"a"_s);
    EXPECT_LT(shown().first, 1);
    EXPECT_LT(shown().second, 1);
    for (const QQuickItem *item : {background(u"Schedule Goal"_s).childItems().constFirst(),
                                   background(u"Schedule Goal"_s).childItems().constLast()}) {
        const auto [duration, easing] = animationOf(*item);
        EXPECT_EQ(duration, 200);
        EXPECT_NEAR(easing.valueForProgress(0.25), 0.129, 0.01); // In and out.
    }
    EXPECT_TRUE(ui().waitUntil([&] { return shown() == std::pair(1.0, 1.0); }));
    expectGradient(u"Schedule Goal"_s, 12);
}

TEST_F(TheAddGoalSheetsLook, TheScheduleButtonsTextMakesRoomForItsSymbolWhichFadesBothWays) {
    test::AnimationClock animations;
    const auto left = [this] { return place(textOfButton(u"Schedule Goal"_s)).left(); };
    const auto symbol = [this] { return symbolsIn(&button(u"Schedule Goal"_s)); };
    const auto pass = [&](int milliseconds) {
        animations.pass(milliseconds);
        (void)ui().picture();
    };
    const double alone = left();
    ui().type(u"a"_s);
    (void)ui().picture();
    EXPECT_NEAR(left(), alone, 0.5) << "in the first frame";
    pass(100);
    EXPECT_NEAR(left(), alone + 5.5, 1);
    ASSERT_EQ(symbol().size(), 1U);
    EXPECT_NEAR(symbol().front()->opacity(), 0.5, 0.05);
    pass(100);
    EXPECT_NEAR(left(), alone + 11, 0.5);
    EXPECT_EQ(symbol().front()->opacity(), 1);
    EXPECT_EQ(left(), placeOf(*symbol().front()).right() + 8);
    ui().key(Qt::Key_Backspace);
    (void)ui().picture();
    EXPECT_NEAR(left(), alone + 11, 0.5) << "in the first frame back";
    ASSERT_EQ(symbol().size(), 1U);
    pass(100);
    ASSERT_EQ(symbol().size(), 1U);
    EXPECT_NEAR(symbol().front()->opacity(), 0.5, 0.05);
    pass(100);
    EXPECT_EQ(symbol().size(), 0U);
    EXPECT_NEAR(left(), alone, 0.5);
}

TEST_F(TheAddGoalSheetsLook, TheRuleUnderTheFieldChangesInAFifthOfASecond) {
    const QQuickItem &rule = this->rule();
    EXPECT_TRUE(ui().waitUntil([&] { return rule.height() == 2; }));
    EXPECT_EQ(rule.property("color").value<QColor>(), color(u"4F46E5"_s));
    ui().tab();
    EXPECT_GT(rule.height(), 1);
    EXPECT_NE(rule.property("color").value<QColor>(), color(u"E1E5E9"_s));
    const auto animations = animationsOf(rule);
    EXPECT_EQ(animations.size(), 2U) << "of its height and of its colour";
    for (const auto &[duration, easing] : animations) {
        EXPECT_EQ(duration, 200);
        EXPECT_NEAR(easing.valueForProgress(0.25), 0.129, 0.01); // In and out.
        EXPECT_NEAR(easing.valueForProgress(0.75), 0.871, 0.01);
    }
    EXPECT_TRUE(ui().waitUntil([&] {
        return rule.height() == 1 && rule.property("color").value<QColor>() == color(u"E1E5E9"_s);
    }));
}

} // namespace
} // namespace tarne::test
