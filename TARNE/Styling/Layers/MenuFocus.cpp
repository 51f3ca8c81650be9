#include "MenuFocus.h"

#include "PressGuard.h"

#include <QQuickWindow>

namespace tarne {

void MenuFocus::note() {
    m_formerFocus = FormerFocus(*window());
}

void MenuFocus::giveBack() {
    const QQuickItem *const focused = window()->activeFocusItem();
    if (!focused || focused == window()->contentItem())
        m_formerFocus.giveBack();
}

void MenuFocus::itemChange(ItemChange change, const ItemChangeData &value) {
    if (change == ItemSceneChange) {
        disconnect(m_cover);
        if (value.window)
            m_cover = connect(&PressGuard::of(*value.window), &PressGuard::coverChanging, this,
                              &MenuFocus::coverChanging);
    }
    QQuickItem::itemChange(change, value);
}

} // namespace tarne
