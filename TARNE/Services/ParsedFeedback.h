#pragma once

#include <QString>

#include <array>

namespace tarne {

/// The model's answer, cut into its four sections. A section that the answer did not hold is empty.
struct ParsedFeedback {
    QString overallAssessment = {};
    QString patternsObserved = {};
    QString advice = {}; ///< "Suggestions" to the user and in the history.
    QString motivation = {};

    friend bool operator==(const ParsedFeedback &, const ParsedFeedback &) = default;
};

/// A section of the coaching: what the model, the user and the drawing call it.
struct CoachingSection {
    QStringView label; ///< In the model's answer, bold.
    QStringView title; ///< To the user.
    QStringView symbol;
    QString ParsedFeedback::*text;
};

/// In the order in which they are asked for and read.
inline constexpr std::array<CoachingSection, 4> coachingSections{{
    {u"**Overall Assessment:**", u"Overall Assessment", u"chart.bar.fill",
     &ParsedFeedback::overallAssessment},
    {u"**Patterns Observed:**", u"Patterns Observed", u"magnifyingglass",
     &ParsedFeedback::patternsObserved},
    {u"**Advice:**", u"Suggestions", u"lightbulb.fill", &ParsedFeedback::advice},
    {u"**Motivation:**", u"Motivation", u"heart.fill", &ParsedFeedback::motivation},
}};

/// Cuts an answer at the bold labels that the prompt asks for.
///
/// A line that holds a label begins its section anew with what is left of the line; later lines are
/// joined to the section by single blanks. Headings, lines that begin in bold without a label, and
/// what stands ahead of the first label are dropped. When nothing is left in any section, the whole
/// text, raw, is the overall assessment. Linear in the length of the text; cannot fail.
[[nodiscard]] ParsedFeedback parseFeedbackText(const QString &text);

} // namespace tarne
