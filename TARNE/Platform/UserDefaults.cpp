#include "UserDefaults.h"

#include "Description.h"
#include "Overloaded.h"

#include <QStringView>

#include <array>
#include <charconv>

using namespace Qt::StringLiterals;

namespace tarne {

namespace {

/// The number that a text begins with, after white space and a sign; 0 when there is none.
double leadingNumber(const QString &text) {
    const QByteArray latin = text.trimmed().toLatin1();
    const char *begin = latin.constData();
    const char *const end = begin + latin.size();
    const bool isNegative = begin != end && *begin == '-';
    if (begin != end && (*begin == '+' || *begin == '-'))
        ++begin;
    // Words such as "information" and "nano" begin with what is a number to the library.
    if (begin == end || (*begin != '.' && (*begin < '0' || *begin > '9')))
        return 0.0;
    double value = 0.0;
    if (std::from_chars(begin, end, value, std::chars_format::fixed).ec != std::errc())
        return 0.0;
    return isNegative ? -value : value;
}

/// The text of a stored number: whole numbers without a fraction.
QString numberText(double value) {
    QString text = description(value);
    if (text.endsWith(".0"_L1))
        text.chop(2);
    return text;
}

} // namespace

bool UserDefaults::boolForKey(const QString &key) const {
    const auto value = objectForKey(key);
    if (!value)
        return false;
    return std::visit(Overloaded{[](bool flag) { return flag; },
                                 [](qint64 number) { return number != 0; },
                                 [](double number) { return number != 0.0; },
                                 [](const QString &text) {
                                     const QString word = text.trimmed();
                                     return word.startsWith("y"_L1, Qt::CaseInsensitive) ||
                                            word.startsWith("t"_L1, Qt::CaseInsensitive) ||
                                            leadingNumber(word) != 0.0;
                                 },
                                 [](const auto &) { return false; }},
                      *value);
}

double UserDefaults::doubleForKey(const QString &key) const {
    const auto value = objectForKey(key);
    if (!value)
        return 0.0;
    return std::visit(Overloaded{[](bool flag) { return flag ? 1.0 : 0.0; },
                                 [](qint64 number) { return static_cast<double>(number); },
                                 [](double number) { return number; },
                                 [](const QString &text) { return leadingNumber(text); },
                                 [](const auto &) { return 0.0; }},
                      *value);
}

std::optional<QString> UserDefaults::stringForKey(const QString &key) const {
    const auto value = objectForKey(key);
    if (!value)
        return std::nullopt;
    using Text = std::optional<QString>;
    return std::visit(Overloaded{[](bool flag) -> Text { return flag ? u"1"_s : u"0"_s; },
                                 [](qint64 number) -> Text { return QString::number(number); },
                                 [](double number) -> Text { return numberText(number); },
                                 [](const QString &text) -> Text { return text; },
                                 [](const auto &) -> Text { return std::nullopt; }},
                      *value);
}

std::optional<QByteArray> UserDefaults::dataForKey(const QString &key) const {
    const auto value = objectForKey(key);
    if (const auto *data = value ? std::get_if<QByteArray>(&*value) : nullptr)
        return *data;
    return std::nullopt;
}

std::optional<Date> UserDefaults::dateForKey(const QString &key) const {
    const auto value = objectForKey(key);
    if (const auto *date = value ? std::get_if<Date>(&*value) : nullptr)
        return *date;
    return std::nullopt;
}

} // namespace tarne
