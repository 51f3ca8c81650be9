#include "FeedbackFixture.h"
#include "FeedbackPrompt.h"
#include "GeminiRequest.h"
#include "TARNEStyle.h"

#include <QAbstractItemModelTester>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

using enum GoalStatus;
using Panel = SessionFeedbackView::Panel;

class SessionFeedbackViewTest : public FeedbackTest {
protected:
    QStringList rows(int role) {
        QStringList texts;
        for (int row = 0; row < feedback().goals()->rowCount(); ++row)
            texts += feedback().goals()->index(row).data(role).toString();
        return texts;
    }
    QStringList contents() {
        QStringList texts;
        for (int row = 0; row < feedback().sections()->rowCount(); ++row)
            texts +=
                feedback().sections()->index(row).data(FeedbackSectionsModel::Content).toString();
        return texts;
    }

    /// The sheet's view at one and the same address, presentation after presentation: what were
    /// delivered to one that is gone would show in the next.
    void present() {
        placed.emplace(controller(), feedbackPlatform(), &isPresented, [] {});
        placed->appear();
    }

    std::optional<SessionFeedbackView> placed;
};

TEST_F(SessionFeedbackViewTest, LoadsFromTheMomentItIsMade) {
    start(u"A"_s, 1500.0);
    const SessionFeedbackView view(controller(), feedbackPlatform(), &isPresented, [] {});
    EXPECT_TRUE(view.isLoadingFeedback());
    EXPECT_EQ(view.panel(), Panel::Loading);
    EXPECT_TRUE(gemini.requests.empty());
}

TEST_F(SessionFeedbackViewTest, AsksGeminiOnceOnAppearing) {
    reflectOn(u"Write report, Review"_s, {completed}, u"Went well."_s);
    EXPECT_EQ(feedback().panel(), Panel::Loading);
    ASSERT_EQ(gemini.requests.size(), 1U);
    const HTTPRequest &request = gemini.requests[0];
    EXPECT_EQ(request.url.toString(),
              u"https://gemini.example/v1beta/models/gemini-1.5-flash-latest:generateContent"
              "?key=the-key"_s);
    EXPECT_EQ(request.contentType, "application/json");
    EXPECT_EQ(request.body, geminiRequestBody(buildFeedbackPrompt(*controller().currentSession())));
}

TEST_F(SessionFeedbackViewTest, AsksOnceHoweverOftenItsSheetIsDrawn) {
    reflectOn(u"A"_s, {}, {});
    feedback();
    feedback().generateFeedback();
    EXPECT_EQ(gemini.requests.size(), 1U);
}

TEST_F(SessionFeedbackViewTest, WithoutASessionSaysSoBeforeItLooksForAKey) {
    items.items.clear();
    controller();
    log.takeLines();
    EXPECT_EQ(feedback().panel(), Panel::Error);
    EXPECT_EQ(feedback().feedbackError(), u"No session data available"_s);
    EXPECT_EQ(log.lines(), QStringList());
    EXPECT_EQ(items.calls().count(u"copy"_s), 0);
    EXPECT_EQ(feedback().reflection(), QString());
    EXPECT_TRUE(gemini.requests.empty());
}

TEST_F(SessionFeedbackViewTest, WithoutAKeySaysWhereToSetIt) {
    items.items.clear();
    reflectOn(u"A"_s, {}, {});
    EXPECT_EQ(feedback().panel(), Panel::Error);
    EXPECT_EQ(feedback().feedbackError(),
              u"Gemini API key not configured. Please set it in Settings."_s);
    EXPECT_TRUE(gemini.requests.empty());
    EXPECT_EQ(log.lines(), QStringList());
}

TEST_F(SessionFeedbackViewTest, AnEmptyKeyIsNone) {
    keychain.save(geminiApiKeyName, QString());
    reflectOn(u"A"_s, {}, {});
    EXPECT_EQ(feedback().feedbackError(),
              u"Gemini API key not configured. Please set it in Settings."_s);
}

TEST_F(SessionFeedbackViewTest, AKeyOfBlanksIsNotMissingAndEndsTheProcess) {
    keychain.save(geminiApiKeyName, u"  "_s);
    reflectOn(u"A"_s, {}, {});
    EXPECT_DEATH(feedback(), "the API key holds characters that no address can carry");
}

