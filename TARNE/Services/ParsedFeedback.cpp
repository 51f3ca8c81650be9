#include "ParsedFeedback.h"

#include "LineBreaks.h"

using namespace Qt::StringLiterals;

namespace tarne {
namespace {

/// The section whose label stands anywhere in `line`, or none.
const CoachingSection *labelledSection(QStringView line) {
    // Most lines hold no bold text at all, and looking for one word is cheaper than for four.
    if (!line.contains(u"**"))
        return nullptr;
    // Of two labels in one line the first in this order wins.
    for (const CoachingSection &section : coachingSections) {
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
        if (const CoachingSection *labelled = labelledSection(line)) {
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
    const CoachingSection *m_current = nullptr;
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
