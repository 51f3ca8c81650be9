#include "StyleSingletons.h"
#include "WrapUpFixture.h"

#include <QFontMetricsF>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

using Fonts = TARNEStyle::Typography;

class FeedbackSheetLayout : public WrapUpScreenTest {
protected:
    /// Opens the sheet in a window that has room for all of it.
    void open(const QString &goals = u"Review"_s, const QList<int> &verdicts = {0}) {
        ui().view().resize(1000, 900);
        openReflection(goals);
        for (int row = 0; row < verdicts.size(); ++row)
            sheet().rate(row, verdicts[row]);
        sheet().setReflection(u"Fine"_s);
        sheet().completeReflection();
        layOut();
    }
    QRectF panel() { return LayoutProbe::place(feedbackPanel()); }
    QRectF text(const QString &text) { return probe().place(text, QAccessible::StaticText); }
    QQuickItem &textItem(const QString &text) {
        return probe().item(text, QAccessible::StaticText);
    }

    /// The card that holds the text.
    const QQuickItem &cardOf(const QString &text) {
        const QQuickItem *item = &textItem(text);
        while (item && !item->property("cornerRadius").isValid())
            item = item->parentItem();
        return item ? *item : feedbackPanel();
    }
    QRectF card(const QString &text) { return LayoutProbe::place(cardOf(text)); }
    /// A card of the sheet's whole width on its ground.
    void expectCard(const QString &text) {
        const QQuickItem &card = cardOf(text);
        EXPECT_EQ(LayoutProbe::place(card).left(), panel().left() + 32) << qPrintable(text);
        EXPECT_EQ(card.width(), 580 - 2 * 32) << qPrintable(text);
        const QQuickItem &ground =
            firstIn(card, [](const QQuickItem &item) { return item.inherits("QQuickRectangle"); });
        EXPECT_EQ(ground.size(), card.size()) << qPrintable(text);
        EXPECT_EQ(ground.property("radius"), 12) << qPrintable(text);
        EXPECT_EQ(LayoutProbe::color(ground), SystemColors::controlBackground) << qPrintable(text);
    }
    /// A symbol and a title in the card's upper left corner.
    void expectCardTitle(const QString &title, const QString &symbolName) {
        expectLook(ui(), title, Fonts::system(16, QFont::DemiBold), SystemColors::label);
        const QQuickItem &symbol = symbolIn(cardOf(title), symbolName);
        expectSymbol(symbol, 16, QFont::Medium, TARNEStyle::Colors::accent);
        EXPECT_EQ(LayoutProbe::place(symbol).left(), card(title).left() + 16) << qPrintable(title);
        EXPECT_EQ(text(title).left(), LayoutProbe::place(symbol).right() + 8) << qPrintable(title);
        EXPECT_EQ(text(title).top(), card(title).top() + 16) << qPrintable(title);
    }
    /// Two lines of 14 points with 4 between them, and the card's padding below.
    void expectTwoLines(const QString &lines) {
        const double line = QFontMetricsF(Fonts::system(14)).height();
        EXPECT_NEAR(text(lines).height(), 2 * line + 4, 1) << qPrintable(lines);
        EXPECT_NEAR(card(lines).bottom() - text(lines).bottom(), 16, 0.5) << qPrintable(lines);
    }
    const QQuickItem &background(const QString &button) {
        const auto *const ground =
            probe().item(button).property("background").value<QQuickItem *>();
        EXPECT_TRUE(ground) << qPrintable(button);
        return ground ? *ground : feedbackPanel();
    }
};

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
    QFont title = TypographySingleton::systemTitle2();
    title.setWeight(QFont::Bold);
    expectLook(ui(), u"Session Feedback"_s, title, SystemColors::label);
    expectLook(ui(), u"1 of 2 tasks completed"_s, TypographySingleton::systemCaption(),
               SystemColors::secondaryLabel);
    EXPECT_EQ(text(u"1 of 2 tasks completed"_s).topLeft(),
              text(u"Session Feedback"_s).bottomLeft() + QPointF(0, 4));
    expectCloseControl();
}

