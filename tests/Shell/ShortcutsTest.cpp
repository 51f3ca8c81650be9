// The keys that the window as a whole answers to.

#include "ShellFixture.h"

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

class Shortcuts : public test::ShellTest {
protected:
    void expectNone(const char *where) {
        ui().settle();
        EXPECT_EQ(ui().mnemonics(), QString()) << where;
    }
};

TEST_F(Shortcuts, NoVisibleButtonOfAnyScreenHasOne) {
    expectNone("the setup face");
    ASSERT_TRUE(ui().click(u"Start Session"_s));
    expectNone("the duration sheet");
    ASSERT_TRUE(ui().click(u"Continue"_s));
    pass(0.3);
    ui().settle();
    ASSERT_TRUE(ui().has(u"Start session"_s));
    expectNone("the notes sheet");
    TimerView &timer = *content().timerView();
    timer.sessionNotes()->setSessionGoal(u"R&D, Q&A"_s);
    timer.sessionNotes()->startSession();
    expectNone("the session face");
    timer.resetTimer();
    expectNone("the reflection sheet");
    timer.sessionReflection()->rate(0, 0);
    timer.sessionReflection()->rate(1, 0);
    timer.sessionReflection()->completeReflection();
    ui().settle();
    ASSERT_TRUE(ui().has(u"Save & Share"_s));
    expectNone("the feedback sheet");
    timer.sessionReflection()->feedback()->finishSession();
    for (int tab = 1; tab < ContentView::tabs().size(); ++tab) {
        content().setSelectedTab(tab);
        expectNone(qPrintable(ContentView::tabs()[tab].label));
    }
}

/// The window of a user who has not finished onboarding.
class ShortcutsOfANewUser : public Shortcuts {
protected:
    void SetUp() override {}
};

TEST_F(ShortcutsOfANewUser, NoVisibleButtonOfOnboardingHasOne) {
    expectNone("the welcome page");
    ASSERT_TRUE(ui().click(u"Next"_s));
    ASSERT_TRUE(ui().waitUntil([&] { return ui().has(u"Complete Setup"_s); }));
    expectNone("the setup page");
}

} // namespace
} // namespace tarne::test
