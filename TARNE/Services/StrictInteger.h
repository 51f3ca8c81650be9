#pragma once

#include <QStringView>

#include <limits>
#include <optional>

namespace tarne {

/// The integer that `text` is: an optional sign and digits, nothing before and nothing behind.
/// None when it does not fit.
template <typename Integer>
[[nodiscard]] std::optional<Integer> strictInteger(QStringView text) {
    const bool negative = text.startsWith(u'-');
    if (negative || text.startsWith(u'+'))
        text = text.mid(1);
    if (text.isEmpty())
        return std::nullopt;
    Integer value = 0;
    for (const QChar character : text) {
        if (character < u'0' || character > u'9')
            return std::nullopt;
        const auto digit = static_cast<Integer>(character.unicode() - u'0');
        // Counted towards the sign, since the negative range is the larger one.
        if (__builtin_mul_overflow(value, Integer{10}, &value) ||
            __builtin_add_overflow(value, negative ? -digit : digit, &value))
            return std::nullopt;
    }
    return value;
}

} // namespace tarne
