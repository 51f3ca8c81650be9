#include "HexColor.h"

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

const QColor fallback(1, 1, 0, 1);

TEST(ColorFromHex, ThreeCharactersGiveSeventeenTimesEachDigitAndFullOpacity) {
    EXPECT_EQ(colorFromHex(u"F00"), QColor(255, 0, 0));
    EXPECT_EQ(colorFromHex(u"FFF"), QColor(255, 255, 255));
    EXPECT_EQ(colorFromHex(u"1aC"), QColor(17, 170, 204));
}

TEST(ColorFromHex, SixCharactersGiveRedGreenAndBlueAndFullOpacity) {
    EXPECT_EQ(colorFromHex(u"1C1C1E"), QColor(0x1C, 0x1C, 0x1E));
    EXPECT_EQ(colorFromHex(u"ff9500"), QColor(255, 149, 0));
}

TEST(ColorFromHex, EightCharactersBeginWithTheAlpha) {
    EXPECT_EQ(colorFromHex(u"80FF0000"), QColor(255, 0, 0, 128));
    EXPECT_EQ(colorFromHex(u"00123456"), QColor(0x12, 0x34, 0x56, 0));
}

TEST(ColorFromHex, AnyOtherLengthGivesTheNearlyTransparentFallback) {
    EXPECT_EQ(colorFromHex(u""), QColor(1, 1, 0, 1));
    EXPECT_EQ(colorFromHex(u"F"), fallback);
    EXPECT_EQ(colorFromHex(u"FFFF"), fallback);
    EXPECT_EQ(colorFromHex(u"FFFFF"), fallback);
    EXPECT_EQ(colorFromHex(u"FFFFFFF"), fallback);
    EXPECT_EQ(colorFromHex(u"FFFFFFFFF"), fallback);
    EXPECT_EQ(colorFromHex(u"FFFFFFFFFFFFFFFFFFFFFFFFF"), fallback);
}

TEST(ColorFromHex, ATextOfNothingButSignsGivesTheFallback) {
    EXPECT_EQ(colorFromHex(u"###"), fallback);
    EXPECT_EQ(colorFromHex(u"      "), fallback);
}

TEST(ColorFromHex, ALeadingNumberSignMakesNoDifference) {
    EXPECT_EQ(colorFromHex(u"#34C759"), colorFromHex(u"34C759"));
}

TEST(ColorFromHex, SignsAndBlanksAreTrimmedFromBothEnds) {
    EXPECT_EQ(colorFromHex(u" \n#(34C759); \t"), colorFromHex(u"34C759"));
}

TEST(ColorFromHex, ANumberSignInsideEndsTheScanButCountsAsACharacter) {
    EXPECT_EQ(colorFromHex(u"F#F"), QColor(0, 0, 255));
    EXPECT_EQ(colorFromHex(u"12#456"), QColor(0, 0, 0x12));
}

TEST(ColorFromHex, SixCharactersWithoutADigitGiveOpaqueBlack) {
    EXPECT_EQ(colorFromHex(u"zzzzzz"), QColor(0, 0, 0, 255));
}

TEST(ColorFromHex, TheScanStopsAtTheFirstCharacterThatIsNoDigit) {
    EXPECT_EQ(colorFromHex(u"FFGF00"), QColor(0, 0, 255));
}

TEST(ColorFromHex, ThePrefixOfAHexadecimalNumberEndsTheScanAtItsLetter) {
    EXPECT_EQ(colorFromHex(u"0xFFFF"), QColor(0, 0, 0));
}

TEST(ColorFromHex, LettersOfOtherScriptsCountAsCharactersAndAreNoDigits) {
    EXPECT_EQ(colorFromHex(u"äää"), QColor(0, 0, 0));
    EXPECT_EQ(colorFromHex(u"١٢٣"), QColor(0, 0, 0));
}

TEST(ColorFromHex, AnEmojiIsTrimmedAsASign) {
    EXPECT_EQ(colorFromHex(u"🎨F00🎨"), QColor(255, 0, 0));
}

TEST(ColorFromHex, ComponentsAreTheirNumberDividedBy255) {
    const QColor color = colorFromHex(u"80FF0033");
    EXPECT_NEAR(color.alphaF(), 128 / 255.0, 1e-4);
    EXPECT_NEAR(color.redF(), 1.0, 1e-4);
    EXPECT_NEAR(color.blueF(), 0x33 / 255.0, 1e-4);
    EXPECT_EQ(color.spec(), QColor::Rgb);
}

} // namespace
} // namespace tarne::test
