// The reflection sheet, used by accessible name.

#include "WrapUpFixture.h"

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

TEST_F(WrapUpTest, TheReflectionSheetAsksForEachGoal) {
    openReflection(u"Write report, Review"_s);
    for (const QString &name :
         {u"How did you do with your goals?"_s, u"Close"_s, u"Write report"_s, u"Review"_s,
          u"Completed"_s, u"Partially Completed"_s, u"Not Completed"_s, u"Reflection"_s})
        EXPECT_TRUE(ui().has(name)) << qPrintable(name);
    EXPECT_EQ(ui().names(QAccessible::RadioButton).count(u"Completed"_s), 2);
    EXPECT_EQ(ui().names().count(u"○"_s), 6);
}

TEST_F(WrapUpTest, RatingMarksTheChosenVerdict) {
    openReflection(u"Review"_s);
    ASSERT_TRUE(ui().click(u"Partially Completed"_s));
    EXPECT_TRUE(ui().accessible(u"Partially Completed"_s)->state().checked);
    EXPECT_FALSE(ui().accessible(u"Completed"_s)->state().checked);
    EXPECT_EQ(ui().names().count(u"●"_s), 1);
    EXPECT_EQ(ui().cursorOver(u"Completed"_s), Qt::PointingHandCursor);
}

TEST_F(WrapUpTest, TheCompleteButtonWaitsForTheLastRating) {
    openReflection(u"Write report, Review"_s);
    write(u"Fine"_s);
    ASSERT_TRUE(ui().click(u"Completed"_s));
    EXPECT_FALSE(canComplete());
    sheet().rate(1, 2);
    ui().settle();
    EXPECT_TRUE(canComplete());
    EXPECT_EQ(ui().cursorOver(u"Complete reflection"_s), Qt::PointingHandCursor);
    ASSERT_TRUE(ui().click(u"Complete reflection"_s));
    EXPECT_TRUE(ui().has(u"Session Feedback"_s));
}

TEST_F(WrapUpTest, WithoutGoalsTheReflectionStandsAlone) {
    openReflection(u",,"_s);
    EXPECT_FALSE(ui().has(u"Completed"_s));
    EXPECT_FALSE(canComplete());
    write(u"  "_s);
    EXPECT_FALSE(canComplete());
    write(u"x"_s);
    ASSERT_TRUE(canComplete());
    ASSERT_TRUE(ui().click(u"Complete reflection"_s));
    EXPECT_TRUE(ui().has(u"Session Feedback"_s));
}

TEST_F(WrapUpTest, ControlReturnAndEscapeDoNothing) {
    openReflection(u"Review"_s);
    ASSERT_TRUE(ui().click(u"Completed"_s));
    write(u"Fine"_s);
    ui().key(Qt::Key_Return, Qt::ControlModifier);
    ui().key(Qt::Key_Return, Qt::MetaModifier);
    ui().key(Qt::Key_Escape);
    EXPECT_FALSE(sheet().showingFeedback());
    EXPECT_TRUE(view().showSessionReflection());
}

TEST_F(WrapUpTest, CloseGoesBackToTheCountdown) {
    openReflection(u"Review"_s);
    ASSERT_TRUE(ui().click(u"Close"_s));
    EXPECT_TRUE(ui().has(u"Pause"_s));
    EXPECT_TRUE(controller().isTimerActive());
}

TEST_F(WrapUpTest, TheReflectionSheetIsFiveHundredAndTwentyBySixHundred) {
    openReflection(u"Review"_s);
    const QRectF panel = place(u"How did you do with your goals?"_s, QAccessible::Dialog);
    EXPECT_EQ(panel.size(), QSizeF(520, 600));
    const QRectF title = place(u"How did you do with your goals?"_s, QAccessible::Heading);
    EXPECT_EQ(title.topLeft() - panel.topLeft(), QPointF(40, 32));
    EXPECT_EQ(panel.right() - place(u"Close"_s).right(), 40);
    EXPECT_EQ(place(u"Close"_s).size(), QSizeF(20, 20));
    const QRectF complete = place(u"Complete reflection"_s);
    EXPECT_NEAR(complete.center().x(), panel.right() - 40 - 18, 0.01);
    EXPECT_NEAR(complete.center().y(), panel.bottom() - 24 - 18, 0.01);
}

