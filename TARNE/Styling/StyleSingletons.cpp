#include "StyleSingletons.h"

#include "HexColor.h"

namespace tarne {

QColor ColorsSingleton::hex(const QString &text) {
    return colorFromHex(text);
}

QColor ColorsSingleton::withOpacity(const QColor &color, double opacity) {
    QColor result = color;
    result.setAlphaF(static_cast<float>(static_cast<double>(color.alphaF()) * opacity));
    return result;
}

QFont TypographySingleton::system(double size, int weight) {
    return Tokens::system(size, static_cast<QFont::Weight>(weight));
}

QFont TypographySingleton::heading(double size) {
    return Tokens::heading(size);
}

QFont TypographySingleton::emoji(double size) {
    return Tokens::emoji(size);
}

QFont TypographySingleton::weighted(QFont font, int weight) {
    font.setWeight(static_cast<QFont::Weight>(weight));
    return font;
}

QFont TypographySingleton::struckOut(QFont font, bool isStruckOut) {
    font.setStrikeOut(isStruckOut);
    return font;
}

} // namespace tarne
