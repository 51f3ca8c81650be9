#include "AnimationClock.h"
#include "LayoutProbe.h"
#include "ScreenFixture.h"
#include "TARNEStyle.h"

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
    QRectF summaryBox() {
        return LayoutProbe::place(
            *probe().item(u"Selected Duration:"_s).parentItem()->parentItem());
    }

    /// The shadow and the box that lie behind a preset's button.
    std::pair<const QQuickItem &, const QQuickItem &> behindPreset(const QString &preset) {
        const QQuickItem &button = probe().item(preset);
        for (const QQuickItem *const child : button.childItems()) {
            if (child->z() < -1)
                return {*child->childItems().at(0), *child->childItems().at(1)};
        }
        ADD_FAILURE() << "nothing lies behind it";
        return {button, button};
    }

    /// A bar of 36 by 5 points at the top, in the middle.
    void expectDragIndicator(const QQuickItem &sheet) {
        const QRectF place = LayoutProbe::place(sheet);
        const QImage picture = ui().picture();
        const auto shown = [&](double x, double y) {
            return picture.pixelColor(QPointF(place.center().x() + x, place.top() + y).toPoint()) !=
                   LayoutProbe::color(sheet);
        };
        for (const double x : {-16.0, 0.0, 15.0})
            EXPECT_TRUE(shown(x, 7)) << x;
        for (const double x : {-20.0, 20.0})
            EXPECT_FALSE(shown(x, 7)) << x;
        EXPECT_FALSE(shown(0, 3));
        EXPECT_FALSE(shown(0, 12));
    }
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
    const QRectF title = probe().place(u"Select Session Duration"_s, QAccessible::Heading);
    const QRectF close = probe().place(u"Close"_s);
    const QRectF custom = probe().place(u"Custom Duration"_s);
    const QRectF go = probe().place(u"Continue"_s);
    EXPECT_EQ(title.topLeft(), sheet.topLeft() + QPointF(16, 16));
    EXPECT_EQ(close.right(), sheet.right() - 16);
    EXPECT_EQ(close.width(), 20);
    EXPECT_EQ(custom.top(),
              LayoutProbe::place(*probe().item(u"15 min"_s).parentItem()).bottom() + 16);
    EXPECT_EQ(go.bottom(), sheet.bottom() - 16);
    EXPECT_GE(go.width(), 100);
    EXPECT_EQ(probe().item(u"Continue"_s).property("minimumWidth"), 100);
}

TEST_F(SheetLayout, TheCustomButtonIsTwoHundredWideAtMost) {
    openDurationSheet();
    QQuickItem &custom = probe().item(u"Custom Duration"_s, QAccessible::Button);
    EXPECT_LT(custom.width(), 200);
    custom.setProperty("text", u"Custom Duration of This Session"_s);
    EXPECT_TRUE(ui().waitUntil([&] { return custom.implicitWidth() > 200; }));
    EXPECT_EQ(custom.width(), 200);
}

TEST_F(SheetLayout, TheDurationSheetsRowsStandSixteenPointsApart) {
    openDurationSheet();
    const QRectF title = probe().place(u"Select Session Duration"_s, QAccessible::Heading);
    EXPECT_NEAR(probe().place(u"Close"_s).center().y(), title.center().y(), 0.5);
    const QRectF presets = LayoutProbe::place(*probe().item(u"15 min"_s).parentItem());
    EXPECT_EQ(presets.top(), title.bottom() + 16);
    EXPECT_EQ(summaryBox().top(), probe().place(u"Custom Duration"_s).bottom() + 16);
    EXPECT_EQ(probe().place(u"Continue"_s).top(), summaryBox().bottom() + 16);
}

TEST_F(SheetLayout, TheFirstTwoSheetsShowTheirDragIndicator) {
    openDurationSheet();
    expectDragIndicator(panel(u"Select Session Duration"_s));
    ASSERT_TRUE(ui().click(u"Continue"_s));
    passAndSettle(0.3);
    expectDragIndicator(panel(u"Session Goal"_s));
}

TEST_F(SheetLayout, TheDurationSheetWritesInItsTokens) {
    openDurationSheet();
    const QQuickItem &title = probe().item(u"Select Session Duration"_s, QAccessible::Heading);
    EXPECT_EQ(LayoutProbe::font(title), Fonts::heading1());
    EXPECT_EQ(LayoutProbe::color(probe().item(u"Close"_s)), Colors::secondaryText);
    EXPECT_EQ(probe().item(u"Close"_s).property("symbol"), u"xmark.circle.fill"_s);
    EXPECT_EQ(probe().item(u"Custom Duration"_s).property("symbol"), u"pencil"_s);
    EXPECT_EQ(probe().look(u"Custom Duration"_s), SecondaryButtonStyle{}({}));
    EXPECT_EQ(probe().item(u"Continue"_s).property("trailingSymbol"), u"arrow.right"_s);
    EXPECT_EQ(probe().look(u"Continue"_s), PrimaryButtonStyle{}({}));
}

