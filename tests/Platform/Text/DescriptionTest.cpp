#include "Description.h"

#include <gtest/gtest.h>

#include <limits>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

struct NumberCase {
    double value;
    const char *text;
};

class NumberDescription : public testing::TestWithParam<NumberCase> {};

TEST_P(NumberDescription, IsTheShortestTextThatReadsBackEqual) {
    EXPECT_EQ(description(GetParam().value), QString::fromLatin1(GetParam().text));
}

INSTANTIATE_TEST_SUITE_P(
    Numbers, NumberDescription,
    testing::Values(NumberCase{0.0, "0.0"}, NumberCase{-0.0, "-0.0"}, NumberCase{1500.0, "1500.0"},
                    NumberCase{299.98, "299.98"}, NumberCase{0.1 + 0.2, "0.30000000000000004"},
                    NumberCase{0.0001, "0.0001"}, NumberCase{0.00001, "1e-05"},
                    NumberCase{9007199254740992.0, "9007199254740992.0"}, NumberCase{1e16, "1e+16"},
                    NumberCase{-2.5, "-2.5"},
                    NumberCase{std::numeric_limits<double>::quiet_NaN(), "nan"},
                    NumberCase{std::numeric_limits<double>::infinity(), "inf"},
                    NumberCase{-std::numeric_limits<double>::infinity(), "-inf"}));

TEST(ListDescription, QuotesItsElements) {
    EXPECT_EQ(description(QStringList{u"3000"_s}), u"[\"3000\"]"_s);
    EXPECT_EQ(description(QStringList{u"a"_s, u"say \"b\"\n"_s}),
              u"[\"a\", \"say \\\"b\\\"\\n\"]"_s);
    EXPECT_EQ(description(QStringList{}), u"[]"_s);
}

} // namespace
} // namespace tarne::test
