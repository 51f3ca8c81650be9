#include "FeedbackSectionsModel.h"

namespace tarne {

void FeedbackSectionsModel::show(ParsedFeedback feedback) {
    m_feedback = std::move(feedback);
    Q_EMIT dataChanged(index(0), index(rowCount() - 1), {Content});
}

int FeedbackSectionsModel::rowCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : static_cast<int>(coachingSections.size());
}

QVariant FeedbackSectionsModel::data(const QModelIndex &index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const CoachingSection &section = coachingSections.at(static_cast<std::size_t>(index.row()));
    switch (role) {
    case Icon:
        return section.symbol.toString();
    case Title:
        return section.title.toString();
    case Content:
        return m_feedback.*section.text;
    default:
        return {};
    }
}

QHash<int, QByteArray> FeedbackSectionsModel::roleNames() const {
    return {{Icon, "icon"}, {Title, "title"}, {Content, "sectionText"}};
}

} // namespace tarne
