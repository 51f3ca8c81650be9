#include "FeedbackSheetFixture.h"

#include <QFontMetricsF>

#include <cmath>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

class FeedbackCardsLayout : public FeedbackSheetLayout {
protected:
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
};

TEST_F(FeedbackCardsLayout, TheLoadingCardHoldsASpinnerAboveItsText) {
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

TEST_F(FeedbackCardsLayout, TheErrorCardWarnsAndCentresWhatWentWrong) {
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

TEST_F(FeedbackCardsLayout, EachSectionHasItsTitleAboveItsContent) {
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

TEST_F(FeedbackCardsLayout, ASectionsLinesStandFourPointsFurtherApart) {
    open();
    answerWith(FeedbackFakes::answerWith("one\\ntwo"));
    expectTwoLines(u"one\ntwo"_s);
}

TEST_F(FeedbackCardsLayout, ALongSectionWrapsToItsFullHeight) {
    open();
    const QString words = u"word "_s.repeated(60) + u"end"_s;
    answerWith(FeedbackFakes::answerWith("**Advice:** " + words.toLatin1()));
    const int lines = textItem(words).property("lineCount").toInt();
    EXPECT_GT(lines, 2);
    EXPECT_LE(textItem(words).property("contentWidth").toDouble(), 580 - 2 * 32 - 2 * 16);
    const double line = std::ceil(QFontMetricsF(Fonts::system(14)).height());
    EXPECT_NEAR(text(words).height(), lines * (line + 4) - 4, 0.01);
    EXPECT_NEAR(card(words).bottom() - text(words).bottom(), 16, 0.01);
}

TEST_F(FeedbackCardsLayout, TwentyPointsAreDrawnBetweenTheCards) {
    open();
    answer();
    const QImage shown = ui().picture();
    for (const QString &title : {u"Overall Assessment"_s, u"Patterns Observed"_s}) {
        const QPoint end = card(title).bottomLeft().toPoint() + QPoint(100, 0);
        EXPECT_EQ(shown.pixelColor(end - QPoint(0, 1)), SystemColors::controlBackground);
        EXPECT_EQ(shown.pixelColor(end), SystemColors::regularMaterial) << qPrintable(title);
        EXPECT_EQ(shown.pixelColor(end + QPoint(0, 19)), SystemColors::regularMaterial);
        EXPECT_EQ(shown.pixelColor(end + QPoint(0, 20)), SystemColors::controlBackground);
    }
}

TEST_F(FeedbackCardsLayout, ATextOfAnyScriptBeginsAtTheLeadingSide) {
    open();
    answerWith(FeedbackFakes::answerWith("**Advice:** שלום"));
    sheet().feedback()->setReflection(u"عالم"_s);
    layOut();
    for (const QString &written : {u"שלום"_s, u"عالم"_s})
        EXPECT_EQ(textItem(written).property("effectiveHorizontalAlignment").toInt(),
                  Qt::AlignLeft);
}

TEST_F(FeedbackCardsLayout, ASectionWithoutContentIsItsTitleAlone) {
    open();
    answerWith(FeedbackFakes::answerWith("**Advice:** Rest."));
    EXPECT_NEAR(card(u"Motivation"_s).bottom(), text(u"Motivation"_s).bottom() + 16, 0.01);
    expectCard(u"Motivation"_s);
    expectCardTitle(u"Motivation"_s, u"heart.fill"_s);
}

TEST_F(FeedbackCardsLayout, TheReflectionCardShowsTheReflectionBelowItsTitle) {
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

TEST_F(FeedbackCardsLayout, AMissingReflectionIsToldInTheSecondaryColour) {
    open();
    sheet().feedback()->setReflection(QString());
    layOut();
    expectLook(ui(), u"No reflection provided"_s, Fonts::system(14), SystemColors::secondaryLabel);
}

TEST_F(FeedbackCardsLayout, TheReflectionIsEditedOnAGroundOfItsOwn) {
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

} // namespace
} // namespace tarne::test
