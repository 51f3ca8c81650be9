#pragma once

#include <QtGlobal>

#include <limits>
#include <optional>

namespace tarne {

/// `value` without its fraction, or none where it is no number or beyond 64 bits.
[[nodiscard]] constexpr std::optional<qint64> wholeNumber(double value) {
    if (!(value >= -0x1p63 && value < 0x1p63))
        return std::nullopt;
    return static_cast<qint64>(value);
}

/// The same, but the nearest integer where `value` is beyond 64 bits, and 0 where it is no number.
[[nodiscard]] constexpr qint64 saturatedWholeNumber(double value) {
    if (const std::optional<qint64> number = wholeNumber(value))
        return *number;
    if (value > 0)
        return std::numeric_limits<qint64>::max();
    return value < 0 ? std::numeric_limits<qint64>::min() : 0;
}

} // namespace tarne
