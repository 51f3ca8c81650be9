#include "OrbLook.h"
#include "TARNEStyle.h"

#include <gmock/gmock.h>

namespace tarne::test {
namespace {

using testing::DoubleNear;

TEST(OrbLook, InSetupItIsSmallFaintAndBlue) {
    const OrbLook look = orbLook(0.1, false);
    EXPECT_THAT(look.size, DoubleNear(92, 1e-9));
    EXPECT_THAT(look.intensity, DoubleNear(0.37, 1e-9));
    EXPECT_THAT(look.glowRadius, DoubleNear(14, 1e-9));
    EXPECT_EQ(look.color, SystemColors::blue);
}

TEST(OrbLook, GrowsFrom80To200OverASession) {
    EXPECT_THAT(orbLook(0, false).size, DoubleNear(80, 1e-9));
    EXPECT_THAT(orbLook(1, false).size, DoubleNear(200, 1e-9));
}

TEST(OrbLook, TheGlowGrowsFrom10To50) {
    EXPECT_THAT(orbLook(0, false).glowRadius, DoubleNear(10, 1e-9));
    EXPECT_THAT(orbLook(1, false).glowRadius, DoubleNear(50, 1e-9));
}

TEST(OrbLook, TheIntensityGrowsFromThreeTenthsToOne) {
    EXPECT_THAT(orbLook(0, false).intensity, DoubleNear(0.3, 1e-9));
    EXPECT_THAT(orbLook(1, false).intensity, DoubleNear(1.0, 1e-9));
}

TEST(OrbLook, TurnsCyanAtThirtyAndYellowAtSeventyPercent) {
    EXPECT_EQ(orbLook(0.0, false).color, SystemColors::blue);
    EXPECT_EQ(orbLook(0.2999, false).color, SystemColors::blue);
    EXPECT_EQ(orbLook(0.3, false).color, SystemColors::cyan);
    EXPECT_EQ(orbLook(0.6999, false).color, SystemColors::cyan);
    EXPECT_EQ(orbLook(0.7, false).color, SystemColors::yellow);
    EXPECT_EQ(orbLook(1.0, false).color, SystemColors::yellow);
}

TEST(OrbLook, PausedItIsOrangeWhateverTheProgress) {
    for (const double progress : {0.0, 0.5, 1.0})
        EXPECT_EQ(orbLook(progress, true).color, SystemColors::orange);
}

TEST(OrbLook, PausedItIsSmallerFainterAndGlowsHalfAsFar) {
    const OrbLook look = orbLook(0.5, true);
    EXPECT_THAT(look.size, DoubleNear(140 * 0.8, 1e-9));
    EXPECT_THAT(look.intensity, DoubleNear(0.65 * 0.6, 1e-9));
    EXPECT_THAT(look.glowRadius, DoubleNear(30 * 0.5, 1e-9));
}

TEST(OrbPulse, RestsAtScaleOne) {
    const OrbPulse pulse;
    EXPECT_EQ(pulse.scale(), 1.0);
    EXPECT_FALSE(pulse.isMoving());
}

TEST(OrbPulse, SwellsToOneAndATwentiethInTwoSecondsAndBackInTwoMore) {
    OrbPulse pulse;
    pulse.start();
    pulse.advance(1);
    EXPECT_THAT(pulse.scale(), DoubleNear(1.025, 1e-3));
    pulse.advance(1);
    EXPECT_THAT(pulse.scale(), DoubleNear(1.05, 1e-6));
    pulse.advance(2);
    EXPECT_THAT(pulse.scale(), DoubleNear(1.0, 1e-6));
    EXPECT_TRUE(pulse.isMoving());
}

TEST(OrbPulse, EasesInAndOut) {
    OrbPulse pulse;
    pulse.start();
    pulse.advance(0.2);
    EXPECT_LT(pulse.scale(), 1.0 + 0.05 * 0.1 * 0.5);
}

TEST(OrbPulse, StartedAgainWhilePulsingGoesOn) {
    OrbPulse pulse;
    pulse.start();
    pulse.advance(2);
    pulse.start();
    EXPECT_THAT(pulse.scale(), DoubleNear(1.05, 1e-6));
}

TEST(OrbPulse, StoppedItComesToRestInTheGivenTime) {
    OrbPulse pulse;
    pulse.start();
    pulse.advance(2);
    pulse.stop(0.5);
    EXPECT_THAT(pulse.scale(), DoubleNear(1.05, 1e-6));
    pulse.advance(0.25);
    EXPECT_LT(pulse.scale(), 1.025);
    EXPECT_TRUE(pulse.isMoving());
    pulse.advance(0.25);
    EXPECT_EQ(pulse.scale(), 1.0);
    EXPECT_FALSE(pulse.isMoving());
}

TEST(OrbPulse, StartedWhileComingToRestItSwingsBackToOneAllTheSame) {
    OrbPulse pulse;
    pulse.start();
    pulse.advance(2);
    pulse.stop(0.5);
    pulse.advance(0.01);
    const double before = pulse.scale();
    pulse.start();
    EXPECT_EQ(pulse.scale(), before);
    pulse.advance(2);
    EXPECT_THAT(pulse.scale(), DoubleNear(1.05, 1e-6));
    pulse.advance(2);
    EXPECT_THAT(pulse.scale(), DoubleNear(1.0, 1e-6));
    pulse.advance(1);
    EXPECT_THAT(pulse.scale(), DoubleNear(1.025, 1e-3));
}

TEST(OrbPulse, StoppedTwiceItComesToRestAtTheEarlierOfTheTwoTimes) {
    for (const auto &[first, second] : {std::pair(0.3, 0.5), std::pair(0.5, 0.1)}) {
        OrbPulse pulse;
        pulse.start();
        pulse.advance(2);
        pulse.stop(first);
        pulse.advance(0.2);
        const double before = pulse.scale();
        pulse.stop(second);
        EXPECT_EQ(pulse.scale(), before);
        pulse.advance(0.09);
        EXPECT_TRUE(pulse.isMoving());
        pulse.advance(0.02);
        EXPECT_FALSE(pulse.isMoving());
    }
}

} // namespace
} // namespace tarne::test
