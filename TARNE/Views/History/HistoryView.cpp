#include "HistoryView.h"

#include "DateFormatter.h"
#include "SampleHistory.h"
#include "SessionViewModel.h"

#include <QScopedValueRollback>

namespace tarne {

namespace {

constexpr std::size_t entriesForLoadMore = 10;

} // namespace

HistoryView::HistoryView(SessionViewModel &sessionViewModel, NotificationCenter &notificationCenter,
                         const Clock &clock, CurrentCalendar calendar)
    : m_sessionViewModel(sessionViewModel),
      m_notificationCenter(notificationCenter),
      m_clock(clock),
      m_calendar(std::move(calendar)) {}

void HistoryView::appear() {
    m_registration = m_notificationCenter.addObserver(notifications::sessionHistoryUpdated,
                                                      [this] { loadHistoryEntries(); });
    connect(&m_sessionViewModel, &SessionViewModel::timeRemainingChanged, this,
            &HistoryView::regroupOnANewDay, Qt::UniqueConnection);
    loadHistoryEntries();
}

void HistoryView::disappear() {
    disconnect(&m_sessionViewModel, nullptr, this, nullptr);
    m_registration = {};
}

bool HistoryView::showsLoadMore() const {
    return m_historyEntries.size() >= entriesForLoadMore;
}

void HistoryView::loadHistoryEntries() {
    std::vector<SessionHistoryEntry> stored = m_sessionViewModel.loadSessionHistory();
    if (!stored.empty() || m_isSeeding) {
        setHistoryEntries(std::move(stored));
        return;
    }
    // Each save below calls this operation again. Where saving fails the list is still empty then,
    // and must not be filled without end.
    const QScopedValueRollback seeding(m_isSeeding, true);
    const std::vector<SessionHistoryEntry> entries = createSampleHistoryEntries();
    setHistoryEntries(entries);
    samples::save(entries, m_sessionViewModel);
}

void HistoryView::setHistoryEntries(std::vector<SessionHistoryEntry> entries) {
    m_historyEntries = std::move(entries);
    group(HistoryModel::OpenTexts::Close);
}

void HistoryView::group(HistoryModel::OpenTexts openTexts) {
    const Calendar calendar = m_calendar();
    const Date now = m_clock.now();
    m_dayOfLabels = calendar.startOfDay(now);
    m_rows.setGroups(HistoryGrouping(calendar, now).groupedEntries(m_historyEntries), calendar,
                     openTexts);
    Q_EMIT historyEntriesChanged();
}

void HistoryView::regroupOnANewDay() {
    if (m_calendar().startOfDay(m_clock.now()) != m_dayOfLabels)
        group(HistoryModel::OpenTexts::Keep);
}

void HistoryView::setExpanded(int row, int section, bool isExpanded) {
    m_rows.setExpanded(row, section, isExpanded);
}

std::vector<HistoryGroup> HistoryView::groupedEntries() const {
    return HistoryGrouping(m_calendar(), m_clock.now()).groupedEntries(m_historyEntries);
}

QString HistoryView::formatDateForGrouping(Date date) const {
    return HistoryGrouping(m_calendar(), m_clock.now()).formatDateForGrouping(date);
}

Date HistoryView::parseGroupingDate(const QString &key) const {
    return HistoryGrouping(m_calendar(), m_clock.now()).parseGroupingDate(key);
}

std::vector<SessionHistoryEntry> HistoryView::createSampleHistoryEntries() const {
    return samples::ofHistory(m_calendar(), m_clock.now());
}

QString HistoryView::currentDateString() const {
    return DateFormatter(m_calendar()).monthAndDay(m_clock.now());
}

} // namespace tarne
