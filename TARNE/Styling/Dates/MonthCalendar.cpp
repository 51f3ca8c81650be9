#include "MonthCalendar.h"

#include "Calendar.h"

#include <QRegularExpression>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace tarne {

namespace {

/// Keeps six whole weeks within the days that QDate can name in four digits.
const QDate earliestDay(1, 1, 1);
const QDate latestDay(9999, 12, 31);

QDate firstOfMonth(QDate day) {
    return QDate(day.year(), day.month(), 1);
}

/// What stands between month and year, when the day and its punctuation are taken out.
QString withoutDay(QString between) {
    static const QRegularExpression quoteOrDay(u"'([^']*)'|d+[.,\u060C]*"_s);
    const bool hasBlank = between.contains(u' ');
    const QString rest = between.replace(quoteOrDay, u"\\1"_s).simplified();
    if (rest.isEmpty() || rest == u","_s)
        return hasBlank ? u" "_s : QString();
    return rest.front().isPunct() ? rest + u' ' : u' ' + rest + u' ';
}

} // namespace

MonthCalendar::MonthCalendar(const QLocale &locale, Range range, std::function<QDate()> today)
    : m_locale(locale),
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
    // Qt has no pattern of month and year: they are what the long date holds beside the day.
    static const QRegularExpression parts(u"'[^']*'|(y+|M+)([^\\s'.,yMd]*)"_s);
    const QString pattern = m_locale.dateFormat(QLocale::LongFormat);
    QString title;
    qsizetype end = -1;
    for (auto match = parts.globalMatch(pattern); match.hasNext();) {
        const QRegularExpressionMatch part = match.next();
        if (part.capturedView(1).isEmpty())
            continue;
        if (end >= 0)
            title += withoutDay(pattern.sliced(end, part.capturedStart() - end));
        title += textOf(part.capturedView(1), part.captured(2));
        end = part.capturedEnd();
    }
    return title;
}

/// A year or a month of the pattern with the sign that follows it, if any ("2026年").
QString MonthCalendar::textOf(QStringView part, const QString &sign) const {
    if (part.startsWith(u'y'))
        return m_locale.toString(m_month, u"yyyy") + sign;
    return sign.isEmpty() ? m_locale.standaloneMonthName(m_month.month())
                          : m_locale.toString(m_month.month()) + sign;
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
        return day.isValid() ? m_locale.toString(day, QLocale::LongFormat) : QString();
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
