#include "Description.h"

#include <QLocale>

#include <array>
#include <charconv>
#include <cmath>

using namespace Qt::StringLiterals;

namespace tarne {

QString description(double value) {
    if (std::isnan(value))
        return u"nan"_s;
    if (std::isinf(value))
        return value > 0 ? u"inf"_s : u"-inf"_s;
    // Plain notation from 1e-4 up to, but not including, 2^53 rounded to 1e16.
    const double magnitude = std::abs(value);
    const bool scientific = value != 0.0 && (magnitude < 1e-4 || magnitude >= 1e16);
    std::array<char, 64> buffer;
    const auto end =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                      scientific ? std::chars_format::scientific : std::chars_format::fixed)
            .ptr;
    QString text = QString::fromLatin1(buffer.data(), end - buffer.data());
    if (!scientific && !text.contains(u'.'))
        text += u".0"_s;
    return text;
}

QString description(const QStringList &texts) {
    QStringList quoted;
    for (QString text : texts) {
        text.replace(u"\\"_s, u"\\\\"_s).replace(u"\""_s, u"\\\""_s);
        text.replace(u"\n"_s, u"\\n"_s).replace(u"\r"_s, u"\\r"_s).replace(u"\t"_s, u"\\t"_s);
        quoted += u"\""_s + text + u"\""_s;
    }
    return u"["_s + quoted.join(u", "_s) + u"]"_s;
}

} // namespace tarne
