#include "MonthCalendar.h"

#include "Calendar.h"

#include <algorithm>

namespace tarne {

namespace {

/// Keeps six whole weeks within the days that QDate can name in four digits.
const QDate earliestDay(1, 1, 1);
const QDate latestDay(9999, 12, 31);

QDate firstOfMonth(QDate day) {
    return QDate(day.year(), day.month(), 1);
}

} // namespace

MonthCalendar::MonthCalendar(const QLocale &locale, Range range, std::function<QDate()> today)
    : m_locale(locale),
      m_styles(DateStyles::of(locale)),
      m_range(range),
      m_today(std::move(today)),
      m_selected(m_today()),
      m_month(firstOfMonth(m_selected)),
      m_shownToday(m_selected) {}

void MonthCalendar::setSelectedDay(QDate day) {
    if (!day.isValid() || m_selected == day)
        return;
    m_selected = day;
    showSelection();
}

void MonthCalendar::showSelection() {
    m_month = firstOfMonth(std::max(m_selected, firstDay()));
    refresh();
}

void MonthCalendar::followToday() {
    if (m_today() == m_shownToday)
        return;
    m_month = std::max(m_month, firstOfMonth(firstDay()));
    refresh();
}

QString MonthCalendar::monthTitle() const {
    return m_styles->text(DateStyles::Style::MonthAndYear, m_month);
}

QStringList MonthCalendar::weekdayNames() const {
    QStringList names;
    const QDate first = m_month.addDays(7 - daysIntoWeek(m_month, m_locale));
    for (int i = 0; i < 7; ++i)
        names += m_locale.standaloneDayName(first.addDays(i).dayOfWeek(), QLocale::ShortFormat);
    return names;
}

bool MonthCalendar::isRightToLeft() const {
    return m_locale.textDirection() == Qt::RightToLeft;
}

bool MonthCalendar::canShowPreviousMonth() const {
    return m_month > earliestDay && (m_range == Range::Unlimited || m_month > m_today());
}

bool MonthCalendar::canShowNextMonth() const {
    return m_month.addMonths(1) <= latestDay;
}

int MonthCalendar::tabStop() const {
    int firstEnabled = -1;
    for (int row = 0; row < rows; ++row) {
        const QDate day = dayOfRow(row);
        if (!isEnabled(day))
            continue;
        if (day == m_selected)
            return row;
        if (firstEnabled < 0)
            firstEnabled = row;
    }
    return firstEnabled;
}

void MonthCalendar::showMonth(int offset) {
    if (offset < 0 ? !canShowPreviousMonth() : !canShowNextMonth())
        return;
    m_month =
        std::clamp(m_month.addMonths(offset), firstOfMonth(firstDay()), firstOfMonth(latestDay));
    refresh();
}

void MonthCalendar::pick(int row) {
    const QDate day = dayOfRow(row);
    if (!isEnabled(day))
        return;
    m_selected = day;
    refresh();
    Q_EMIT picked(day);
}

void MonthCalendar::moveByDays(int days) {
    moveTo(cursor().addDays(days));
}

void MonthCalendar::moveByMonths(int months) {
    moveTo(cursor().addMonths(months));
}

void MonthCalendar::moveToStartOfWeek() {
    moveTo(cursor().addDays(-daysIntoWeek(cursor(), m_locale)));
}

void MonthCalendar::moveToEndOfWeek() {
    moveTo(cursor().addDays(6 - daysIntoWeek(cursor(), m_locale)));
}

int MonthCalendar::rowCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : rows;
}

QVariant MonthCalendar::data(const QModelIndex &index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const QDate day = dayOfRow(index.row());
    switch (role) {
    case Text:
        return day.isValid() ? m_locale.toString(day.day()) : QString();
    case FullName:
        return day.isValid() ? m_styles->text(DateStyles::Style::FullDate, day) : QString();
    case IsSelected:
        return day.isValid() && day == m_selected;
    case IsToday:
        return day.isValid() && day == m_today();
    case IsEnabled:
        return isEnabled(day);
    default:
        return {};
    }
}

QHash<int, QByteArray> MonthCalendar::roleNames() const {
    return {{Text, "text"},
            {FullName, "fullName"},
            {IsSelected, "isSelected"},
            {IsToday, "isToday"},
            {IsEnabled, "isEnabled"}};
}

/// Invalid for a blank row.
QDate MonthCalendar::dayOfRow(int row) const {
    const int day = row - daysIntoWeek(m_month, m_locale) + 1;
    return QDate(m_month.year(), m_month.month(), day);
}

bool MonthCalendar::isEnabled(QDate day) const {
    return day.isValid() && day >= firstDay();
}

QDate MonthCalendar::firstDay() const {
    return m_range == Range::Unlimited ? earliestDay : m_today();
}

QDate MonthCalendar::cursor() const {
    const int row = tabStop();
    return row < 0 ? m_selected : dayOfRow(row);
}

void MonthCalendar::moveTo(QDate day) {
    m_selected = std::clamp(day, firstDay(), latestDay);
    showSelection();
    Q_EMIT picked(m_selected);
    Q_EMIT moved();
}

void MonthCalendar::refresh() {
    m_shownToday = m_today();
    Q_EMIT dataChanged(index(0), index(rows - 1));
    Q_EMIT monthChanged();
    Q_EMIT tabStopChanged();
}

} // namespace tarne
