#include "SessionReflectionView.h"
#include "FeedbackFixture.h"

#include <QAbstractItemModelTester>
#include <QPointer>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

class SessionReflectionViewTest : public FeedbackTest {
protected:
    SessionReflectionView &sheet() {
        if (!m_sheet)
            present();
        return *m_sheet;
    }
    void present() {
        isPresented = true;
        m_sheet = makeReflection(&isPresented, [this] { ++completions; });
        m_sheet->appear();
    }

    /// The check mark, and the feedback sheet is drawn.
    void complete() {
        sheet().completeReflection();
        sheet().feedback()->generateFeedback();
    }

    QList<int> selected() {
        QList<int> positions;
        for (int row = 0; row < sheet().goals()->rowCount(); ++row)
            positions += sheet().goals()->index(row).data(GoalRatingsModel::SelectedStatus).toInt();
        return positions;
    }

private:
    std::unique_ptr<SessionReflectionView> m_sheet;
};

TEST_F(SessionReflectionViewTest, OpensWithUnratedGoalsAndAnEmptyReflection) {
    start(u"A, B"_s, 1500.0);
    controller().saveReflection(u"of an earlier opening"_s);
    EXPECT_EQ(selected(), QList<int>({-1, -1}));
    EXPECT_EQ(sheet().reflection(), QString());
    EXPECT_FALSE(sheet().canComplete());
}

TEST_F(SessionReflectionViewTest, OffersTheVerdictsInTheirOrder) {
    EXPECT_EQ(SessionReflectionView::statusNames(),
              QStringList({u"Completed"_s, u"Partially Completed"_s, u"Not Completed"_s}));
}

TEST_F(SessionReflectionViewTest, TakesOverVerdictsThatTheSessionHas) {
    reflectOn(u"A, B"_s, {GoalStatus::partiallyCompleted, GoalStatus::notCompleted}, {});
    EXPECT_EQ(selected(), QList<int>({1, 2}));
    EXPECT_TRUE(sheet().canComplete());
}

TEST_F(SessionReflectionViewTest, CanCompleteOnceEveryGoalIsRatedWhateverIsWritten) {
    start(u"A, B"_s, 1500.0);
    const QAbstractItemModelTester tester(sheet().goals());
    sheet().rate(0, 0);
    sheet().setReflection(u"a long reflection"_s);
    EXPECT_FALSE(sheet().canComplete());
    sheet().rate(1, 2);
    sheet().setReflection(QString());
    EXPECT_TRUE(sheet().canComplete());
}

TEST_F(SessionReflectionViewTest, WithoutGoalsSomethingMustBeWritten) {
    start(u","_s, 1500.0);
    EXPECT_FALSE(sheet().hasGoals());
    sheet().setReflection(u" \n\u00A0"_s);
    EXPECT_FALSE(sheet().canComplete());
    sheet().setReflection(u" x "_s);
    EXPECT_TRUE(sheet().canComplete());
}

TEST_F(SessionReflectionViewTest, ARatingCanBeChanged) {
    start(u"A"_s, 1500.0);
    sheet().rate(0, 0);
    sheet().rate(0, 2);
    EXPECT_EQ(selected(), QList<int>({2}));
}

TEST_F(SessionReflectionViewTest, RatingsOfRowsAndVerdictsThatAreNotThereAreIgnored) {
    start(u"A"_s, 1500.0);
    sheet().rate(1, 0);
    sheet().rate(-1, 0);
    sheet().rate(0, 3);
    sheet().rate(0, -1);
    EXPECT_EQ(selected(), QList<int>({-1}));
}

TEST_F(SessionReflectionViewTest, RatingKeepsTheRows) {
    start(u"A, B"_s, 1500.0);
    const QSignalSpy resets(sheet().goals(), &QAbstractItemModel::modelReset);
    sheet().rate(0, 0);
    pass(1500);
    EXPECT_EQ(resets.count(), 0) << "rows lose their focus";
    EXPECT_EQ(selected(), QList<int>({0, -1}));
}

TEST_F(SessionReflectionViewTest, NothingReachesTheControllerBeforeCompletion) {
    start(u"A"_s, 1500.0);
    sheet().rate(0, 0);
    sheet().setReflection(u"Fine"_s);
    EXPECT_FALSE(controller().currentSession()->goals[0].status);
    EXPECT_FALSE(controller().currentSession()->reflection);
}

