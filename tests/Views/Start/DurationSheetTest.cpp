#include "DurationPickerView.h"
#include "ItemLook.h"
#include "LayoutProbe.h"
#include "ScreenFixture.h"
#include "TARNEStyle.h"

#include <QProperty>

#include <cmath>

using namespace Qt::StringLiterals;
using testing::ElementsAre;

namespace tarne::test {
namespace {

using Fonts = TARNEStyle::Typography;

class DurationSheetTest : public TimerScreenTest {
protected:
    DurationSelectionView &sheet() { return *view().durationSelection(); }
    const QQuickItem &item(const QString &name) {
        const QQuickItem *const found = ui().find(name);
        EXPECT_TRUE(found) << qPrintable(name);
        return *found;
    }
    /// The state that an assistive tool is told about a preset.
    bool isSelected(const QString &preset) { return ui().accessible(preset)->state().selected; }

    void openCustomRow() {
        openDurationSheet();
        ASSERT_TRUE(ui().click(u"Custom Duration"_s));
        ASSERT_TRUE(ui().waitUntil([&] { return isCustomRowOpen(); }));
    }

    /// Whether the row has come to its full height.
    bool isCustomRowOpen() {
        const QQuickItem *const set = ui().find(u"Set"_s);
        return set && set->parentItem()->parentItem()->height() ==
                          set->parentItem()->parentItem()->property("fullHeight").toDouble();
    }
};

TEST_F(DurationSheetTest, ShowsItsPartsFromTopToBottom) {
    openDurationSheet();
    EXPECT_THAT(ui().texts(), ElementsAre(u"Select Session Duration"_s, u"Selected Duration:"_s,
                                          u"25 minutes"_s));
    EXPECT_EQ(ui().names(QAccessible::Button),
              (QStringList{u"Close"_s, u"15 min"_s, u"25 min"_s, u"45 min"_s, u"60 min"_s,
                           u"Custom Duration"_s, u"Continue"_s}));
}

TEST_F(DurationSheetTest, CoversTheScreenBehindIt) {
    openDurationSheet();
    EXPECT_FALSE(ui().has(u"Start Session"_s));
    EXPECT_FALSE(ui().has(u"Session Setup"_s));
}

TEST_F(DurationSheetTest, IsFourHundredAndFiftyPointsWide) {
    openDurationSheet();
    const QQuickItem *const panel = ui().find(u"Select Session Duration"_s, QAccessible::Dialog);
    ASSERT_TRUE(panel);
    EXPECT_EQ(panel->width(), 450);
    EXPECT_LE(panel->height(), 700 - 32);
}

TEST_F(DurationSheetTest, GivesEveryPresetAnEqualShareOfTheRow) {
    openDurationSheet();
    const double width = item(u"15 min"_s).width();
    EXPECT_EQ(width, std::floor((450 - 2 * 16 - 3 * 8) / 4.0));
    for (const QString &preset : {u"25 min"_s, u"45 min"_s, u"60 min"_s})
        EXPECT_EQ(item(preset).width(), width);
}

TEST_F(DurationSheetTest, MarksTheSelectedPreset) {
    openDurationSheet();
    EXPECT_TRUE(isSelected(u"25 min"_s));
    ASSERT_TRUE(ui().click(u"60 min"_s));
    EXPECT_FALSE(isSelected(u"25 min"_s));
    EXPECT_TRUE(isSelected(u"60 min"_s));
    EXPECT_TRUE(ui().has(u"1 hour 0 minutes"_s));
    EXPECT_TRUE(ui().waitUntil([&] { return item(u"60 min"_s).scale() == 1.05; }));
    EXPECT_TRUE(ui().waitUntil([&] { return item(u"25 min"_s).scale() == 1.0; }));
}

TEST_F(DurationSheetTest, TheSelectedPresetStandsAsFarAboveItsNeighboursAsBelow) {
    openDurationSheet();
    for (const QString &selected : {u"25 min"_s, u"60 min"_s}) {
        ASSERT_TRUE(ui().click(selected));
        ASSERT_TRUE(ui().waitUntil(
            [&] { return item(selected).scale() == 1.05 && item(u"15 min"_s).scale() == 1.0; }));
        const QRectF large = LayoutProbe::place(item(selected));
        const QRectF small = LayoutProbe::place(item(u"15 min"_s));
        EXPECT_GT(small.top() - large.top(), 0.5);
        EXPECT_NEAR(small.top() - large.top(), large.bottom() - small.bottom(), 0.01);
        EXPECT_EQ(small.top(), std::round(small.top()));
        EXPECT_EQ(small.bottom(), std::round(small.bottom()));
    }
}

TEST_F(DurationSheetTest, TheRowOfPresetsKeepsItsHeightWhateverIsSelected) {
    openCustomRow();
    const double before = item(u"15 min"_s).parentItem()->height();
    ASSERT_TRUE(ui().click(u"5-180"_s));
    ui().type(u"33"_s);
    ASSERT_TRUE(ui().click(u"Set"_s));
    EXPECT_FALSE(isSelected(u"25 min"_s));
    (void)ui().picture();
    EXPECT_EQ(item(u"15 min"_s).parentItem()->height(), before);
}

TEST_F(DurationSheetTest, ShowsTheRowForACustomLength) {
    openCustomRow();
    EXPECT_TRUE(ui().has(u"5-180"_s, QAccessible::EditableText));
    EXPECT_TRUE(ui().has(u"minutes"_s));
    EXPECT_EQ(item(u"5-180"_s).width(), 100);
    ASSERT_TRUE(ui().click(u"Custom Duration"_s));
    EXPECT_TRUE(ui().waitUntil([&] { return !ui().has(u"Set"_s); }));
}

TEST_F(DurationSheetTest, ShowsTheMessageOfWhatIsTypedAndDisablesSet) {
    openCustomRow();
    ASSERT_TRUE(ui().click(u"5-180"_s));
    ui().type(u"4"_s);
    EXPECT_TRUE(ui().has(u"Duration must be at least 5 minutes"_s));
    EXPECT_FALSE(ui().isEnabled(u"Set"_s));
    ui().type(u"x"_s);
    EXPECT_TRUE(ui().has(u"Please enter a valid number"_s));
    ui().key(Qt::Key_Backspace);
    ui().type(u"5"_s);
    EXPECT_TRUE(ui().isEnabled(u"Set"_s));
    ASSERT_TRUE(ui().click(u"Set"_s));
    EXPECT_TRUE(ui().has(u"45 minutes"_s));
}

TEST_F(DurationSheetTest, AsksForANumberWhenAnEmptyFieldIsSet) {
    openCustomRow();
    ASSERT_TRUE(ui().click(u"Set"_s));
    EXPECT_TRUE(ui().has(u"Please enter a number between 5 and 180"_s));
}

TEST_F(DurationSheetTest, ShowsTheKeptTextWhenTheRowIsReopened) {
    openCustomRow();
    ASSERT_TRUE(ui().click(u"5-180"_s));
    ui().type(u"4"_s);
    ASSERT_TRUE(ui().click(u"45 min"_s));
    ASSERT_TRUE(ui().waitUntil([&] { return !ui().has(u"5-180"_s); }));
    ASSERT_TRUE(ui().click(u"Custom Duration"_s));
    ASSERT_TRUE(ui().waitUntil([&] { return isCustomRowOpen(); }));
    EXPECT_EQ(item(u"5-180"_s).property("text").toString(), u"4"_s);
    EXPECT_FALSE(ui().has(u"Duration must be at least 5 minutes"_s));
}

TEST_F(DurationSheetTest, OpensWithTheRowFilledInForADefaultThatIsNoPreset) {
    storeDefaultDuration(1800);
    openDurationSheet();
    EXPECT_TRUE(ui().has(u"Set"_s));
    EXPECT_EQ(item(u"5-180"_s).property("text").toString(), u"30"_s);
}

TEST_F(DurationSheetTest, AbandonsTheFlowWithTheCloseButton) {
    openDurationSheet();
    ASSERT_TRUE(ui().click(u"60 min"_s));
    ASSERT_TRUE(ui().click(u"Close"_s));
    passAndSettle(1);
    EXPECT_FALSE(ui().has(u"Select Session Duration"_s));
    EXPECT_FALSE(ui().has(u"Session Goal"_s));
    EXPECT_TRUE(ui().has(u"01:00:00"_s));
}

TEST_F(DurationSheetTest, LeadsToTheNotesWithContinue) {
    openDurationSheet();
    ASSERT_TRUE(ui().click(u"45 min"_s));
    ASSERT_TRUE(ui().click(u"Continue"_s));
    EXPECT_FALSE(ui().has(u"Select Session Duration"_s));
    EXPECT_FALSE(ui().has(u"Session Goal"_s));
    passAndSettle(0.3);
    EXPECT_TRUE(ui().has(u"Session Goal"_s));
    EXPECT_EQ(UserPreferences::load(defaults).defaultDuration, 2700.0);
}

TEST_F(DurationSheetTest, IsNotClosedByEscape) {
    openDurationSheet();
    ui().key(Qt::Key_Escape);
    EXPECT_TRUE(ui().has(u"Select Session Duration"_s));
}

TEST_F(DurationSheetTest, IsReachedByTabInReadingOrder) {
    openCustomRow();
    const QStringList expected{u"Close"_s,  u"15 min"_s, u"25 min"_s,
                               u"45 min"_s, u"60 min"_s, u"Custom Duration"_s,
                               u"5-180"_s,  u"Set"_s,    u"Continue"_s};
    ui().root()->forceActiveFocus();
    ui().find(u"Close"_s)->forceActiveFocus(Qt::TabFocusReason);
    QStringList order{ui().focusedName()};
    for (int step = 1; step < expected.size(); ++step) {
        ui().tab();
        order += ui().focusedName();
    }
    EXPECT_EQ(order, expected);
    ui().tab();
    EXPECT_EQ(ui().focusedName(), u"Close"_s);
}

TEST_F(DurationSheetTest, ShowsAHandOverItsButtonsAndABeamOverItsField) {
    openCustomRow();
    for (const QString &name :
         {u"Close"_s, u"15 min"_s, u"Custom Duration"_s, u"Set"_s, u"Continue"_s})
        EXPECT_EQ(ui().cursorOver(name), Qt::PointingHandCursor) << qPrintable(name);
    EXPECT_EQ(ui().cursorOver(u"5-180"_s), Qt::IBeamCursor);
}

class DurationPickerPanelTest : public SessionTest {
protected:
    QProperty<double> selectedDuration{1500.0};
    DurationPickerView picker{controller(), &selectedDuration};
    UiDriver ui{QUrl(u"qrc:/qt/qml/TARNE/Views/DurationPickerPanel.qml"_s),
                QVariantMap{{u"view"_s, QVariant::fromValue(&picker)}}, QSize(360, 300)};
};

TEST_F(DurationPickerPanelTest, HasNothingToCloseAndNothingToGoOnTo) {
    EXPECT_THAT(ui.texts(), ElementsAre(u"Select Session Duration"_s, u"Selected Duration:"_s,
                                        u"25 minutes"_s));
    EXPECT_EQ(ui.names(QAccessible::Button), (QStringList{u"15 min"_s, u"25 min"_s, u"45 min"_s,
                                                          u"60 min"_s, u"Custom Duration"_s}));
}

TEST_F(DurationPickerPanelTest, WritesItsTitleItsMessageAndItsSummaryInItsOwnFonts) {
    picker.toggleCustomInput();
    picker.setCustomDuration(u"200"_s);
    ASSERT_TRUE(ui.waitUntil([&] { return ui.has(u"Duration must be at most 180 minutes"_s); }));
    LayoutProbe probe(ui);
    const QQuickItem &title = probe.item(u"Select Session Duration"_s);
    EXPECT_EQ(LayoutProbe::font(title), Fonts::heading2());
    EXPECT_EQ(LayoutProbe::place(title).top(), 16);
    EXPECT_NEAR(LayoutProbe::place(title).center().x(), 180, 1);
    const QQuickItem &error = probe.item(u"Duration must be at most 180 minutes"_s);
    EXPECT_EQ(LayoutProbe::font(error), Fonts::form());
    EXPECT_EQ(LayoutProbe::color(error), TARNEStyle::Colors::warning);
    EXPECT_EQ(LayoutProbe::font(probe.item(u"Selected Duration:"_s)), Fonts::form());
    EXPECT_EQ(LayoutProbe::font(probe.item(u"25 minutes"_s)), Fonts::bodyLarge());
}

TEST_F(DurationPickerPanelTest, LiesOnTheBackgroundWithASmallShadowThatFallsNowhere) {
    const QQuickItem &shadow = *ui.root()->childItems().at(0);
    EXPECT_EQ(LayoutProbe::color(shadow), TARNEStyle::Colors::shadow);
    EXPECT_EQ(shadow.property("blurRadius"), 4);
    EXPECT_EQ(shadow.property("offsetX"), 0);
    EXPECT_EQ(shadow.property("offsetY"), 0);
    const auto ground = groundOf(*ui.root()->childItems().at(1));
    EXPECT_EQ(ground, std::pair(TARNEStyle::Colors::background, 8.0));
}

TEST_F(DurationPickerPanelTest, IsAsWideAsItsPlace) {
    EXPECT_EQ(ui.find(u"15 min"_s)->width(), std::floor((360 - 2 * 16 - 3 * 8) / 4.0));
    ui.view().resize(500, 300);
    ui.settle();
    EXPECT_EQ(ui.find(u"15 min"_s)->width(), std::floor((500 - 2 * 16 - 3 * 8) / 4.0));
}

TEST_F(DurationPickerPanelTest, StoresAChoiceAtOnce) {
    ASSERT_TRUE(ui.click(u"45 min"_s));
    EXPECT_EQ(UserPreferences::load(defaults).defaultDuration, 2700.0);
    EXPECT_TRUE(ui.has(u"45 minutes"_s));
}

} // namespace
} // namespace tarne::test
