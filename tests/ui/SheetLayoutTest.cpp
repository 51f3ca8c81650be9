#include "LayoutProbe.h"
#include "ScreenFixture.h"
#include "TARNEStyle.h"

#include <QFontMetricsF>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

using Fonts = TARNEStyle::Typography;
using Colors = TARNEStyle::Colors;

QColor faded(QColor color, float opacity) {
    color.setAlphaF(color.alphaF() * opacity);
    return color;
}

QFont bold(QFont font) {
    font.setWeight(QFont::Bold);
    return font;
}

class SheetLayout : public TimerScreenTest {
protected:
    LayoutProbe probe() { return LayoutProbe(ui()); }
    QQuickItem &panel(const QString &name) { return probe().item(name, QAccessible::Dialog); }
};

TEST_F(SheetLayout, TheDurationSheetLiesOnACardOfItsOwnNumbers) {
    openDurationSheet();
    const QQuickItem &sheet = panel(u"Select Session Duration"_s);
    EXPECT_EQ(sheet.width(), 450);
    EXPECT_EQ(LayoutProbe::color(sheet), Colors::background);
    EXPECT_EQ(sheet.property("cornerRadius"), 8);
    EXPECT_EQ(sheet.property("shadowColor").value<QColor>(), Colors::shadow);
    EXPECT_EQ(sheet.property("shadowRadius"), 10);
    EXPECT_EQ(sheet.property("shadowOffset"), 5);
}

TEST_F(SheetLayout, TheDurationSheetKeepsItsPaddingAndItsSpacing) {
    openDurationSheet();
    const QRectF sheet = LayoutProbe::place(panel(u"Select Session Duration"_s));
    const QRectF title = probe().place(u"Select Session Duration"_s, QAccessible::StaticText);
    const QRectF close = probe().place(u"Close"_s);
    const QRectF custom = probe().place(u"Custom Duration"_s);
    const QRectF go = probe().place(u"Continue"_s);
    EXPECT_EQ(title.topLeft(), sheet.topLeft() + QPointF(16, 16));
    EXPECT_EQ(close.right(), sheet.right() - 16);
    EXPECT_EQ(close.width(), 20);
    EXPECT_EQ(custom.top(),
              LayoutProbe::place(*probe().item(u"15 min"_s).parentItem()).bottom() + 16);
    EXPECT_LE(custom.width(), 200);
    EXPECT_EQ(go.bottom(), sheet.bottom() - 16);
    EXPECT_GE(go.width(), 100);
    EXPECT_EQ(probe().item(u"Continue"_s).property("minimumWidth"), 100);
}

TEST_F(SheetLayout, TheDurationSheetWritesInItsTokens) {
    openDurationSheet();
    const QQuickItem &title = probe().item(u"Select Session Duration"_s, QAccessible::StaticText);
    EXPECT_EQ(LayoutProbe::font(title), Fonts::heading1());
    EXPECT_EQ(LayoutProbe::color(probe().item(u"Close"_s)), Colors::secondaryText);
    EXPECT_EQ(probe().item(u"Close"_s).property("symbol"), u"xmark.circle.fill"_s);
    EXPECT_EQ(probe().item(u"Custom Duration"_s).property("symbol"), u"pencil"_s);
    EXPECT_EQ(probe().look(u"Custom Duration"_s), SecondaryButtonStyle{}({}));
    EXPECT_EQ(probe().item(u"Continue"_s).property("trailingSymbol"), u"arrow.right"_s);
    EXPECT_EQ(probe().look(u"Continue"_s), PrimaryButtonStyle{}({}));
}

TEST_F(SheetLayout, TheSummaryStandsInItsBox) {
    openDurationSheet();
    const QQuickItem &label = probe().item(u"Selected Duration:"_s);
    const QQuickItem &value = probe().item(u"25 minutes"_s);
    EXPECT_EQ(LayoutProbe::color(label), Colors::secondaryText);
    EXPECT_EQ(LayoutProbe::font(label), Fonts::body());
    EXPECT_EQ(LayoutProbe::color(value), Colors::accent);
    EXPECT_EQ(LayoutProbe::font(value), Fonts::bodyLarge());
    const QQuickItem &row = *label.parentItem();
    const QQuickItem &box = *row.parentItem()->childItems().constFirst();
    EXPECT_EQ(LayoutProbe::color(box), faded(Colors::accent, 0.1F));
    EXPECT_EQ(box.property("outlineColor").value<QColor>(), faded(Colors::accent, 0.3F));
    EXPECT_EQ(box.property("outlineWidth"), 1);
    EXPECT_EQ(box.property("radius"), 8);
    EXPECT_EQ(box.size(), QSizeF(row.width() + 2 * 12, row.height() + 2 * 6));
}

TEST_F(SheetLayout, TheSelectedPresetStandsOutAndTheOthersDoNot) {
    openDurationSheet();
    EXPECT_EQ(probe().look(u"25 min"_s), PrimaryButtonStyle{}({}));
    EXPECT_EQ(probe().look(u"45 min"_s), SecondaryButtonStyle{}({}));
    EXPECT_EQ(LayoutProbe::font(probe().text(u"25"_s)), bold(Fonts::bodyLarge()));
    EXPECT_EQ(LayoutProbe::font(probe().text(u"45"_s)), Fonts::body());
    const auto unit = [&](const QString &number) -> const QQuickItem & {
        return *probe().text(number).parentItem()->childItems().constLast();
    };
    EXPECT_EQ(LayoutProbe::font(unit(u"25"_s)), Fonts::caption());
    EXPECT_EQ(LayoutProbe::color(unit(u"25"_s)), Colors::accent);
    EXPECT_EQ(LayoutProbe::color(unit(u"45"_s)), Colors::secondaryText);
}

