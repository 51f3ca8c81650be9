#include "GlowingOrbView.h"
#include "BlurredShape.h"
#include "TARNEStyle.h"

#include "UiDriver.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

class GlowingOrbViewTest : public testing::Test {
protected:
    static QString document(const QString &properties) {
        return u"import QtQuick\nimport TARNE.Styling\nimport TARNE.Views\nRectangle { id: root; "
               u"property bool "
               u"covered: false; "
               "GlowingOrbView { anchors.centerIn: parent; "_s +
               properties + u" } Sheet { isPresented: root.covered; content: Item {} } }"_s;
    }
    static GlowingOrbView *orb(const UiDriver &ui) {
        return ui.root()->findChild<GlowingOrbView *>();
    }
};

TEST_F(GlowingOrbViewTest, PulsesFromAppearingOnWhateverIsActiveSays) {
    const UiDriver ui(document(u"progress: 0.1; isActive: false"_s));
    EXPECT_TRUE(orb(ui)->pulseAnimation());
    EXPECT_TRUE(orb(ui)->isAnimating());
}

TEST_F(GlowingOrbViewTest, ComesToRestWhenItBecomesInactive) {
    UiDriver ui(document(u"isActive: true"_s));
    orb(ui)->setActive(false);
    EXPECT_FALSE(orb(ui)->pulseAnimation());
    EXPECT_TRUE(ui.waitUntil([&] { return !orb(ui)->isAnimating(); }));
    EXPECT_EQ(orb(ui)->pulseScale(), 1.0);
}

TEST_F(GlowingOrbViewTest, PulsesAgainWhenItBecomesActive) {
    const UiDriver ui(document(u"isActive: true"_s));
    orb(ui)->setActive(false);
    orb(ui)->setActive(true);
    EXPECT_TRUE(orb(ui)->pulseAnimation());
}

TEST_F(GlowingOrbViewTest, PausingStopsThePulse) {
    const UiDriver ui(document(u"isActive: true"_s));
    orb(ui)->setPaused(true);
    EXPECT_FALSE(orb(ui)->pulseAnimation());
}

/// Counts what drives a movement.
class FrameCounter final : public QObject {
public:
    explicit FrameCounter(QObject &item) { item.installEventFilter(this); }
    int frames = 0;

private:
    bool eventFilter(QObject *, QEvent *event) override {
        frames += event->type() == QEvent::Timer ? 1 : 0;
        return false;
    }
};

TEST_F(GlowingOrbViewTest, ComesToRestOverThreeTenthsOfASecondInAPauseAndHalfASecondOtherwise) {
    constexpr double secondsAFrame = 0.1;
    const auto secondsToRest = [](UiDriver &ui, const std::function<void()> &stop) {
        EXPECT_TRUE(ui.waitUntil([&] { return orb(ui)->pulseScale() > 1.0; }));
        stop();
        const FrameCounter counter(*orb(ui));
        EXPECT_TRUE(ui.waitUntil([&] { return !orb(ui)->isAnimating(); }));
        return counter.frames * secondsAFrame;
    };
    UiDriver ui(document(u"isActive: true"_s));
    EXPECT_NEAR(secondsToRest(ui, [&] { orb(ui)->setPaused(true); }), 0.3, secondsAFrame);
    orb(ui)->setPaused(false);
    EXPECT_NEAR(secondsToRest(ui, [&] { orb(ui)->setActive(false); }), 0.5, secondsAFrame);
    // A pause of a session changes both, in either order.
    const auto resume = [&] {
        orb(ui)->setPaused(false);
        orb(ui)->setActive(true);
    };
    resume();
    EXPECT_NEAR(secondsToRest(ui,
                              [&] {
                                  orb(ui)->setActive(false);
                                  orb(ui)->setPaused(true);
                              }),
                0.3, secondsAFrame);
    resume();
    EXPECT_NEAR(secondsToRest(ui,
                              [&] {
                                  orb(ui)->setPaused(true);
                                  orb(ui)->setActive(false);
                              }),
                0.3, secondsAFrame);
}

TEST_F(GlowingOrbViewTest, EndingThePausePulsesOnlyWhileActive) {
    const UiDriver ui(document(u"isActive: false"_s));
    orb(ui)->setPaused(true);
    orb(ui)->setPaused(false);
    EXPECT_FALSE(orb(ui)->pulseAnimation());
    orb(ui)->setPaused(true);
    orb(ui)->setActive(true);
    orb(ui)->setPaused(false);
    EXPECT_TRUE(orb(ui)->pulseAnimation());
}

TEST_F(GlowingOrbViewTest, NothingRunsWhileItIsHidden) {
    const UiDriver ui(document(u"isActive: true"_s));
    orb(ui)->setVisible(false);
    EXPECT_FALSE(orb(ui)->isAnimating());
    orb(ui)->setVisible(true);
    EXPECT_TRUE(orb(ui)->isAnimating());
}

