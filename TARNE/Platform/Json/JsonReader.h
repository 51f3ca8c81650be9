#pragma once

#include "Date.h"

#include <QByteArray>
#include <QString>
#include <QUuid>

#include <functional>
#include <optional>
#include <vector>

#include <simdjson.h>

/// Strict reading of JSON documents; see JsonCoder.h, which is what codecs include.
///
/// Every function reads one value whole, of exactly the type that its result has, or returns false:
/// the document is unreadable then. Nothing is coerced.
namespace tarne::json {

using Value = simdjson::ondemand::value;

[[nodiscard]] bool read(Value value, bool &result);
/// Any JSON number whose double is finite; the nearest double to its text.
[[nodiscard]] bool read(Value value, double &result);
[[nodiscard]] bool read(Value value, Date &result);
/// A text with half of a surrogate pair is no text.
[[nodiscard]] bool read(Value value, QString &result);
/// Whether the value is a text as above, without making it.
[[nodiscard]] bool passText(Value value);
/// A text as UTF-8, valid until the next value is read.
[[nodiscard]] bool read(Value value, std::string_view &result);
/// The canonical text of 36 characters, in either case.
[[nodiscard]] bool read(Value value, QUuid &result);

/// Whether the value is null; it counts as read then.
[[nodiscard]] bool isNull(Value value);

/// Reads a value of any type and drops it. It has to be valid all the same.
[[nodiscard]] bool skip(Value value, int depth = 0);

/// The name of an object's member.
class Key {
public:
    explicit Key(simdjson::ondemand::field &field) : m_field(field) {}

    /// Whether the name is `text` and is written without escapes, as every writer writes it.
    [[nodiscard]] bool isWrittenAs(std::string_view text) const {
        return m_field.key().unsafe_is_equal(text);
    }
    /// The name with its escapes resolved, or none when they are invalid. May be called once.
    [[nodiscard]] std::optional<std::string_view> text() {
        std::string_view text;
        if (m_field.unescaped_key().get(text))
            return std::nullopt;
        return text;
    }

private:
    simdjson::ondemand::field &m_field;
};

/// Calls `read(value)` with the whole document's value; false when it returns false, when the text
/// is no JSON or no UTF-8, or when anything but white space stands behind the value. See
/// JsonPadding.h.
[[nodiscard]] bool readDocument(QByteArray text, const std::function<bool(Value)> &read);

} // namespace tarne::json
