#include "TextBlocks.h"

#include <QAbstractItemModelTester>
#include <QCoreApplication>
#include <QQuickWindow>
#include <QTextLayout>

#include <gtest/gtest.h>

#include <cmath>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

constexpr double width = 400;

/// The lines of a text in one piece, and how high they are together.
QStringList linesOf(QString text, double *height = nullptr) {
    text.replace(u'\n', QChar::LineSeparator);
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    option.setUseDesignMetrics(true);
    QTextLayout layout(text, QFont());
    layout.setTextOption(option);
    layout.beginLayout();
    QStringList lines;
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        if (height)
            *height += line.height();
        QString content = text.sliced(line.textStart(), line.textLength());
        while (content.endsWith(QChar::LineSeparator))
            content.chop(1);
        lines += content;
    }
    layout.endLayout();
    return lines;
}

/// A text in its blocks.
class TextBlocksTest : public testing::Test {
protected:
    void show(const QString &text) {
        m_blocks.setWidth(width);
        m_blocks.setText(text);
    }
    void letFollow() {
        while (!m_blocks.isComplete())
            QCoreApplication::processEvents();
    }
    QStringList blocks() {
        QStringList texts;
        for (int row = 0; row < m_blocks.rowCount(); ++row)
            texts += m_blocks.index(row).data(TextBlocks::Block).toString();
        return texts;
    }
    void expectLinesAsInOnePiece(const QString &text) {
        show(text);
        letFollow();
        QStringList lines;
        for (const QString &block : blocks())
            lines += linesOf(block);
        EXPECT_EQ(lines, linesOf(text));
    }

    TextBlocks m_blocks;
    QAbstractItemModelTester m_tester{&m_blocks};
};

TEST_F(TextBlocksTest, AnOrdinaryTextIsOneBlock) {
    show(u"A sentence.\n\nAnother."_s);
    EXPECT_EQ(blocks(), QStringList{u"A sentence.\n\nAnother."_s});
    EXPECT_TRUE(m_blocks.isComplete());
}

TEST_F(TextBlocksTest, AnEmptyTextHasNoBlock) {
    show(u"x"_s);
    show(QString());
    EXPECT_TRUE(blocks().isEmpty());
    EXPECT_TRUE(m_blocks.isComplete());
}

TEST_F(TextBlocksTest, ThereIsNoBlockBeforeThereIsAWidth) {
    m_blocks.setText(u"x"_s);
    EXPECT_TRUE(blocks().isEmpty());
    m_blocks.setWidth(width);
    EXPECT_EQ(blocks(), QStringList{u"x"_s});
}

TEST_F(TextBlocksTest, OfALongTextTheFirstBlockIsThereAtOnce) {
    show(u"word "_s.repeated(5000));
    EXPECT_EQ(blocks().size(), 1);
    EXPECT_FALSE(m_blocks.isComplete());
    EXPECT_GT(blocks()[0].size(), 800);
}

TEST_F(TextBlocksTest, ATextOfThreeThousandCharactersIsStillOneBlock) {
    show(u"word "_s.repeated(600));
    EXPECT_EQ(blocks().size(), 1);
    EXPECT_TRUE(m_blocks.isComplete());
}

TEST_F(TextBlocksTest, BlocksHoldTheLinesOfTheTextInOnePiece) {
    expectLinesAsInOnePiece(u"Some words of unequal length run on. "_s.repeated(400));
}

TEST_F(TextBlocksTest, BreaksOfTheTextStayBreaks) {
    expectLinesAsInOnePiece(u"A line\n\nand another, which is a little longer\n"_s.repeated(300));
}

TEST_F(TextBlocksTest, EveryLineBreakIsOne) {
    show(u"a\r\nb\rc\vd\fe\u0085f\u2028g\u2029h"_s);
    EXPECT_EQ(blocks(), QStringList{u"a\nb\nc\nd\ne\nf\ng\nh"_s});
}

