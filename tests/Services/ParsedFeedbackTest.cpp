#include "ParsedFeedback.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tarne::test {

void PrintTo(const ParsedFeedback &feedback, std::ostream *out) {
    *out << qPrintable(feedback.overallAssessment) << " | " << qPrintable(feedback.patternsObserved)
         << " | " << qPrintable(feedback.advice) << " | " << qPrintable(feedback.motivation);
}

namespace {

TEST(ParsedFeedback, AnAnswerThatFollowsThePromptGivesFourSections) {
    const ParsedFeedback expected{u"Good work."_s, u"You overplan."_s, u"Plan less."_s,
                                  u"Keep going."_s};
    EXPECT_EQ(parseFeedbackText(u"### Session Feedback\n\n"
                                "**Overall Assessment:** Good work.\n\n"
                                "**Patterns Observed:** You overplan.\n\n"
                                "**Advice:** Plan less.\n\n"
                                "**Motivation:** Keep going.\n"_s),
              expected);
}

TEST(ParsedFeedback, LinesBelowALabelAreJoinedByBlanks) {
    EXPECT_EQ(parseFeedbackText(u"**Advice:**\n\n  one \n- two\n\n\tthree"_s),
              (ParsedFeedback{.advice = u"one - two three"_s}));
}

TEST(ParsedFeedback, EveryLineBreakEndsALine) {
    for (const QString &lineBreak :
         {u"\n"_s, u"\r"_s, u"\r\n"_s, u"\v"_s, u"\f"_s, u"\x85"_s, u"\u2028"_s, u"\u2029"_s}) {
        EXPECT_EQ(parseFeedbackText(u"**Advice:** a"_s + lineBreak + u"b"_s + lineBreak +
                                    u"**Motivation:** c"_s),
                  (ParsedFeedback{.advice = u"a b"_s, .motivation = u"c"_s}));
    }
}

TEST(ParsedFeedback, TrimsWhiteSpaceOfEveryKind) {
    EXPECT_EQ(parseFeedbackText(u"\u00A0\u3000**Advice:**\u2003 a \u00A0\n\u2009b\u3000"_s),
              (ParsedFeedback{.advice = u"a b"_s}));
}

TEST(ParsedFeedback, FindsALabelAnywhereInALine) {
    EXPECT_EQ(parseFeedbackText(u"3. **Advice:** rest"_s),
              (ParsedFeedback{.advice = u"3.  rest"_s}));
}

TEST(ParsedFeedback, ALineWithTwoLabelsGoesToTheEarlierSection) {
    EXPECT_EQ(parseFeedbackText(u"**Motivation:** go **Advice:** rest"_s),
              (ParsedFeedback{.advice = u"**Motivation:** go  rest"_s}));
}

TEST(ParsedFeedback, OfSeveralLabelsInOneLineTheFirstInTheAnswersOrderCounts) {
    EXPECT_EQ(parseFeedbackText(u"**Advice:** a **Patterns Observed:** p"_s),
              (ParsedFeedback{.patternsObserved = u"**Advice:** a  p"_s}));
    EXPECT_EQ(parseFeedbackText(u"**Motivation:** m **Patterns Observed:** p "
                                "**Advice:** a **Overall Assessment:** o"_s),
              ParsedFeedback{.overallAssessment = u"**Motivation:** m **Patterns Observed:** p "
                                                  "**Advice:** a  o"_s});
}

TEST(ParsedFeedback, ALabelThatIsLeftWhereOneWasCutOutIsText) {
    EXPECT_EQ(parseFeedbackText(u"**Adv**Advice:**ice:** rest"_s),
              (ParsedFeedback{.advice = u"**Advice:** rest"_s}));
}

TEST(ParsedFeedback, CutsEveryOccurrenceOfTheLabelOutOfItsLine) {
    EXPECT_EQ(parseFeedbackText(u"**Advice:**a**Advice:** b **Advice:**"_s),
              (ParsedFeedback{.advice = u"a b"_s}));
}

TEST(ParsedFeedback, ALabelThatComesTwiceBeginsItsSectionAnew) {
    EXPECT_EQ(parseFeedbackText(u"**Advice:** a\nb\n**Motivation:** m\n**Advice:** c\nd"_s),
              (ParsedFeedback{.advice = u"c d"_s, .motivation = u"m"_s}));
}

TEST(ParsedFeedback, LabelsAreCaseSensitive) {
    EXPECT_EQ(parseFeedbackText(u"**Motivation:** m\n**advice:** a"_s),
              (ParsedFeedback{.motivation = u"m"_s}));
}

TEST(ParsedFeedback, DropsHeadingsAndBoldLinesAndKeepsTheirSignsInsideLines) {
    EXPECT_EQ(parseFeedbackText(u"**Advice:** a\n# heading\n**Bold** line\nb ** c # d"_s),
              (ParsedFeedback{.advice = u"a b ** c # d"_s}));
}

TEST(ParsedFeedback, DropsTextAheadOfTheFirstLabel) {
    EXPECT_EQ(parseFeedbackText(u"Hello there\n**Advice:** a"_s),
              (ParsedFeedback{.advice = u"a"_s}));
}

TEST(ParsedFeedback, ALabelWithTheColonOutsideIsNone) {
    const QString text = u"  **Advice**: a\n**Motivation**: m\n"_s;
    EXPECT_EQ(parseFeedbackText(text), ParsedFeedback{.overallAssessment = text});
}

TEST(ParsedFeedback, WithoutAnySectionTheWholeTextIsTheAssessment) {
    const QString text = u" # Title\r\n\r\nSome *text*. \n"_s;
    EXPECT_EQ(parseFeedbackText(text), ParsedFeedback{.overallAssessment = text});
    EXPECT_EQ(parseFeedbackText(u"**Advice:**"_s),
              ParsedFeedback{.overallAssessment = u"**Advice:**"_s});
    EXPECT_EQ(parseFeedbackText(QString()), ParsedFeedback{});
}

TEST(ParsedFeedback, ALabelWithNothingBehindItEmptiesASectionThatHadText) {
    const QString text = u"**Advice:** a\n**Advice:**"_s;
    EXPECT_EQ(parseFeedbackText(text), ParsedFeedback{.overallAssessment = text});
}

TEST(ParsedFeedback, KeepsRightToLeftTextAndNul) {
    EXPECT_EQ(parseFeedbackText(u"**Advice:** שלום\nعالم \0 x"_s),
              (ParsedFeedback{.advice = u"שלום عالم \0 x"_s}));
}

} // namespace
} // namespace tarne::test
