#include "ShellFixture.h"

#include <QSignalSpy>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;
using testing::Contains;
using testing::ElementsAre;
using testing::IsSupersetOf;

namespace tarne::test {
namespace {

/// What is told to assistive tools of late: what kind of event, of whom.
std::vector<std::pair<QAccessible::Event, QString>> toldEvents;

void recordEvent(QAccessibleEvent *event) {
    QAccessibleInterface *const node = event->accessibleInterface();
    toldEvents.emplace_back(event->type(), node ? node->text(QAccessible::Name) : QString());
}

/// The names of all below `node` that are told as having the focus.
QStringList focusedBelow(const QAccessibleInterface &node) {
    QStringList names;
    for (int index = 0; index < node.childCount(); ++index) {
        const QAccessibleInterface &child = *node.child(index);
        if (child.state().focused)
            names += child.text(QAccessible::Name);
        names += focusedBelow(child);
    }
    return names;
}

/// The whole window as assistive tools know and use it.
class ShellAccessibility : public ShellTest {
protected:
    /// What a screen reader's user does to a control.
    bool act(const QString &name,
             const QString &action = QAccessibleActionInterface::pressAction()) {
        QAccessibleInterface *const node = ui().accessible(name);
        QAccessibleActionInterface *const actions = node ? node->actionInterface() : nullptr;
        if (!actions || !actions->actionNames().contains(action))
            return false;
        actions->doAction(action);
        ui().settle();
        return true;
    }
    QAccessible::State state(const QString &name) {
        QAccessibleInterface *const node = ui().accessible(name);
        EXPECT_TRUE(node) << qPrintable(name);
        return node ? node->state() : QAccessible::State();
    }
    QString description(const QString &name) {
        return ui().accessible(name)->text(QAccessible::Description);
    }
    QStringList focused() {
        return focusedBelow(*QAccessible::queryAccessibleInterface(&ui().view()));
    }
    QStringList headings() { return ui().names(QAccessible::Heading); }

