#include "HexColor.h"

#include <limits>

namespace tarne {
namespace {

/// Letters, marks and numbers: the set whose complement is trimmed.
bool isAlphanumeric(char32_t character) {
    return QChar::isLetterOrNumber(character) || QChar::isMark(character);
}

/// The characters as code points, so that a letter beyond the first plane counts as one of them.
QList<uint> trimmedCharacters(QStringView text) {
    QList<uint> characters = text.toUcs4();
    while (!characters.isEmpty() && !isAlphanumeric(characters.last()))
        characters.removeLast();
    while (!characters.isEmpty() && !isAlphanumeric(characters.first()))
        characters.removeFirst();
    return characters;
}

int hexDigit(uint character) {
    if (character >= U'0' && character <= U'9')
        return static_cast<int>(character - U'0');
    if (character >= U'a' && character <= U'f')
        return static_cast<int>(character - U'a') + 10;
    if (character >= U'A' && character <= U'F')
        return static_cast<int>(character - U'A') + 10;
    return -1;
}

/// Only texts of up to eight characters use the value, so it never exceeds 32 bits.
quint64 scanHexadecimal(const QList<uint> &characters) {
    quint64 value = 0;
    for (const uint character : characters) {
        const int digit = hexDigit(character);
        if (digit < 0)
            break;
        value = value * 16 + static_cast<quint64>(digit);
    }
    return value;
}

QColor fromComponents(quint64 alpha, quint64 red, quint64 green, quint64 blue) {
    return QColor(static_cast<int>(red), static_cast<int>(green), static_cast<int>(blue),
                  static_cast<int>(alpha));
}

} // namespace

QColor colorFromHex(QStringView hex) {
    const QList<uint> characters = trimmedCharacters(hex);
    switch (characters.size()) {
    case 3: {
        const quint64 value = scanHexadecimal(characters);
        return fromComponents(255, (value >> 8) * 17, ((value >> 4) & 15) * 17, (value & 15) * 17);
    }
    case 6: {
        const quint64 value = scanHexadecimal(characters);
        return fromComponents(255, value >> 16, (value >> 8) & 255, value & 255);
    }
    case 8: {
        const quint64 value = scanHexadecimal(characters);
        return fromComponents(value >> 24, (value >> 16) & 255, (value >> 8) & 255, value & 255);
    }
    default:
        return fromComponents(1, 1, 1, 0);
    }
}

} // namespace tarne
