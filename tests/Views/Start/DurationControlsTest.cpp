// What the sheet and the picker have in common, tested on the sheet; the picker's differences have
// a test of their own.

#include "DurationFixture.h"

#include <limits>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

TEST_F(DurationSelectionTest, OffersFourPresets) {
    EXPECT_EQ(sheet().presetDurations(), (QList<int>{15, 25, 45, 60}));
}

TEST_F(DurationSelectionTest, OpensWithoutTheRowWhenTheLengthIsAPreset) {
    for (const int minutes : DurationControls::presetDurations()) {
        open(minutes * 60.0);
        EXPECT_FALSE(sheet().showCustomInput()) << minutes;
        EXPECT_EQ(sheet().customDuration(), u""_s) << minutes;
    }
}

TEST_F(DurationSelectionTest, OpensWithTheRowFilledInWhenTheLengthIsNoPreset) {
    open(30 * 60.0);
    EXPECT_TRUE(sheet().showCustomInput());
    EXPECT_EQ(sheet().customDuration(), u"30"_s);
    EXPECT_EQ(sheet().customInputError(), u""_s);
}

TEST_F(DurationSelectionTest, CountsALengthBetweenMinutesAsItsWholeMinutes) {
    open(25 * 60.0 + 59.9);
    EXPECT_EQ(sheet().selectedPreset(), 25);
    EXPECT_FALSE(sheet().showCustomInput());
}

TEST_F(DurationSelectionTest, ValidatesTheTextItFillsInOnOpening) {
    open(4 * 60.0);
    EXPECT_EQ(sheet().customDuration(), u"4"_s);
    EXPECT_EQ(sheet().customInputError(), u"Duration must be at least 5 minutes"_s);
}

