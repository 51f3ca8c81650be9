// The keys that the window as a whole answers to.

#include "ShellFixture.h"

#include <functional>
#include <set>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

class Shortcuts : public test::ShellTest {
protected:
    using Look = std::function<void(const QString &screen)>;

    /// The menu's two keys are bound, and no button has a letter of its own.
    void expectTheMenusKeysAlone(const QString &screen) {
        ui().settle();
        EXPECT_EQ(ui().mnemonics(), QString()) << qPrintable(screen);
        EXPECT_EQ(boundKeys(), (QStringList{u"Ctrl+N"_s, u"Ctrl+Q"_s})) << qPrintable(screen);
    }
    /// Looks at every screen and sheet that follows onboarding, one after the other.
    void visitAll(const Look &lookAt) {
        lookAt(u"the setup face"_s);
        ASSERT_TRUE(ui().click(u"Start Session"_s));
        lookAt(u"the duration sheet"_s);
        ASSERT_TRUE(ui().click(u"Continue"_s));
        pass(0.3);
        ui().settle();
        ASSERT_TRUE(ui().has(u"Start session"_s));
        lookAt(u"the notes sheet"_s);
        TimerView &timer = *content().timerView();
        timer.sessionNotes()->setSessionGoal(u"R&D, Q&A"_s);
        timer.sessionNotes()->startSession();
        lookAt(u"the session face"_s);
        timer.resetTimer();
        lookAt(u"the reflection sheet"_s);
        timer.sessionReflection()->rate(0, 0);
        timer.sessionReflection()->rate(1, 0);
        timer.sessionReflection()->completeReflection();
        ui().settle();
        ASSERT_TRUE(ui().has(u"Save & Share"_s));
        lookAt(u"the feedback sheet"_s);
        timer.sessionReflection()->feedback()->finishSession();
        for (int tab = 1; tab < ContentView::tabs().size(); ++tab) {
            content().setSelectedTab(tab);
            lookAt(ContentView::tabs()[tab].label);
        }
    }

private:
    /// The keys of all shortcuts and actions that there are, on the screen or not, in their order.
    QStringList boundKeys() {
        std::set<const QObject *> visited;
        std::set<QString> keys;
        collectKeys(*ui().view().contentItem(), visited, keys);
        return {keys.begin(), keys.end()};
    }
    /// Follows what is drawn as well: what a ComponentSlot has made is nobody's child as an object.
    static void collectKeys(const QObject &object, std::set<const QObject *> &visited,
                            std::set<QString> &keys) {
        if (!visited.insert(&object).second)
            return;
        for (const char *const property : {"portableText", "shortcut"}) {
            if (const QString key = object.property(property).toString(); !key.isEmpty())
                keys.insert(key);
        }
        for (const QVariant &sequence : object.property("sequences").toList())
            keys.insert(sequence.toString());
        for (const QObject *child : object.children())
            collectKeys(*child, visited, keys);
        if (const auto *const item = qobject_cast<const QQuickItem *>(&object)) {
            for (const QQuickItem *child : item->childItems())
                collectKeys(*child, visited, keys);
        }
    }
};

TEST_F(Shortcuts, AreTheMenusTwoOnEveryScreen) {
    visitAll([this](const QString &screen) { expectTheMenusKeysAlone(screen); });
}

TEST_F(Shortcuts, AreTheMenusTwoWhileItIsOpen) {
    ASSERT_TRUE(ui().click(u"Menu"_s));
    expectTheMenusKeysAlone(u"the menu"_s);
}

/// The window of a user who has not finished onboarding.
class ShortcutsOfANewUser : public Shortcuts {
protected:
    void SetUp() override {}
};

TEST_F(ShortcutsOfANewUser, AreTheMenusTwoOnBothPages) {
    expectTheMenusKeysAlone(u"the welcome page"_s);
    ASSERT_TRUE(ui().click(u"Next"_s));
    ASSERT_TRUE(ui().waitUntil([&] { return ui().has(u"Complete Setup"_s); }));
    expectTheMenusKeysAlone(u"the setup page"_s);
}

} // namespace
} // namespace tarne::test
