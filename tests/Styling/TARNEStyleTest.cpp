#include "TARNEStyle.h"

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

using Typography = TARNEStyle::Typography;
using Colors = TARNEStyle::Colors;
using Layout = TARNEStyle::Layout;

TEST(TARNEStyle, FontSizesAreAsSettled) {
    EXPECT_EQ(Typography::FontSize::small, 12);
    EXPECT_EQ(Typography::FontSize::body, 14);
    EXPECT_EQ(Typography::FontSize::bodyLarge, 16);
    EXPECT_EQ(Typography::FontSize::title, 20);
    EXPECT_EQ(Typography::FontSize::largeTitle, 24);
    EXPECT_EQ(Typography::FontSize::timer, 48);
}

struct FontToken {
    const char *name;
    QFont (*font)();
    QString family;
    int size;
    QFont::Weight weight;
};

class TARNEStyleFonts : public testing::TestWithParam<FontToken> {};

TEST_P(TARNEStyleFonts, HaveTheirFamilySizeAndWeight) {
    const QFont font = GetParam().font();
    EXPECT_EQ(font.families().constFirst(), GetParam().family);
    EXPECT_EQ(font.pixelSize(), GetParam().size);
    EXPECT_EQ(font.weight(), GetParam().weight);
}

TEST_P(TARNEStyleFonts, NameTheEmojiFamilyExplicitly) {
    EXPECT_THAT(GetParam().font().families(), testing::Contains(u"Noto Color Emoji"_s));
}

INSTANTIATE_TEST_SUITE_P(
    Tokens, TARNEStyleFonts,
    testing::Values(
        FontToken{"heading1", Typography::heading1, u"Nimbus Sans"_s, 24, QFont::Normal},
        FontToken{"heading2", Typography::heading2, u"Nimbus Sans"_s, 20, QFont::Normal},
        FontToken{"heading3", Typography::heading3, u"Nimbus Sans"_s, 16, QFont::Normal},
        FontToken{"body", Typography::body, u"Inter"_s, 14, QFont::Normal},
        FontToken{"bodyLarge", Typography::bodyLarge, u"Inter"_s, 16, QFont::Normal},
        FontToken{"caption", Typography::caption, u"Inter"_s, 12, QFont::Normal},
        FontToken{"emphasis", Typography::emphasis, u"Inter"_s, 14, QFont::Medium},
        FontToken{"sessionBody", Typography::sessionBody, u"Inter"_s, 14, QFont::Normal},
        FontToken{"sessionBodyLarge", Typography::sessionBodyLarge, u"Inter"_s, 16, QFont::Normal},
        FontToken{"sessionCaption", Typography::sessionCaption, u"Inter"_s, 12, QFont::Normal},
        FontToken{"sessionEmphasis", Typography::sessionEmphasis, u"Inter"_s, 14, QFont::Medium},
        FontToken{"button", Typography::button, u"Inter"_s, 14, QFont::Medium},
        FontToken{"form", Typography::form, u"Inter"_s, 14, QFont::Normal}),
    [](const auto &token) { return std::string(token.param.name); });

TEST(TARNEStyle, TheTimerIsSetInAMonospacedFamilyAtItsSize) {
    const QFont font = Typography::timerDisplay();
    EXPECT_THAT(font.families().constFirst(), testing::AnyOf(u"Space Mono"_s, u"JetBrains Mono"_s));
    EXPECT_EQ(font.pixelSize(), 48);
    EXPECT_EQ(font.weight(), QFont::Normal);
}

TEST(TARNEStyle, ASingleEmojiIsSetInTheEmojiFamilyAtOnce) {
    EXPECT_EQ(Typography::emoji(14).families().constFirst(), u"Noto Color Emoji"_s);
    EXPECT_EQ(Typography::emoji(14).pixelSize(), 14);
}

TEST(TARNEStyle, SessionFontsEqualTheirPlainNamesakes) {
    EXPECT_EQ(Typography::sessionBody(), Typography::body());
    EXPECT_EQ(Typography::sessionBodyLarge(), Typography::bodyLarge());
    EXPECT_EQ(Typography::sessionCaption(), Typography::caption());
    EXPECT_EQ(Typography::sessionEmphasis(), Typography::emphasis());
}

TEST(TARNEStyle, ColorsAreAsSettled) {
    EXPECT_EQ(Colors::background, QColor(255, 255, 255));
    EXPECT_EQ(Colors::primaryText, QColor(0x1C, 0x1C, 0x1E));
    EXPECT_EQ(Colors::secondaryText, QColor(0x8E, 0x8E, 0x93));
    EXPECT_EQ(Colors::accent, QColor(0x00, 0x7A, 0xFF));
    EXPECT_EQ(Colors::success, QColor(0x34, 0xC7, 0x59));
    EXPECT_EQ(Colors::warning, QColor(0xFF, 0x95, 0x00));
}

TEST(TARNEStyle, TheBorderIsGrayAtThreeTenths) {
    EXPECT_EQ(Colors::border.rgb(), SystemColors::gray.rgb());
    EXPECT_NEAR(Colors::border.alphaF(), 0.3, 1e-4);
}

TEST(TARNEStyle, TheShadowIsBlackAtOneTenth) {
    EXPECT_EQ(Colors::shadow.rgb(), SystemColors::black.rgb());
    EXPECT_NEAR(Colors::shadow.alphaF(), 0.1, 1e-4);
}

TEST(TARNEStyle, LayoutIsAsSettled) {
    EXPECT_EQ(Layout::spacingSmall, 8);
    EXPECT_EQ(Layout::spacingMedium, 16);
    EXPECT_EQ(Layout::spacingLarge, 24);
    EXPECT_EQ(Layout::cornerRadius, 8);
    EXPECT_EQ(Layout::padding, QMarginsF(16, 16, 16, 16));
}

TEST(TARNEStyle, SystemColorsAreTheLightVariants) {
    EXPECT_EQ(SystemColors::blue.name(), u"#007aff"_s);
    EXPECT_EQ(SystemColors::green.name(), u"#34c759"_s);
    EXPECT_EQ(SystemColors::orange.name(), u"#ff9500"_s);
    EXPECT_EQ(SystemColors::red.name(), u"#ff3b30"_s);
    EXPECT_EQ(SystemColors::yellow.name(), u"#ffcc00"_s);
    EXPECT_EQ(SystemColors::gray.name(), u"#8e8e93"_s);
    EXPECT_EQ(SystemColors::purple.name(), u"#af52de"_s);
    EXPECT_EQ(SystemColors::cyan.name(), u"#32ade6"_s);
    EXPECT_EQ(SystemColors::white.name(), u"#ffffff"_s);
    EXPECT_EQ(SystemColors::black.name(), u"#000000"_s);
}

} // namespace
} // namespace tarne::test
