#include "GlowingOrbView.h"

#include "UiDriver.h"

#include <gmock/gmock.h>

namespace tarne::test {
namespace {

using namespace Qt::StringLiterals;

class GlowingOrbViewTest : public testing::Test {
protected:
    static QString document(const QString &properties) {
        return u"import QtQuick\nimport TARNE.Styling\nRectangle { id: root; property bool "
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
    constexpr double secondsAFrame = 0.07;
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
    UiDriver ui(document(u"progress: 1"_s));
    const QImage picture = ui.picture();
    // From the circle outwards the colour never jumps: neither a jagged edge nor an end of the
    // glow.
    for (int y = 0; y < picture.height() / 2; ++y) {
        const int step =
            std::abs(picture.pixelColor(500, y).blue() - picture.pixelColor(500, y + 1).blue());
        EXPECT_LT(step, 140) << y;
    }
}

} // namespace
} // namespace tarne::test
