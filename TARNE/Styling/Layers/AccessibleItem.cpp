#include "AccessibleItem.h"

#include "AccessibleWindow.h"
#include "SecretGuard.h"

#include <private/qquickitem_p.h>

#include <QCoreApplication>
#include <QQuickWindow>

namespace tarne {
namespace {

/// Asked for every class of an object, the most derived first: well before the stock interfaces,
/// which answer for QQuickWindow and QQuickItem. Of windows too, since the linker leaves a file out
/// that nobody refers to.
QAccessibleInterface *makeInterface(const QString &, QObject *object) {
    if (auto *const window = qobject_cast<QQuickWindow *>(object))
        return new AccessibleWindow(window);
    auto *const item = qobject_cast<QQuickItem *>(object);
    if (!item || !QQuickItemPrivate::get(item)->isAccessible || SecretGuard::isSecret(*item))
        return nullptr;
    return new AccessibleItem(item);
}

void installInterfaces() {
    QAccessible::installFactory(makeInterface);
}
Q_COREAPP_STARTUP_FUNCTION(installInterfaces)

} // namespace

AccessibleItem::AccessibleItem(QQuickItem *item) : QAccessibleQuickItem(item) {
    QObject::connect(item, &QQuickItem::enabledChanged, item, [item] {
        QAccessible::State changed;
        changed.disabled = true;
        changed.focusable = true;
        QAccessibleStateChangeEvent event(item, changed);
        QAccessible::updateAccessibility(&event);
    });
}

QAccessible::Role AccessibleItem::role() const {
    const QVariant role = item()->property("accessibleRole");
    return role.isValid() ? static_cast<QAccessible::Role>(role.toInt())
                          : QAccessibleQuickItem::role();
}

QAccessible::State AccessibleItem::state() const {
    QAccessible::State state = QAccessibleQuickItem::state();
    if (!item()->isEnabled()) {
        state.disabled = true;
        state.focusable = false;
    }
    // The stock one tells it of all that is around the focus as well.
    state.focused = item()->window() && item()->window()->activeFocusItem() == item();
    return state;
}

QString AccessibleItem::text(QAccessible::Text kind) const {
    const QString text = QAccessibleQuickItem::text(kind);
    // The stock field describes itself by its placeholder, which is its name already.
    return kind == QAccessible::Description && text == this->text(QAccessible::Name) ? QString()
                                                                                     : text;
}

void AccessibleItem::doAction(const QString &name) {
    if (item()->isEnabled())
        QAccessibleQuickItem::doAction(name);
}

} // namespace tarne
