#include "FeedbackSheetFixture.h"
#include "StyleSingletons.h"

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

QColor tint(QColor color) {
    color.setAlphaF(0.15F);
    return color;
}

TEST_F(FeedbackSheetLayout, LiesOnTheMaterialWithItsShadowAndNoDragIndicator) {
    open();
    expectSheetGround(feedbackPanel());
    EXPECT_EQ(feedbackPanel().property("hasDragIndicator"), false);
}

TEST_F(FeedbackSheetLayout, HeadsItselfWithTitleProgressAndTheCloseControl) {
    open(u"A, B"_s, {0, 2});
    QFont title = TypographyTokens().systemTitle2();
    title.setWeight(QFont::Bold);
    expectLook(ui(), u"Session Feedback"_s, title, SystemColors::label);
    expectLook(ui(), u"1 of 2 tasks completed"_s, TypographyTokens().systemCaption(),
               SystemColors::secondaryLabel);
    EXPECT_EQ(text(u"1 of 2 tasks completed"_s).topLeft(),
              text(u"Session Feedback"_s).bottomLeft() + QPointF(0, 4));
    expectCloseControl();
    EXPECT_NEAR(
        probe().place(u"Close"_s).center().y(),
        (text(u"Session Feedback"_s).top() + text(u"1 of 2 tasks completed"_s).bottom()) / 2, 0.5);
}

TEST_F(FeedbackSheetLayout, FillsTheProgressBarByTheShareInItsTint) {
    open(u"A, B"_s, {0, 2});
    const QQuickItem &bar = probe().item(u"1 of 2 tasks completed"_s, QAccessible::ProgressBar);
    const QQuickItem &fill = *bar.childItems().constLast();
    EXPECT_EQ(bar.width(), 80);
    EXPECT_EQ(fill.width(), 40);
    EXPECT_EQ(LayoutProbe::color(fill), SystemColors::orange);
    EXPECT_EQ(LayoutProbe::place(bar).right(), probe().place(u"Close"_s).left() - 8);
    EXPECT_NEAR(LayoutProbe::place(bar).center().y(),
                text(u"1 of 2 tasks completed"_s).center().y(), 0.5);
}

TEST_F(FeedbackSheetLayout, DrawsALineBetweenHeaderAndBody) {
    open();
    const auto lines = linesIn(feedbackPanel());
    ASSERT_EQ(lines.size(), 1U);
    expectSeparator(*lines[0]);
    const QRectF line = LayoutProbe::place(*lines[0]);
    EXPECT_EQ(line.top(), text(u"1 of 1 tasks completed"_s).bottom() + 16);
    EXPECT_EQ(line.left(), panel().left() + 32);
    EXPECT_EQ(line.right(), panel().right() - 32);
}

TEST_F(FeedbackSheetLayout, SetsGoalsCardsAndTheEndApartAsTold) {
    open(u"Write report, Review"_s, {0, 1});
    answer();
    const auto row = [&](const QString &goal) {
        return LayoutProbe::place(*textItem(goal).parentItem()->parentItem());
    };
    EXPECT_EQ(row(u"Write report"_s).top(),
              LayoutProbe::place(*linesIn(feedbackPanel())[0]).bottom() + 20);
    EXPECT_EQ(row(u"Write report"_s).left(), panel().left() + 32);
    EXPECT_EQ(row(u"Write report"_s).right(), panel().right() - 32);
    EXPECT_EQ(row(u"Review"_s).top(), row(u"Write report"_s).bottom() + 16);
    double top = row(u"Review"_s).bottom() + 24;
    for (const QString &title : {u"Overall Assessment"_s, u"Patterns Observed"_s, u"Suggestions"_s,
                                 u"Motivation"_s, u"Your Reflection"_s}) {
        EXPECT_NEAR(card(title).top(), top, 0.01) << qPrintable(title);
        top = card(title).bottom() + 20;
    }
    const QQuickItem &body = firstIn(
        feedbackPanel(), [](const QQuickItem &item) { return item.inherits("QQuickFlickable"); });
    const QQuickItem &last = cardOf(u"Your Reflection"_s);
    const auto *const content = body.property("contentItem").value<QQuickItem *>();
    ASSERT_TRUE(content);
    EXPECT_NEAR(body.property("contentHeight").toDouble(),
                last.mapRectToItem(content, last.boundingRect()).bottom() + 24 + 80 + 20, 0.01);
}

struct Verdict {
    QString goal;
    QString symbol;
    QColor color;
    QString text;
};