TEST_F(SessionFeedbackViewTest, ASessionWhoseLineHoldsNoGoalIsAskedAboutAllTheSame) {
    start(u" , "_s, 1500.0);
    feedback();
    ASSERT_EQ(gemini.requests.size(), 1U);
    EXPECT_TRUE(gemini.requests[0].body.contains("No specific goal statuses available"));
}

TEST_F(SessionFeedbackViewTest, ShowsTheSectionsOfTheAnswer) {
    reflectOn(u"A"_s, {completed}, {});
    feedback();
    answerInFourSections();
    EXPECT_EQ(feedback().panel(), Panel::Sections);
    EXPECT_EQ(contents(), QStringList({u"Good."_s, u"Steady."_s, u"Rest."_s, u"Go on."_s}));
    EXPECT_EQ(feedback().feedbackError(), QString());
    EXPECT_TRUE(feedback().feedback().startsWith(u"**Overall Assessment:** Good."));
}

TEST_F(SessionFeedbackViewTest, NamesTheFourSectionsAlsoWhenTheyAreEmpty) {
    reflectOn(u"A"_s, {}, {});
    const QAbstractItemModelTester tester(feedback().sections());
    answer("");
    EXPECT_EQ(feedback().panel(), Panel::Sections);
    EXPECT_EQ(contents(), QStringList({u""_s, u""_s, u""_s, u""_s}));
    QStringList titles;
    QStringList icons;
    for (int row = 0; row < 4; ++row) {
        titles += feedback().sections()->index(row).data(FeedbackSectionsModel::Title).toString();
        icons += feedback().sections()->index(row).data(FeedbackSectionsModel::Icon).toString();
    }
    EXPECT_EQ(titles, QStringList({u"Overall Assessment"_s, u"Patterns Observed"_s,
                                   u"Suggestions"_s, u"Motivation"_s}));
    EXPECT_EQ(icons, QStringList({u"chart.bar.fill"_s, u"magnifyingglass"_s, u"lightbulb.fill"_s,
                                  u"heart.fill"_s}));
}

TEST_F(SessionFeedbackViewTest, AnAnswerWithoutLabelsStandsWholeInTheFirstSection) {
    reflectOn(u"A"_s, {}, {});
    feedback();
    answer("# Hello\\nthere");
    EXPECT_EQ(contents(), QStringList({u"# Hello\nthere"_s, u""_s, u""_s, u""_s}));
}

TEST_F(SessionFeedbackViewTest, TellsWhyThereIsNoAnswerUntilItGoesAway) {
    reflectOn(u"A"_s, {}, {});
    feedback();
    log.takeLines();
    gemini.fail(u"No network."_s);
    time.runPending();
    EXPECT_TRUE(log.takeLines().isEmpty());
    pass(600);
    EXPECT_EQ(feedback().panel(), Panel::Error);
    EXPECT_EQ(feedback().feedbackError(), u"No network."_s);
    EXPECT_FALSE(feedback().parsedFeedback());
    EXPECT_EQ(gemini.requests.size(), 1U) << "asked again";
}

TEST_F(SessionFeedbackViewTest, AFailureThatIsToldInNoWordIsOneAllTheSame) {
    reflectOn(u"A"_s, {}, {});
    feedback();
    gemini.answer(R"({"error":{"message":""}})", 400);
    time.runPending();
    EXPECT_EQ(feedback().panel(), Panel::Error);
    EXPECT_EQ(feedback().feedbackError(), QString());
    EXPECT_EQ(feedback().feedback(), QString());
}

TEST_F(SessionFeedbackViewTest, TellsWhatTheServiceSays) {
    reflectOn(u"A"_s, {}, {});
    feedback();
    gemini.answer(R"({"error":{"message":"API key not valid."}})", 400);
    time.runPending();
    EXPECT_EQ(feedback().feedbackError(), u"API key not valid."_s);
    EXPECT_EQ(log.lines(), QStringList());
}

