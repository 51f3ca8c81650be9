#include "SessionNotesView.h"

#include "SessionFixture.h"

#include <QProperty>
#include <QSignalSpy>

#include <memory>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

class SessionNotesTest : public SessionTest {
protected:
    SessionNotesTest() {
        QObject::connect(m_notes.get(), &SessionNotesView::focusReleased, m_notes.get(),
                         [this] { ++focusReleases; });
    }

    SessionNotesView &notes() { return *m_notes; }
    void destroyNotes() { m_notes.reset(); }
    void reactivate() { center.post(notifications::didBecomeActive); }
    QString storedGoal() { return UserPreferences::load(defaults).lastGoal; }

    QProperty<bool> isPresented{true};
    int starts = 0;
    int focusReleases = 0;

private:
    std::unique_ptr<SessionNotesView> m_notes = std::make_unique<SessionNotesView>(
        controller(), center, time, &isPresented, [this] { ++starts; });
};

TEST_F(SessionNotesTest, OffersTheLastGoalAgain) {
    EXPECT_EQ(notes().sessionGoal(), u""_s);
    controller().saveGoal(u"Write report, Review"_s);
    notes().appear();
    EXPECT_EQ(notes().sessionGoal(), u"Write report, Review"_s);
    EXPECT_FALSE(notes().isGoalEmpty());
}

TEST_F(SessionNotesTest, IsEmptyWithoutALastGoal) {
    notes().appear();
    EXPECT_TRUE(notes().isGoalEmpty());
}

TEST_F(SessionNotesTest, CountsBlanksAndNewlinesAsEmpty) {
    for (const QString &text :
         {u" "_s, u"\n"_s, u" \t\r\n "_s, u"\u00a0\u2003\u3000"_s, u"\u0085\u2028\u2029"_s}) {
        notes().setSessionGoal(text);
        EXPECT_TRUE(notes().isGoalEmpty()) << qPrintable(text.toHtmlEscaped());
    }
}

TEST_F(SessionNotesTest, TellsWhenItBecomesEmptyAndWhenNot) {
    const QSignalSpy changes(&notes(), &SessionNotesView::isGoalEmptyChanged);
    notes().setSessionGoal(u" "_s);
    EXPECT_EQ(changes.size(), 0);
    notes().setSessionGoal(u" R"_s);
    EXPECT_EQ(changes.size(), 1);
    notes().setSessionGoal(u" Re"_s);
    EXPECT_EQ(changes.size(), 1);
    notes().setSessionGoal(u""_s);
    EXPECT_EQ(changes.size(), 2);
}

TEST_F(SessionNotesTest, StoresTheGoalAsTypedBlanksIncluded) {
    notes().setSessionGoal(u"  Write report, \n"_s);
    notes().startSession();
    EXPECT_EQ(storedGoal(), u"  Write report, \n"_s);
    EXPECT_EQ(controller().loadLastGoal(), u"  Write report, \n"_s);
}

TEST_F(SessionNotesTest, StoresThenClosesThenStarts) {
    QStringList order;
    QProperty<bool> presented{true};
    const auto observer = presented.onValueChanged(
        [&] { order += u"closed after storing "_s + controller().loadLastGoal(); });
    SessionNotesView view(controller(), center, time, &presented,
                          [&] { order += presented ? u"open"_s : u"started"_s; });
    view.setSessionGoal(u"Review"_s);
    view.startSession();
    EXPECT_EQ(order, (QStringList{u"closed after storing Review"_s, u"started"_s}));
}

TEST_F(SessionNotesTest, StartsNoSessionOfItsOwn) {
    notes().setSessionGoal(u"Review"_s);
    notes().startSession();
    EXPECT_EQ(starts, 1);
    EXPECT_FALSE(controller().currentSession().has_value());
    EXPECT_FALSE(controller().isTimerActive());
}

TEST_F(SessionNotesTest, LosesWhatWasTypedWhenClosed) {
    controller().saveGoal(u"Write report"_s);
    notes().appear();
    notes().setSessionGoal(u"Something else"_s);
    defaults.takeWrites();
    notes().close();
    EXPECT_FALSE(isPresented);
    EXPECT_EQ(starts, 0);
    EXPECT_EQ(defaults.takeWrites(), QStringList());
    EXPECT_EQ(controller().loadLastGoal(), u"Write report"_s);
}

TEST_F(SessionNotesTest, ReleasesTheFocusATenthOfASecondAfterTheApplicationCameBack) {
    notes().appear();
    reactivate();
    pass(0.09);
    EXPECT_EQ(focusReleases, 0);
    pass(0.02);
    EXPECT_EQ(focusReleases, 1);
}

TEST_F(SessionNotesTest, ReleasesTheFocusOnceForEachReactivation) {
    notes().appear();
    reactivate();
    reactivate();
    pass(0.1);
    EXPECT_EQ(focusReleases, 2);
}

TEST_F(SessionNotesTest, IgnoresReactivationsBeforeItAppearsAndAfterItDisappeared) {
    reactivate();
    notes().appear();
    notes().disappear();
    reactivate();
    pass(1);
    EXPECT_EQ(focusReleases, 0);
}

TEST_F(SessionNotesTest, DropsADelayThatOutlivesIt) {
    notes().appear();
    reactivate();
    destroyNotes();
    pass(1);
    EXPECT_EQ(focusReleases, 0);
}

} // namespace
} // namespace tarne::test
