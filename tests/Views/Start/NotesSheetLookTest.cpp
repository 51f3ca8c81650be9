#include "AnimationClock.h"
#include "ItemLook.h"
#include "LayoutProbe.h"
#include "ScreenFixture.h"
#include "TARNEStyle.h"

#include <QFontMetricsF>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

using Fonts = TARNEStyle::Typography;

/// How the notes sheet is drawn.
class NotesSheetLook : public TimerScreenTest {
protected:
    LayoutProbe probe() { return LayoutProbe(ui()); }
    QRectF panel() { return probe().place(u"Session Goal"_s, QAccessible::Dialog); }
    QQuickItem &title() { return probe().item(u"Session Goal"_s, QAccessible::Heading); }
    QQuickItem &editor() { return probe().item(u"Session Goal"_s, QAccessible::EditableText); }
    /// What editor and controls lie in.
    QQuickItem &area() { return *editor().parentItem()->parentItem()->parentItem(); }
    QQuickItem &start() { return probe().item(u"Start session"_s); }
    QColor fillOfStart() {
        const auto *const ground = start().property("background").value<QQuickItem *>();
        return LayoutProbe::color(*ground);
    }
};

TEST_F(NotesSheetLook, WritesTitleAndGoalInTheirFonts) {
    openNotesSheet();
    EXPECT_EQ(LayoutProbe::font(title()).family(), Fonts::heading(24).family());
    EXPECT_EQ(LayoutProbe::font(editor()), Fonts::system(17, QFont::Light));
}

TEST_F(NotesSheetLook, KeepsTheSamePaddingAboveAndBelow) {
    openNotesSheet();
    const double above = LayoutProbe::place(title()).top() - panel().top();
    const double below = panel().bottom() - LayoutProbe::place(area()).bottom();
    EXPECT_NEAR(above, below, 0.5);
    EXPECT_LE(above, 32);
    EXPECT_EQ(LayoutProbe::place(area()).left(), panel().left() + 40);
    EXPECT_EQ(LayoutProbe::place(area()).right(), panel().right() - 40);
}

TEST_F(NotesSheetLook, TheEmptyEditorShowsTheSheetsGroundAndNothingElse) {
    openNotesSheet();
    const QRect place = LayoutProbe::place(area()).toRect();
    const QImage picture = ui().picture();
    // All but the caret's column at the left and the controls at the bottom.
    for (int y = place.top(); y < place.bottom() - 52; y += 3) {
        for (int x = place.left() + 10; x < place.right(); x += 3)
            ASSERT_EQ(picture.pixelColor(x, y), SystemColors::regularMaterial) << x << ' ' << y;
    }
}

TEST_F(NotesSheetLook, ItsCloseControlIsAHierarchicalSymbolInTheSecondaryColour) {
    openNotesSheet();
    const auto symbols = symbolsIn(&probe().item(u"Close"_s));
    ASSERT_EQ(symbols.size(), 1U);
    EXPECT_EQ(lookOf(*symbols.front()),
              (SymbolLook{u"xmark.circle.fill"_s, 22, SystemColors::secondaryLabel}));
    EXPECT_EQ(symbols.front()->property("hierarchical"), true);
    EXPECT_NEAR(probe().place(u"Close"_s).center().y(), LayoutProbe::place(title()).center().y(),
                0.5);
}

TEST_F(NotesSheetLook, HintsAtTwoKeysBesideTheArrow) {
    controller().saveGoal(u"Review"_s);
    openNotesSheet();
    const auto symbols = symbolsIn(&area());
    const SymbolLook key{{}, 11, SystemColors::tertiaryLabel, QFont::Medium};
    SymbolLook command = key;
    command.symbol = u"command"_s;
    SymbolLook enter = key;
    enter.symbol = u"return"_s;
    const SymbolLook arrow{u"arrow.right"_s, 15, SystemColors::white, QFont::DemiBold};
    ASSERT_EQ(looksOf(symbols), (std::vector{command, enter, arrow}));
    const QRectF first = LayoutProbe::place(*symbols[0]);
    const QRectF second = LayoutProbe::place(*symbols[1]);
    const QRectF circle = LayoutProbe::place(start());
    EXPECT_EQ(second.left(), first.right() + 4);
    EXPECT_EQ(circle.left(), second.right() + 16);
    EXPECT_NEAR(second.center().y(), circle.center().y(), 0.5);
}

TEST_F(NotesSheetLook, APressOnTheHintStartsNothing) {
    controller().saveGoal(u"Review"_s);
    openNotesSheet();
    ui().clickAt(LayoutProbe::place(*symbolsIn(&area()).at(1)).center());
    EXPECT_TRUE(view().showSessionNotes());
    EXPECT_FALSE(controller().currentSession().has_value());
}