TEST_F(SessionFeedbackViewTest, TouchesItsStateOnTheMainQueueOnly) {
    reflectOn(u"A"_s, {}, {});
    feedback();
    int changes = 0;
    QObject::connect(&feedback(), &SessionFeedbackView::panelChanged, [&] { ++changes; });
    gemini.answer(FeedbackFakes::answerWith("x"));
    EXPECT_EQ(changes, 0);
    time.runPending();
    EXPECT_EQ(changes, 1);
}

TEST_F(SessionFeedbackViewTest, AnOutcomeCrossesToTheMainQueueInOneBlock) {
    reflectOn(u"A"_s, {}, {});
    feedback();
    const std::size_t before = time.pendingBlockCount();
    gemini.answer(FeedbackFakes::answerInFourSections());
    EXPECT_EQ(time.pendingBlockCount(), before + 1);
    time.runPending();
    EXPECT_EQ(feedback().panel(), Panel::Sections);
    EXPECT_EQ(contents()[2], u"Rest."_s);
}

TEST_F(SessionFeedbackViewTest, AnAnswerThatComesBehindTheSheetsEndIsLost) {
    reflectOn(u"A"_s, {}, {});
    present();
    placed->generateFeedback();
    present();
    answer("late");
    EXPECT_EQ(placed->panel(), Panel::Loading);
    EXPECT_EQ(placed->feedback(), QString());
}

TEST_F(SessionFeedbackViewTest, AnAnswerToAnEarlierPresentationLeavesTheNextOneLoading) {
    reflectOn(u"A"_s, {}, {});
    feedback();
    feedback().close();
    presentFeedback();
    answer("**Advice:** Early.");
    EXPECT_EQ(feedback().panel(), Panel::Loading);
    answer("**Advice:** Late.");
    EXPECT_EQ(contents()[2], u"Late."_s);
}

TEST_F(SessionFeedbackViewTest, AnAnswerThatComesWhenTheSheetIsGoneIsLost) {
    reflectOn(u"A"_s, {}, {});
    present();
    placed->generateFeedback();
    gemini.answer(FeedbackFakes::answerWith("late"));
    present();
    time.runPending();
    EXPECT_EQ(placed->panel(), Panel::Loading);
    EXPECT_EQ(placed->feedback(), QString());
}

TEST_F(SessionFeedbackViewTest, EachPresentationAsksAnew) {
    reflectOn(u"A"_s, {}, {});
    feedback();
    feedback().close();
    presentFeedback();
    EXPECT_EQ(gemini.requests.size(), 2U);
    EXPECT_EQ(feedback().panel(), Panel::Loading);
}

TEST_F(SessionFeedbackViewTest, ShowsHowEachGoalWent) {
    reflectOn(u"A, B, C, D"_s, {completed, partiallyCompleted, notCompleted}, {});
    const QAbstractItemModelTester tester(feedback().goals());
    EXPECT_EQ(rows(GoalOutcomesModel::GoalText), QStringList({u"A"_s, u"B"_s, u"C"_s, u"D"_s}));
    EXPECT_EQ(rows(GoalOutcomesModel::StatusIcon),
              QStringList({u"checkmark.circle.fill"_s, u"minus.circle.fill"_s,
                           u"xmark.circle.fill"_s, u"circle"_s}));
    EXPECT_EQ(rows(GoalOutcomesModel::StatusText),
              QStringList({u"Completed"_s, u"Partially Completed"_s, u"Not Completed"_s,
                           u"Not Evaluated"_s}));
    std::vector<QColor> colors;
    for (int row = 0; row < 4; ++row)
        colors.push_back(
            feedback().goals()->index(row).data(GoalOutcomesModel::StatusColor).value<QColor>());
    EXPECT_EQ(colors, std::vector<QColor>({SystemColors::green, SystemColors::orange,
                                           SystemColors::red, SystemColors::gray}));
}

struct Progress {
    std::vector<GoalStatus> statuses;
    QString text;
    double share;
    QColor color;
};