TEST_F(SessionReflectionViewTest, CompletionStoresVerdictsAndReflectionThenAsksForFeedback) {
    start(u"A"_s, 1500.0);
    sheet().rate(0, 0);
    sheet().setReflection(u"Fine"_s);
    complete();
    EXPECT_EQ(controller().currentSession()->goals[0].status, GoalStatus::completed);
    EXPECT_EQ(controller().currentSession()->reflection, u"Fine"_s);
    EXPECT_TRUE(sheet().showingFeedback());
    EXPECT_TRUE(isPresented);
    ASSERT_EQ(gemini.requests.size(), 1U);
    EXPECT_TRUE(gemini.requests[0].body.contains("A — completed"));
    EXPECT_TRUE(gemini.requests[0].body.contains("- Reflection: Fine"));
}

TEST_F(SessionReflectionViewTest, CompletionStoresTheVerdictsThenTheReflectionThenShowsFeedback) {
    start(u"A"_s, 1500.0);
    sheet().rate(0, 0);
    sheet().setReflection(u"Fine"_s);
    QStringList order;
    QObject::connect(&controller(), &SessionViewModel::currentSessionChanged, [&] {
        EXPECT_TRUE(controller().currentSession()->goals[0].status);
        order += controller().currentSession()->reflection.value_or(u"verdicts"_s);
    });
    QObject::connect(&sheet(), &SessionReflectionView::showingFeedbackChanged,
                     [&] { order += u"feedback"_s; });
    complete();
    EXPECT_EQ(order, QStringList({u"verdicts"_s, u"Fine"_s, u"feedback"_s}));
}

TEST_F(SessionReflectionViewTest, CompletionStoresAlsoAnEmptyReflection) {
    controller().saveReflection(u"old"_s);
    start(u"A"_s, 1500.0);
    sheet().rate(0, 0);
    complete();
    EXPECT_EQ(controller().currentSession()->reflection, QString());
    EXPECT_EQ(controller().loadLastReflection(), QString());
}

TEST_F(SessionReflectionViewTest, TheFeedbackSheetIsThereBeforeItsFlagIsRaised) {
    start(u"A"_s, 1500.0);
    bool wasThere = false;
    QObject::connect(&sheet(), &SessionReflectionView::showingFeedbackChanged,
                     [&](bool showing) { wasThere = showing && sheet().feedback(); });
    complete();
    EXPECT_TRUE(wasThere);
}

TEST_F(SessionReflectionViewTest, TheFeedbackSheetIsUpBeforeTheKeyIsAskedForAndGeminiIsCalled) {
    start(u"A"_s, 1500.0);
    sheet().rate(0, 0);
    sheet().setReflection(u"Fine"_s);
    sheet().completeReflection();
    EXPECT_TRUE(sheet().showingFeedback());
    EXPECT_EQ(items.calls().count(u"copy"_s), 0);
    EXPECT_TRUE(gemini.requests.empty());
    EXPECT_EQ(sheet().feedback()->panel(), SessionFeedbackView::Panel::Loading);
    EXPECT_EQ(sheet().feedback()->reflection(), u"Fine"_s);
    sheet().feedback()->generateFeedback();
    EXPECT_EQ(gemini.requests.size(), 1U);
}

TEST_F(SessionReflectionViewTest, ClosedFeedbackUncoversThisSheetAsItWas) {
    start(u"A"_s, 1500.0);
    sheet().rate(0, 0);
    sheet().setReflection(u"Fine"_s);
    complete();
    sheet().feedback()->close();
    EXPECT_FALSE(sheet().showingFeedback());
    EXPECT_TRUE(isPresented);
    EXPECT_EQ(sheet().reflection(), u"Fine"_s);
    EXPECT_EQ(selected(), QList<int>({0}));
    EXPECT_EQ(completions, 0);
}

TEST_F(SessionReflectionViewTest, EachCompletionPresentsFeedbackAnew) {
    start(u"A"_s, 1500.0);
    complete();
    sheet().feedback()->close();
    complete();
    EXPECT_EQ(gemini.requests.size(), 2U);
    EXPECT_TRUE(sheet().feedback()->isLoadingFeedback());
}

