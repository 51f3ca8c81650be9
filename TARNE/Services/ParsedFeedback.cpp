#include "ParsedFeedback.h"

#include "LineBreaks.h"

#include <array>

using namespace Qt::StringLiterals;

namespace tarne {
namespace {

/// A label of the model's answer and the section that it begins.
struct Section {
    QStringView label;
    QString ParsedFeedback::*text;
};

/// In the order in which a line is tested for them: of two labels in one line the first here wins.
constexpr std::array<Section, 4> sections{{
    {u"**Overall Assessment:**", &ParsedFeedback::overallAssessment},
    {u"**Patterns Observed:**", &ParsedFeedback::patternsObserved},
    {u"**Advice:**", &ParsedFeedback::advice},
    {u"**Motivation:**", &ParsedFeedback::motivation},
}};

/// The section whose label stands anywhere in `line`, or none.
const Section *labelledSection(QStringView line) {
    // Most lines hold no bold text at all, and looking for one word is cheaper than for four.
    if (!line.contains(u"**"))
        return nullptr;
    for (const Section &section : sections) {
        if (line.contains(section.label))
            return &section;
    }
    return nullptr;
}

/// `line` with every occurrence of `label` cut out, its ends trimmed again.
QString withoutLabel(QStringView line, QStringView label) {
    QString rest;
    qsizetype begin = 0;
    for (qsizetype at; (at = line.indexOf(label, begin)) >= 0; begin = at + label.size())
        rest += line.sliced(begin, at - begin);
    rest += line.sliced(begin);
    return std::move(rest).trimmed();
}

/// Gathers sections line by line.
class Gathering {
public:
    void addLine(QStringView untrimmed) {
        const QStringView line = untrimmed.trimmed();
        if (const Section *labelled = labelledSection(line)) {
            m_current = labelled;
            m_feedback.*labelled->text = withoutLabel(line, labelled->label);
        } else if (m_current && !line.isEmpty() && !line.startsWith(u'#') &&
                   !line.startsWith(u"**")) {
            QString &text = m_feedback.*m_current->text;
            if (!text.isEmpty())
                text += u' ';
            text += line;
        }
    }

    const ParsedFeedback &feedback() const { return m_feedback; }

private:
    ParsedFeedback m_feedback;
    const Section *m_current = nullptr;
};

} // namespace

ParsedFeedback parseFeedbackText(const QString &text) {
    Gathering gathering;
    const QStringView all(text);
    qsizetype begin = 0;
    for (qsizetype at = 0; at < all.size(); ++at) {
        if (isLineBreak(all[at])) {
            gathering.addLine(all.sliced(begin, at - begin));
            begin = at + 1;
        }
    }
    gathering.addLine(all.sliced(begin));

    if (gathering.feedback() == ParsedFeedback{})
        return {.overallAssessment = text};
    return gathering.feedback();
}

} // namespace tarne
