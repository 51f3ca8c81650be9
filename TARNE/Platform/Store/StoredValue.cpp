#include "StoredValue.h"

#include "Overloaded.h"
#include "Utf8.h"

#include <QtEndian>

#include <bit>
#include <cmath>
#include <limits>

#include <zlib.h>

namespace tarne {

namespace {

/// SQLite keeps no NaN: it would be stored as NULL.
const std::string notANumber = "nan";

StoredValue::Cell realCell(double value) {
    if (std::isnan(value))
        return notANumber;
    return value;
}

std::optional<double> realOf(const StoredValue::Cell &cell) {
    if (const auto *real = std::get_if<double>(&cell))
        return *real;
    if (const auto *integer = std::get_if<qint64>(&cell))
        return static_cast<double>(*integer);
    if (const auto *text = std::get_if<std::string>(&cell); text && *text == notANumber)
        return std::numeric_limits<double>::quiet_NaN();
    return std::nullopt;
}

bool isSameReal(double a, double b) {
    return std::bit_cast<quint64>(a) == std::bit_cast<quint64>(b) ||
           (std::isnan(a) && std::isnan(b));
}

class Crc32 {
public:
    void add(const void *bytes, std::size_t size) {
        m_crc = crc32_z(m_crc, static_cast<const Bytef *>(bytes), size);
    }
    void addNumber(quint64 bits) {
        const quint64 lowestFirst = qToLittleEndian(bits);
        add(&lowestFirst, sizeof lowestFirst);
    }
    quint32 value() const { return static_cast<quint32>(m_crc); }

private:
    uLong m_crc = crc32_z(0, nullptr, 0);
};

} // namespace

bool isSameValue(const DefaultsValue &a, const DefaultsValue &b) {
    if (a.index() != b.index())
        return false;
    return std::visit(
        Overloaded{
            [&](double value) { return isSameReal(value, std::get<double>(b)); },
            [&](Date value) {
                return isSameReal(value.secondsSinceReferenceDate(),
                                  std::get<Date>(b).secondsSinceReferenceDate());
            },
            [&](const QByteArray &data) {
                const auto &other = std::get<QByteArray>(b);
                return (data.constData() == other.constData() && data.size() == other.size()) ||
                       data == other;
            },
            [&](const auto &value) { return value == std::get<std::decay_t<decltype(value)>>(b); }},
        a);
}

StoredValue::StoredValue(const DefaultsValue &value)
    : StoredValue(std::visit(
          Overloaded{[](bool flag) { return StoredValue("boolean", qint64{flag}); },
                     [](qint64 number) { return StoredValue("integer", number); },
                     [](double number) { return StoredValue("double", realCell(number)); },
                     [](const QString &text) { return StoredValue("text", text.toStdString()); },
                     [](Date date) {
                         return StoredValue("date", realCell(date.secondsSinceReferenceDate()));
                     },
                     [](const QByteArray &data) { return StoredValue("data", data); }},
          value)) {}

std::optional<DefaultsValue> StoredValue::decoded() const {
    const auto *integer = std::get_if<qint64>(&cell);
    if (type == "boolean" && integer)
        return *integer != 0;
    if (type == "integer" && integer)
        return *integer;
    if (const auto real = realOf(cell)) {
        if (type == "double")
            return *real;
        if (type == "date")
            return Date::fromReferenceSeconds(*real);
    }
    if (const auto *text = std::get_if<std::string>(&cell); text && type == "text")
        return textOfUtf8(*text);
    if (const auto *data = std::get_if<QByteArray>(&cell); data && type == "data")
        return *data;
    return std::nullopt;
}

quint32 StoredValue::checksum() const {
    Crc32 crc;
    crc.add(type.data(), type.size());
    std::visit(Overloaded{[](std::monostate) {},
                          [&](qint64 number) { crc.addNumber(static_cast<quint64>(number)); },
                          [&](double number) { crc.addNumber(std::bit_cast<quint64>(number)); },
                          [&](const auto &bytes) {
                              crc.add(bytes.data(), static_cast<std::size_t>(bytes.size()));
                          }},
               cell);
    return crc.value();
}

} // namespace tarne