TEST_F(DurationSelectionTest, OpensWithALengthThatIsNoNumberAsZeroMinutes) {
    open(std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(sheet().customDuration(), u"0"_s);
    EXPECT_EQ(sheet().selectedDurationText(), u"0 minutes"_s);
    EXPECT_EQ(sheet().customInputError(), u"Duration must be at least 5 minutes"_s);
}

TEST_F(DurationSelectionTest, OpensWithAnEndlessLengthAsTheLongestOfAll) {
    open(std::numeric_limits<double>::infinity());
    EXPECT_EQ(sheet().customDuration(), u"9223372036854775807"_s);
    EXPECT_EQ(sheet().customInputError(), u"Duration must be at most 180 minutes"_s);
}

TEST_F(DurationSelectionTest, MarksNoPresetForAnotherLength) {
    open(30 * 60.0);
    EXPECT_EQ(sheet().selectedPreset(), 0);
}

struct FieldText {
    QString text;
    QString error;
};

class DurationField : public DurationSelectionTest,
                      public testing::WithParamInterface<FieldText> {};

TEST_P(DurationField, ShowsTheMessageOfItsText) {
    type(GetParam().text);
    EXPECT_EQ(sheet().customInputError(), GetParam().error);
    EXPECT_EQ(sheet().canSetCustomDuration(), GetParam().error.isEmpty());
}

const QString invalid = u"Please enter a valid number"_s;
const QString tooShort = u"Duration must be at least 5 minutes"_s;
const QString tooLong = u"Duration must be at most 180 minutes"_s;

INSTANTIATE_TEST_SUITE_P(
    Texts, DurationField,
    testing::Values(FieldText{u""_s, u""_s}, FieldText{u"4"_s, tooShort}, FieldText{u"5"_s, u""_s},
                    FieldText{u"+5"_s, u""_s}, FieldText{u"005"_s, u""_s},
                    FieldText{u"180"_s, u""_s}, FieldText{u"181"_s, tooLong},
                    FieldText{u"0"_s, tooShort}, FieldText{u"-30"_s, tooShort},
                    FieldText{u"word"_s, invalid}, FieldText{u"25.5"_s, invalid},
                    FieldText{u" 25"_s, invalid}, FieldText{u"25 "_s, invalid},
                    FieldText{u" "_s, invalid}, FieldText{u"9223372036854775807"_s, tooLong},
                    FieldText{QString(40, u'9'), invalid}));

TEST_F(DurationSelectionTest, ClearsTheMessageWhenTheFieldIsEmptied) {
    type(u"word"_s);
    type(u""_s);
    EXPECT_EQ(sheet().customInputError(), u""_s);
}

TEST_F(DurationSelectionTest, SetsALengthThatIsNoPreset) {
    type(u"50"_s);
    sheet().applyCustomDuration();
    EXPECT_EQ(selectedDuration, 3000.0);
    EXPECT_EQ(sheet().customInputError(), u""_s);
}

TEST_F(DurationSelectionTest, SetsBothEndsOfTheRange) {
    type(u"5"_s);
    sheet().applyCustomDuration();
    EXPECT_EQ(selectedDuration, 300.0);
    type(u"180"_s);
    sheet().applyCustomDuration();
    EXPECT_EQ(selectedDuration, 10800.0);
}

TEST_F(DurationSelectionTest, KeepsTheRowAndItsTextAfterSet) {
    type(u"50"_s);
    sheet().applyCustomDuration();
    EXPECT_TRUE(sheet().showCustomInput());
    EXPECT_EQ(sheet().customDuration(), u"50"_s);
}

TEST_F(DurationSelectionTest, AsksForANumberWhenAnEmptyFieldIsSet) {
    type(u""_s);
    ASSERT_TRUE(sheet().canSetCustomDuration());
    sheet().applyCustomDuration();
    EXPECT_EQ(sheet().customInputError(), u"Please enter a number between 5 and 180"_s);
    EXPECT_EQ(selectedDuration, 1500.0);
}

TEST_F(DurationSelectionTest, RefusesToSetWhatIsOutOfRange) {
    for (const QString &text : {u"4"_s, u"181"_s, u"word"_s, QString(40, u'9')}) {
        type(text);
        sheet().applyCustomDuration();
        EXPECT_EQ(sheet().customInputError(), u"Please enter a number between 5 and 180"_s);
        EXPECT_EQ(selectedDuration, 1500.0);
    }
}

TEST_F(DurationSelectionTest, ClosesTheRowAndClearsTheErrorOnAPreset) {
    type(u"4"_s);
    sheet().selectPreset(45);
    EXPECT_EQ(selectedDuration, 2700.0);
    EXPECT_EQ(sheet().selectedPreset(), 45);
    EXPECT_FALSE(sheet().showCustomInput());
    EXPECT_EQ(sheet().customInputError(), u""_s);
}

TEST_F(DurationSelectionTest, ShowsTheKeptTextAgainWhenTheRowIsReopened) {
    type(u"4"_s);
    sheet().selectPreset(45);
    sheet().toggleCustomInput();
    EXPECT_TRUE(sheet().showCustomInput());
    EXPECT_EQ(sheet().customDuration(), u"4"_s);
    // The text has not changed, so nothing validates it until it does.
    EXPECT_EQ(sheet().customInputError(), u""_s);
}

TEST_F(DurationSelectionTest, ClearsTheErrorWhenTheRowIsClosed) {
    type(u"4"_s);
    sheet().toggleCustomInput();
    EXPECT_FALSE(sheet().showCustomInput());
    EXPECT_EQ(sheet().customInputError(), u""_s);
}

TEST_F(DurationSelectionTest, MarksTheLastPresetForSixtyMinutes) {
    sheet().selectPreset(60);
    EXPECT_EQ(sheet().selectedPreset(), DurationControls::presetDurations().last());
    EXPECT_EQ(sheet().selectedDurationText(), u"1 hour 0 minutes"_s);
}

TEST_F(DurationSelectionTest, FollowsALengthThatChangesElsewhere) {
    int changes = 0;
    QObject::connect(&sheet(), &DurationControls::selectedDurationChanged, &sheet(),
                     [&] { ++changes; });
    selectedDuration = 2700.0;
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(sheet().selectedPreset(), 45);
}

struct Wording {
    double seconds;
    QString text;
};

class FormatDuration : public testing::TestWithParam<Wording> {};

TEST_P(FormatDuration, WordsHoursAndMinutes) {
    EXPECT_EQ(DurationControls::formatDuration(GetParam().seconds), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    Lengths, FormatDuration,
    testing::Values(Wording{0.0, u"0 minutes"_s}, Wording{59.9, u"0 minutes"_s},
                    Wording{60.0, u"1 minute"_s}, Wording{119.0, u"1 minute"_s},
                    Wording{300.0, u"5 minutes"_s}, Wording{1500.0, u"25 minutes"_s},
                    Wording{3599.9, u"59 minutes"_s}, Wording{3600.0, u"1 hour 0 minutes"_s},
                    Wording{3660.0, u"1 hour 1 minute"_s}, Wording{5400.0, u"1 hour 30 minutes"_s},
                    Wording{7260.0, u"2 hours 1 minute"_s},
                    Wording{10800.0, u"3 hours 0 minutes"_s},
                    Wording{std::numeric_limits<double>::quiet_NaN(), u"0 minutes"_s},
                    Wording{1e300, u"2562047788015215 hours 30 minutes"_s}));

} // namespace
} // namespace tarne::test