TEST_F(SheetLayout, AnotherPresetTakesItsLookOverTwoTenthsOfASecond) {
    openDurationSheet();
    const QQuickItem &number = probe().text(u"45"_s);
    ASSERT_TRUE(ui().click(u"45 min"_s));
    EXPECT_NE(LayoutProbe::color(number), QColor(Qt::white));
    EXPECT_TRUE(ui().waitUntil([&] { return LayoutProbe::color(number) == QColor(Qt::white); }));
    EXPECT_EQ(probe().item(u"45 min"_s).property("lookDuration"), 200);
}

TEST_F(SheetLayout, APresetIsPressedAnywhereOnItsArea) {
    openDurationSheet();
    const QRectF button = probe().place(u"45 min"_s);
    ui().clickAt(button.topLeft() + QPointF(2, 2));
    EXPECT_EQ(view().durationSelection()->selectedDurationText(), u"45 minutes"_s);
    ui().clickAt(probe().place(u"15 min"_s).bottomRight() - QPointF(2, 2));
    EXPECT_EQ(view().durationSelection()->selectedDurationText(), u"15 minutes"_s);
}

TEST_F(SheetLayout, TheCustomRowWritesInItsTokens) {
    openDurationSheet();
    ASSERT_TRUE(ui().click(u"Custom Duration"_s));
    ASSERT_TRUE(ui().waitUntil([&] { return ui().has(u"5-180"_s); }));
    view().durationSelection()->setCustomDuration(u"3"_s);
    ui().settle();
    EXPECT_EQ(probe().item(u"5-180"_s).width(), 100);
    EXPECT_EQ(LayoutProbe::color(probe().item(u"minutes"_s)), Colors::secondaryText);
    EXPECT_EQ(probe().look(u"Set"_s), PrimaryButtonStyle{}({}));
    const QQuickItem &error = probe().item(u"Duration must be at least 5 minutes"_s);
    EXPECT_EQ(LayoutProbe::font(error), Fonts::caption());
    EXPECT_EQ(LayoutProbe::color(error), Colors::warning);
}

TEST_F(SheetLayout, SetIsDisabledByTheMessageOfAnEmptyFieldUntilTheNextGoodText) {
    openDurationSheet();
    ASSERT_TRUE(ui().click(u"Custom Duration"_s));
    ASSERT_TRUE(ui().waitUntil([&] { return ui().has(u"Set"_s); }));
    EXPECT_TRUE(ui().isEnabled(u"Set"_s));
    view().durationSelection()->applyCustomDuration();
    ui().settle();
    EXPECT_TRUE(ui().has(u"Please enter a number between 5 and 180"_s));
    EXPECT_FALSE(ui().isEnabled(u"Set"_s));
    view().durationSelection()->setCustomDuration(u"50"_s);
    ui().settle();
    EXPECT_TRUE(ui().isEnabled(u"Set"_s));
}

TEST_F(SheetLayout, TheNotesSheetLiesOnACardOfItsOwnNumbers) {
    openNotesSheet();
    const QQuickItem &sheet = panel(u"Session Goal"_s);
    EXPECT_EQ(sheet.size(), QSizeF(520, 400));
    EXPECT_EQ(LayoutProbe::color(sheet), SystemColors::regularMaterial);
    EXPECT_EQ(sheet.property("cornerRadius"), 16);
    EXPECT_EQ(sheet.property("shadowColor").value<QColor>(), faded(Qt::black, 0.08F));
    EXPECT_EQ(sheet.property("shadowRadius"), 24);
    EXPECT_EQ(sheet.property("shadowOffset"), 8);
}

TEST_F(SheetLayout, TheNotesSheetsTitleAndEditorAreAsTold) {
    openNotesSheet();
    const QRectF sheet = LayoutProbe::place(panel(u"Session Goal"_s));
    const QQuickItem &title = probe().item(u"Session Goal"_s, QAccessible::StaticText);
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

TEST_F(SheetLayout, TheNotesSheetsLinesStandTwoPointsFurtherApart) {
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

TEST_F(SheetLayout, TheStartButtonIsSmallAndGreyUntilThereIsAGoal) {
    openNotesSheet();
    const QQuickItem &start = probe().item(u"Start session"_s);
    EXPECT_EQ(start.size(), QSizeF(36, 36));
    EXPECT_EQ(start.parentItem()->scale(), 0.95);
    const QPointF ground = LayoutProbe::place(start).center() + QPointF(0, 14);
    const auto shown = [&] { return ui().picture().pixelColor(ground.toPoint()); };
    EXPECT_NEAR(shown().red(), shown().blue(), 2);
    ui().type(u"R"_s);
    EXPECT_TRUE(ui().waitUntil([&] { return start.parentItem()->scale() == 1; }));
    EXPECT_TRUE(ui().waitUntil([&] { return shown() == Colors::accent; }));
}

TEST_F(SheetLayout, TheNotesSheetsControlsStandAtTheLowerRight) {
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

} // namespace
} // namespace tarne::test