TEST_F(SessionReflectionViewTest, OfAThousandPresentationsOneViewIsLeft) {
    start(u"A"_s, 1500.0);
    QPointer<SessionFeedbackView> previous;
    for (int i = 0; i < 1000; ++i) {
        complete();
        EXPECT_TRUE(previous.isNull());
        previous = sheet().feedback();
        previous->close();
    }
    EXPECT_TRUE(previous);
    EXPECT_EQ(gemini.requests.size(), 1000U);
}

TEST_F(SessionReflectionViewTest, FinishedFeedbackClosesBothSheetsAndEndsTheFlow) {
    start(u"A"_s, 1500.0);
    complete();
    sheet().feedback()->finishSession();
    EXPECT_FALSE(sheet().showingFeedback());
    EXPECT_FALSE(isPresented);
    EXPECT_EQ(completions, 1);
}

TEST_F(SessionReflectionViewTest, IsClosedBeforeTheEndOfTheFlowIsTold) {
    start(u"A"_s, 1500.0);
    bool wasPresented = true;
    const auto view = makeReflection(&isPresented, [&] { wasPresented = isPresented; });
    view->completeReflection();
    view->feedback()->finishSession();
    EXPECT_FALSE(wasPresented);
}

TEST_F(SessionReflectionViewTest, CloseOnlyCloses) {
    start(u"A"_s, 1500.0);
    sheet().rate(0, 0);
    sheet().setReflection(u"Fine"_s);
    sheet().close();
    EXPECT_FALSE(isPresented);
    EXPECT_EQ(completions, 0);
    EXPECT_FALSE(controller().currentSession()->goals[0].status);
    present();
    EXPECT_EQ(selected(), QList<int>({-1}));
    EXPECT_EQ(sheet().reflection(), QString());
}

TEST_F(SessionReflectionViewTest, ClosingKeepsWhatAnEarlierCompletionWrote) {
    start(u"A"_s, 1500.0);
    sheet().rate(0, 0);
    sheet().setReflection(u"Fine"_s);
    complete();
    sheet().feedback()->close();
    sheet().rate(0, 2);
    sheet().close();
    present();
    EXPECT_EQ(selected(), QList<int>({0}));
    EXPECT_EQ(controller().loadLastReflection(), u"Fine"_s);
}

TEST_F(SessionReflectionViewTest, MoreThanFiveMinutesOnTheSheetAfterARunOutLeaveASecondEntry) {
    start(u"A"_s, 300.0);
    pass(301);
    sheet().rate(0, 0);
    complete();
    answerInFourSections();
    pass(300);
    sheet().feedback()->finishSession();
    controller().endSession(std::nullopt, true);
    ASSERT_EQ(history().size(), 2U);
    EXPECT_EQ(history()[0].motivation, u"Go on."_s);
    EXPECT_EQ(history()[1].motivation, QString());
}

TEST_F(SessionReflectionViewTest, ASessionEndedEarlyLeavesOneEntryWithAllTexts) {
    start(u"A"_s, 1500.0);
    pass(100);
    sheet().rate(0, 1);
    sheet().setReflection(u"Fine"_s);
    complete();
    answerInFourSections();
    sheet().feedback()->finishSession();
    controller().endSession(std::nullopt, true);
    ASSERT_EQ(history().size(), 1U);
    EXPECT_EQ(history()[0].duration, 1500.0);
    EXPECT_EQ(history()[0].goals[0].status, GoalStatus::partiallyCompleted);
    EXPECT_EQ(history()[0].overallAssessment, u"Good."_s);
    EXPECT_EQ(history()[0].reflection, u"Fine"_s);
}

TEST_F(SessionReflectionViewTest, ARunOutBehindTheSheetsDropsTheReflectionOfTheSession) {
    start(u"A"_s, 300.0);
    pass(250);
    sheet().rate(0, 0);
    sheet().setReflection(u"Fine"_s);
    complete();
    pass(60);
    EXPECT_FALSE(controller().currentSession()->reflection);
    EXPECT_EQ(sheet().feedback()->reflection(), u"Fine"_s);
    answerInFourSections();
    sheet().feedback()->finishSession();
    ASSERT_EQ(history().size(), 1U);
    EXPECT_EQ(history()[0].reflection, u"Fine"_s);
}

} // namespace
} // namespace tarne::test