/// An orb that counts how often it is painted.
class CountedOrb final : public GlowingOrbView {
public:
    using GlowingOrbView::GlowingOrbView;
    int paintings = 0;

protected:
    QImage paintPicture(double devicePixelRatio) override {
        ++paintings;
        return GlowingOrbView::paintPicture(devicePixelRatio);
    }
};

TEST_F(GlowingOrbViewTest, IsPaintedWhenItComesIntoSightAndNotWhileItIsHidden) {
    UiDriver ui(u"import QtQuick\nItem {}"_s);
    CountedOrb orb;
    orb.setVisible(false);
    orb.setSize(QSizeF(250, 250));
    orb.setParentItem(ui.root());
    for (const double progress : {0.2, 0.4, 0.6}) {
        orb.setProgress(progress);
        EXPECT_FALSE(ui.picture().isNull());
    }
    EXPECT_EQ(orb.paintings, 0);
    orb.setVisible(true);
    EXPECT_NE(ui.picture().pixelColor(125, 125), QColor(Qt::white));
    EXPECT_EQ(orb.paintings, 1);
}

TEST_F(GlowingOrbViewTest, NothingRunsBehindASheet) {
    const UiDriver ui(document(u"isActive: true"_s));
    ui.root()->setProperty("covered", true);
    EXPECT_FALSE(orb(ui)->isAnimating());
    ui.root()->setProperty("covered", false);
    EXPECT_TRUE(orb(ui)->isAnimating());
}

TEST_F(GlowingOrbViewTest, NothingRunsInAHiddenWindow) {
    UiDriver ui(document(u"isActive: true"_s));
    ui.view().hide();
    EXPECT_TRUE(ui.waitUntil([&] { return !orb(ui)->isAnimating(); }));
    ui.view().show();
    EXPECT_TRUE(ui.waitUntil([&] { return orb(ui)->isAnimating(); }));
}

TEST_F(GlowingOrbViewTest, AProgressThatIsNoNumberIsNotTaken) {
    const UiDriver ui(document(u"progress: 0.5"_s));
    orb(ui)->setProgress(std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(orb(ui)->look(), orbLook(0.5, false));
}

TEST_F(GlowingOrbViewTest, PulsesWheneverItAppearsAlsoInAPause) {
    const UiDriver ui(document(u"isActive: true"_s));
    orb(ui)->setPaused(true);
    orb(ui)->setActive(false);
    ASSERT_FALSE(orb(ui)->pulseAnimation());
    orb(ui)->setVisible(false);
    orb(ui)->setVisible(true);
    EXPECT_TRUE(orb(ui)->pulseAnimation());
}

/// An orb whose time is in the test's hand, and its picture.
class DrivenOrb final : public GlowingOrbView {
public:
    explicit DrivenOrb(double progress, bool isPaused = false) {
        setProgress(progress);
        setPaused(isPaused);
    }
    using GlowingOrbView::advance;

    /// The colour `x` points to the right of its middle and `y` below it.
    QColor at(int x, int y) {
        const QImage picture = paintPicture(1.0);
        return picture.pixelColor(picture.width() / 2 + x, picture.height() / 2 + y);
    }
    int pictureWidth() { return paintPicture(1.0).width(); }
    /// How much hides what lies behind.
    double opacityAt(int x, int y) { return static_cast<double>(at(x, y).alphaF()); }
    bool isInvisible() {
        const QImage picture = paintPicture(1.0);
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                if (picture.pixelColor(x, y).alpha() != 0)
                    return false;
            }
        }
        return true;
    }
};

TEST_F(GlowingOrbViewTest, ItsCircleIsOfItsSizeAndIntensity) {
    DrivenOrb half(0.5);
    EXPECT_NEAR(half.opacityAt(68, 0), 0.65, 0.01);
    EXPECT_LT(half.opacityAt(72, 0), 0.35);
    EXPECT_NEAR(half.at(68, 0).blueF(), SystemColors::cyan.blueF(), 0.02F);
    DrivenOrb setup(0.1);
    EXPECT_NEAR(setup.opacityAt(0, 44), 0.37, 0.01);
    EXPECT_LT(setup.opacityAt(0, 48), 0.2);
    EXPECT_NEAR(setup.at(0, 44).blueF(), SystemColors::blue.blueF(), 0.02F);
    DrivenOrb paused(0.5, true);
    EXPECT_NEAR(paused.opacityAt(54, 0), 0.39, 0.01);
    EXPECT_LT(paused.opacityAt(58, 0), 0.2);
    EXPECT_NEAR(paused.at(54, 0).redF(), SystemColors::orange.redF(), 0.02F);
    EXPECT_NEAR(paused.at(54, 0).greenF(), SystemColors::orange.greenF(), 0.02F);
}

TEST_F(GlowingOrbViewTest, ItsCircleKeepsItsSizeWhereItsGlowHasNone) {
    DrivenOrb before(-0.3); // 44 wide, after a clock that was set back.
    EXPECT_NEAR(before.opacityAt(20, 0), 0.09, 0.01);
    EXPECT_EQ(before.opacityAt(24, 0), 0);
}

