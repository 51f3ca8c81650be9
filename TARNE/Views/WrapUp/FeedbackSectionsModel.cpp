#include "FeedbackSectionsModel.h"

#include <array>

using namespace Qt::StringLiterals;

namespace tarne {
namespace {

struct Section {
    QLatin1StringView icon;
    QLatin1StringView title;
    QString ParsedFeedback::*content;
};

constexpr std::array<Section, 4> sections{{
    {"chart.bar.fill"_L1, "Overall Assessment"_L1, &ParsedFeedback::overallAssessment},
    {"magnifyingglass"_L1, "Patterns Observed"_L1, &ParsedFeedback::patternsObserved},
    {"lightbulb.fill"_L1, "Suggestions"_L1, &ParsedFeedback::advice},
    {"heart.fill"_L1, "Motivation"_L1, &ParsedFeedback::motivation},
}};

} // namespace

void FeedbackSectionsModel::show(ParsedFeedback feedback) {
    m_feedback = std::move(feedback);
    Q_EMIT dataChanged(index(0), index(rowCount() - 1), {Content});
}

int FeedbackSectionsModel::rowCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : static_cast<int>(sections.size());
}

QVariant FeedbackSectionsModel::data(const QModelIndex &index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const Section &section = sections.at(static_cast<std::size_t>(index.row()));
    switch (role) {
    case Icon:
        return QString(section.icon);
    case Title:
        return QString(section.title);
    case Content:
        return m_feedback.*section.content;
    default:
        return {};
    }
}

QHash<int, QByteArray> FeedbackSectionsModel::roleNames() const {
    return {{Icon, "icon"}, {Title, "title"}, {Content, "sectionText"}};
}

} // namespace tarne
