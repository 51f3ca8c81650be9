#include "DurationPickerView.h"

#include "SessionFixture.h"

#include <QProperty>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

class DurationPickerTest : public SessionTest {
protected:
    double storedDefault() { return UserPreferences::load(defaults).defaultDuration; }

    QProperty<double> selectedDuration{1500.0};
    DurationPickerView picker{controller(), &selectedDuration};
};

TEST_F(DurationPickerTest, StoresAPresetAtOnce) {
    picker.toggleCustomInput();
    picker.setCustomDuration(u"4"_s);
    picker.selectPreset(45);
    EXPECT_EQ(selectedDuration, 2700.0);
    EXPECT_EQ(storedDefault(), 2700.0);
    EXPECT_EQ(controller().userPreferences().defaultDuration, 2700.0);
    EXPECT_FALSE(picker.showCustomInput());
    EXPECT_EQ(picker.customInputError(), u""_s);
    EXPECT_EQ(picker.customDuration(), u"4"_s);
}

TEST_F(DurationPickerTest, StoresASetLengthAtOnce) {
    picker.setCustomDuration(u"50"_s);
    picker.applyCustomDuration();
    EXPECT_EQ(selectedDuration, 3000.0);
    EXPECT_EQ(storedDefault(), 3000.0);
}

TEST_F(DurationPickerTest, StoresNothingForAFieldThatIsRefused) {
    picker.setCustomDuration(u"4"_s);
    picker.applyCustomDuration();
    EXPECT_EQ(picker.customInputError(), u"Please enter a number between 5 and 180"_s);
    EXPECT_EQ(storedDefault(), 1500.0);
    EXPECT_FALSE(defaults.dataForKey(keys::userPreferences).has_value());
}

TEST_F(DurationPickerTest, ChangesNothingElseOfThePreferences) {
    controller().saveGoal(u"Write report"_s);
    picker.selectPreset(15);
    EXPECT_EQ(controller().loadLastGoal(), u"Write report"_s);
    EXPECT_EQ(UserPreferences::load(defaults).lastGoal, u"Write report"_s);
}

TEST_F(DurationPickerTest, OpensWithTheRowFilledInWhenTheLengthIsNoPreset) {
    selectedDuration = 1800.0;
    picker.appear();
    EXPECT_TRUE(picker.showCustomInput());
    EXPECT_EQ(picker.customDuration(), u"30"_s);
}

TEST_F(DurationPickerTest, ValidatesAndWordsAsTheSheetDoes) {
    picker.setCustomDuration(u"181"_s);
    EXPECT_EQ(picker.customInputError(), u"Duration must be at most 180 minutes"_s);
    selectedDuration = 5400.0;
    EXPECT_EQ(picker.selectedDurationText(), u"1 hour 30 minutes"_s);
}

} // namespace
} // namespace tarne::test
