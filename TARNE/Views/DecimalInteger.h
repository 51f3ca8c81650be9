#pragma once

#include <QStringView>

#include <optional>

namespace tarne {

/// The integer of a text that is nothing but decimal digits with at most one sign before them.
///
/// Blanks, fractions, exponents, separators, digits of other scripts, the empty text and numbers
/// that 64 bits do not hold are none.
[[nodiscard]] std::optional<qint64> decimalInteger(QStringView text);

} // namespace tarne
