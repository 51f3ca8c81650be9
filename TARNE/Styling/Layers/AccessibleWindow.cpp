#include "AccessibleWindow.h"

#include "ModalLayer.h"

#include <QCoreApplication>

#include <algorithm>

namespace tarne {
namespace {

/// Appends what assistive tools know directly below `item`; what they do not know is passed
/// through.
void collectKnown(const QQuickItem &item, QList<QAccessibleInterface *> &known) {
    for (QQuickItem *const child : item.childItems()) {
        if (QAccessibleInterface *const node = QAccessible::queryAccessibleInterface(child))
            known.append(node);
        else
            collectKnown(*child, known);
    }
}

} // namespace

AccessibleWindow::AccessibleWindow(QQuickWindow *window) : QAccessibleObject(window) {}

QQuickWindow *AccessibleWindow::window() const {
    return static_cast<QQuickWindow *>(object());
}

QAccessible::State AccessibleWindow::state() const {
    QAccessible::State state;
    state.active = window()->isActive();
    state.invisible = !window()->isVisible();
    return state;
}

QString AccessibleWindow::text(QAccessible::Text kind) const {
    return kind == QAccessible::Name ? window()->title() : QString();
}

QAccessibleInterface *AccessibleWindow::parent() const {
    return QAccessible::queryAccessibleInterface(QCoreApplication::instance());
}

QList<QAccessibleInterface *> AccessibleWindow::children() const {
    const QQuickItem *const layer = ModalLayer::topmost(*window());
    QList<QAccessibleInterface *> known;
    collectKnown(layer ? *layer : *window()->contentItem(), known);
    return known;
}

int AccessibleWindow::childCount() const {
    return static_cast<int>(children().size());
}

QAccessibleInterface *AccessibleWindow::child(int index) const {
    return children().value(index);
}

int AccessibleWindow::indexOfChild(const QAccessibleInterface *child) const {
    return static_cast<int>(children().indexOf(child));
}

QAccessibleInterface *AccessibleWindow::childAt(int x, int y) const {
    const QList<QAccessibleInterface *> known = children();
    // The last one lies on top.
    const auto node = std::find_if(known.crbegin(), known.crend(), [&](QAccessibleInterface *one) {
        return one->rect().contains(x, y) && !one->state().invisible;
    });
    return node == known.crend() ? nullptr : *node;
}

QAccessibleInterface *AccessibleWindow::focusChild() const {
    QQuickItem *const focused = window()->activeFocusItem();
    return focused ? QAccessible::queryAccessibleInterface(focused) : nullptr;
}

} // namespace tarne
