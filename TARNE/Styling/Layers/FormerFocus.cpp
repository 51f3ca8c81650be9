#include "FormerFocus.h"

#include <QQuickWindow>

namespace tarne {
namespace {

/// How `item` came by the focus, which decides whether it shows that it has it.
Qt::FocusReason focusReasonOf(const QQuickItem &item) {
    const QVariant reason = item.property("focusReason");
    return reason.isValid() ? reason.value<Qt::FocusReason>() : Qt::PopupFocusReason;
}

/// The item may have the focus again already, by being enabled, which counts as no reason at all.
void giveFocus(QQuickItem &item, Qt::FocusReason reason) {
    item.forceActiveFocus(reason);
    QQuickItem *const focused = item.window() ? item.window()->activeFocusItem() : nullptr;
    if (focused && focused->metaObject()->indexOfProperty("focusReason") >= 0)
        focused->setProperty("focusReason", reason);
}

/// While another window is in front, nothing has the focus; each scope still knows its part.
QQuickItem *focusedItem(const QQuickWindow &window) {
    if (QQuickItem *const active = window.activeFocusItem())
        return active;
    QQuickItem *item = window.contentItem();
    while (QQuickItem *const next = item->scopedFocusItem())
        item = next;
    return item;
}

} // namespace

FormerFocus::FormerFocus(const QQuickWindow &window)
    : m_item(focusedItem(window)), m_reason(focusReasonOf(*m_item)) {}

void FormerFocus::giveBack() const {
    QQuickItem *next = m_item;
    while (next &&
           !(next->isEnabled() && next->isVisible() && (next == m_item || next->isFocusScope())))
        next = next->parentItem();
    if (next)
        giveFocus(*next, m_reason);
}

} // namespace tarne
