#include "MemoryDefaults.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

const QString key = u"Key"_s;

struct Coercion {
    const char *name;
    DefaultsValue stored;
    bool asBool;
    double asDouble;
    std::optional<QString> asString;
};

class DefaultsCoercion : public testing::TestWithParam<Coercion> {};

TEST_P(DefaultsCoercion, ReadsAsTheOriginalStoreDoes) {
    test::MemoryDefaults defaults;
    defaults.setObject(key, GetParam().stored);
    EXPECT_EQ(defaults.boolForKey(key), GetParam().asBool);
    EXPECT_EQ(defaults.doubleForKey(key), GetParam().asDouble);
    EXPECT_EQ(defaults.stringForKey(key), GetParam().asString);
}

INSTANTIATE_TEST_SUITE_P(
    Values, DefaultsCoercion,
    testing::Values(Coercion{"True", true, true, 1.0, u"1"_s},
                    Coercion{"False", false, false, 0.0, u"0"_s},
                    Coercion{"IntegerOne", qint64{1}, true, 1.0, u"1"_s},
                    Coercion{"IntegerZero", qint64{0}, false, 0.0, u"0"_s},
                    Coercion{"Double", 2.75, true, 2.75, u"2.75"_s},
                    Coercion{"WholeDouble", 1500.0, true, 1500.0, u"1500"_s},
                    Coercion{"HugeDouble", 1e300, true, 1e300, u"1e+300"_s},
                    Coercion{"YesText", u"YES"_s, true, 0.0, u"YES"_s},
                    Coercion{"TrueText", u"true"_s, true, 0.0, u"true"_s},
                    Coercion{"NoText", u"NO"_s, false, 0.0, u"NO"_s},
                    Coercion{"NumberText", u" 12.5 minutes"_s, true, 12.5, u" 12.5 minutes"_s},
                    Coercion{"NegativeText", u"-1.5"_s, true, -1.5, u"-1.5"_s},
                    Coercion{"TextWithAPlus", u"+2"_s, true, 2.0, u"+2"_s},
                    Coercion{"TextWithTwoSigns", u"+-2"_s, false, 0.0, u"+-2"_s},
                    Coercion{"ZeroText", u"0.0"_s, false, 0.0, u"0.0"_s},
                    Coercion{"WordLikeInfinity", u"information"_s, false, 0.0, u"information"_s},
                    Coercion{"WordLikeNotANumber", u"nano"_s, false, 0.0, u"nano"_s},
                    Coercion{"EmptyText", QString(), false, 0.0, QString()},
                    Coercion{"Date", Date::fromReferenceSeconds(5.0), false, 0.0, std::nullopt},
                    Coercion{"Data", QByteArray("1"), false, 0.0, std::nullopt}),
    [](const auto &test) { return std::string(test.param.name); });

TEST(UserDefaults, ReadsAnAbsentKeyAsTheZeroValueOrNone) {
    const test::MemoryDefaults defaults;
    EXPECT_FALSE(defaults.boolForKey(key));
    EXPECT_EQ(defaults.doubleForKey(key), 0.0);
    EXPECT_EQ(defaults.stringForKey(key), std::nullopt);
    EXPECT_EQ(defaults.dataForKey(key), std::nullopt);
    EXPECT_EQ(defaults.dateForKey(key), std::nullopt);
}

TEST(UserDefaults, ReadsDataAndDatesOnlyFromTheirOwnType) {
    test::MemoryDefaults defaults;
    defaults.setObject(key, 5.0);
    EXPECT_EQ(defaults.dateForKey(key), std::nullopt);
    EXPECT_EQ(defaults.dataForKey(key), std::nullopt);
    defaults.setObject(key, Date::fromReferenceSeconds(5.0));
    EXPECT_EQ(defaults.dateForKey(key), Date::fromReferenceSeconds(5.0));
    defaults.setObject(key, QByteArray("x"));
    EXPECT_EQ(defaults.dataForKey(key), QByteArray("x"));
}

} // namespace
} // namespace tarne::test