    void openDurationSheet() { ASSERT_TRUE(act(u"Start Session"_s)); }
    void openNotesSheet() {
        openDurationSheet();
        ASSERT_TRUE(act(u"Continue"_s));
        pass(0.3);
        ui().settle();
    }
    void startSession(const QString &goal) {
        openNotesSheet();
        ui().type(goal);
        ASSERT_TRUE(act(u"Start session"_s));
    }
    void openTab(const QString &tab) { ASSERT_TRUE(act(tab)) << qPrintable(tab); }
};

TEST_F(ShellAccessibility, ADisabledButtonIsToldAsDisabledAndCannotBePressed) {
    openNotesSheet();
    EXPECT_TRUE(state(u"Start session"_s).disabled);
    EXPECT_FALSE(state(u"Start session"_s).focusable);
    EXPECT_FALSE(state(u"Close"_s).disabled);
    act(u"Start session"_s);
    EXPECT_FALSE(content().sessionViewModel().currentSession());
    ui().type(u"Read"_s);
    EXPECT_FALSE(state(u"Start session"_s).disabled);
    EXPECT_TRUE(state(u"Start session"_s).focusable);
}

TEST_F(ShellAccessibility, AButtonTellsWhenItIsDisabledAndEnabled) {
    openNotesSheet();
    ASSERT_TRUE(ui().accessible(u"Start session"_s));
    toldEvents.clear();
    const auto former = QAccessible::installUpdateHandler(recordEvent);
    ui().type(u"Read"_s);
    QAccessible::installUpdateHandler(former);
    EXPECT_THAT(toldEvents, Contains(std::pair(QAccessible::StateChanged, u"Start session"_s)));
}

TEST_F(ShellAccessibility, OfTheFocusAndWhatIsAroundItTheFocusAloneIsToldAsFocused) {
    tabTo(u"Timer"_s);
    EXPECT_THAT(focused(), ElementsAre(u"Timer"_s));
    openDurationSheet();
    EXPECT_THAT(focused(), ElementsAre(u"Select Session Duration"_s));
    tabTo(u"Continue"_s);
    EXPECT_THAT(focused(), ElementsAre(u"Continue"_s));
}

TEST_F(ShellAccessibility, ATabIsPressed) {
    openTab(u"History"_s);
    EXPECT_EQ(content().selectedTab(), 2);
    openTab(u"Timer"_s);
    EXPECT_EQ(content().selectedTab(), 0);
}

TEST_F(ShellAccessibility, TheMenuAndItsEntriesAreNamedAndPressed) {
    QSignalSpy quit(&app(), &TARNEApp::quitRequested);
    ASSERT_TRUE(act(u"Menu"_s));
    ASSERT_TRUE(ui().waitUntil([&] { return ui().has(u"Quit TARNE"_s); }));
    EXPECT_THAT(ui().names(QAccessible::PopupMenu), ElementsAre(u"Menu"_s));
    ASSERT_TRUE(act(u"Quit TARNE"_s));
    EXPECT_EQ(quit.size(), 1);
    EXPECT_TRUE(ui().waitUntil([&] { return !ui().has(u"Quit TARNE"_s); }));
}

TEST_F(ShellAccessibility, APressedButtonIsPressedOnce) {
    startSession(u"Read"_s);
    ASSERT_TRUE(act(u"Pause"_s));
    EXPECT_TRUE(ui().has(u"Resume"_s));
}

TEST_F(ShellAccessibility, TheKeyFieldIsAsLargeAsItIsDrawnWhateverItHolds) {
    openTab(u"Settings"_s);
    const QString field = u"Enter your Gemini API key"_s;
    ASSERT_TRUE(ui().waitUntil([&] { return isAtRest(3); }));
    const QQuickItem *const item = ui().find(field);
    const QRect drawn(ui().view().mapToGlobal(item->mapToScene(QPointF()).toPoint()),
                      item->size().toSize());
    EXPECT_EQ(ui().accessible(field)->rect(), drawn);
    ASSERT_TRUE(ui().click(field));
    ui().type(u"a key of some length"_s);
    EXPECT_EQ(ui().accessible(field)->rect(), drawn);
}

TEST_F(ShellAccessibility, AnErrorIsAnnouncedAndDescribesItsField) {
    openDurationSheet();
    ASSERT_TRUE(act(u"Custom Duration"_s));
    ASSERT_TRUE(ui().waitUntil([&] { return isCustomRowOpen(); }));
    ASSERT_TRUE(ui().click(u"5-180"_s));
    EXPECT_EQ(description(u"5-180"_s), QString());
    toldEvents.clear();
    const auto former = QAccessible::installUpdateHandler(recordEvent);
    ui().type(u"4"_s);
    QAccessible::installUpdateHandler(former);
    const QString error = u"Duration must be at least 5 minutes"_s;
    EXPECT_EQ(description(u"5-180"_s), error);
    EXPECT_TRUE(ui().has(error, QAccessible::Notification));
    EXPECT_THAT(toldEvents, IsSupersetOf({std::pair(QAccessible::ObjectShow, error),
                                          std::pair(QAccessible::DescriptionChanged, u"5-180"_s)}));
}

TEST_F(ShellAccessibility, AFieldIsWrittenInByAssistiveTools) {
    openDurationSheet();
    ASSERT_TRUE(act(u"Custom Duration"_s));
    ASSERT_TRUE(ui().waitUntil([&] { return isCustomRowOpen(); }));
    QAccessibleEditableTextInterface *const field =
        ui().accessible(u"5-180"_s)->editableTextInterface();
    ASSERT_TRUE(field);
    toldEvents.clear();
    const auto former = QAccessible::installUpdateHandler(recordEvent);
    field->insertText(0, u"90"_s);
    field->replaceText(1, 2, u"5"_s);
    EXPECT_EQ(ui().accessible(u"5-180"_s)->text(QAccessible::Value), u"95"_s);
    field->deleteText(0, 1);
    QAccessible::installUpdateHandler(former);
    EXPECT_THAT(toldEvents, IsSupersetOf({std::pair(QAccessible::TextInserted, u"5-180"_s),
                                          std::pair(QAccessible::TextRemoved, u"5-180"_s)}));
    EXPECT_EQ(ui().accessible(u"5-180"_s)->text(QAccessible::Value), u"5"_s);
    EXPECT_FALSE(ui().accessible(u"Set"_s)->editableTextInterface());
}

TEST_F(ShellAccessibility, OneActionPressesAndATextTakesNoFocus) {
    EXPECT_EQ(ui().accessible(u"Start Session"_s)
                  ->actionInterface()
                  ->actionNames()
                  .count(QAccessibleActionInterface::pressAction()),
              1);
    EXPECT_FALSE(state(u"00:25:00"_s).focusable);
}

TEST_F(ShellAccessibility, ASheetIsModalAndWhatOpensSaysWhetherItIsOpen) {
    openDurationSheet();
    EXPECT_TRUE(state(u"Select Session Duration"_s).modal);
    EXPECT_TRUE(state(u"Custom Duration"_s).collapsed);
    ASSERT_TRUE(act(u"Custom Duration"_s));
    EXPECT_TRUE(state(u"Custom Duration"_s).expanded);
    EXPECT_FALSE(state(u"Continue"_s).expandable);
}

TEST_F(ShellAccessibility, TitlesAreHeadings) {
    EXPECT_THAT(headings(), ElementsAre(u"Session Setup"_s));
    openDurationSheet();
    EXPECT_THAT(headings(), ElementsAre(u"Select Session Duration"_s));
    ASSERT_TRUE(act(u"Continue"_s));
    pass(0.3);
    ui().settle();
    EXPECT_THAT(headings(), ElementsAre(u"Session Goal"_s));
    ui().type(u"Read"_s);
    ASSERT_TRUE(act(u"Start session"_s));
    EXPECT_THAT(headings(), ElementsAre(u"⏱️ Session"_s));
    ASSERT_TRUE(act(u"Stop"_s));
    EXPECT_THAT(headings(), ElementsAre(u"How did you do with your goals?"_s));
    ASSERT_TRUE(act(u"Completed"_s));
    ASSERT_TRUE(act(u"Complete reflection"_s));
    EXPECT_TRUE(ui().waitUntil([&] { return headings().contains(u"Session Feedback"_s); }));
    EXPECT_THAT(headings(), Contains(u"Your Reflection"_s));
}

TEST_F(ShellAccessibility, TheTitlesOfAPagesPartsAreHeadings) {
    openTab(u"Insights"_s);
    ASSERT_TRUE(ui().waitUntil([&] { return !ui().has(u"Session Setup"_s); }));
    EXPECT_THAT(headings(),
                ElementsAre(u"Insights"_s, u"Focus Streak"_s, u"Goal Completion Trends"_s,
                            u"Most Productive Times"_s, u"Your Focus Journey"_s));
    openTab(u"Settings"_s);
    ASSERT_TRUE(ui().waitUntil([&] { return !ui().has(u"Focus Streak"_s); }));
    EXPECT_THAT(headings(), ElementsAre(u"Settings"_s, u"Server Status"_s,
                                        u"Gemini AI Configuration"_s, u"About"_s));
}

/// Onboarding as assistive tools know it.
class ShellAccessibilityOfANewUser : public ShellAccessibility {
private:
    void SetUp() override {}
};

TEST_F(ShellAccessibilityOfANewUser, ThePageDotsSayWhichPageItIs) {
    EXPECT_TRUE(ui().has(u"Page 1 of 2"_s));
    ASSERT_TRUE(act(u"Next"_s));
    EXPECT_TRUE(ui().has(u"Page 2 of 2"_s));
    EXPECT_FALSE(ui().has(u"Page 1 of 2"_s));
}

TEST_F(ShellAccessibilityOfANewUser, StartFocusingIsToldAsDisabledWithoutAKey) {
    ASSERT_TRUE(act(u"Next"_s));
    EXPECT_TRUE(ui().waitUntil([&] { return ui().has(u"Start Focusing"_s); }));
    EXPECT_TRUE(state(u"Start Focusing"_s).disabled);
}

} // namespace
} // namespace tarne::test
