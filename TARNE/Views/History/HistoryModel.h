#pragma once

#include "HistoryEntryCard.h"
#include "HistoryGrouping.h"

#include <QAbstractListModel>

#include <vector>

namespace tarne {

/// The rows of the history screen: one a session, in the order in which they are shown. The first
/// of a group carries the group's label, the last is marked as such. A card is worded when a view
/// asks for it, so only what is visible costs.
class HistoryModel final : public QAbstractListModel {
    Q_OBJECT

public:
    enum Role {
        CardRole = Qt::UserRole, ///< HistoryEntryCard.
        SectionLabelRole,        ///< The group's label, or an empty text.
        SectionCountRole,        ///< "1 entry", or an empty text.
        EndsSectionRole,         ///< Whether the next row begins a group.
        ExpandedRole,            ///< The open coaching texts, one bit a row of `feedback`.
    };

    /// What becomes of the open coaching texts where all rows are replaced.
    enum class OpenTexts { Close, Keep };

    explicit HistoryModel(QObject *parent = nullptr);

    /// Shows these groups, in their order. Where the same sessions stand in the same order already,
    /// only labels change; otherwise all rows are replaced.
    void setGroups(std::vector<HistoryGroup> groups, const Calendar &calendar, OpenTexts openTexts);

    /// The session that a row shows; an empty text where there is no such row.
    [[nodiscard]] QString sessionAt(int row) const;
    /// The row that shows a session, or -1.
    [[nodiscard]] int rowOf(const QString &session) const;

    /// Remembers which coaching texts of a row are open, while its card is scrolled away.
    Q_INVOKABLE void setExpanded(int row, int section, bool isExpanded);

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

private:
    struct Row {
        std::size_t group;
        std::size_t entry;
        quint32 expanded = 0; ///< One bit a coaching text.
    };

    void setLabels(const std::vector<HistoryGroup> &groups);
    [[nodiscard]] QHash<QUuid, quint32> expandedTexts() const;
    [[nodiscard]] const SessionHistoryEntry &entryOf(const Row &row) const;

    std::vector<HistoryGroup> m_groups;
    std::vector<Row> m_rows;
    std::optional<Calendar> m_calendar;
};

} // namespace tarne
