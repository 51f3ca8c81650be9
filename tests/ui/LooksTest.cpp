#include "AnimationClock.h"
#include "ItemLook.h"
#include "LayoutProbe.h"
#include "TARNEStyle.h"

#include <gmock/gmock.h>

namespace tarne::test {
namespace {

using namespace Qt::StringLiterals;

struct StyleCase {
    const char *name;
    QColor text;
    QColor ground;
    QColor outline;
};

/// The two button looks, each as "<name>Button" with a label of its own or a text.
class ButtonStyleLooks : public testing::TestWithParam<StyleCase> {
protected:
    static QString button(const QString &properties) {
        return u"import QtQuick\nimport TARNE.Styling\nRectangle { color: '#00ff00'; %1Button { "
               u"text: 'Go'; %2 } }"_s.arg(QLatin1StringView(GetParam().name), properties);
    }
};

TEST_P(ButtonStyleLooks, StepsBackWhilePressedAndReturnsOverTwoTenthsOfASecondEasedInAndOut) {
    UiDriver ui(button({}));
    AnimationClock animations;
    const QQuickItem &go = *ui.find(u"Go"_s);
    ui.press(QPointF(10, 10));
    EXPECT_EQ(go.opacity(), 1);
    animations.pass(50);
    EXPECT_NEAR(go.opacity(), 1 - 0.1 * 0.129, 0.001);
    animations.pass(149);
    EXPECT_GT(go.opacity(), 0.9);
    animations.pass(1);
    EXPECT_EQ(go.opacity(), 0.9);
    ui.release(QPointF(10, 10));
    animations.pass(100);
    EXPECT_NEAR(go.opacity(), 0.95, 0.001);
    animations.pass(99);
    EXPECT_LT(go.opacity(), 1);
    animations.pass(1);
    EXPECT_EQ(go.opacity(), 1);
}

TEST_P(ButtonStyleLooks, WritesItsLabelInItsFontAndColour) {
    UiDriver ui(button(u"symbol: 'play.fill'"_s));
    const QQuickItem &label = LayoutProbe(ui).text(u"Go"_s);
    EXPECT_EQ(LayoutProbe::font(label), TARNEStyle::Typography::button());
    EXPECT_EQ(LayoutProbe::color(label), GetParam().text);
    EXPECT_EQ(markBeside(&label).color, GetParam().text);
}

TEST_P(ButtonStyleLooks, IsDrawnWithRoundCornersAndItsOutline) {
    UiDriver ui(button(u"label: Item { implicitWidth: 50; implicitHeight: 20 }"_s));
    const QImage picture = ui.picture();
    EXPECT_EQ(picture.pixelColor(1, 1), QColor(0, 255, 0));
    EXPECT_EQ(picture.pixelColor(4, 4), GetParam().ground);
    EXPECT_EQ(picture.pixelColor(0, 20), GetParam().outline);
    EXPECT_EQ(picture.pixelColor(81, 20), GetParam().outline);
    EXPECT_EQ(picture.pixelColor(40, 39), GetParam().outline);
    EXPECT_EQ(picture.pixelColor(1, 20), GetParam().ground);
    EXPECT_EQ(picture.pixelColor(82, 20), QColor(0, 255, 0));
}

INSTANTIATE_TEST_SUITE_P(Styles, ButtonStyleLooks,
                         testing::Values(StyleCase{"Primary", SystemColors::white,
                                                   SystemColors::blue, SystemColors::blue},
                                         StyleCase{"Secondary", SystemColors::blue,
                                                   SystemColors::white, SystemColors::blue}),
                         [](const auto &style) { return std::string(style.param.name); });

TEST(Card, IsDrawnAboveAShadowThatFallsDownAndPadsWhatItHolds) {
    UiDriver ui(u"import QtQuick\nimport TARNE.Styling\nRectangle { Card { x: 50; y: 50; width: "
                u"100; height: 60; PlainText { text: 'held' } } }"_s);
    EXPECT_EQ(LayoutProbe::place(*ui.find(u"held"_s)).topLeft(), QPointF(66, 66));
    const QImage picture = ui.picture();
    EXPECT_EQ(picture.pixelColor(55, 55), QColor(Qt::white));
    const auto darkness = [&](int x, int y) { return 255 - picture.pixelColor(x, y).red(); };
    EXPECT_NEAR(darkness(100, 111), 0.1 * 255 * 0.6, 2) << "below";
    EXPECT_NEAR(darkness(48, 80), 0.1 * 255 * 0.23, 2) << "beside";
    EXPECT_LE(darkness(100, 48), 2) << "above";
}

} // namespace
} // namespace tarne::test
