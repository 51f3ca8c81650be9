#include "StyleSingletons.h"

#include "HexColor.h"

#include <QQmlEngine>

namespace tarne {
namespace {

/// In place of the colours of their names where the user asks for more contrast. On white and on
/// the light greys that cards and fields have, texts in the first three stand out by 7:1 and more.
struct MoreContrast {
    static constexpr QColor secondaryText{0x48, 0x48, 0x4A};
    static constexpr QColor secondaryLabel{0, 0, 0, 191};
    static constexpr QColor tertiaryLabel{0, 0, 0, 178};
    static constexpr QColor quaternaryLabel{0, 0, 0, 128};
    static constexpr QColor separator{0, 0, 0, 140};
    static constexpr QColor border = separator;
};

} // namespace

ColorsSingleton::ColorsSingleton(const StyleWishes &wishes) : m_wishes(wishes) {
    connect(&wishes, &StyleWishes::contrastMoreChanged, this, &ColorsSingleton::contrastChanged);
}

ColorsSingleton *ColorsSingleton::create(QQmlEngine *engine, QJSEngine *) {
    return new ColorsSingleton(StyleWishes::of(*engine));
}

QColor ColorsSingleton::secondaryText() const {
    return m_wishes.contrastMore() ? MoreContrast::secondaryText
                                   : TARNEStyle::Colors::secondaryText;
}

QColor ColorsSingleton::border() const {
    return m_wishes.contrastMore() ? MoreContrast::border : TARNEStyle::Colors::border;
}

QColor ColorsSingleton::secondaryLabel() const {
    return m_wishes.contrastMore() ? MoreContrast::secondaryLabel : SystemColors::secondaryLabel;
}

QColor ColorsSingleton::tertiaryLabel() const {
    return m_wishes.contrastMore() ? MoreContrast::tertiaryLabel : SystemColors::tertiaryLabel;
}

QColor ColorsSingleton::quaternaryLabel() const {
    return m_wishes.contrastMore() ? MoreContrast::quaternaryLabel : SystemColors::quaternaryLabel;
}

QColor ColorsSingleton::separator() const {
    return m_wishes.contrastMore() ? MoreContrast::separator : SystemColors::separator;
}

QColor ColorsSingleton::hex(const QString &text) {
    return colorFromHex(text);
}

QColor ColorsSingleton::withOpacity(const QColor &color, double opacity) {
    QColor result = color;
    result.setAlphaF(static_cast<float>(static_cast<double>(color.alphaF()) * opacity));
    return result;
}

QFont TypographyTokens::scaled(QFont font) const {
    font.setPixelSize(static_cast<int>(font.pixelSize() * m_textScale));
    return font;
}

QFont TypographyTokens::systemFont(double size, int weight) {
    return Tokens::system(size, static_cast<QFont::Weight>(weight));
}

QFont TypographyTokens::headingFont(double size) {
    return Tokens::heading(size);
}

QFont TypographyTokens::emojiFont(double size) {
    return Tokens::emoji(size);
}

QFont TypographyTokens::weighted(QFont font, int weight) {
    font.setWeight(static_cast<QFont::Weight>(weight));
    return font;
}

QFont TypographyTokens::struckOut(QFont font, bool isStruckOut) {
    font.setStrikeOut(isStruckOut);
    return font;
}

} // namespace tarne