TEST_F(SessionFeedbackViewTest, MeasuresProgressByCompletedGoals) {
    const std::vector<Progress> table{
        {{completed, completed, notCompleted},
         u"2 of 3 tasks completed"_s,
         2.0 / 3.0,
         SystemColors::orange},
        {{completed, completed, completed}, u"3 of 3 tasks completed"_s, 1.0, SystemColors::green},
        {{completed}, u"1 of 3 tasks completed"_s, 1.0 / 3.0, SystemColors::red},
        {{partiallyCompleted, partiallyCompleted, partiallyCompleted},
         u"0 of 3 tasks completed"_s,
         0.0,
         SystemColors::red}};
    for (const Progress &row : table) {
        reflectOn(u"A, B, C"_s, row.statuses, {});
        presentFeedback();
        EXPECT_EQ(feedback().progressText(), row.text);
        EXPECT_DOUBLE_EQ(feedback().progressValue(), row.share) << qPrintable(row.text);
        EXPECT_EQ(feedback().progressColor(), row.color) << qPrintable(row.text);
    }
}

TEST_F(SessionFeedbackViewTest, ProgressTurnsOrangeAtAHalfAndGreenAtFourFifths) {
    reflectOn(u"A, B"_s, {completed}, {});
    EXPECT_EQ(feedback().progressColor(), QColor(SystemColors::orange));
    reflectOn(u"A, B, C, D, E"_s, {completed, completed, completed, completed}, {});
    presentFeedback();
    EXPECT_DOUBLE_EQ(feedback().progressValue(), 0.8);
    EXPECT_EQ(feedback().progressColor(), QColor(SystemColors::green));
}

TEST_F(SessionFeedbackViewTest, WithoutGoalsThereIsNoProgress) {
    start(u","_s, 1500.0);
    EXPECT_FALSE(feedback().hasGoals());
    EXPECT_EQ(feedback().progressValue(), 0.0);
}

TEST_F(SessionFeedbackViewTest, BeginsWithTheSessionsReflection) {
    reflectOn(u"A"_s, {}, u"Went well."_s);
    EXPECT_EQ(feedback().reflection(), u"Went well."_s);
    EXPECT_FALSE(feedback().isEditingReflection());
}

TEST_F(SessionFeedbackViewTest, HasTheReflectionBeforeItAsks) {
    reflectOn(u"A"_s, {}, u"Went well."_s);
    SessionFeedbackView view(controller(), feedbackPlatform(), &isPresented, [] {});
    std::optional<std::size_t> requestsBefore;
    QObject::connect(&view, &SessionFeedbackView::reflectionChanged,
                     [&] { requestsBefore = gemini.requests.size(); });
    view.appear();
    EXPECT_EQ(requestsBefore, 0U);
    view.generateFeedback();
    EXPECT_EQ(gemini.requests.size(), 1U);
}

TEST_F(SessionFeedbackViewTest,
       AsksAboutTheReflectionThatItCameUpWithThoughTheTimeRunsOutMeanwhile) {
    reflectOn(u"A"_s, {}, u"Went well."_s);
    SessionFeedbackView view(controller(), feedbackPlatform(), &isPresented, [] {});
    view.appear();
    controller().timerCompleted();
    ASSERT_EQ(controller().currentSession()->reflection, std::nullopt);
    view.generateFeedback();
    ASSERT_EQ(gemini.requests.size(), 1U);
    EXPECT_TRUE(gemini.requests[0].body.contains("Went well."));
}

TEST_F(SessionFeedbackViewTest, EditingReachesNothingButTheSheet) {
    reflectOn(u"A"_s, {}, u"Went well."_s);
    feedback().setEditingReflection(true);
    feedback().setReflection(u"Edited"_s);
    feedback().setEditingReflection(false);
    EXPECT_EQ(controller().currentSession()->reflection, u"Went well."_s);
    EXPECT_EQ(controller().loadLastReflection(), u"Went well."_s);
    EXPECT_FALSE(gemini.requests[0].body.contains("Edited"));
}

TEST_F(SessionFeedbackViewTest, TheKeyReachesNoLogAndNoText) {
    reflectOn(u"A"_s, {completed}, {});
    feedback();
    gemini.answer("<html>", 500);
    time.runPending();
    feedback().saveAndShareFeedback();
    EXPECT_FALSE(log.lines().join(u'\n').contains(u"the-key"));
    EXPECT_FALSE(feedback().feedbackError().contains(u"the-key"));
    EXPECT_FALSE(pasteboard.text.contains(u"the-key"));
}

} // namespace
} // namespace tarne::test