TEST_F(FeedbackSheetLayout, ShowsEachGoalWithItsMarkAndItsBadge) {
    open(u"A, B, C, D"_s, {0, 1, 2});
    const std::vector<Verdict> table{
        {u"A"_s, u"checkmark.circle.fill"_s, SystemColors::green, u"Completed"_s},
        {u"B"_s, u"minus.circle.fill"_s, SystemColors::orange, u"Partially Completed"_s},
        {u"C"_s, u"xmark.circle.fill"_s, SystemColors::red, u"Not Completed"_s},
        {u"D"_s, u"circle"_s, SystemColors::gray, u"Not Evaluated"_s}};
    for (const Verdict &verdict : table) {
        expectLook(ui(), verdict.goal, Fonts::system(15, QFont::Medium), SystemColors::label);
        expectLook(ui(), verdict.text, Fonts::system(11, QFont::Medium), verdict.color);
        const QQuickItem &row = *textItem(verdict.goal).parentItem()->parentItem();
        const QRectF place = LayoutProbe::place(row);
        const QQuickItem &symbol = symbolIn(row, verdict.symbol);
        expectSymbol(symbol, 16, QFont::Medium, verdict.color);
        EXPECT_EQ(LayoutProbe::place(symbol).center(),
                  QPointF(place.left() + 10, place.center().y()));
        EXPECT_EQ(text(verdict.goal).left(), place.left() + 20 + 12);

        const QQuickItem &badge = *textItem(verdict.text).parentItem();
        const QQuickItem &capsule = *badge.childItems().constFirst();
        EXPECT_EQ(LayoutProbe::place(badge).right(), place.right());
        EXPECT_EQ(LayoutProbe::place(badge),
                  text(verdict.text).marginsAdded(QMarginsF(8, 4, 8, 4)));
        EXPECT_EQ(LayoutProbe::color(capsule), tint(verdict.color));
        EXPECT_EQ(capsule.property("radius"), badge.height() / 2);
        EXPECT_EQ(row.height(), 8 + std::max(text(verdict.goal).height(), badge.height()) + 8);
    }
}

TEST_F(FeedbackSheetLayout, AGoalOfAnyScriptStandsBesideItsMark) {
    open(u"שלום"_s);
    EXPECT_EQ(textItem(u"שלום"_s).property("effectiveHorizontalAlignment").toInt(), Qt::AlignLeft);
}

TEST_F(FeedbackSheetLayout, SaveAndShareIsASymbolAndATextOnAFaintFill) {
    open();
    const QString name = u"Save & Share"_s;
    expectLook(ui(), name, Fonts::system(14, QFont::Medium), SystemColors::label);
    const QQuickItem &symbol = symbolIn(probe().item(name), u"square.and.arrow.up"_s);
    expectSymbol(symbol, 13, QFont::Medium, SystemColors::label);
    const QRectF button = probe().place(name, QAccessible::Button);
    EXPECT_EQ(LayoutProbe::place(symbol).left(), button.left() + 16);
    EXPECT_EQ(text(name).left(), LayoutProbe::place(symbol).right() + 6);
    EXPECT_EQ(text(name).right(), button.right() - 16);
    EXPECT_EQ(button.height(), 10 + text(name).height() + 10);
    EXPECT_EQ(background(name).property("radius"), 8);
    EXPECT_EQ(LayoutProbe::color(background(name)), SystemColors::secondaryFill);
}

TEST_F(FeedbackSheetLayout, FinishSessionIsATextAndACheckmarkOnTheAccent) {
    open();
    const QString name = u"Finish session"_s;
    const QString label = u"Finish Session"_s;
    expectLook(ui(), label, Fonts::system(15, QFont::Medium), SystemColors::white);
    const QQuickItem &symbol = symbolIn(probe().item(name), u"checkmark"_s);
    expectSymbol(symbol, 13, QFont::DemiBold, SystemColors::white);
    const QRectF button = probe().place(name);
    EXPECT_EQ(LayoutProbe::place(symbol).left(), text(label).right() + 8);
    EXPECT_NEAR((text(label).left() + LayoutProbe::place(symbol).right()) / 2, button.center().x(),
                0.5);
    EXPECT_EQ(text(label).top(), button.top() + 12);
    EXPECT_EQ(text(label).bottom(), button.bottom() - 12);
    EXPECT_EQ(background(name).property("radius"), 8);
    EXPECT_EQ(LayoutProbe::color(background(name)), TARNEStyle::Colors::accent);
}

TEST_F(FeedbackSheetLayout, FinishSessionIsDrawnUpToTheMargin) {
    open();
    const QRectF button = probe().place(u"Finish session"_s);
    const QPoint margin(static_cast<int>(panel().right()) - 32,
                        static_cast<int>(button.center().y()));
    const QImage shown = ui().picture();
    EXPECT_EQ(shown.pixelColor(margin - QPoint(1, 0)), TARNEStyle::Colors::accent);
    EXPECT_EQ(shown.pixelColor(margin), SystemColors::regularMaterial);
}

TEST_F(FeedbackSheetLayout, TheFooterLiesOnTheMaterial) {
    open();
    const QQuickItem &footer = *probe().item(u"Finish session"_s).parentItem();
    EXPECT_EQ(LayoutProbe::color(footer), SystemColors::regularMaterial);
    EXPECT_EQ(footer.width(), 580);
    EXPECT_EQ(footer.height(), 20 + probe().place(u"Finish session"_s).height() + 20);
}

} // namespace
} // namespace tarne::test