TEST_F(NotesSheetLook, LiesOnACardOfItsOwnNumbers) {
    openNotesSheet();
    const QQuickItem &sheet = probe().item(u"Session Goal"_s, QAccessible::Dialog);
    EXPECT_EQ(sheet.size(), QSizeF(520, 400));
    EXPECT_EQ(LayoutProbe::color(sheet), SystemColors::regularMaterial);
    EXPECT_EQ(sheet.property("cornerRadius"), 16);
    EXPECT_EQ(sheet.property("shadowColor").value<QColor>(), QColor::fromRgbF(0, 0, 0, 0.08F));
    EXPECT_EQ(sheet.property("shadowRadius"), 24);
    EXPECT_EQ(sheet.property("shadowOffset"), 8);
}

TEST_F(NotesSheetLook, PlacesTitleAndEditorAsTold) {
    openNotesSheet();
    const QRectF sheet = panel();
    const QQuickItem &title = probe().item(u"Session Goal"_s, QAccessible::Heading);
    EXPECT_EQ(LayoutProbe::place(title).left(), sheet.left() + 40);
    EXPECT_EQ(LayoutProbe::font(title).pixelSize(), 24);
    EXPECT_NEAR(LayoutProbe::font(title).letterSpacing(), -0.3, 0.01);
    EXPECT_EQ(LayoutProbe::color(title), SystemColors::label);
    const QQuickItem &editor = probe().item(u"Session Goal"_s, QAccessible::EditableText);
    const QRectF area = LayoutProbe::place(*editor.parentItem()->parentItem());
    EXPECT_EQ(area.height(), 280);
    EXPECT_EQ(area.top(), LayoutProbe::place(title).bottom() + 40);
    EXPECT_EQ(LayoutProbe::font(editor).pixelSize(), 17);
    EXPECT_EQ(LayoutProbe::font(editor).weight(), QFont::Light);
    EXPECT_EQ(LayoutProbe::color(editor), SystemColors::label);
}

TEST_F(NotesSheetLook, ItsLinesStandTwoPointsFurtherApart) {
    openNotesSheet();
    const QQuickItem &editor = probe().item(u"Session Goal"_s, QAccessible::EditableText);
    ui().type(u"one"_s);
    const double one = editor.property("contentHeight").toDouble();
    ui().key(Qt::Key_Return);
    ui().type(u"two"_s);
    ui().settle();
    const double line = QFontMetricsF(LayoutProbe::font(editor)).height();
    EXPECT_NEAR(editor.property("contentHeight").toDouble() - one, line + 2, 1);
}

TEST_F(NotesSheetLook, TheStartButtonIsSmallAndGreyUntilThereIsAGoal) {
    openNotesSheet();
    const QQuickItem &start = probe().item(u"Start session"_s);
    EXPECT_EQ(start.size(), QSizeF(36, 36));
    EXPECT_EQ(start.parentItem()->scale(), 0.95);
    const QPointF ground = LayoutProbe::place(start).center() + QPointF(0, 14);
    const auto shown = [&] { return ui().picture().pixelColor(ground.toPoint()); };
    EXPECT_NEAR(shown().red(), shown().blue(), 2);
    ui().type(u"R"_s);
    EXPECT_TRUE(ui().waitUntil([&] { return start.parentItem()->scale() == 1; }));
    EXPECT_TRUE(ui().waitUntil([&] { return shown() == TARNEStyle::Colors::accent; }));
}

TEST_F(NotesSheetLook, ItsControlsStandAtTheLowerRight) {
    openNotesSheet();
    const QQuickItem &editor = probe().item(u"Session Goal"_s, QAccessible::EditableText);
    const QRectF area = LayoutProbe::place(*editor.parentItem()->parentItem());
    const QRectF start = probe().place(u"Start session"_s);
    EXPECT_NEAR(start.center().y(), area.bottom() - 16 - 18, 0.01);
    EXPECT_NEAR(start.center().x(), area.right() - 18, 0.01);
    const QRectF close = probe().place(u"Close"_s);
    EXPECT_EQ(close.width(), 22);
    EXPECT_EQ(close.right(), area.right());
}

/// The notes sheet with animations that move on by the test's hand.
class NotesSheetAnimation : public NotesSheetLook {
protected:
    AnimationClock animations;
};

TEST_F(NotesSheetAnimation, TheStartButtonGrowsOverTwoTenthsOfASecondEasedInAndOut) {
    openNotesSheet();
    EXPECT_EQ(fillOfStart(), SystemColors::quaternaryLabel);
    const QQuickItem &circle = *start().parentItem();
    animations.pass(1000);
    ui().type(u"R"_s);
    animations.pass(50);
    EXPECT_NEAR(circle.scale(), 0.95 + 0.05 * 0.129, 0.001);
    animations.pass(149);
    EXPECT_LT(circle.scale(), 1);
    animations.pass(1);
    EXPECT_EQ(circle.scale(), 1);
    EXPECT_EQ(fillOfStart(), TARNEStyle::Colors::accent);
    ui().key(Qt::Key_Backspace);
    animations.pass(100);
    EXPECT_NEAR(circle.scale(), 0.975, 0.001);
    animations.pass(100);
    EXPECT_EQ(circle.scale(), 0.95);
    EXPECT_EQ(fillOfStart(), SystemColors::quaternaryLabel);
}

} // namespace
} // namespace tarne::test
