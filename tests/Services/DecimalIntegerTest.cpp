#include "DecimalInteger.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tarne {
namespace {

struct DecimalIntegerCase {
    const char *name;
    QString text;
    std::optional<qint32> value;
};

class DecimalIntegerTable : public testing::TestWithParam<DecimalIntegerCase> {};

TEST_P(DecimalIntegerTable, ReadsTheWholeTextOrNothing) {
    EXPECT_EQ(decimalInteger<qint32>(GetParam().text), GetParam().value);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, DecimalIntegerTable,
    testing::Values(DecimalIntegerCase{"Digits", u"3005"_s, 3005},
                    DecimalIntegerCase{"LeadingZeros", u"0042"_s, 42},
                    DecimalIntegerCase{"Plus", u"+7"_s, 7},
                    DecimalIntegerCase{"Minus", u"-7"_s, -7},
                    DecimalIntegerCase{"Largest", u"2147483647"_s, 2147483647},
                    DecimalIntegerCase{"Smallest", u"-2147483648"_s, -2147483647 - 1},
                    DecimalIntegerCase{"TooLarge", u"2147483648"_s, std::nullopt},
                    DecimalIntegerCase{"TooSmall", u"-2147483649"_s, std::nullopt},
                    DecimalIntegerCase{"FortyDigits", QString(40, u'9'), std::nullopt},
                    DecimalIntegerCase{"Empty", u""_s, std::nullopt},
                    DecimalIntegerCase{"SignOnly", u"-"_s, std::nullopt},
                    DecimalIntegerCase{"TwoSigns", u"--1"_s, std::nullopt},
                    DecimalIntegerCase{"BlankInFront", u" 1"_s, std::nullopt},
                    DecimalIntegerCase{"LineEndBehind", u"1\n"_s, std::nullopt},
                    DecimalIntegerCase{"Fraction", u"1.0"_s, std::nullopt},
                    DecimalIntegerCase{"Hexadecimal", u"0x10"_s, std::nullopt},
                    DecimalIntegerCase{"OtherDigits", u"٣"_s, std::nullopt}),
    [](const auto &row) { return row.param.name; });

} // namespace
} // namespace tarne
