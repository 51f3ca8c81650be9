#pragma once

#include "Clock.h"
#include "HistoryGrouping.h"
#include "HistoryModel.h"
#include "NotificationCenter.h"
#include "Screen.h"

#include <QAbstractItemModel>
#include <QtQml/qqmlregistration.h>

#include <vector>

namespace tarne {

class SessionViewModel;

/// The history screen: finished sessions, newest first, under date labels.
///
/// The list is loaded when the screen appears, on its refresh and, while it is shown, each time the
/// history was updated. A history that is found empty is filled with three sample sessions, for
/// good. Labels are those of the load; while a session runs, they follow the day as it changes.
/// Main thread only.
class HistoryView final : public tarne::Screen {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made with the tabs.")
    Q_PROPERTY(QAbstractItemModel *rows READ rows CONSTANT FINAL)
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY historyEntriesChanged FINAL)
    Q_PROPERTY(bool showsLoadMore READ showsLoadMore NOTIFY historyEntriesChanged FINAL)

public:
    /// Everything passed outlives the view.
    HistoryView(SessionViewModel &sessionViewModel, NotificationCenter &notificationCenter,
                const Clock &clock, CurrentCalendar calendar);

    void appear() override;
    void disappear() override;

    /// What the screen shows, in the store's order.
    [[nodiscard]] const std::vector<SessionHistoryEntry> &historyEntries() const {
        return m_historyEntries;
    }
    [[nodiscard]] QAbstractItemModel *rows() { return &m_rows; }
    [[nodiscard]] bool isEmpty() const { return m_historyEntries.empty(); }
    /// Whether the button is there that leads nowhere.
    [[nodiscard]] bool showsLoadMore() const;

    Q_INVOKABLE void loadHistoryEntries();
    /// Keeps which coaching texts of a card are open.
    Q_INVOKABLE void setExpanded(int row, int section, bool isExpanded);
    /// The session that a row shows, by which its reader is found again when the rows are replaced.
    Q_INVOKABLE [[nodiscard]] QString sessionAt(int row) const { return m_rows.sessionAt(row); }
    /// The row that shows a session, or -1.
    Q_INVOKABLE [[nodiscard]] int rowOf(const QString &session) const {
        return m_rows.rowOf(session);
    }

    [[nodiscard]] std::vector<HistoryGroup> groupedEntries() const;
    [[nodiscard]] QString formatDateForGrouping(Date date) const;
    [[nodiscard]] Date parseGroupingDate(const QString &key) const;
    [[nodiscard]] std::vector<SessionHistoryEntry> createSampleHistoryEntries() const;
    /// Today as "MMM d"; nothing reads it.
    [[nodiscard]] QString currentDateString() const;

Q_SIGNALS:
    /// Also where the same entries stand under other labels.
    void historyEntriesChanged();

private:
    void setHistoryEntries(std::vector<SessionHistoryEntry> entries);
    void group(HistoryModel::OpenTexts openTexts);
    void regroupOnANewDay();

    SessionViewModel &m_sessionViewModel;
    NotificationCenter &m_notificationCenter;
    const Clock &m_clock;
    CurrentCalendar m_calendar;

    std::vector<SessionHistoryEntry> m_historyEntries;
    Date m_dayOfLabels;
    HistoryModel m_rows;
    bool m_isSeeding = false;
    NotificationCenter::Registration m_registration;
};

} // namespace tarne