TEST_F(FeedbackSheetLayout, FillsTheProgressBarByTheShareInItsTint) {
    open(u"A, B"_s, {0, 2});
    const QQuickItem &bar = probe().item(u"1 of 2 tasks completed"_s, QAccessible::ProgressBar);
    const QQuickItem &fill = *bar.childItems().constLast();
    EXPECT_EQ(bar.width(), 80);
    EXPECT_EQ(fill.width(), 40);
    EXPECT_EQ(LayoutProbe::color(fill), SystemColors::orange);
    EXPECT_EQ(LayoutProbe::place(bar).center().y(), text(u"1 of 2 tasks completed"_s).center().y());
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
        return LayoutProbe::place(*textItem(goal).parentItem());
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
        const QQuickItem &row = *textItem(verdict.goal).parentItem();
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

TEST_F(FeedbackSheetLayout, TheLoadingCardHoldsASpinnerAboveItsText) {
    open();
    const QString loading = u"Generating personalized feedback..."_s;
    expectCard(loading);
    expectLook(ui(), loading, Fonts::system(14), SystemColors::secondaryLabel);
    const QQuickItem &spinner = firstIn(
        cardOf(loading), [](const QQuickItem &item) { return item.inherits("tarne::Spinner"); });
    EXPECT_EQ(spinner.scale(), 0.8);
    const QRectF place = spinner.parentItem()->mapRectToScene(
        QRectF(spinner.position(), spinner.size())); // Scaling changes no place.
    EXPECT_EQ(place.top(), card(loading).top() + 24);
    EXPECT_NEAR(place.center().x(), card(loading).center().x(), 0.5);
    EXPECT_EQ(text(loading).top(), place.bottom() + 16);
    EXPECT_NEAR(text(loading).center().x(), card(loading).center().x(), 0.5);
    EXPECT_EQ(card(loading).bottom(), text(loading).bottom() + 24);
}

TEST_F(FeedbackSheetLayout, TheErrorCardWarnsAndCentresWhatWentWrong) {
    open();
    fail(u"No network."_s);
    const QString heading = u"Unable to generate feedback"_s;
    const QString error = u"No network."_s;
    expectCard(heading);
    expectLook(ui(), heading, Fonts::system(16, QFont::DemiBold), SystemColors::label);
    expectLook(ui(), error, Fonts::system(14), SystemColors::secondaryLabel);
    const QQuickItem &symbol = symbolIn(cardOf(heading), u"exclamationmark.triangle.fill"_s);
    expectSymbol(symbol, 24, QFont::Normal, SystemColors::orange);
    const QRectF place = LayoutProbe::place(symbol);
    EXPECT_EQ(place.top(), card(heading).top() + 20);
    EXPECT_EQ(text(heading).top(), place.bottom() + 12);
    EXPECT_EQ(text(error).top(), text(heading).bottom() + 12);
    EXPECT_EQ(card(heading).bottom(), text(error).bottom() + 20);
    EXPECT_NEAR(place.center().x(), card(heading).center().x(), 0.5);
    EXPECT_NEAR(text(heading).center().x(), card(heading).center().x(), 0.5);
    EXPECT_EQ(textItem(error).property("horizontalAlignment").toInt(), Qt::AlignHCenter);
    EXPECT_EQ(text(error).width(), card(heading).width() - 2 * 20);
}

TEST_F(FeedbackSheetLayout, EachSectionHasItsTitleAboveItsContent) {
    open();
    answer();
    const std::vector<std::array<QString, 3>> sections{
        {u"Overall Assessment"_s, u"chart.bar.fill"_s, u"Good."_s},
        {u"Patterns Observed"_s, u"magnifyingglass"_s, u"Steady."_s},
        {u"Suggestions"_s, u"lightbulb.fill"_s, u"Rest."_s},
        {u"Motivation"_s, u"heart.fill"_s, u"Go on."_s}};
    for (const auto &[title, symbol, content] : sections) {
        expectCard(title);
        expectCardTitle(title, symbol);
        expectLook(ui(), content, Fonts::system(14), SystemColors::label);
        EXPECT_EQ(text(content).topLeft(),
                  QPointF(card(title).left() + 16, text(title).bottom() + 12))
            << qPrintable(title);
        EXPECT_NEAR(card(title).bottom() - text(content).bottom(), 16, 0.01) << qPrintable(title);
    }
}

TEST_F(FeedbackSheetLayout, ASectionsLinesStandFourPointsFurtherApart) {
    open();
    answerWith(FeedbackFakes::answerWith("one\\ntwo"));
    expectTwoLines(u"one\ntwo"_s);
}

TEST_F(FeedbackSheetLayout, ASectionWithoutContentIsItsTitleAlone) {
    open();
    answerWith(FeedbackFakes::answerWith("**Advice:** Rest."));
    EXPECT_NEAR(card(u"Motivation"_s).bottom(), text(u"Motivation"_s).bottom() + 16, 0.01);
    expectCard(u"Motivation"_s);
    expectCardTitle(u"Motivation"_s, u"heart.fill"_s);
}

TEST_F(FeedbackSheetLayout, TheReflectionCardShowsTheReflectionBelowItsTitle) {
    open();
    const QString title = u"Your Reflection"_s;
    expectCard(title);
    expectCardTitle(title, u"note.text"_s);
    expectLook(ui(), u"Edit"_s, Fonts::system(13, QFont::Medium), TARNEStyle::Colors::accent);
    EXPECT_EQ(probe().place(u"Edit"_s, QAccessible::Button).right(), card(title).right() - 16);
    expectLook(ui(), u"Fine"_s, Fonts::system(14), SystemColors::label);
    EXPECT_EQ(text(u"Fine"_s).topLeft(),
              QPointF(card(title).left() + 16, text(title).bottom() + 12));
    EXPECT_EQ(text(u"Fine"_s).width(), card(title).width() - 2 * 16);
    EXPECT_NEAR(card(title).bottom() - text(u"Fine"_s).bottom(), 16, 0.01);
    sheet().feedback()->setReflection(u"one\ntwo"_s);
    layOut();
    expectTwoLines(u"one\ntwo"_s);
}

TEST_F(FeedbackSheetLayout, AMissingReflectionIsToldInTheSecondaryColour) {
    open();
    sheet().feedback()->setReflection(QString());
    layOut();
    expectLook(ui(), u"No reflection provided"_s, Fonts::system(14), SystemColors::secondaryLabel);
}

TEST_F(FeedbackSheetLayout, TheReflectionIsEditedOnAGroundOfItsOwn) {
    open();
    ASSERT_TRUE(ui().click(u"Edit"_s));
    layOut();
    expectLook(ui(), u"Done"_s, Fonts::system(13, QFont::Medium), TARNEStyle::Colors::accent);
    const QQuickItem &edit = probe().item(u"Your Reflection"_s, QAccessible::EditableText);
    EXPECT_EQ(LayoutProbe::font(edit), Fonts::system(14));
    const QQuickItem &editor = *edit.parentItem()->parentItem();
    const QQuickItem &ground = *editor.parentItem();
    EXPECT_EQ(editor.height(), 80);
    EXPECT_EQ(LayoutProbe::place(ground),
              LayoutProbe::place(editor).marginsAdded(QMarginsF(8, 8, 8, 8)));
    EXPECT_EQ(ground.property("radius"), 8);
    EXPECT_EQ(LayoutProbe::color(ground), SystemColors::textBackground);
    EXPECT_EQ(LayoutProbe::place(ground).top(), text(u"Your Reflection"_s).bottom() + 12);
    EXPECT_EQ(LayoutProbe::place(ground).width(), card(u"Your Reflection"_s).width() - 2 * 16);
    const QPoint edge(static_cast<int>(LayoutProbe::place(ground).left()),
                      static_cast<int>(LayoutProbe::place(ground).center().y()));
    const QImage shown = ui().picture();
    EXPECT_LT(shown.pixelColor(edge).red(), 230) << "no outline";
    EXPECT_EQ(shown.pixelColor(edge + QPoint(1, 0)), SystemColors::textBackground)
        << "an outline wider than one point";
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

TEST_F(FeedbackSheetLayout, TheFooterLiesOnTheMaterial) {
    open();
    const QQuickItem &footer = *probe().item(u"Finish session"_s).parentItem();
    EXPECT_EQ(LayoutProbe::color(footer), SystemColors::regularMaterial);
    EXPECT_EQ(footer.width(), 580);
    EXPECT_EQ(footer.height(), 20 + probe().place(u"Finish session"_s).height() + 20);
}

} // namespace
} // namespace tarne::test