TEST_F(TextBlocksTest, AWordOfManyLinesIsBrokenAnywhere) {
    expectLinesAsInOnePiece(u"x"_s.repeated(10'000));
    for (const QString &block : blocks())
        EXPECT_LE(block.size(), TextBlocks::longestBlock);
}

TEST_F(TextBlocksTest, NoCharacterIsCutInTwo) {
    expectLinesAsInOnePiece(u"🔶"_s.repeated(2'000));
    for (const QString &block : blocks())
        EXPECT_TRUE(block.isValidUtf16());
}

TEST_F(TextBlocksTest, AnotherTextTakesThePlaceOfOneThatIsStillUnderWay) {
    show(u"old "_s.repeated(5000));
    show(u"new"_s);
    for (int i = 0; i < 10; ++i)
        QCoreApplication::processEvents();
    EXPECT_EQ(blocks(), QStringList{u"new"_s});
}

TEST_F(TextBlocksTest, IsAsHighAsTheTextInOnePieceAndTellsWhereEachBlockBegins) {
    const QString text = u"A line\n\nand another, which is a little longer\n"_s.repeated(300);
    m_blocks.setLineHeight(1.5);
    show(text);
    letFollow();
    double height = 0;
    linesOf(text, &height);
    EXPECT_EQ(m_blocks.height(), std::ceil(height * 1.5));
    double top = 0;
    for (int row = 0; row < m_blocks.rowCount(); ++row) {
        EXPECT_EQ(m_blocks.index(row).data(TextBlocks::Top).toDouble(), std::round(top * 1.5));
        linesOf(m_blocks.index(row).data(TextBlocks::Block).toString(), &top);
    }
}

TEST_F(TextBlocksTest, WhatIsNotWorkedOutYetIsTakenToBeLikeTheRest) {
    show(u"A line of some words.\n"_s.repeated(20'000));
    ASSERT_FALSE(m_blocks.isComplete());
    const double expected = m_blocks.height();
    letFollow();
    EXPECT_NEAR(m_blocks.height(), expected, 0.1 * expected);
}

/// A text in an item that can be moved in its window.
class TextBlocksInSightTest : public TextBlocksTest {
protected:
    TextBlocksInSightTest() {
        m_window.resize(width, 500);
        m_area.setParentItem(m_window.contentItem());
        m_blocks.setArea(&m_area);
    }

    /// Every frame begins like this.
    void drawFrame() { Q_EMIT m_window.afterAnimating(); }
    void scrollTo(double y) {
        m_area.setY(-y);
        drawFrame();
    }
    double topOf(int row) { return m_blocks.index(row).data(TextBlocks::Top).toDouble(); }

    QQuickWindow m_window;
    QQuickItem m_area;
};

TEST_F(TextBlocksInSightTest, OnlyTheseHaveRowsWhereverTheTextIsScrolledTo) {
    QString text;
    for (int line = 0; line < 100'000; ++line)
        text += QString::number(line) + u'\n';
    show(text);
    letFollow();
    for (const double y : {0.0, 400.0, 90'000.0, 91'000.0, 600'000.0, 600.0}) {
        scrollTo(y);
        const int rows = m_blocks.rowCount();
        EXPECT_GE(rows, 1) << y;
        EXPECT_LE(rows, 10) << y;
        EXPECT_LE(topOf(0), y) << "what is in sight has a row";
        double bottom = topOf(rows - 1);
        linesOf(blocks().constLast(), &bottom);
        EXPECT_GE(bottom, y + 500) << "to the window's lower edge";
    }
    scrollTo(m_blocks.height() - 500);
    EXPECT_TRUE(blocks().constLast().endsWith(u"\n99999\n"_s));
}

TEST_F(TextBlocksInSightTest, ATextThatIsScrolledFarAwayHasNone) {
    show(u"Some words.\n"_s.repeated(1000));
    letFollow();
    scrollTo(-5000);
    EXPECT_EQ(m_blocks.rowCount(), 0);
    scrollTo(0);
    EXPECT_TRUE(blocks().constFirst().startsWith(u"Some words."_s));
}

} // namespace
} // namespace tarne::test
