#include "AnyButtonStyle.h"
#include "TARNEStyle.h"

#include <gmock/gmock.h>

namespace tarne::test {
namespace {

const ButtonConfiguration pressed{.isPressed = true};
const ButtonConfiguration released{.isPressed = false};

TEST(PrimaryButtonStyle, IsWhiteOnTheAccentColour) {
    const ButtonLook look = PrimaryButtonStyle{}(released);
    EXPECT_EQ(look.textColor, SystemColors::white);
    EXPECT_EQ(look.background, TARNEStyle::Colors::accent);
    EXPECT_EQ(look.outlineWidth, 0);
}

TEST(SecondaryButtonStyle, IsTheAccentColourOnTheBackgroundWithAnOutlineOfOnePoint) {
    const ButtonLook look = SecondaryButtonStyle{}(released);
    EXPECT_EQ(look.textColor, TARNEStyle::Colors::accent);
    EXPECT_EQ(look.background, TARNEStyle::Colors::background);
    EXPECT_EQ(look.outlineColor, TARNEStyle::Colors::accent);
    EXPECT_EQ(look.outlineWidth, 1);
}

TEST(ButtonStyles, ShareTheirPaddingAndCorners) {
    for (const ButtonLook &look :
         {PrimaryButtonStyle{}(released), SecondaryButtonStyle{}(released)}) {
        EXPECT_EQ(look.horizontalPadding, 16);
        EXPECT_EQ(look.verticalPadding, 10);
        EXPECT_EQ(look.cornerRadius, 8);
    }
}

TEST(ButtonStyles, StepBackToNineTenthsWhilePressed) {
    EXPECT_EQ(PrimaryButtonStyle{}(pressed).opacity, 0.9);
    EXPECT_EQ(PrimaryButtonStyle{}(released).opacity, 1.0);
    EXPECT_EQ(SecondaryButtonStyle{}(pressed).opacity, 0.9);
    EXPECT_EQ(SecondaryButtonStyle{}(released).opacity, 1.0);
}

TEST(AnyButtonStyle, RendersAsTheStyleItWasMadeFrom) {
    EXPECT_EQ(AnyButtonStyle(PrimaryButtonStyle{}).render(false), PrimaryButtonStyle{}(released));
    EXPECT_EQ(AnyButtonStyle(SecondaryButtonStyle{}).render(true), SecondaryButtonStyle{}(pressed));
}

TEST(AnyButtonStyle, KeepsACopyOfTheStyle) {
    struct Tinted {
        QColor color;
        ButtonLook operator()(const ButtonConfiguration &) const {
            ButtonLook look;
            look.background = color;
            return look;
        }
    };
    Tinted style{SystemColors::green};
    const AnyButtonStyle any(style);
    style.color = SystemColors::red;
    EXPECT_EQ(any.render(false).background, SystemColors::green);
}

TEST(AnyButtonStyle, IsChosenByACondition) {
    for (const bool isSelected : {true, false}) {
        const AnyButtonStyle style = isSelected ? AnyButtonStyle(PrimaryButtonStyle{})
                                                : AnyButtonStyle(SecondaryButtonStyle{});
        EXPECT_EQ(style.render(false).outlineWidth, isSelected ? 0 : 1);
    }
}

} // namespace
} // namespace tarne::test