TEST_F(SheetLayout, TheSymbolsOfItsButtonsStandEightPointsFromTheirTexts) {
    openDurationSheet();
    EXPECT_EQ(probe().gapIn(u"Custom Duration"_s), 8);
    EXPECT_EQ(probe().gapIn(u"Continue"_s), 8);
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

TEST_F(SheetLayout, TheSelectedPresetHasAGroundAndAGlowAndTheOthersHaveNone) {
    openDurationSheet();
    const auto [shadow, ground] = behindPreset(u"25 min"_s);
    EXPECT_EQ(LayoutProbe::color(shadow), faded(Colors::accent, 0.3F));
    EXPECT_EQ(shadow.property("blurRadius"), 4);
    EXPECT_EQ(shadow.property("cornerRadius"), 8);
    EXPECT_EQ(shadow.property("offsetX"), 0);
    EXPECT_EQ(shadow.property("offsetY"), 0);
    EXPECT_EQ(LayoutProbe::color(ground), faded(Colors::accent, 0.1F));
    EXPECT_EQ(ground.property("radius"), 8);
    EXPECT_EQ(ground.parentItem()->opacity(), 1);
    EXPECT_EQ(probe().item(u"25 min"_s).scale(), 1.05);
    EXPECT_EQ(behindPreset(u"45 min"_s).second.parentItem()->opacity(), 0);
    EXPECT_EQ(probe().item(u"45 min"_s).scale(), 1);
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

/// The sheets with animations that move on by the test's hand.
class SheetAnimation : public SheetLayout {
protected:
    /// Draws frames until everything has its place.
    void layOut() {
        for (int frame = 0; frame < 3; ++frame)
            EXPECT_FALSE(ui().picture().isNull());
    }

    AnimationClock animations;
};

TEST_F(SheetAnimation, TheCustomRowStandsBetweenItsButtonAndTheSummary) {
    openDurationSheet();
    animations.pass(1000);
    ASSERT_TRUE(ui().click(u"Custom Duration"_s));
    animations.pass(350);
    layOut();
    const QRectF custom = probe().place(u"Custom Duration"_s);
    const QRectF set = probe().place(u"Set"_s);
    EXPECT_EQ(set.top(), custom.bottom() + 16);
    EXPECT_NEAR(probe().place(u"5-180"_s).center().y(), set.center().y(), 0.5);
    EXPECT_NEAR(probe().place(u"minutes"_s).center().y(), set.center().y(), 0.5);
    EXPECT_EQ(probe().place(u"minutes"_s).left(), probe().place(u"5-180"_s).right() + 8);
    EXPECT_EQ(set.left(), probe().place(u"minutes"_s).right() + 8);
    EXPECT_EQ(summaryBox().top(), set.bottom() + 16);
    view().durationSelection()->setCustomDuration(u"3"_s);
    layOut();
    animations.pass(350);
    layOut();
    const QRectF error = probe().place(u"Duration must be at least 5 minutes"_s);
    EXPECT_GE(error.top(), probe().place(u"Set"_s).bottom());
    EXPECT_EQ(summaryBox().top(), error.bottom() + 16);
}

TEST_F(SheetAnimation, TheCustomRowComesAndGoesUnderTheDefaultAnimation) {
    openDurationSheet();
    animations.pass(1000);
    ASSERT_TRUE(ui().click(u"Custom Duration"_s));
    animations.pass(175);
    const QQuickItem &row = *probe().item(u"Set"_s).parentItem()->parentItem();
    EXPECT_NEAR(row.height(), row.property("fullHeight").toDouble() / 2, 1);
    EXPECT_NEAR(row.opacity(), 0.5, 0.01);
    animations.pass(175);
    EXPECT_EQ(row.height(), row.property("fullHeight").toDouble());
    EXPECT_EQ(row.opacity(), 1);
    ASSERT_TRUE(ui().click(u"Custom Duration"_s));
    animations.pass(175);
    EXPECT_NEAR(row.opacity(), 0.5, 0.01);
    animations.pass(175);
    EXPECT_FALSE(row.isVisible());
}

TEST_F(SheetAnimation, ASelectedPresetGrowsAndGlowsOverTwoTenthsOfASecondEasedInAndOut) {
    openDurationSheet();
    const QQuickItem &next = probe().item(u"45 min"_s);
    const QQuickItem &former = probe().item(u"25 min"_s);
    const QQuickItem &glow = *behindPreset(u"45 min"_s).second.parentItem();
    animations.pass(1000);
    ASSERT_TRUE(ui().click(u"45 min"_s));
    animations.pass(50);
    EXPECT_NEAR(next.scale(), 1 + 0.05 * 0.129, 0.001);
    EXPECT_NEAR(former.scale(), 1.05 - 0.05 * 0.129, 0.001);
    EXPECT_NEAR(glow.opacity(), 0.129, 0.01);
    animations.pass(149);
    EXPECT_LT(next.scale(), 1.05);
    animations.pass(1);
    EXPECT_EQ(next.scale(), 1.05);
    EXPECT_EQ(former.scale(), 1);
    EXPECT_EQ(glow.opacity(), 1);
}

} // namespace
} // namespace tarne::test
