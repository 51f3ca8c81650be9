#pragma once

#include "AnyButtonStyle.h"
#include "ItemLook.h"
#include "UiDriver.h"

#include <gtest/gtest.h>

#include <QFont>

#include <algorithm>

namespace tarne::test {

/// Asks what a window shows for its places, fonts and colours.
class LayoutProbe {
public:
    explicit LayoutProbe(UiDriver &ui) : m_ui(ui) {}

    /// What can be found by its accessible name, or a failure.
    QQuickItem &item(const QString &name, QAccessible::Role role = QAccessible::NoRole) {
        QQuickItem *const found = m_ui.find(name, role);
        return found ? *found : missing(name);
    }
    /// The first visible text that reads `text`, named or not.
    QQuickItem &text(const QString &text) {
        QQuickItem *const found = textBelow(*m_ui.root()->window()->contentItem(), text);
        return found ? *found : missing(text);
    }
    /// Where an item lies in the window, in points.
    static QRectF place(const QQuickItem &item) {
        return item.mapRectToScene(QRectF(QPointF(), item.size()));
    }
    QRectF place(const QString &name, QAccessible::Role role = QAccessible::NoRole) {
        return place(item(name, role));
    }
    static QFont font(const QQuickItem &item) { return item.property("font").value<QFont>(); }
    static QColor color(const QQuickItem &item) { return item.property("color").value<QColor>(); }
    ButtonLook look(const QString &button) {
        return item(button).property("look").value<ButtonLook>();
    }
    /// How far a button's symbol and its text stand apart, whichever comes first.
    double gapIn(const QString &button) {
        const QQuickItem &pressed = item(button, QAccessible::Button);
        const QQuickItem *const words = textBelow(pressed, button);
        const auto symbols = symbolsIn(&pressed);
        if (!words || symbols.size() != 1)
            return place(missing(button + QStringLiteral(" with a symbol"))).x();
        const QRectF symbol = place(*symbols.front());
        const QRectF text = place(*words);
        return std::max(symbol.left(), text.left()) - std::min(symbol.right(), text.right());
    }

private:
    static QQuickItem *textBelow(const QQuickItem &item, const QString &text) {
        for (QQuickItem *const child : item.childItems()) {
            if (!child->isVisible())
                continue;
            if (child->inherits("QQuickText") && child->property("text").toString() == text)
                return child;
            if (QQuickItem *const found = textBelow(*child, text))
                return found;
        }
        return nullptr;
    }
    QQuickItem &missing(const QString &what) {
        ADD_FAILURE() << "nothing on the screen is " << qPrintable(what);
        return *m_ui.root();
    }

    UiDriver &m_ui;
};

} // namespace tarne::test
