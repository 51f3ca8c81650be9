#pragma once

#include "UiDriver.h"

#include <QColor>
#include <QFont>

#include <gtest/gtest.h>

namespace tarne::test {

/// Expects that a visible text is written in this font and colour.
inline void expectLook(const UiDriver &ui, const QString &text, const QFont &font,
                       const QColor &color) {
    const QQuickItem *const item = ui.findText(text);
    ASSERT_TRUE(item) << "no text " << qPrintable(text);
    const auto actual = item->property("font").value<QFont>();
    EXPECT_EQ(actual.families(), font.families()) << qPrintable(text);
    EXPECT_EQ(actual.pixelSize(), font.pixelSize()) << qPrintable(text);
    EXPECT_EQ(actual.weight(), font.weight()) << qPrintable(text);
    EXPECT_EQ(item->property("color").value<QColor>(), color) << qPrintable(text);
}

/// The item's rectangle in the window.
inline QRectF placeOf(const QQuickItem &item) {
    return item.mapRectToScene(QRectF(QPointF(), item.size()));
}

} // namespace tarne::test
