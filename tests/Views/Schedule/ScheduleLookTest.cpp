#include "ScheduleLook.h"
#include "ItemLook.h"
#include "ScheduleScreenFixture.h"

namespace tarne::test {
namespace {

using testing::ElementsAre;

/// Fonts, colours, symbols and places of the screen.
class TheScheduleScreensLook : public ScheduleScreenTest, public ScheduleLook {
protected:
    TheScheduleScreensLook() : ScheduleLook([this]() -> UiDriver & { return ui(); }) {}

    /// One open goal at 2 PM and a completed one at 4 PM.
    void addGoals() {
        add(2, 14, u"Write"_s);
        add(2, 16, u"Read"_s);
        click(u"Mark as done: Read"_s, QAccessible::Button);
    }
    /// What animates a property of the item itself; null where nothing does.
    static QObject *behaviorOf(const QQuickItem &item) {
        for (QObject *child : item.children()) {
            if (child->inherits("QQuickBehavior"))
                return child;
        }
        return nullptr;
    }
    /// The row of a counter.
    const QQuickItem &counter(const QString &label) { return *around(&text(label), "icon"); }
};

TEST_F(TheScheduleScreensLook, ItsTextsHaveTheirFontsAndColours) {
    addGoals();
    using Type = TARNEStyle::Typography;
    expectText(u"Schedule"_s, Type::heading1(), TARNEStyle::Colors::primaryText);
    expectText(u"Plan your focus sessions"_s, Type::body(), TARNEStyle::Colors::secondaryText);
    for (const auto &[words, size, weight, hex] :
         std::vector<TextLook>{{u"Calendar"_s, 18, QFont::DemiBold, u"1F2937"_s},
                               {u"Overview"_s, 16, QFont::DemiBold, u"1F2937"_s},
                               {u"Today's Goals"_s, 14, QFont::Medium, u"374151"_s},
                               {u"Upcoming"_s, 14, QFont::Medium, u"374151"_s},
                               {u"2 scheduled"_s, 12, QFont::Normal, u"6B7280"_s},
                               {u"1 scheduled"_s, 12, QFont::Normal, u"6B7280"_s},
                               {u"2"_s, 18, QFont::Bold, u"059669"_s}, // Today's.
                               {u"1"_s, 18, QFont::Bold, u"DC2626"_s}, // Upcoming.
                               {u"March 2, 2026"_s, 20, QFont::DemiBold, u"1F2937"_s},
                               {u"2 goals scheduled"_s, 14, QFont::Normal, u"6B7280"_s},
                               {u"2:00 PM"_s, 14, QFont::Medium, u"1F2937"_s},
                               {u"1h before"_s, 12, QFont::Normal, u"6B7280"_s},
                               {u"Write"_s, 16, QFont::Normal, u"1F2937"_s},
                               {u"Read"_s, 16, QFont::Normal, u"6B7280"_s},
                               {u"Reminder set"_s, 12, QFont::Normal, u"6B7280"_s}})
        expectText(words, Type::system(size, weight), color(hex));
    expectTextOfButton(u"New Goal"_s, Type::system(15, QFont::DemiBold), Qt::white);
}

TEST_F(TheScheduleScreensLook, ItsSymbolsHaveTheirSizesWeightsAndColours) {
    addGoals();
    const QColor indigo = color(u"4F46E5"_s);
    constexpr int medium = QFont::Medium;
    EXPECT_EQ(mark(u"Calendar"_s), (SymbolLook{u"calendar"_s, 16, indigo, medium}));
    EXPECT_EQ(mark(u"Overview"_s), (SymbolLook{u"chart.bar.fill"_s, 16, indigo, medium}));
    EXPECT_EQ(mark(u"Today's Goals"_s),
              (SymbolLook{u"calendar.badge.clock"_s, 16, color(u"059669"_s), medium}));
    EXPECT_EQ(mark(u"Upcoming"_s),
              (SymbolLook{u"clock.arrow.circlepath"_s, 16, color(u"DC2626"_s), medium}));
    EXPECT_EQ(mark(u"Reminder set"_s), (SymbolLook{u"bell.fill"_s, 12, color(u"F59E0B"_s)}));
    EXPECT_THAT(marksOf(u"New Goal"_s),
                ElementsAre(SymbolLook{u"plus"_s, 14, Qt::white, QFont::DemiBold}));
    EXPECT_THAT(marksOf(u"Close schedule"_s),
                ElementsAre(SymbolLook{u"xmark"_s, 16, color(u"6B7280"_s), medium}));
    EXPECT_THAT(marksOf(u"Mark as done: Write"_s),
                ElementsAre(SymbolLook{u"circle"_s, 20, color(u"D1D5DB"_s)}));
    EXPECT_THAT(marksOf(u"Mark as open: Read"_s),
                ElementsAre(SymbolLook{u"checkmark.circle.fill"_s, 20, color(u"059669"_s)}));
    EXPECT_THAT(marksOf(u"Delete Write"_s),
                ElementsAre(SymbolLook{u"trash"_s, 14, color(u"DC2626"_s)}));
}

TEST_F(TheScheduleScreensLook, AnEmptyDayHasItsSymbolItsTextsAndItsButton) {
    using Type = TARNEStyle::Typography;
    const QString title = u"No goals scheduled"_s;
    const QString line = u"Add your first goal to get started with focused work sessions"_s;
    expectText(title, Type::system(18, QFont::Medium), color(u"1F2937"_s));
    expectText(line, Type::system(14), color(u"6B7280"_s));
    expectTextOfButton(u"Add Goal"_s, Type::system(15, QFont::DemiBold), Qt::white);
    EXPECT_EQ(mark(title), (SymbolLook{u"calendar.badge.plus"_s, 48, color(u"D1D5DB"_s)}));
    EXPECT_THAT(marksOf(u"Add Goal"_s),
                ElementsAre(SymbolLook{u"plus"_s, 14, Qt::white, QFont::DemiBold}));
    const QRectF symbol = placeOf(*symbolBeside(&text(title)));
    EXPECT_EQ(symbol.top(), place(u"0 goals scheduled"_s).bottom() + 20 + 60);
    EXPECT_EQ(place(title).top(), symbol.bottom() + 16);
    EXPECT_EQ(place(line).top(), place(title).bottom() + 8);
    EXPECT_EQ(place(u"Add Goal"_s).top(), place(line).bottom() + 16);
    EXPECT_NEAR(place(u"Add Goal"_s).center().x(), (421 + 900) / 2.0, 1);
}

TEST_F(TheScheduleScreensLook, AnEmptyDayHasRoomBelowItsButtonToo) {
    constexpr int lowHeight = 400;
    m_size.setHeight(lowHeight);
    const QQuickItem *const list = around(&text(u"No goals scheduled"_s), "atYEnd");
    const QQuickItem &addGoal = button(u"Add Goal"_s);
    ASSERT_TRUE(list);
    ASSERT_FALSE(list->property("atYEnd").toBool());
    EXPECT_TRUE(ui().waitUntil([&] {
        ui().wheel(placeOf(*list).center(), -120);
        return list->property("atYEnd").toBool();
    }));
    EXPECT_NEAR(placeOf(addGoal).bottom(), lowHeight - 60, 0.5);
}

TEST_F(TheScheduleScreensLook, TheKeyboardBringsAnEmptyDaysButtonIntoView) {
    m_size.setHeight(400);
    const QQuickItem &addGoal = button(u"Add Goal"_s);
    ASSERT_GT(placeOf(addGoal).bottom(), 400);
    for (int stops = 0; !addGoal.hasActiveFocus() && stops < 100; ++stops)
        ui().tab();
    draw();
    ASSERT_TRUE(addGoal.hasActiveFocus());
    EXPECT_LE(placeOf(addGoal).bottom(), 400);
}

TEST_F(TheScheduleScreensLook, ItsCallsToActionLieOnAnIndigoGradientWithAShadow) {
    expectGradient(u"New Goal"_s, 10);
    EXPECT_EQ(button(u"New Goal"_s).property("leftPadding"), 20);
    EXPECT_EQ(button(u"New Goal"_s).property("rightPadding"), 20);
    EXPECT_EQ(button(u"New Goal"_s).property("topPadding"), 12);
    EXPECT_EQ(button(u"New Goal"_s).property("bottomPadding"), 12);
    expectGradient(u"Add Goal"_s, 12);
    EXPECT_EQ(button(u"Add Goal"_s).property("leftPadding"), 24);
    EXPECT_EQ(button(u"Add Goal"_s).property("rightPadding"), 24);
    EXPECT_EQ(button(u"Add Goal"_s).property("topPadding"), 14);
    EXPECT_EQ(button(u"Add Goal"_s).property("bottomPadding"), 14);
    for (const QString &name : {u"New Goal"_s, u"Add Goal"_s}) {
        const QRectF plus = placeOf(*symbolsIn(&button(name)).front());
        EXPECT_EQ(place(textOfButton(name)).left(), plus.right() + 8) << qPrintable(name);
    }
}

TEST_F(TheScheduleScreensLook, NewGoalHasAScaleOfOneAndAnAnimationOfItThatNeverRuns) {
    QQuickItem *const newGoal = ui().find(u"New Goal"_s, QAccessible::Button);
    ASSERT_TRUE(newGoal);
    QObject *const behavior = behaviorOf(*newGoal);
    ASSERT_TRUE(behavior);
    EXPECT_EQ(behavior->property("enabled"), false);
    EXPECT_EQ(newGoal->scale(), 1);
    ui().press(ui().middleOf(u"New Goal"_s, QAccessible::Button));
    EXPECT_EQ(newGoal->scale(), 1);
    ui().release(QPointF(1, 1));
    newGoal->setProperty("scale", 0.5);
    EXPECT_EQ(newGoal->scale(), 0.5) << "at once";
    // Qt makes the animation only when it is to run.
    behavior->setProperty("enabled", true);
    newGoal->setProperty("scale", 1);
    EXPECT_LT(newGoal->scale(), 1);
    const auto *const animation = behavior->property("animation").value<QObject *>();
    ASSERT_TRUE(animation);
    EXPECT_EQ(animation->property("duration"), 150);
    const auto easing = animation->property("easing").toEasingCurve();
    EXPECT_NEAR(easing.valueForProgress(0.25), 0.129, 0.01); // In and out
    EXPECT_NEAR(easing.valueForProgress(0.75), 0.871, 0.01);
}

TEST_F(TheScheduleScreensLook, StaysAsItIsBehindTheSheet) {
    add(2, 14, u"Write"_s);
    const std::vector<std::string> before = shownBelow(*ui().root());
    openSheet();
    ASSERT_TRUE(hasSheet());
    expectEqual(shownBelow(*ui().root()), before);
}

TEST_F(TheScheduleScreensLook, ItsCloseButtonIsOutlinedAndStandsAtTheRight) {
    expectCloseButton(u"Close schedule"_s);
    EXPECT_EQ(place(u"Close schedule"_s).right(), 900 - 24);
    EXPECT_EQ(place(u"New Goal"_s).right() + 12, place(u"Close schedule"_s).left());
}

TEST_F(TheScheduleScreensLook, ItsHeadersHoldTheirTextsAndEndInARule) {
    EXPECT_EQ(place(u"Schedule"_s).left(), 24);
    EXPECT_EQ(place(u"Plan your focus sessions"_s).topLeft(),
              place(u"Schedule"_s).bottomLeft() + QPointF(0, 4));
    const double bottom = placeOf(*around(&text(u"Calendar"_s), "offeredHeight")).top();
    EXPECT_EQ(bottom, place(u"Plan your focus sessions"_s).bottom() + 20);
    const QColor rule = color(u"E5E7EB"_s);
    EXPECT_EQ(colorAt(450, int(bottom) - 1), rule);
    EXPECT_EQ(colorAt(450, int(bottom) - 2), QColor(Qt::white));
    EXPECT_EQ(place(u"March 2, 2026"_s).topLeft(), QPointF(421 + 24, bottom + 20));
    EXPECT_EQ(place(u"0 goals scheduled"_s).topLeft(),
              place(u"March 2, 2026"_s).bottomLeft() + QPointF(0, 4));
    const int end = int(place(u"0 goals scheduled"_s).bottom()) + 20;
    EXPECT_EQ(colorAt(450, end - 1), rule);
    EXPECT_EQ(colorAt(450, end - 2), QColor(Qt::white));
    EXPECT_EQ(colorAt(450, end), color(u"FAFAFA"_s));
}

TEST_F(TheScheduleScreensLook, ItsSidebarHasItsPaddingsAndSpaces) {
    const QRectF sidebar = placeOf(*around(&text(u"Calendar"_s), "offeredHeight"));
    EXPECT_EQ(sidebar.left(), 0);
    EXPECT_EQ(sidebar.width(), 420);
    const auto row = [this](const QString &name) { return placeOf(*text(name).parentItem()); };
    EXPECT_EQ(row(u"Calendar"_s).topLeft(), sidebar.topLeft() + QPointF(28, 28));
    EXPECT_EQ(place(u"Calendar"_s).left(),
              placeOf(*symbolBeside(&text(u"Calendar"_s))).right() + 8);
    const QQuickItem *const picker = ui().find(u"March 2026"_s, QAccessible::Grouping);
    ASSERT_TRUE(picker);
    EXPECT_EQ(placeOf(*picker).left(), 28 + 8);
    EXPECT_EQ(placeOf(*picker).right(), 420 - 28 - 8);
    EXPECT_EQ(placeOf(*picker).top(), row(u"Calendar"_s).bottom() + 20);
    EXPECT_EQ(picker->property("accent").value<QColor>(), color(u"4F46E5"_s));
    EXPECT_EQ(row(u"Overview"_s).topLeft(), QPointF(28, placeOf(*picker).bottom() + 28));
    EXPECT_EQ(placeOf(counter(u"Today's Goals"_s)).top(), row(u"Overview"_s).bottom() + 16);
    EXPECT_EQ(placeOf(counter(u"Upcoming"_s)).top(),
              placeOf(counter(u"Today's Goals"_s)).bottom() + 12);
}

TEST_F(TheScheduleScreensLook, ACounterIsAnOutlinedRowWithItsSymbolOnADisc) {
    addGoals();
    for (const auto &[label, hex, figure] : {std::tuple(u"Today's Goals"_s, u"059669"_s, u"2"_s),
                                             std::tuple(u"Upcoming"_s, u"DC2626"_s, u"1"_s)}) {
        const QQuickItem &row = counter(label);
        const QRectF frame = placeOf(row);
        EXPECT_EQ(frame.left(), 28);
        EXPECT_EQ(frame.size(), QSizeF(420 - 2 * 28, 36 + 2 * 12));
        const QQuickItem &ground = *row.childItems().constFirst();
        EXPECT_EQ(groundOf(ground), std::pair(color(u"FAFBFC"_s), 10.0));
        EXPECT_EQ(outlineOf(ground), std::pair(color(u"E5E7EB"_s), 1.0));
        EXPECT_EQ(placeOf(ground), frame);
        const QQuickItem &disc = *symbolBeside(&text(label))->parentItem();
        EXPECT_EQ(groundOf(disc), std::pair(pale(hex, 0.1F), 18.0));
        EXPECT_EQ(placeOf(disc), QRectF(frame.left() + 16, frame.top() + 12, 36, 36));
        EXPECT_EQ(place(label).left(), placeOf(disc).right() + 14);
        const QString small = figure + u" scheduled"_s;
        EXPECT_EQ(place(small).topLeft(), place(label).bottomLeft() + QPointF(0, 2));
        EXPECT_EQ(place(figure).right(), frame.right() - 16);
        EXPECT_NEAR(place(figure).center().y(), frame.center().y(), 0.5);
    }
}

TEST_F(TheScheduleScreensLook, AGoalIsItsTimeAndACard) {
    addGoals();
    const QQuickItem &card = *rectangleAround(&text(u"Write"_s));
    EXPECT_EQ(groundOf(card), std::pair(QColor(Qt::white), 12.0));
    EXPECT_EQ(outlineOf(card), std::pair(color(u"E5E7EB"_s), 1.0));
    const QRectF frame = placeOf(card);
    EXPECT_EQ(place(u"2:00 PM"_s).left(), 421 + 24);
    EXPECT_EQ(place(u"1h before"_s).top(), place(u"2:00 PM"_s).bottom() + 2);
    EXPECT_EQ(frame.left(), 421 + 24 + 80 + 16);
    EXPECT_EQ(frame.right(), 900 - 24);
    EXPECT_EQ(frame.top(), place(u"2 goals scheduled"_s).bottom() + 20 + 6);
    EXPECT_EQ(placeOf(*rectangleAround(&text(u"Read"_s))).top(), frame.bottom() + 2 * 6);
}

TEST_F(TheScheduleScreensLook, AGoalsCardHasTickTextReminderAndTrash) {
    addGoals();
    const QRectF card = placeOf(*rectangleAround(&text(u"Write"_s)));
    const QRectF tick = place(u"Mark as done: Write"_s);
    const QRectF trash = place(u"Delete Write"_s);
    EXPECT_EQ(tick.left(), card.left() + 16);
    EXPECT_EQ(place(u"Write"_s).topLeft(), QPointF(tick.right() + 12, card.top() + 16));
    EXPECT_EQ(trash.right(), card.right() - 16);
    EXPECT_EQ(trash.size(), QSizeF(32, 32));
    EXPECT_EQ(groundOf(background(u"Delete Write"_s)), std::pair(color(u"FEF2F2"_s), 6.0));
    EXPECT_EQ(place(u"Reminder set"_s).top(), place(u"Write"_s).bottom() + 4);
    EXPECT_EQ(place(u"Reminder set"_s).bottom(), card.bottom() - 16);
    const QRectF bell = placeOf(*symbolBeside(&text(u"Reminder set"_s)));
    EXPECT_EQ(bell.left(), place(u"Write"_s).left());
    EXPECT_EQ(place(u"Reminder set"_s).left(), bell.right() + 8);
}

} // namespace
} // namespace tarne::test
