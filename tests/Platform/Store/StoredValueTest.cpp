#include "StoredValue.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

using Cell = StoredValue::Cell;

// The expected sums were worked out with another implementation: zlib.crc32 of Python.

TEST(StoredValueChecksum, OfTextCoversTypeAndBytes) {
    EXPECT_EQ(StoredValue(u"abc"_s).checksum(), 0x3AE8B1BAu);
}

TEST(StoredValueChecksum, OfDataWithTheSameBytesDiffersByTheType) {
    EXPECT_EQ(StoredValue(QByteArray("abc")).checksum(), 0x649025CEu);
}

TEST(StoredValueChecksum, OfAnIntegerTakesItsLowestByteFirst) {
    EXPECT_EQ(StoredValue(qint64{258}).checksum(), 0x1A432DDDu);
}

TEST(StoredValueChecksum, OfADoubleTakesItsMachineForm) {
    EXPECT_EQ(StoredValue(1500.0).checksum(), 0x181ABA8Bu);
}

struct Misfit {
    const char *name;
    StoredValue stored;
};

class UnfitCell : public testing::TestWithParam<Misfit> {};

TEST_P(UnfitCell, IsNoValue) {
    EXPECT_EQ(GetParam().stored.decoded(), std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(Cells, UnfitCell,
                         testing::Values(Misfit{"TextForBoolean", {"boolean", std::string("1")}},
                                         Misfit{"RealForBoolean", {"boolean", 1.0}},
                                         Misfit{"RealForInteger", {"integer", 1.0}},
                                         Misfit{"WordForDouble", {"double", std::string("inf")}},
                                         Misfit{"DataForDate", {"date", QByteArray("1")}},
                                         Misfit{"IntegerForText", {"text", qint64{1}}},
                                         Misfit{"TextForData", {"data", std::string("{}")}},
                                         Misfit{"Null", {"text", Cell()}},
                                         Misfit{"UnknownType", {"float", 1.0}}),
                         [](const auto &test) { return std::string(test.param.name); });

TEST(StoredValue, TakesAWholeNumberOfAnotherHandForADouble) {
    EXPECT_EQ(StoredValue("double", qint64{5}).decoded(), DefaultsValue(5.0));
    EXPECT_EQ(StoredValue("date", qint64{5}).decoded(),
              DefaultsValue(Date::fromReferenceSeconds(5.0)));
}

TEST(StoredValue, KeepsAByteOrderMarkAtTheBeginningOfAText) {
    const QString text = u"\uFEFFWrite"_s;
    EXPECT_EQ(StoredValue(DefaultsValue(text)).decoded(), DefaultsValue(text));
}

TEST(StoredValue, TakesAnyNumberButZeroForTrue) {
    EXPECT_EQ(StoredValue("boolean", qint64{2}).decoded(), DefaultsValue(true));
}

TEST(StoredValue, IsTheSameOnlyWithTheSameTypeAndBits) {
    EXPECT_TRUE(isSameValue(1.5, 1.5));
    EXPECT_FALSE(isSameValue(0.0, -0.0));
    EXPECT_FALSE(isSameValue(qint64{1}, true));
    EXPECT_FALSE(isSameValue(qint64{1}, 1.0));
    EXPECT_FALSE(isSameValue(u"a"_s, QByteArray("a")));
    EXPECT_TRUE(isSameValue(QByteArray("ab"), QByteArray("ab")));
    EXPECT_FALSE(isSameValue(QByteArray("ab"), QByteArray("ac")));
    EXPECT_FALSE(isSameValue(5.0, Date::fromReferenceSeconds(5.0)));
}

} // namespace
} // namespace tarne::test
