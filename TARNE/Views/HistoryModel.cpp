#include "HistoryModel.h"

using namespace Qt::StringLiterals;

namespace tarne {

namespace {

QString countText(std::size_t entries) {
    return u"%1 %2"_s.arg(entries).arg(entries == 1 ? "entry"_L1 : "entries"_L1);
}

} // namespace

HistoryModel::HistoryModel(QObject *parent) : QAbstractListModel(parent) {}

void HistoryModel::setGroups(std::vector<HistoryGroup> groups, const Calendar &calendar) {
    beginResetModel();
    m_groups = std::move(groups);
    m_calendar = calendar;
    m_rows.clear();
    for (std::size_t group = 0; group < m_groups.size(); ++group) {
        HistoryGrouping::sortForDisplay(m_groups[group].value);
        for (std::size_t entry = 0; entry < m_groups[group].value.size(); ++entry)
            m_rows.push_back({group, entry});
    }
    endResetModel();
}

void HistoryModel::setExpanded(int row, int section, bool isExpanded) {
    if (row < 0 || static_cast<std::size_t>(row) >= m_rows.size())
        return;
    const quint32 bit = 1U << section;
    quint32 &expanded = m_rows[static_cast<std::size_t>(row)].expanded;
    const quint32 changed = isExpanded ? expanded | bit : expanded & ~bit;
    if (changed == expanded)
        return;
    expanded = changed;
    Q_EMIT dataChanged(index(row), index(row), {ExpandedRole});
}

int HistoryModel::rowCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

QVariant HistoryModel::data(const QModelIndex &index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const Row &row = m_rows[static_cast<std::size_t>(index.row())];
    const HistoryGroup &group = m_groups[row.group];
    switch (role) {
    case CardRole:
        return QVariant::fromValue(HistoryEntryCard(group.value[row.entry], *m_calendar));
    case SectionLabelRole:
        return row.entry == 0 ? group.key : QString();
    case SectionCountRole:
        return row.entry == 0 ? countText(group.value.size()) : QString();
    case EndsSectionRole:
        return row.entry + 1 == group.value.size();
    case ExpandedRole:
        return row.expanded;
    default:
        return {};
    }
}

QHash<int, QByteArray> HistoryModel::roleNames() const {
    return {{CardRole, "card"_ba},
            {SectionLabelRole, "sectionLabel"_ba},
            {SectionCountRole, "sectionCount"_ba},
            {EndsSectionRole, "endsSection"_ba},
            {ExpandedRole, "expanded"_ba}};
}

} // namespace tarne