TEST_F(WrapUpTest, TheReflectionEditorIsAtLeastAHundredAndTwentyHighAndGrowsWithItsText) {
    openReflection(u"Review"_s);
    const QQuickItem &text = item(u"Reflection"_s, QAccessible::EditableText);
    EXPECT_EQ(text.width(), 520 - 2 * 40 - 2 * 12);
    EXPECT_EQ(text.height(), 120 - 2 * 10);
    tabTo(u"Reflection"_s);
    for (int i = 0; i < 10; ++i)
        ui().key(Qt::Key_Return);
    ui().settle();
    EXPECT_GT(text.height(), 100);
}

TEST_F(WrapUpTest, TheCaretStaysInViewWhileTheEditorGrows) {
    openReflection(u"A, B, C, D, E"_s);
    ASSERT_TRUE(ui().waitUntil([&] { return ui().has(u"Reflection"_s); }));
    tabTo(u"Reflection"_s);
    for (int i = 0; i < 40; ++i)
        ui().key(Qt::Key_Return);
    layOut();
    const QQuickItem &text = item(u"Reflection"_s, QAccessible::EditableText);
    const QRectF caret = text.mapRectToScene(text.property("cursorRectangle").toRectF());
    EXPECT_LE(caret.bottom(), place(u"Complete reflection"_s).top());
}

TEST_F(WrapUpTest, ThePointerIsAHandOverWhatCanBePressed) {
    openReflection(u"Review"_s);
    EXPECT_EQ(ui().cursorOver(u"Close"_s), Qt::PointingHandCursor);
    ui().hover(place(u"How did you do with your goals?"_s, QAccessible::Heading).center());
    EXPECT_EQ(ui().view().cursor().shape(), Qt::ArrowCursor);
    EXPECT_EQ(ui().cursorOver(u"Completed"_s), Qt::PointingHandCursor);
    ui().hover(place(u"How did you do with your goals?"_s, QAccessible::Dialog).bottomRight() -
               QPointF(40 + 18, 24 + 18));
    EXPECT_EQ(ui().view().cursor().shape(), Qt::ArrowCursor);
}

TEST_F(WrapUpTest, TheCompleteButtonShrinksAndIsDisabledWhileAGoalIsUnrated) {
    openReflection(u"Write report, Review"_s);
    ASSERT_TRUE(ui().click(u"Completed"_s));
    write(u"Fine"_s);
    EXPECT_FALSE(canComplete());
    const auto scale = [&] { return circle()->scale(); };
    EXPECT_NEAR(scale(), 0.95, 0.001);
    sheet().rate(1, 0);
    ui().settle();
    EXPECT_TRUE(canComplete());
    EXPECT_EQ(circle()->size(), QSizeF(36, 36));
    EXPECT_TRUE(ui().waitUntil([&] { return qFuzzyCompare(scale(), 1.0); }));
}

TEST_F(WrapUpTest, VerdictsThatTheSessionHasAreSelectedOnOpening) {
    openReflection(u"Review"_s);
    ASSERT_TRUE(ui().click(u"Not Completed"_s));
    ASSERT_TRUE(ui().click(u"Complete reflection"_s));
    ASSERT_TRUE(ui().click(u"Close"_s));
    ASSERT_TRUE(ui().click(u"Close"_s));
    ASSERT_TRUE(ui().click(u"Stop"_s));
    EXPECT_TRUE(ui().accessible(u"Not Completed"_s)->state().checked);
    EXPECT_TRUE(canComplete());
    EXPECT_EQ(sheet().reflection(), QString());
}

TEST_F(WrapUpTest, AVerdictCannotBeTakenBack) {
    openReflection(u"Review"_s);
    ASSERT_TRUE(ui().click(u"Completed"_s));
    ASSERT_TRUE(ui().click(u"Completed"_s));
    EXPECT_TRUE(ui().accessible(u"Completed"_s)->state().checked);
}

TEST_F(WrapUpTest, WhatIsClosedAwayIsLost) {
    openReflection(u"Review"_s);
    ASSERT_TRUE(ui().click(u"Completed"_s));
    write(u"Fine"_s);
    ASSERT_TRUE(ui().click(u"Close"_s));
    ASSERT_TRUE(ui().click(u"Stop"_s));
    EXPECT_FALSE(ui().accessible(u"Completed"_s)->state().checked);
    EXPECT_EQ(item(u"Reflection"_s, QAccessible::EditableText).property("text").toString(),
              QString());
    EXPECT_EQ(controller().loadLastReflection(), QString());
}

} // namespace
} // namespace tarne::test
