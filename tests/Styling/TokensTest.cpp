#include "StyleSingletons.h"

#include <QMetaProperty>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

using Style = TARNEStyle;

/// What screens get for a token, as QML reads it.
template <typename Singleton>
QVariant token(const char *name) {
    const Singleton singleton;
    const QVariant value = singleton.property(name);
    EXPECT_TRUE(value.isValid()) << name;
    return value;
}

TEST(Tokens, ReachScreensAsColours) {
    const std::vector<std::pair<const char *, QColor>> colors = {
        {"background", Style::Colors::background},
        {"primaryText", Style::Colors::primaryText},
        {"secondaryText", Style::Colors::secondaryText},
        {"accent", Style::Colors::accent},
        {"success", Style::Colors::success},
        {"warning", Style::Colors::warning},
        {"border", Style::Colors::border},
        {"shadow", Style::Colors::shadow},
        {"white", SystemColors::white},
        {"black", SystemColors::black},
        {"blue", SystemColors::blue},
        {"green", SystemColors::green},
        {"orange", SystemColors::orange},
        {"red", SystemColors::red},
        {"yellow", SystemColors::yellow},
        {"gray", SystemColors::gray},
        {"purple", SystemColors::purple},
        {"cyan", SystemColors::cyan},
        {"label", SystemColors::label},
        {"secondaryLabel", SystemColors::secondaryLabel},
        {"tertiaryLabel", SystemColors::tertiaryLabel},
        {"quaternaryLabel", SystemColors::quaternaryLabel},
        {"separator", SystemColors::separator},
        {"textBackground", SystemColors::textBackground},
        {"controlBackground", SystemColors::controlBackground},
        {"secondaryFill", SystemColors::secondaryFill},
        {"regularMaterial", SystemColors::regularMaterial}};
    const StyleWishes none;
    const ColorsSingleton singleton(none);
    for (const auto &[name, color] : colors)
        EXPECT_EQ(singleton.property(name).value<QColor>(), color) << name;
}

TEST(Tokens, ReachScreensAsFonts) {
    const std::vector<std::pair<const char *, QFont>> fonts = {
        {"heading1", Style::Typography::heading1()},
        {"heading2", Style::Typography::heading2()},
        {"heading3", Style::Typography::heading3()},
        {"body", Style::Typography::body()},
        {"bodyLarge", Style::Typography::bodyLarge()},
        {"caption", Style::Typography::caption()},
        {"emphasis", Style::Typography::emphasis()},
        {"sessionBody", Style::Typography::sessionBody()},
        {"sessionBodyLarge", Style::Typography::sessionBodyLarge()},
        {"sessionCaption", Style::Typography::sessionCaption()},
        {"sessionEmphasis", Style::Typography::sessionEmphasis()},
        {"timerDisplay", Style::Typography::timerDisplay()},
        {"button", Style::Typography::button()},
        {"form", Style::Typography::form()}};
    for (const auto &[name, font] : fonts)
        EXPECT_EQ(token<TypographyTokens>(name).value<QFont>(), font) << name;
}

TEST(Tokens, ReachScreensAsFontSizes) {
    const std::vector<std::pair<const char *, double>> sizes = {{"small", 12},      {"body", 14},
                                                                {"bodyLarge", 16},  {"title", 20},
                                                                {"largeTitle", 24}, {"timer", 48}};
    const QVariant fontSize = token<TypographyTokens>("fontSize");
    const QMetaObject *const type = fontSize.metaType().metaObject();
    ASSERT_TRUE(type);
    EXPECT_EQ(type->propertyCount(), int(sizes.size()));
    for (const auto &[name, size] : sizes) {
        const QMetaProperty property = type->property(type->indexOfProperty(name));
        EXPECT_EQ(property.readOnGadget(fontSize.constData()).toDouble(), size) << name;
    }
}

TEST(Tokens, ReachScreensAsMeasures) {
    const std::vector<std::pair<const char *, double>> measures = {{"spacingSmall", 8},
                                                                   {"spacingMedium", 16},
                                                                   {"spacingLarge", 24},
                                                                   {"cornerRadius", 8},
                                                                   {"padding", 16}};
    for (const auto &[name, measure] : measures)
        EXPECT_EQ(token<LayoutSingleton>(name).toDouble(), measure) << name;
}

} // namespace
} // namespace tarne::test
