#include "BlurredShape.h"

#include <gmock/gmock.h>

#include <cmath>
#include <numbers>

namespace tarne::test {
namespace {

using testing::DoubleNear;

TEST(BlurCoverage, IsHalfAtTheEdge) {
    EXPECT_THAT(blurCoverage(0, 8), DoubleNear(0.5, 1e-9));
}

TEST(BlurCoverage, IsFullFarInsideAndNothingAtTheExtent) {
    EXPECT_GT(blurCoverage(-12, 8), 0.99);
    EXPECT_LT(blurCoverage(blurExtent(8), 8), 0.01);
}

TEST(BlurCoverage, FadesAsABellCurveDoes) {
    for (double distance = -60; distance <= 60; distance += 0.0137) {
        const double deviations = distance / (20.0 / 2);
        const double exact = 0.5 * std::erfc(deviations / std::numbers::sqrt2);
        EXPECT_THAT(blurCoverage(distance, 20), DoubleNear(exact, 1e-6)) << distance;
    }
}

TEST(BlurCoverage, WithoutARadiusIsASmoothedEdge) {
    EXPECT_EQ(blurCoverage(-1, 0), 1.0);
    EXPECT_EQ(blurCoverage(0, 0), 0.5);
    EXPECT_EQ(blurCoverage(1, 0), 0.0);
}

TEST(BlurredBox, ReachesBeyondTheBoxOnAllSides) {
    const QImage image = blurredBox(QSizeF(100, 50), 8, 4, Qt::black, 1);
    EXPECT_EQ(image.size(), QSize(112, 62));
}

TEST(BlurredBox, FollowsTheDevicePixelRatio) {
    EXPECT_EQ(blurredBox(QSizeF(100, 50), 8, 4, Qt::black, 2).size(), QSize(224, 124));
}

TEST(BlurredBox, IsDarkestInTheMiddleAndFadesOutAtItsBorder) {
    const QImage image = blurredBox(QSizeF(100, 50), 8, 4, QColor(0, 0, 0, 100), 1);
    EXPECT_EQ(qAlpha(image.pixel(56, 31)), 100);
    EXPECT_LE(qAlpha(image.pixel(0, 31)), 1);
    EXPECT_EQ(qAlpha(image.pixel(0, 0)), 0);
}

TEST(BlurredBox, IsSymmetric) {
    const QImage image = blurredBox(QSizeF(40, 30), 8, 8, Qt::red, 1);
    EXPECT_EQ(image, image.mirrored(true, true));
}

} // namespace
} // namespace tarne::test