TEST_F(GlowingOrbViewTest, ItsGlowFadesOverItsRadius) {
    DrivenOrb half(0.5);
    EXPECT_NEAR(half.opacityAt(70 + 15, 0), 0.65 * 0.16, 0.015);
    EXPECT_NEAR(half.opacityAt(70 + 30, 0), 0.65 * 0.02, 0.01);
    DrivenOrb paused(0.5, true);
    EXPECT_NEAR(paused.opacityAt(56 + 7, 0), 0.39 * 0.16, 0.015);
    EXPECT_NEAR(paused.opacityAt(56 + 15, 0), 0.39 * 0.02, 0.01);
}

TEST_F(GlowingOrbViewTest, ItsHighlightIsThreeFifthsAsWideAndLiesATenthToTheUpperLeft) {
    DrivenOrb orb(1);
    constexpr QPoint middle(-20, -20);
    for (const QPoint way : {QPoint(1, 0), QPoint(-1, 0), QPoint(0, 1), QPoint(0, -1)}) {
        const QPoint inside = middle + 57 * way;
        const QPoint outside = middle + 63 * way;
        EXPECT_NEAR(orb.at(inside.x(), inside.y()).blueF(), 0.3, 0.01) << way.x() << way.y();
        EXPECT_EQ(orb.at(outside.x(), outside.y()).blue(), 0) << way.x() << way.y();
    }
}

TEST_F(GlowingOrbViewTest, ItsHighlightFadesWithItsIntensity) {
    DrivenOrb orb(0.1);
    constexpr double white = 0.3 * 0.37;
    EXPECT_NEAR(orb.opacityAt(-9, -9), white + (1 - white) * 0.37, 0.01);
}

TEST_F(GlowingOrbViewTest, ThePulseSwellsTheCircleAndItsGlowAndNotTheHighlight) {
    DrivenOrb orb(1);
    EXPECT_LT(orb.opacityAt(103, 0), 0.5);
    const double glow = orb.opacityAt(150, 0);
    orb.startAnimations();
    orb.advance(2);
    EXPECT_EQ(orb.opacityAt(103, 0), 1);
    EXPECT_LT(orb.opacityAt(107, 0), 0.5);
    EXPECT_GT(orb.opacityAt(150, 0), 1.3 * glow);
    EXPECT_NEAR(orb.at(38, -20).blueF(), 0.3, 0.01);
    EXPECT_EQ(orb.at(42, -20).blue(), 0);
}

TEST_F(GlowingOrbViewTest, IsNotSeenWhereItsIntensityIsBelowNothing) {
    EXPECT_TRUE(DrivenOrb(-0.44).isInvisible());
    EXPECT_FALSE(DrivenOrb(-0.4).isInvisible());
}

TEST_F(GlowingOrbViewTest, IsDrawnInItsColourAtItsIntensityWithItsHighlight) {
    UiDriver ui(document(u"progress: 1; isPaused: false"_s));
    const QImage picture = ui.picture();
    const QPoint middle(picture.width() / 2, picture.height() / 2);
    // Below the highlight: the plain colour. Inside it: three tenths of white above.
    EXPECT_EQ(picture.pixelColor(middle + QPoint(60, 60)), QColor(0xFF, 0xCC, 0x00));
    const QColor highlight = picture.pixelColor(middle + QPoint(-20, -20));
    EXPECT_NEAR(highlight.blue(), 0.3 * 255, 2);
    EXPECT_NEAR(highlight.green(), 0xCC + 0.3 * (255 - 0xCC), 2);
}

TEST_F(GlowingOrbViewTest, ItsEdgeIsSmooth) {
    DrivenOrb orb(1);
    const double radius = orb.look().size / 2;
    // Where the edge runs at 45 degrees a pixel is covered as far as the circle reaches into it.
    for (int x = 68; x <= 73; ++x) {
        for (const int y : {x - 1, x, x + 1}) {
            const double beyondEdge = std::hypot(x + 0.5, y + 0.5) - radius;
            const double circle = std::clamp(0.5 - beyondEdge, 0.0, 1.0);
            const double glow = blurCoverage(beyondEdge, orb.look().glowRadius);
            EXPECT_NEAR(orb.opacityAt(x, y), circle + (1 - circle) * glow, 0.05) << x << ' ' << y;
        }
    }
    // From the circle outwards neither the glow nor its end is a step.
    const int border = orb.pictureWidth() / 2 - 1;
    double opacity = orb.opacityAt(101, 0);
    for (int x = 102; x <= border; ++x) {
        const double next = orb.opacityAt(x, 0);
        EXPECT_LT(opacity - next, 0.03) << x;
        opacity = next;
    }
    EXPECT_LT(opacity, 0.03) << "at the border";
}

} // namespace
} // namespace tarne::test
