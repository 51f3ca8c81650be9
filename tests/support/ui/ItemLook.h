#pragma once

#include "SymbolIcon.h"

#include <QColor>
#include <QEasingCurve>
#include <QFont>
#include <QQuickItem>

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

namespace tarne::test {

/// How a symbol is drawn.
struct SymbolLook {
    QString symbol;
    double size = 0;
    QColor color;
    int weight = QFont::Normal;

    friend bool operator==(const SymbolLook &, const SymbolLook &) = default;
    friend void PrintTo(const SymbolLook &look, std::ostream *out) {
        *out << qPrintable(look.symbol) << ' ' << look.size << ' '
             << qPrintable(look.color.name(QColor::HexArgb)) << ' ' << look.weight;
    }
};

inline SymbolLook lookOf(const QQuickItem &symbol) {
    return {symbol.property("symbol").toString(), symbol.property("size").toDouble(),
            symbol.property("color").value<QColor>(), symbol.property("weight").toInt()};
}

/// The visible symbols below an item, in the order of the tree.
inline void collectSymbols(const QQuickItem &item, std::vector<const SymbolIcon *> &symbols) {
    if (!item.isVisible())
        return;
    if (const auto *const symbol = qobject_cast<const SymbolIcon *>(&item))
        symbols.push_back(symbol);
    for (const QQuickItem *child : item.childItems())
        collectSymbols(*child, symbols);
}

inline std::vector<const SymbolIcon *> symbolsIn(const QQuickItem *item) {
    std::vector<const SymbolIcon *> symbols;
    if (item)
        collectSymbols(*item, symbols);
    return symbols;
}

inline std::vector<SymbolLook> looksOf(const std::vector<const SymbolIcon *> &symbols) {
    std::vector<SymbolLook> looks;
    for (const SymbolIcon *symbol : symbols)
        looks.push_back(lookOf(*symbol));
    return looks;
}

/// The first symbol of the smallest row, column or card around an item that has one; null where
/// there is none.
inline const SymbolIcon *symbolBeside(const QQuickItem *item) {
    for (; item; item = item->parentItem()) {
        if (const auto symbols = symbolsIn(item); !symbols.empty())
            return symbols.front();
    }
    return nullptr;
}

/// What the symbol beside an item looks like; nothing where there is none.
inline SymbolLook markBeside(const QQuickItem *item) {
    const SymbolIcon *const symbol = symbolBeside(item);
    return symbol ? lookOf(*symbol) : SymbolLook{};
}

/// The innermost item around `item` that has this property, such as the card that it lies on.
inline const QQuickItem *around(const QQuickItem *item, const char *property) {
    while (item && !item->property(property).isValid())
        item = item->parentItem();
    return item;
}

/// The item below `item` that is called this in QML. Unlike findChild it follows what is drawn, so
/// that it finds what a ComponentSlot has made too, which is nobody's QObject child.
inline const QQuickItem *below(const QQuickItem &item, const QString &objectName) {
    for (const QQuickItem *child : item.childItems()) {
        if (child->objectName() == objectName)
            return child;
        if (const QQuickItem *const found = below(*child, objectName))
            return found;
    }
    return nullptr;
}

/// Kind, opacity, colour and text of all that shows below an item, in the order of the tree.
inline std::vector<std::string> shownBelow(const QQuickItem &item) {
    std::vector<std::string> shown;
    for (const QQuickItem *child : item.childItems()) {
        if (!child->isVisible())
            continue;
        shown.push_back(QStringLiteral("%1 %2 %3 %4")
                            .arg(QLatin1StringView(child->metaObject()->className()),
                                 QString::number(child->opacity()),
                                 child->property("color").toString(),
                                 child->property("text").toString())
                            .toStdString());
        const auto further = shownBelow(*child);
        shown.insert(shown.end(), further.begin(), further.end());
    }
    return shown;
}

/// Expects the same items with the same looks, and names those that differ.
inline void expectEqual(const std::vector<std::string> &shown,
                        const std::vector<std::string> &expected) {
    ASSERT_EQ(shown.size(), expected.size());
    for (std::size_t i = 0; i < shown.size(); ++i)
        EXPECT_EQ(shown[i], expected[i]);
}

/// Fill and corner radius of a QML Rectangle or a RoundedBox.
inline std::pair<QColor, double> groundOf(const QQuickItem &rectangle) {
    return {rectangle.property("color").value<QColor>(), rectangle.property("radius").toDouble()};
}

/// Colour and width of a QML Rectangle's outline. One that was given none tells a default here
/// though it draws nothing: to be asked for outlines that ought to be there.
inline std::pair<QColor, double> outlineOf(const QQuickItem &rectangle) {
    const QObject *const border = rectangle.property("border").value<QObject *>();
    if (!border)
        return {};
    return {border->property("color").value<QColor>(), border->property("width").toDouble()};
}

/// The Rectangle that an item lies on: the innermost one that is drawn around it.
inline const QQuickItem *rectangleAround(const QQuickItem *item) {
    while (item && !item->inherits("QQuickRectangle"))
        item = item->parentItem();
    return item;
}

/// Duration and easing curve of each animation that a change of the item's properties runs.
inline std::vector<std::pair<int, QEasingCurve>> animationsOf(const QQuickItem &item) {
    std::vector<std::pair<int, QEasingCurve>> animations;
    for (const QObject *object : item.findChildren<QObject *>()) {
        if (object->inherits("QQuickPropertyAnimation"))
            animations.emplace_back(object->property("duration").toInt(),
                                    object->property("easing").toEasingCurve());
    }
    return animations;
}

/// Those of an item with one such animation.
inline std::pair<int, QEasingCurve> animationOf(const QQuickItem &item) {
    const auto animations = animationsOf(item);
    return animations.empty() ? std::pair<int, QEasingCurve>() : animations.front();
}

} // namespace tarne::test
