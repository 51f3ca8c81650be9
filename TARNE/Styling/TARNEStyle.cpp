#include "TARNEStyle.h"

#include "HexColor.h"

#include <QFontDatabase>

using namespace Qt::StringLiterals;

namespace tarne {
namespace {

const QString emojiFamily = u"Noto Color Emoji"_s;

QColor withOpacity(QColor color, float opacity) {
    color.setAlphaF(opacity);
    return color;
}

QFont font(const QString &family, double size, QFont::Weight weight = QFont::Normal) {
    QFont result;
    // The emoji family stands in the list itself: left to the platform's own fallback, a symbol
    // such as the stop watch comes from whichever text font happens to have it, in one colour.
    result.setFamilies({family, emojiFamily});
    result.setPixelSize(static_cast<int>(size));
    result.setWeight(weight);
    return result;
}

/// "Space Mono" where the machine has it.
QString monospacedFamily() {
    static const QString family =
        QFontDatabase::hasFamily(u"Space Mono"_s) ? u"Space Mono"_s : u"JetBrains Mono"_s;
    return family;
}

} // namespace

QFont TARNEStyle::Typography::system(double size, QFont::Weight weight) {
    return font(u"Inter"_s, size, weight);
}

/// "Helvetica Neue" by the metrically equal family that free systems carry.
QFont TARNEStyle::Typography::heading(double size) {
    return font(u"Nimbus Sans"_s, size);
}

QFont TARNEStyle::Typography::emoji(double size) {
    return font(emojiFamily, size);
}

QFont TARNEStyle::Typography::heading1() {
    return heading(FontSize::largeTitle);
}
QFont TARNEStyle::Typography::heading2() {
    return heading(FontSize::title);
}
QFont TARNEStyle::Typography::heading3() {
    return heading(FontSize::bodyLarge);
}
QFont TARNEStyle::Typography::body() {
    return system(FontSize::body);
}
QFont TARNEStyle::Typography::bodyLarge() {
    return system(FontSize::bodyLarge);
}
QFont TARNEStyle::Typography::caption() {
    return system(FontSize::small);
}
QFont TARNEStyle::Typography::emphasis() {
    return system(FontSize::body, QFont::Medium);
}
QFont TARNEStyle::Typography::sessionBody() {
    return body();
}
QFont TARNEStyle::Typography::sessionBodyLarge() {
    return bodyLarge();
}
QFont TARNEStyle::Typography::sessionCaption() {
    return caption();
}
QFont TARNEStyle::Typography::sessionEmphasis() {
    return emphasis();
}
QFont TARNEStyle::Typography::timerDisplay() {
    return font(monospacedFamily(), FontSize::timer);
}
QFont TARNEStyle::Typography::button() {
    return system(FontSize::body, QFont::Medium);
}
QFont TARNEStyle::Typography::form() {
    return system(FontSize::body);
}

const QColor TARNEStyle::Colors::background = SystemColors::white;
const QColor TARNEStyle::Colors::primaryText = colorFromHex(u"1C1C1E");
const QColor TARNEStyle::Colors::secondaryText = colorFromHex(u"8E8E93");
const QColor TARNEStyle::Colors::accent = SystemColors::blue;
const QColor TARNEStyle::Colors::success = colorFromHex(u"34C759");
const QColor TARNEStyle::Colors::warning = colorFromHex(u"FF9500");
const QColor TARNEStyle::Colors::border = withOpacity(SystemColors::gray, 0.3F);
const QColor TARNEStyle::Colors::shadow = withOpacity(SystemColors::black, 0.1F);

} // namespace tarne
