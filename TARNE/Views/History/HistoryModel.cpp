#include "HistoryModel.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace tarne {

namespace {

QString countText(std::size_t entries) {
    return u"%1 %2"_s.arg(entries).arg(entries == 1 ? "entry"_L1 : "entries"_L1);
}

bool isSameGoal(const SessionGoal &goal, const SessionGoal &other) {
    return goal.id == other.id && goal.text == other.text && goal.status == other.status;
}

bool isSameEntry(const SessionHistoryEntry &entry, const SessionHistoryEntry &other) {
    return entry.id == other.id && entry.sessionDate == other.sessionDate &&
           entry.duration == other.duration && entry.overallAssessment == other.overallAssessment &&
           entry.patternsObserved == other.patternsObserved &&
           entry.suggestions == other.suggestions && entry.motivation == other.motivation &&
           entry.reflection == other.reflection &&
           std::ranges::equal(entry.goals, other.goals, isSameGoal);
}

bool hasSameEntries(const HistoryGroup &group, const HistoryGroup &other) {
    return std::ranges::equal(group.value, other.value, isSameEntry);
}

/// Whether the same moments are worded in the same way.
bool isSameCalendar(const Calendar &calendar, const Calendar &other) {
    return calendar.timeZone() == other.timeZone() && calendar.locale() == other.locale();
}

} // namespace

HistoryModel::HistoryModel(QObject *parent) : QAbstractListModel(parent) {}

void HistoryModel::setGroups(std::vector<HistoryGroup> groups, const Calendar &calendar,
                             OpenTexts openTexts) {
    for (HistoryGroup &group : groups)
        HistoryGrouping::sortForDisplay(group.value);
    if (m_calendar && isSameCalendar(*m_calendar, calendar) &&
        std::ranges::equal(m_groups, groups, hasSameEntries)) {
        setLabels(groups);
        return;
    }
    const auto expanded = openTexts == OpenTexts::Keep ? expandedTexts() : QHash<QUuid, quint32>();
    beginResetModel();
    m_groups = std::move(groups);
    m_calendar = calendar;
    m_rows.clear();
    for (std::size_t group = 0; group < m_groups.size(); ++group) {
        for (std::size_t entry = 0; entry < m_groups[group].value.size(); ++entry)
            m_rows.push_back({group, entry, expanded.value(m_groups[group].value[entry].id)});
    }
    endResetModel();
}

void HistoryModel::setLabels(const std::vector<HistoryGroup> &groups) {
    for (std::size_t row = 0; row < m_rows.size(); ++row) {
        QString &label = m_groups[m_rows[row].group].key;
        const QString &wanted = groups[m_rows[row].group].key;
        if (label == wanted)
            continue;
        label = wanted;
        const QModelIndex first = index(static_cast<int>(row)); // Of its group.
        Q_EMIT dataChanged(first, first, {SectionLabelRole});
    }
}

QHash<QUuid, quint32> HistoryModel::expandedTexts() const {
    QHash<QUuid, quint32> expanded;
    for (const Row &row : m_rows) {
        if (row.expanded)
            expanded.insert(entryOf(row).id, row.expanded);
    }
    return expanded;
}

QString HistoryModel::sessionAt(int row) const {
    if (row < 0 || static_cast<std::size_t>(row) >= m_rows.size())
        return {};
    return entryOf(m_rows[static_cast<std::size_t>(row)]).id.toString();
}

int HistoryModel::rowOf(const QString &session) const {
    const QUuid id(session);
    const auto found =
        std::ranges::find_if(m_rows, [&](const Row &row) { return entryOf(row).id == id; });
    return found == m_rows.end() ? -1 : static_cast<int>(found - m_rows.begin());
}

const SessionHistoryEntry &HistoryModel::entryOf(const Row &row) const {
    return m_groups[row.group].value[row.entry];
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
        return QVariant::fromValue(HistoryEntryCard(entryOf(row), *m_calendar));
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
