#include "DurationText.h"

#include <gtest/gtest.h>

#include <limits>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

TEST(DurationText, HasTwoDigitsEachForHoursMinutesAndSeconds) {
    EXPECT_EQ(hoursMinutesSeconds(0), u"00:00:00"_s);
    EXPECT_EQ(hoursMinutesSeconds(59), u"00:00:59"_s);
    EXPECT_EQ(hoursMinutesSeconds(1500), u"00:25:00"_s);
    EXPECT_EQ(hoursMinutesSeconds(10800), u"03:00:00"_s);
    EXPECT_EQ(hoursMinutesSeconds(360000), u"100:00:00"_s);
}

TEST(DurationText, DropsTheFraction) {
    EXPECT_EQ(hoursMinutesSeconds(3725.9), u"01:02:05"_s);
    EXPECT_EQ(hoursMinutesSeconds(0.999), u"00:00:00"_s);
}

TEST(DurationText, SaturatesWhatNoIntegerHolds) {
    EXPECT_EQ(hoursMinutesSeconds(1e300), u"2562047788015215:30:07"_s);
    EXPECT_EQ(hoursMinutesSeconds(std::numeric_limits<double>::quiet_NaN()), u"00:00:00"_s);
}

} // namespace
} // namespace tarne::test
