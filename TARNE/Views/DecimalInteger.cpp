#include "DecimalInteger.h"

#include <QByteArray>

#include <charconv>
#include <system_error>

namespace tarne {

std::optional<qint64> decimalInteger(QStringView text) {
    // from_chars knows the minus sign alone.
    if (text.startsWith(QLatin1Char('+'))) {
        text = text.sliced(1);
        if (text.startsWith(QLatin1Char('-')))
            return std::nullopt;
    }
    // What Latin-1 does not have becomes a question mark, which is no digit.
    const QByteArray latin = text.toLatin1();
    qint64 value = 0;
    const auto [rest, error] = std::from_chars(latin.cbegin(), latin.cend(), value);
    if (error != std::errc() || rest != latin.cend())
        return std::nullopt;
    return value;
}

} // namespace tarne
