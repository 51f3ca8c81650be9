#include "AccessibleItem.h"

#include "AccessibleNews.h"
#include "AccessibleTyping.h"
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
    new AccessibleNews(QCoreApplication::instance());
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
    AccessibleTyping::follow(*item);
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
    switch (role()) {
    case QAccessible::StaticText:
        state.focusable = state.focused;
        break;
    case QAccessible::Dialog:
    case QAccessible::AlertMessage:
        // What is presented lies over all else, and has the focus until Tab leads into it.
        state.modal = true;
        state.focusable = state.focused;
        break;
    default:
        break;
    }
    if (const QVariant expanded = item()->property("accessibleExpanded"); expanded.isValid()) {
        state.expandable = true;
        state.expanded = expanded.toBool();
        state.collapsed = !expanded.toBool();
    }
    return state;
}

QString AccessibleItem::text(QAccessible::Text kind) const {
    const QString text = QAccessibleQuickItem::text(kind);
    // The stock field describes itself by its placeholder, which is its name already.
    return kind == QAccessible::Description && text == this->text(QAccessible::Name) ? QString()
                                                                                     : text;
}

QStringList AccessibleItem::actionNames() const {
    QStringList names = QAccessibleQuickItem::actionNames();
    names.removeDuplicates();
    return names;
}

void AccessibleItem::doAction(const QString &name) {
    if (item()->isEnabled())
        QAccessibleQuickItem::doAction(name);
}

void *AccessibleItem::interface_cast(QAccessible::InterfaceType type) {
    if (type == QAccessible::EditableTextInterface && role() == QAccessible::EditableText &&
        item()->isEnabled() && !item()->property("readOnly").toBool())
        return static_cast<QAccessibleEditableTextInterface *>(this);
    return QAccessibleQuickItem::interface_cast(type);
}

void AccessibleItem::insertText(int offset, const QString &text) {
    QMetaObject::invokeMethod(item(), "insert", Q_ARG(int, offset), Q_ARG(QString, text));
}

void AccessibleItem::deleteText(int startOffset, int endOffset) {
    QMetaObject::invokeMethod(item(), "remove", Q_ARG(int, startOffset), Q_ARG(int, endOffset));
}

void AccessibleItem::replaceText(int startOffset, int endOffset, const QString &text) {
    deleteText(startOffset, endOffset);
    insertText(startOffset, text);
}

} // namespace tarne
