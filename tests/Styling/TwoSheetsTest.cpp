// Sheets that come and go in any order.

#include "UiDriver.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

/// A page with two sheets that come and go for reasons of their own.
const QString pageWithTwoSheets = uR"(
pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling
Rectangle {
    id: root
    property bool lower: false
    property bool upper: false
    Column {
        BorderedButton { text: "Open"; onClicked: root.lower = true }
        BorderedButton { text: "Behind" }
    }
    Sheet {
        isPresented: root.lower
        content: FocusScope {
            width: 100
            height: 100
            BorderedButton { text: "In the lower"; focus: true }
        }
    }
    Sheet {
        isPresented: root.upper
        content: FocusScope {
            width: 100
            height: 100
            BorderedButton { text: "In the upper"; focus: true; onClicked: root.upper = false }
        }
    }
}
)"_s;

class TwoSheetsTest : public testing::Test {
protected:
    void show(const char *sheet, bool isUp) {
        ui.root()->setProperty(sheet, isUp);
        ui.settle();
    }
    void openBoth() {
        ui.tab();
        ui.tab();
        ASSERT_EQ(ui.focusedName(), u"Behind"_s);
        show("lower", true);
        show("upper", true);
        ASSERT_EQ(ui.focusedName(), u"In the upper"_s);
    }

    UiDriver ui{pageWithTwoSheets, QSize(800, 600)};
};

TEST_F(TwoSheetsTest, ALowerSheetThatGoesFirstLeavesWhatIsBehindCovered) {
    openBoth();
    show("lower", false);
    EXPECT_EQ(ui.focusedName(), u"In the upper"_s);
    EXPECT_FALSE(ui.has(u"Behind"_s));
}

TEST_F(TwoSheetsTest, TheUpperSheetHandsTheFocusBackForALowerOneThatWentFirst) {
    openBoth();
    show("lower", false);
    ui.key(Qt::Key_Space);
    EXPECT_EQ(ui.focusedName(), u"Behind"_s);
    EXPECT_TRUE(ui.view().activeFocusItem()->property("visualFocus").toBool());
    // And the lower one can be used the next time.
    ASSERT_TRUE(ui.click(u"Open"_s));
    EXPECT_EQ(ui.focusedName(), u"In the lower"_s);
}

} // namespace
} // namespace tarne::test
