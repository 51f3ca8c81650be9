#include "WholeNumber.h"

#include <gtest/gtest.h>

namespace tarne::test {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr qint64 greatest = std::numeric_limits<qint64>::max();
constexpr qint64 smallest = std::numeric_limits<qint64>::min();

TEST(WholeNumber, DropsTheFractionTowardsZero) {
    EXPECT_EQ(wholeNumber(2.75), 2);
    EXPECT_EQ(wholeNumber(-2.75), -2);
    EXPECT_EQ(saturatedWholeNumber(-0.5), 0);
}

TEST(WholeNumber, EndsWhere64BitsEnd) {
    EXPECT_EQ(wholeNumber(0x1p63 - 1024), greatest - 1023);
    EXPECT_EQ(wholeNumber(0x1p63), std::nullopt);
    EXPECT_EQ(wholeNumber(-0x1p63), smallest);
    EXPECT_EQ(wholeNumber(-0x1p63 - 2048), std::nullopt);
    EXPECT_EQ(wholeNumber(notANumber), std::nullopt);
}

TEST(WholeNumber, SaturatesBeyond64Bits) {
    EXPECT_EQ(saturatedWholeNumber(1e300), greatest);
    EXPECT_EQ(saturatedWholeNumber(0x1p63), greatest);
    EXPECT_EQ(saturatedWholeNumber(-0x1p63), smallest);
    EXPECT_EQ(saturatedWholeNumber(-infinity), smallest);
    EXPECT_EQ(saturatedWholeNumber(notANumber), 0);
}

} // namespace
} // namespace tarne::test
