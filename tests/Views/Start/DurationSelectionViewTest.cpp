#include "DurationFixture.h"

#include <limits>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

TEST_F(DurationSelectionTest, StoresNothingBeforeContinue) {
    sheet().selectPreset(45);
    type(u"50"_s);
    sheet().applyCustomDuration();
    EXPECT_EQ(selectedDuration, 3000.0);
    EXPECT_EQ(controller().userPreferences().defaultDuration, 1500.0);
    EXPECT_EQ(storedDefault(), 1500.0);
}

TEST_F(DurationSelectionTest, StoresTheChoiceClosesAndGoesOnWithContinue) {
    sheet().selectPreset(45);
    sheet().submit();
    EXPECT_EQ(storedDefault(), 2700.0);
    EXPECT_EQ(controller().userPreferences().defaultDuration, 2700.0);
    EXPECT_FALSE(isPresented);
    EXPECT_EQ(completions, 1);
}

TEST_F(DurationSelectionTest, ClosesBeforeItGoesOn) {
    bool wasPresented = true;
    DurationSelectionView view(controller(), &selectedDuration, &isPresented,
                               [&] { wasPresented = isPresented; });
    view.submit();
    EXPECT_FALSE(wasPresented);
}

TEST_F(DurationSelectionTest, ContinuesWithTheChoiceThatWasNotYetSet) {
    type(u"50"_s);
    sheet().submit();
    EXPECT_EQ(storedDefault(), 1500.0);
    EXPECT_EQ(completions, 1);
}

TEST_F(DurationSelectionTest, StaysOpenWithoutAMessageWhenTheLengthIsRefused) {
    for (const double seconds :
         {0.0, 299.9, 10800.1, -1500.0, std::numeric_limits<double>::quiet_NaN(),
          std::numeric_limits<double>::infinity()}) {
        open(seconds);
        const QString message = sheet().customInputError();
        sheet().submit();
        EXPECT_TRUE(isPresented) << seconds;
        EXPECT_EQ(completions, 0) << seconds;
        EXPECT_EQ(sheet().customInputError(), message) << seconds;
        EXPECT_EQ(storedDefault(), 1500.0) << seconds;
    }
}

TEST_F(DurationSelectionTest, KeepsTheChoiceButStoresNothingWhenClosed) {
    sheet().selectPreset(60);
    sheet().close();
    EXPECT_FALSE(isPresented);
    EXPECT_EQ(selectedDuration, 3600.0);
    EXPECT_EQ(completions, 0);
    EXPECT_EQ(storedDefault(), 1500.0);
}

} // namespace
} // namespace tarne::test
