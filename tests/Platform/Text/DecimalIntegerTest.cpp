#include "DecimalInteger.h"

#include <gtest/gtest.h>

#include <limits>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

TEST(DecimalInteger, IsTheNumberOfDigitsWithAtMostOneSign) {
    EXPECT_EQ(decimalInteger(u"25"), 25);
    EXPECT_EQ(decimalInteger(u"+25"), 25);
    EXPECT_EQ(decimalInteger(u"-25"), -25);
    EXPECT_EQ(decimalInteger(u"007"), 7);
    EXPECT_EQ(decimalInteger(u"-0"), 0);
}

TEST(DecimalInteger, ReachesToTheEndsOf64Bits) {
    EXPECT_EQ(decimalInteger(u"9223372036854775807"), std::numeric_limits<qint64>::max());
    EXPECT_EQ(decimalInteger(u"-9223372036854775808"), std::numeric_limits<qint64>::min());
    EXPECT_EQ(decimalInteger(u"9223372036854775808"), std::nullopt);
    EXPECT_EQ(decimalInteger(u"-9223372036854775809"), std::nullopt);
}

TEST(DecimalInteger, ReachesToTheEndsOf32BitsWhereThatManyAreAskedFor) {
    EXPECT_EQ(decimalInteger<qint32>(u"2147483647"), std::numeric_limits<qint32>::max());
    EXPECT_EQ(decimalInteger<qint32>(u"-2147483648"), std::numeric_limits<qint32>::min());
    EXPECT_EQ(decimalInteger<qint32>(u"2147483648"), std::nullopt);
    EXPECT_EQ(decimalInteger<qint32>(u"-2147483649"), std::nullopt);
}

TEST(DecimalInteger, IsNoneForANumberOfFortyDigits) {
    EXPECT_EQ(decimalInteger(QString(40, u'9')), std::nullopt);
    EXPECT_EQ(decimalInteger(u"-"_s + QString(40, u'9')), std::nullopt);
}

class NoDecimalInteger : public testing::TestWithParam<const char16_t *> {};

TEST_P(NoDecimalInteger, IsNone) {
    EXPECT_EQ(decimalInteger(GetParam()), std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(Texts, NoDecimalInteger,
                         testing::Values(u"", u" ", u" 25", u"25 ", u"2 5", u"25\n", u"+", u"-",
                                         u"+-5", u"-+5", u"++5", u"--5", u"25.0", u"25,0", u"1e2",
                                         u"0x19", u"25m", u"twenty", u"٢٥", u"２５", u"²",
                                         u"25\u00a0", u"25\u200b"));

} // namespace
} // namespace tarne::test
