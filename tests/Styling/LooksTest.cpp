#include "AnimationClock.h"
#include "ItemLook.h"
#include "LayoutProbe.h"
#include "TARNEStyle.h"

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

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

TEST_P(ButtonStyleLooks, StepsBackAsAWholeWhilePressedAndReturnsOverTwoTenthsOfASecond) {
    UiDriver ui(u"import QtQuick\nimport TARNE.Styling\nRectangle { %1Button { text: 'Go'; label: "
                u"Rectangle { implicitWidth: 50; implicitHeight: 20; color: '#204060' } } }"_s.arg(
                    QLatin1StringView(GetParam().name)));
    const AnyButtonStyle style = ui.find(u"Go"_s)->property("buttonStyle").value<AnyButtonStyle>();
    EXPECT_EQ(style.render(true).opacity, 0.9);
    AnimationClock animations;
    // What is seen of ground, label and outline is what is seen of the whole, however they overlap.
    const auto expectOpacity = [&](double opacity) {
        const QImage picture = ui.picture();
        const auto expectAt = [&](const QPoint &point, const QColor &color) {
            const QColor seen = picture.pixelColor(point);
            const auto onWhite = [&](int part) { return 255 + (part - 255) * opacity; };
            EXPECT_NEAR(seen.red(), onWhite(color.red()), 2) << opacity;
            EXPECT_NEAR(seen.green(), onWhite(color.green()), 2) << opacity;
            EXPECT_NEAR(seen.blue(), onWhite(color.blue()), 2) << opacity;
        };
        expectAt({8, 20}, GetParam().ground);
        expectAt({40, 20}, QColor(0x20, 0x40, 0x60));
        expectAt({0, 20}, GetParam().outline);
        EXPECT_EQ(picture.pixelColor(90, 20), QColor(Qt::white));
    };
    expectOpacity(1);
    ui.press(QPointF(10, 10));
    expectOpacity(1);
    animations.pass(50);
    expectOpacity(1 - 0.1 * 0.129); // Eased in and out.
    animations.pass(149);
    expectOpacity(0.9);
    animations.pass(1);
    expectOpacity(0.9);
    ui.release(QPointF(10, 10));
    animations.pass(100);
    expectOpacity(0.95);
    animations.pass(100);
    expectOpacity(1);
}

TEST_P(ButtonStyleLooks, HasAnOutlineOfFullStrengthAllRoundHoweverLongItsText) {
    // Three in a row: each stands where the one before it ends.
    UiDriver ui(
        u"import QtQuick\nimport TARNE.Styling\nRectangle { Row { x: 4; spacing: 16; %1Button { "
        u"text: 'Resume'; symbol: 'play.fill' } %1Button { text: 'Will' } %1Button { text: "
        u"'Custom Duration'; symbol: 'pencil' } } }"_s.arg(QLatin1StringView(GetParam().name)));
    const QImage picture = ui.picture();
    for (const QString &name : {u"Resume"_s, u"Will"_s, u"Custom Duration"_s}) {
        const QRectF place = LayoutProbe::place(*ui.find(name));
        const int y = int(place.center().y());
        EXPECT_EQ(picture.pixelColor(int(place.left()), y), GetParam().outline) << qPrintable(name);
        EXPECT_EQ(picture.pixelColor(int(place.right()) - 1, y), GetParam().outline)
            << qPrintable(name);
        EXPECT_EQ(picture.pixelColor(int(place.left()) - 1, y), QColor(Qt::white));
        EXPECT_EQ(picture.pixelColor(int(place.right()), y), QColor(Qt::white)) << qPrintable(name);
    }
}

TEST_P(ButtonStyleLooks, HasAnOutlineOfFullStrengthWhereItIsGivenABrokenSize) {
    UiDriver ui(
        u"import QtQuick\nimport TARNE.Styling\nRectangle { %1Button { width: 90.4; height: "
        u"40.4; text: 'Go'; label: Item {} } }"_s.arg(QLatin1StringView(GetParam().name)));
    const QImage picture = ui.picture();
    EXPECT_EQ(picture.pixelColor(89, 20), GetParam().outline);
    EXPECT_EQ(picture.pixelColor(45, 39), GetParam().outline);
    EXPECT_EQ(picture.pixelColor(88, 20), GetParam().ground);
    EXPECT_EQ(picture.pixelColor(90, 20), QColor(Qt::white));
    EXPECT_EQ(picture.pixelColor(45, 40), QColor(Qt::white));
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

TEST(PlainButton, OnAGroundOfItsOwnStepsBackAsAWholeWhilePressed) {
    UiDriver ui(
        u"import QtQuick\nimport TARNE.Styling\nRectangle { PlainButton { text: 'Go'; width: "
        u"80; height: 40; background: Rectangle { color: '#0000ff' } contentItem: Item { "
        u"Rectangle { anchors.centerIn: parent; width: 20; height: 20; color: '#ff0000' } } "
        u"} }"_s);
    ui.press(QPointF(10, 10));
    const QImage picture = ui.picture();
    EXPECT_NEAR(picture.pixelColor(8, 20).red(), 102, 1);
    EXPECT_EQ(picture.pixelColor(8, 20).blue(), 255);
    EXPECT_EQ(picture.pixelColor(40, 20).red(), 255);
    EXPECT_NEAR(picture.pixelColor(40, 20).blue(), 102, 1);
    ui.release(QPointF(10, 10));
    EXPECT_EQ(ui.picture().pixelColor(40, 20), QColor(255, 0, 0));
}

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
