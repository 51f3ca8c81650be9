#include "ClockTimeFields.h"

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace tarne {

namespace {

struct Bounds {
    int minimum;
    int maximum;
};

} // namespace

ClockTimeFields::ClockTimeFields(const QLocale &locale)
    : m_locale(locale), m_styles(DateStyles::of(locale)) {
    readPattern();
}

/// Reads the pattern of the locale's short time: "h:mm a", "HH.mm" or "a h:mm". Where a language
/// has more names for the times of a day ("Bh:mm"), its two halves stand in for them.
void ClockTimeFields::readPattern() {
    const QString pattern = m_styles->shortTimePattern();
    QString separator;
    bool isQuoted = false;
    for (qsizetype i = 0; i < pattern.size(); ++i) {
        const QChar c = pattern.at(i);
        const std::optional<Kind> kind = isQuoted ? std::nullopt : kindOf(c);
        if (c == u'\'') {
            isQuoted = !isQuoted;
        } else if (kind) {
            const bool isDouble = i + 1 < pattern.size() && pattern.at(i + 1) == c;
            m_fields.push_back({*kind, isDouble, std::exchange(separator, {})});
            i += isDouble ? 1 : 0;
        } else {
            separator += c;
        }
    }
    // Digits run from left to right in every script, what stands behind them does not.
    if (m_locale.textDirection() == Qt::RightToLeft && m_fields.size() > 1 &&
        m_fields.back().kind == Kind::HalfOfDay) {
        std::rotate(m_fields.begin(), m_fields.end() - 1, m_fields.end());
        m_fields[1].separator = std::exchange(m_fields[0].separator, {});
    }
}

/// The field for which a letter of a pattern stands, if it stands for one.
std::optional<ClockTimeFields::Kind> ClockTimeFields::kindOf(QChar letter) {
    switch (letter.unicode()) {
    case u'h':
        return Kind::Hour12;
    case u'H':
        return Kind::Hour24;
    case u'm':
        return Kind::Minute;
    case u'a':
    case u'B':
        return Kind::HalfOfDay;
    default:
        return std::nullopt;
    }
}

void ClockTimeFields::setTime(QTime time) {
    const QTime minute(time.hour(), time.minute());
    if (!minute.isValid() || minute == m_time)
        return;
    m_time = minute;
    Q_EMIT dataChanged(index(0), index(rowCount() - 1));
    Q_EMIT timeChanged();
}

QString ClockTimeFields::timeText() const {
    return m_styles->shortTime(m_time);
}

bool ClockTimeFields::isField(int row) const {
    return row >= 0 && row < rowCount();
}

int ClockTimeFields::value(Kind kind) const {
    switch (kind) {
    case Kind::Hour24:
        return m_time.hour();
    case Kind::Hour12:
        return (m_time.hour() + 11) % 12 + 1;
    case Kind::Minute:
        return m_time.minute();
    case Kind::HalfOfDay:
        return m_time.hour() / 12;
    }
    return 0;
}

namespace {

template <class Kind>
Bounds boundsOf(Kind kind) {
    switch (kind) {
    case Kind::Hour24:
        return {0, 23};
    case Kind::Hour12:
        return {1, 12};
    case Kind::Minute:
        return {0, 59};
    case Kind::HalfOfDay:
        return {0, 1};
    }
    return {0, 0};
}

} // namespace

void ClockTimeFields::setValue(Kind kind, int number) {
    QTime time = m_time;
    if (kind == Kind::Hour24)
        time = QTime(number, time.minute());
    else if (kind == Kind::Hour12)
        time = QTime(number % 12 + time.hour() / 12 * 12, time.minute());
    else if (kind == Kind::Minute)
        time = QTime(time.hour(), number);
    else
        time = QTime(time.hour() % 12 + number * 12, time.minute());
    setTime(time);
    Q_EMIT picked(m_time);
}

void ClockTimeFields::step(int row, int delta) {
    if (!isField(row))
        return;
    endTyping();
    const Kind kind = m_fields[static_cast<std::size_t>(row)].kind;
    const auto [minimum, maximum] = boundsOf(kind);
    const int count = maximum - minimum + 1;
    // Twelve is the first hour of a half day, so going round starts there.
    const int turned = ((value(kind) - minimum + delta) % count + count) % count;
    setValue(kind, minimum + turned);
}

void ClockTimeFields::toMinimum(int row) {
    endTyping();
    if (isField(row))
        setValue(m_fields[static_cast<std::size_t>(row)].kind,
                 boundsOf(m_fields[static_cast<std::size_t>(row)].kind).minimum);
}

void ClockTimeFields::toMaximum(int row) {
    endTyping();
    if (isField(row))
        setValue(m_fields[static_cast<std::size_t>(row)].kind,
                 boundsOf(m_fields[static_cast<std::size_t>(row)].kind).maximum);
}

bool ClockTimeFields::type(int row, const QString &text) {
    if (!isField(row) || text.isEmpty())
        return false;
    const Kind kind = m_fields[static_cast<std::size_t>(row)].kind;
    if (kind == Kind::HalfOfDay) {
        const bool isMorning = m_styles->halfOfDay(false).startsWith(text, Qt::CaseInsensitive);
        const bool isAfternoon = m_styles->halfOfDay(true).startsWith(text, Qt::CaseInsensitive);
        if (isMorning == isAfternoon)
            return false;
        setValue(kind, isAfternoon ? 1 : 0);
        return true;
    }
    const QList<uint> characters = text.toUcs4();
    const int digit = QChar::digitValue(characters.constFirst());
    if (digit < 0)
        return false;
    const auto [minimum, maximum] = boundsOf(kind);
    const int joined = m_typed * 10 + digit;
    const int number = joined <= maximum ? joined : digit;
    m_typed = number;
    if (number >= minimum)
        setValue(kind, number);
    const bool isFull = number * 10 > maximum || joined != digit;
    if (isFull)
        endTyping();
    return isFull;
}

int ClockTimeFields::rowCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_fields.size());
}

QString ClockTimeFields::text(const Field &field) const {
    if (field.kind == Kind::HalfOfDay)
        return m_styles->halfOfDay(value(field.kind) == 1);
    QString digits = m_locale.toString(value(field.kind));
    if (field.isPadded && value(field.kind) < 10)
        digits.prepend(m_locale.zeroDigit());
    return digits;
}

QVariant ClockTimeFields::data(const QModelIndex &index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const Field &field = m_fields[static_cast<std::size_t>(index.row())];
    switch (role) {
    case Text:
        return text(field);
    case Separator:
        return field.separator;
    case Name:
        return field.kind == Kind::Minute      ? u"Minute"_s
               : field.kind == Kind::HalfOfDay ? u"Half of the day"_s
                                               : u"Hour"_s;
    case Value:
        return value(field.kind);
    case Minimum:
        return boundsOf(field.kind).minimum;
    case Maximum:
        return boundsOf(field.kind).maximum;
    default:
        return {};
    }
}

QHash<int, QByteArray> ClockTimeFields::roleNames() const {
    return {{Text, "text"},   {Separator, "separator"}, {Name, "name"},
            {Value, "value"}, {Minimum, "minimum"},     {Maximum, "maximum"}};
}

} // namespace tarne
