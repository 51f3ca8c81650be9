#include "AnimationClock.h"
#include "GlowingOrbView.h"
#include "ItemLook.h"
#include "LayoutProbe.h"
#include "ScreenFixture.h"
#include "TARNEStyle.h"

#include <QFontMetricsF>

using namespace Qt::StringLiterals;
using testing::DoubleNear;

namespace tarne::test {
namespace {

using Fonts = TARNEStyle::Typography;
using Colors = TARNEStyle::Colors;

class TimerLayout : public TimerScreenTest {
protected:
    LayoutProbe probe() { return LayoutProbe(ui()); }

    GlowingOrbView &orb() {
        for (auto *const orb : ui().root()->findChildren<GlowingOrbView *>()) {
            if (orb->isVisible())
                return *orb;
        }
        ADD_FAILURE() << "no orb is shown";
        return *ui().root()->findChildren<GlowingOrbView *>().constFirst();
    }

    /// The display's frame of 250 points around the orb, its time, and the row of buttons below it
    /// follow at their distances, all in the middle.
    void expectDisplayBelow(double bottom, const QString &shownTime) {
        const QRectF frame = LayoutProbe::place(*orb().parentItem());
        EXPECT_EQ(frame.top(), bottom + 24 + 24);
        EXPECT_EQ(frame.height(), 250);
        EXPECT_EQ(frame.center().x(), 500);
        const QRectF text = probe().place(shownTime);
        EXPECT_EQ(text.top(), frame.bottom() + 24);
        EXPECT_THAT(text.center().x(), DoubleNear(500, 1));
    }
};

TEST_F(TimerLayout, SetsTheSetupFacesLinesApartAsToldAndInTheMiddle) {
    const QRectF title = probe().place(u"Session Setup"_s);
    EXPECT_EQ(title.top(), 16);
    EXPECT_THAT(title.center().x(), DoubleNear(500, 1));
    const QRectF line = probe().place(u"Configure your focus session and start stillhour"_s);
    EXPECT_EQ(line.top(), title.bottom() + 8);
    expectDisplayBelow(line.bottom(), u"00:25:00"_s);
    const QRectF button = probe().place(u"Start Session"_s);
    EXPECT_EQ(button.top(), probe().place(u"00:25:00"_s).bottom() + 24 + 24 + 24);
    EXPECT_THAT(button.center().x(), DoubleNear(500, 1));
    EXPECT_GE(button.width(), 140);
    EXPECT_EQ(probe().item(u"Start Session"_s).property("minimumWidth"), 140);
}

TEST_F(TimerLayout, SetsTheSessionFacesLinesApartAsToldAndInTheMiddle) {
    startSession(u"Review"_s);
    const QRectF title = probe().place(u"⏱️ Session"_s);
    EXPECT_EQ(title.top(), 0);
    expectDisplayBelow(title.bottom(), u"00:25:00"_s);
    const QRectF pause = probe().place(u"Pause"_s);
    const QRectF stop = probe().place(u"Stop"_s);
    EXPECT_EQ(pause.top(), probe().place(u"00:25:00"_s).bottom() + 24 + 24 + 24);
    EXPECT_EQ(stop.top(), pause.top());
    EXPECT_EQ(stop.left(), pause.right() + 16);
    EXPECT_THAT((pause.left() + stop.right()) / 2, DoubleNear(500, 1));
    EXPECT_EQ(probe().item(u"Pause"_s).property("minimumWidth"), 90);
    EXPECT_EQ(probe().item(u"Stop"_s).property("minimumWidth"), 90);
}

TEST_F(TimerLayout, PutsTheBadgeBetweenTitleAndDisplay) {
    startSession(u"Review"_s);
    ASSERT_TRUE(ui().click(u"Pause"_s));
    ASSERT_TRUE(ui().waitUntil([&] {
        const QQuickItem *const label = ui().find(u"⏸️ Paused"_s);
        return label && label->parentItem()->scale() == 1;
    }));
    ui().settle();
    const QQuickItem &label = probe().item(u"⏸️ Paused"_s);
    const QRectF badge = LayoutProbe::place(*label.parentItem());
    EXPECT_EQ(badge.top(), probe().place(u"⏱️ Session"_s).bottom() + 24);
    EXPECT_EQ(badge.size(), QSizeF(label.width() + 2 * 16, label.height() + 2 * 8));
    EXPECT_EQ(LayoutProbe::font(label), Fonts::bodyLarge());
    EXPECT_EQ(LayoutProbe::color(label), Colors::warning);
    const auto *const ground = label.parentItem()->childItems().constFirst();
    QColor fill = Colors::warning;
    fill.setAlphaF(0.1F);
    EXPECT_EQ(LayoutProbe::color(*ground), fill);
    EXPECT_EQ(ground->property("radius"), 8);
    expectDisplayBelow(badge.bottom(), u"00:25:00"_s);
}

TEST_F(TimerLayout, PadsItsStackAtTheSidesAndAtTheBottom) {
    const QQuickItem *const face = probe().item(u"Start Session"_s).parentItem()->parentItem();
    EXPECT_EQ(LayoutProbe::place(*face).left(), 16);
    EXPECT_EQ(LayoutProbe::place(*face).right(), 1000 - 16);
    const QQuickItem *const scroll = around(face, "contentHeight");
    ASSERT_TRUE(scroll);
    EXPECT_EQ(scroll->property("contentHeight").toDouble(), face->height() + 16);
    EXPECT_EQ(LayoutProbe::color(*ui().root()), Colors::background);
}

TEST_F(TimerLayout, WritesInTheFontsAndColoursOfItsTokens) {
    EXPECT_EQ(LayoutProbe::font(probe().item(u"Session Setup"_s)), Fonts::heading1());
    const QQuickItem &line = probe().item(u"Configure your focus session and start stillhour"_s);
    EXPECT_EQ(LayoutProbe::font(line), Fonts::body());
    EXPECT_EQ(LayoutProbe::color(line), Colors::secondaryText);
    const QQuickItem &countdown = probe().item(u"00:25:00"_s);
    EXPECT_EQ(LayoutProbe::font(countdown), Fonts::timerDisplay());
    EXPECT_EQ(LayoutProbe::color(countdown), Colors::primaryText);
    startSession(u"Review"_s);
    EXPECT_EQ(LayoutProbe::font(probe().item(u"⏱️ Session"_s)), Fonts::heading1());
}

TEST_F(TimerLayout, ShowsTheTimeInDigitsOfEqualWidth) {
    const QFontMetricsF metrics(LayoutProbe::font(probe().item(u"00:25:00"_s)));
    EXPECT_EQ(metrics.horizontalAdvance(u"11:11:11"_s), metrics.horizontalAdvance(u"00:00:00"_s));
}

TEST_F(TimerLayout, ShowsEachButtonInItsStyleWithItsSymbol) {
    EXPECT_EQ(probe().look(u"Start Session"_s), PrimaryButtonStyle{}({}));
    EXPECT_EQ(probe().item(u"Start Session"_s).property("symbol"), u"play.fill"_s);
    EXPECT_EQ(probe().gapIn(u"Start Session"_s), 8);
    startSession(u"Review"_s);
    EXPECT_EQ(probe().look(u"Pause"_s), PrimaryButtonStyle{}({}));
    EXPECT_EQ(probe().item(u"Pause"_s).property("symbol"), u"pause.fill"_s);
    EXPECT_EQ(probe().look(u"Stop"_s), SecondaryButtonStyle{}({}));
    EXPECT_EQ(probe().item(u"Stop"_s).property("symbol"), u"stop.fill"_s);
    ASSERT_TRUE(ui().click(u"Pause"_s));
    EXPECT_EQ(probe().item(u"Resume"_s).property("symbol"), u"play.fill"_s);
    EXPECT_EQ(probe().look(u"Resume"_s), PrimaryButtonStyle{}({}));
}

TEST_F(TimerLayout, TheOrbStandsAtATenthDuringSetupAndPulses) {
    EXPECT_EQ(orb().look(), orbLook(0.1, false));
    EXPECT_TRUE(orb().pulseAnimation());
}

TEST_F(TimerLayout, TheOrbGrowsWithTheTimeThatHasPassed) {
    startSession(u"Review"_s);
    EXPECT_EQ(orb().look().size, 80);
    EXPECT_EQ(orb().look().color, SystemColors::blue);
    passAndSettle(1500 * 0.5);
    EXPECT_THAT(orb().look().size, DoubleNear(140, 0.2));
    EXPECT_EQ(orb().look().color, SystemColors::cyan);
    passAndSettle(1500 * 0.3);
    EXPECT_EQ(orb().look().color, SystemColors::yellow);
    EXPECT_TRUE(orb().pulseAnimation());
}

TEST_F(TimerLayout, TheOrbOfSetupPulsesAgainAfterASession) {
    startSession(u"Review"_s);
    passAndSettle(60);
    view().completeSession();
    ui().settle();
    EXPECT_EQ(orb().look(), orbLook(0.1, false));
    EXPECT_TRUE(orb().pulseAnimation());
}

TEST_F(TimerLayout, TheOrbIsOrangeWhilePausedAndStillIsAfterAnotherTab) {
    startSession(u"Review"_s);
    ASSERT_TRUE(ui().click(u"Pause"_s));
    EXPECT_EQ(orb().look().color, SystemColors::orange);
    EXPECT_FALSE(orb().pulseAnimation());
    leaveTabAndReturn();
    passAndSettle(10);
    EXPECT_TRUE(ui().waitUntil([&] { return ui().has(u"⏸️ Paused"_s); }));
    EXPECT_EQ(orb().look().color, SystemColors::orange);
    EXPECT_TRUE(ui().has(u"00:25:00"_s));
}

TEST_F(TimerLayout, APausedOrbStaysStillWhenTheWindowIsMappedAnew) {
    startSession(u"Review"_s);
    ASSERT_TRUE(ui().click(u"Pause"_s));
    ui().view().hide();
    ASSERT_TRUE(ui().waitUntil([&] { return !ui().view().isExposed(); }));
    ui().view().show();
    ASSERT_TRUE(ui().waitUntil([&] { return ui().view().isExposed(); }));
    ui().settle();
    EXPECT_FALSE(orb().pulseAnimation());
    leaveTabAndReturn();
    EXPECT_TRUE(orb().pulseAnimation());
}

TEST_F(TimerLayout, BothFirstSheetsShowADragIndicator) {
    openDurationSheet();
    EXPECT_EQ(probe()
                  .item(u"Select Session Duration"_s, QAccessible::Dialog)
                  .property("hasDragIndicator"),
              true);
    ASSERT_TRUE(ui().click(u"Continue"_s));
    passAndSettle(0.3);
    EXPECT_EQ(probe().item(u"Session Goal"_s, QAccessible::Dialog).property("hasDragIndicator"),
              true);
}

/// The screen with animations that move on by the test's hand.
class TimerAnimation : public TimerLayout {
protected:
    AnimationClock animations;
};

TEST_F(TimerAnimation, TheBadgeComesAndGoesByScaleAndOpacity) {
    startSession(u"Review"_s);
    animations.pass(1000);
    ASSERT_TRUE(ui().click(u"Pause"_s));
    EXPECT_FALSE(ui().has(u"⏸️ Paused"_s));
    animations.pass(175);
    const QQuickItem &badge = *probe().item(u"⏸️ Paused"_s).parentItem();
    EXPECT_THAT(badge.opacity(), DoubleNear(0.5, 0.01));
    EXPECT_THAT(badge.scale(), DoubleNear(0.5, 0.01));
    animations.pass(175);
    EXPECT_EQ(badge.opacity(), 1);
    EXPECT_EQ(badge.scale(), 1);
    ASSERT_TRUE(ui().click(u"Resume"_s));
    animations.pass(175);
    EXPECT_THAT(badge.opacity(), DoubleNear(0.5, 0.01));
    EXPECT_THAT(badge.scale(), DoubleNear(0.5, 0.01));
    animations.pass(175);
    EXPECT_FALSE(badge.isVisible());
}

} // namespace
} // namespace tarne::test
