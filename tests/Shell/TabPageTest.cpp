#include "AnimationClock.h"
#include "UiDriver.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

/// Two tabs side by side, 1,000 points wide.
const QString twoTabs = uR"(
pragma ComponentBehavior: Bound
import QtQuick
import TARNE
Rectangle {
    id: root
    property int selectedTab: 0
    TabPage { tabIndex: 0; selectedTab: root.selectedTab; screen: ""; view: null }
    TabPage { tabIndex: 1; selectedTab: root.selectedTab; screen: ""; view: null }
}
)"_s;

class TabPage : public testing::Test {
protected:
    QQuickItem &page(int index) {
        return *ui.root()->findChild<QQuickItem *>(u"tab-%1"_s.arg(index));
    }
    void select(int index) { ui.root()->setProperty("selectedTab", index); }

    UiDriver ui{twoTabs};
};

TEST_F(TabPage, HasTheIdentityOfItsIndex) {
    EXPECT_EQ(page(0).property("identity"), u"tab-0"_s);
    EXPECT_EQ(page(1).property("identity"), u"tab-1"_s);
}

TEST_F(TabPage, ComesInFromTheTrailingEdgeAndFades) {
    select(1);
    EXPECT_EQ(page(1).x(), 1000);
    EXPECT_EQ(page(1).opacity(), 0);
    EXPECT_TRUE(ui.waitUntil([&] { return page(1).x() > 0 && page(1).x() < 900; }));
    EXPECT_GT(page(1).opacity(), 0);
    EXPECT_TRUE(ui.waitUntil([&] { return page(1).x() == 0 && page(1).opacity() == 1; }));
}

/// Animations that move on by the test's hand, from before the window is made.
class HeldAnimations {
protected:
    AnimationClock animations;
};

class TabPageTransition : public HeldAnimations, public TabPage {};

TEST_F(TabPageTransition, TakesThreeTenthsOfASecondEasedInAndOutInBothDirections) {
    for (const int to : {1, 0}) {
        const int from = 1 - to;
        select(to);
        ui.settle();
        animations.pass(75);
        EXPECT_NEAR(page(to).x(), 871, 2);
        EXPECT_NEAR(page(to).opacity(), 0.129, 0.002);
        EXPECT_NEAR(page(from).x(), -129, 2);
        EXPECT_NEAR(page(from).opacity(), 0.871, 0.002);
        animations.pass(224);
        EXPECT_TRUE(page(from).isVisible());
        animations.pass(1);
        EXPECT_FALSE(page(from).isVisible());
        EXPECT_EQ(page(to).x(), 0);
        EXPECT_EQ(page(to).opacity(), 1);
    }
}

TEST_F(TabPage, GoesOutToTheLeadingEdgeAndFades) {
    select(1);
    EXPECT_EQ(page(0).x(), 0);
    EXPECT_EQ(page(0).opacity(), 1);
    EXPECT_TRUE(ui.waitUntil([&] { return page(0).x() < -100; }));
    EXPECT_LT(page(0).opacity(), 1);
    EXPECT_TRUE(ui.waitUntil([&] { return !page(0).isVisible(); }));
}

} // namespace
} // namespace tarne::test
