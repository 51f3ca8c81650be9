#include "StrictInteger.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tarne {
namespace {

struct StrictIntegerCase {
    const char *name;
    QString text;
    std::optional<qint32> value;
};

class StrictIntegerTable : public testing::TestWithParam<StrictIntegerCase> {};

TEST_P(StrictIntegerTable, ReadsTheWholeTextOrNothing) {
    EXPECT_EQ(strictInteger<qint32>(GetParam().text), GetParam().value);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, StrictIntegerTable,
    testing::Values(StrictIntegerCase{"Digits", u"3005"_s, 3005},
                    StrictIntegerCase{"LeadingZeros", u"0042"_s, 42},
                    StrictIntegerCase{"Plus", u"+7"_s, 7}, StrictIntegerCase{"Minus", u"-7"_s, -7},
                    StrictIntegerCase{"Largest", u"2147483647"_s, 2147483647},
                    StrictIntegerCase{"Smallest", u"-2147483648"_s, -2147483647 - 1},
                    StrictIntegerCase{"TooLarge", u"2147483648"_s, std::nullopt},
                    StrictIntegerCase{"TooSmall", u"-2147483649"_s, std::nullopt},
                    StrictIntegerCase{"FortyDigits", QString(40, u'9'), std::nullopt},
                    StrictIntegerCase{"Empty", u""_s, std::nullopt},
                    StrictIntegerCase{"SignOnly", u"-"_s, std::nullopt},
                    StrictIntegerCase{"TwoSigns", u"--1"_s, std::nullopt},
                    StrictIntegerCase{"BlankInFront", u" 1"_s, std::nullopt},
                    StrictIntegerCase{"LineEndBehind", u"1\n"_s, std::nullopt},
                    StrictIntegerCase{"Fraction", u"1.0"_s, std::nullopt},
                    StrictIntegerCase{"Hexadecimal", u"0x10"_s, std::nullopt},
                    StrictIntegerCase{"OtherDigits", u"٣"_s, std::nullopt}),
    [](const auto &row) { return row.param.name; });

} // namespace
} // namespace tarne
