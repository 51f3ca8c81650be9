#pragma once

#include <QLatin1StringView>
#include <QStringView>

#include <span>

namespace tarne {

/// One line of the table from the screens' symbol names to outlines of the icon package. A shape
/// that encloses a sign names both alone as well, for hierarchical rendering.
struct SymbolOutline {
    QLatin1StringView symbol;
    QLatin1StringView file;
    QLatin1StringView enclosing = {};
    QLatin1StringView sign = {};
    /// How much larger than on the package's grid it is drawn, where that suits it better.
    double zoom = 1;
};

[[nodiscard]] std::span<const SymbolOutline> symbolTable();

/// The line of `symbol`, or null.
[[nodiscard]] const SymbolOutline *symbolOutline(QStringView symbol);

} // namespace tarne
