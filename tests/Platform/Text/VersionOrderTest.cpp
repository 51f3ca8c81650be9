#include "VersionOrder.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

struct Pair {
    const char *name;
    QString earlier;
    QString later;
};

void PrintTo(const Pair &pair, std::ostream *out) {
    *out << pair.name;
}

class VersionOrder : public testing::TestWithParam<Pair> {};

TEST_P(VersionOrder, PutsTheEarlierBeforeTheLaterBothWaysRound) {
    EXPECT_TRUE(compareVersions(GetParam().earlier, GetParam().later) < 0);
    EXPECT_TRUE(compareVersions(GetParam().later, GetParam().earlier) > 0);
}

INSTANTIATE_TEST_SUITE_P(Pairs, VersionOrder,
                         testing::Values(Pair{"NumbersByValue", u"1.9"_s, u"1.10"_s},
                                         Pair{"AThirdNumber", u"1.0"_s, u"1.0.1"_s},
                                         Pair{"ABetaBeforeItsRelease", u"2.0b1"_s, u"2.0"_s},
                                         Pair{"ARcBeforeItsRelease", u"2.0-rc1"_s, u"2.0.0"_s},
                                         Pair{"BetasByNumber", u"2.0b2"_s, u"2.0b10"_s},
                                         Pair{"AlphaBeforeBeta", u"2.0alpha"_s, u"2.0beta"_s},
                                         Pair{"NothingBeforeANumber", u""_s, u"1"_s},
                                         Pair{"NumbersBeyondSixtyFourBits",
                                              u"99999999999999999999"_s,
                                              u"100000000000000000000"_s},
                                         Pair{"BuildNumbers", u"1041"_s, u"1042"_s}),
                         [](const auto &pair) { return std::string(pair.param.name); });

TEST(VersionEquality, MissingNumbersCountAsZero) {
    EXPECT_TRUE(compareVersions(u"1.0", u"1.0.0") == 0);
    EXPECT_TRUE(compareVersions(u"", u"0.0") == 0);
}

TEST(VersionEquality, LeadingZerosAndSeparatorsDoNotCount) {
    EXPECT_TRUE(compareVersions(u"1.02", u"1-2") == 0);
    EXPECT_TRUE(compareVersions(u"  3.1 ", u"3.1") == 0);
}

TEST(VersionEquality, WhatFollowsAPlusOrASpaceDoesNotCount) {
    EXPECT_TRUE(compareVersions(u"1.2+build7", u"1.2 (42)") == 0);
}

} // namespace
} // namespace tarne::test
