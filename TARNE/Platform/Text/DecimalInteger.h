#pragma once

#include <QByteArray>
#include <QStringView>

#include <charconv>
#include <concepts>
#include <optional>
#include <system_error>

namespace tarne {

/// The integer of a text that is nothing but decimal digits with at most one sign before them.
///
/// Absent for blanks, fractions, exponents, separators, digits of other scripts, the empty text,
/// and for numbers that the type cannot hold.
template <std::signed_integral Integer = qint64>
[[nodiscard]] std::optional<Integer> decimalInteger(QStringView text) {
    // from_chars knows the minus sign alone.
    if (text.startsWith(u'+')) {
        text = text.sliced(1);
        if (text.startsWith(u'-'))
            return std::nullopt;
    }
    // What Latin-1 does not have becomes a question mark, which is no digit.
    const QByteArray latin = text.toLatin1();
    Integer value = 0;
    const auto [rest, error] = std::from_chars(latin.cbegin(), latin.cend(), value);
    if (error != std::errc() || rest != latin.cend())
        return std::nullopt;
    return value;
}

} // namespace tarne
