#include "AnimationClock.h"
#include "LayoutProbe.h"
#include "OnboardingFixture.h"
#include "TARNEStyle.h"

#include <gmock/gmock.h>

#include <cmath>

using namespace Qt::StringLiterals;
using testing::DoubleNear;
using testing::FloatNear;

namespace tarne::test {
namespace {

/// The default animation takes 350 ms, the pages' own 300 ms; both are half way at half time.
class OnboardingAnimation : public OnboardingScreenTest {
protected:
    OnboardingAnimation() { ui(); }

    LayoutProbe probe() { return LayoutProbe(ui()); }

    /// How much of it is to be seen: its own opacity and that of all that it lies in.
    static double opacity(const QQuickItem &item) {
        const QQuickItem *const parent = item.parentItem();
        return item.opacity() * (parent ? opacity(*parent) : 1.0);
    }

    void press(const QString &button) {
        ASSERT_TRUE(ui().click(button));
        // A button that was pressed comes back from its pressed look; that is not what is looked
        // at.
        ui().hover(QPointF(1, 1));
    }

    /// The colour of the second page dot.
    QColor secondDot() {
        return LayoutProbe::color(*ui().root()->childItems().constFirst()->childItems().at(1));
    }

    AnimationClock animations;
};

TEST_F(OnboardingAnimation, ThePagesFadeIntoEachOtherOverThreeTenthsOfASecond) {
    const QQuickItem &first = probe().item(u"Set a goal, block what's distracting,"_s);
    press(u"Next"_s);
    animations.pass(150);
    EXPECT_THAT(opacity(first), DoubleNear(0.5, 0.02));
    const QQuickItem &second = probe().item(u"Complete Setup"_s);
    EXPECT_THAT(opacity(second), DoubleNear(0.5, 0.02));
    animations.pass(140);
    EXPECT_GT(opacity(first), 0);
    animations.pass(10);
    EXPECT_EQ(opacity(first), 0);
    EXPECT_EQ(opacity(second), 1);
}

TEST_F(OnboardingAnimation, APageEasesInAndOut) {
    const QQuickItem &first = probe().item(u"Set a goal, block what's distracting,"_s);
    press(u"Next"_s);
    animations.pass(75);
    EXPECT_THAT(opacity(first), DoubleNear(0.87, 0.02)); // 0.75 if it went at one pace.
    animations.pass(150);
    EXPECT_THAT(opacity(first), DoubleNear(0.13, 0.02));
}

TEST_F(OnboardingAnimation, TheSecondDotTakesItsColourWithTheDefaultAnimation) {
    const QColor from = secondDot();
    const QColor to = TARNEStyle::Colors::accent;
    press(u"Next"_s);
    EXPECT_EQ(secondDot().rgba(), from.rgba());
    animations.pass(175);
    EXPECT_THAT(secondDot().redF(), FloatNear((from.redF() + to.redF()) / 2, 0.02F));
    EXPECT_THAT(secondDot().blueF(), FloatNear((from.blueF() + to.blueF()) / 2, 0.02F));
    EXPECT_THAT(secondDot().alphaF(), FloatNear((from.alphaF() + to.alphaF()) / 2, 0.02F));
    animations.pass(170);
    EXPECT_NE(secondDot().rgba(), to.rgba());
    animations.pass(5);
    EXPECT_EQ(secondDot().rgba(), to.rgba());
}

TEST_F(OnboardingAnimation, BackAppearsAndGoesWithTheDefaultAnimation) {
    press(u"Next"_s);
    animations.pass(175);
    const QQuickItem &back = probe().item(u"Back"_s);
    EXPECT_THAT(opacity(back), DoubleNear(0.5, 0.02));
    animations.pass(175);
    EXPECT_EQ(opacity(back), 1);
    press(u"Back"_s);
    animations.pass(175);
    EXPECT_THAT(opacity(back), DoubleNear(0.5, 0.02));
    EXPECT_FALSE(back.isEnabled());
    animations.pass(175);
    EXPECT_FALSE(back.isVisible());
}

TEST_F(OnboardingAnimation, TheForwardTextTurnsIntoTheNextOneWithTheDefaultAnimation) {
    const double before = probe().item(u"Next"_s).width();
    const QQuickItem &label = probe().text(u"Next"_s);
    press(u"Next"_s);
    const QQuickItem &button = probe().item(u"Start Focusing"_s);
    animations.pass(175);
    EXPECT_THAT(probe().text(u"Next"_s).opacity(), DoubleNear(0.5, 0.02));
    EXPECT_EQ(&probe().text(u"Start Focusing"_s), &label);
    EXPECT_THAT(label.opacity(), DoubleNear(0.5, 0.02));
    const double middle = button.width();
    animations.pass(175);
    EXPECT_EQ(label.opacity(), 1);
    EXPECT_EQ(button.width(), std::ceil(label.width()) + 2 * 16);
    EXPECT_THAT(middle, DoubleNear((before + button.width()) / 2, 1));
}

TEST_F(OnboardingAnimation, AForwardTextThatTurnsBackOnTheWayGoesOnFromWhereItIs) {
    press(u"Next"_s);
    animations.pass(175);
    view.goBack();
    ui().settle();
    const QQuickItem &next = probe().text(u"Next"_s);
    EXPECT_THAT(next.opacity(), DoubleNear(0.5, 0.02));
    animations.pass(350);
    EXPECT_EQ(next.opacity(), 1);
}

} // namespace
} // namespace tarne::test
