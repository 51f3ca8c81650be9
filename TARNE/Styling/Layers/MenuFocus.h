#pragma once

#include "FormerFocus.h"

#include <QQuickItem>

namespace tarne {

/// What a menu needs to give the focus back: an item of no size beside it, in the same window.
class MenuFocus : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT

public:
    using QQuickItem::QQuickItem;

    /// Notes what has the focus; for when the menu is about to open.
    Q_INVOKABLE void note();
    /// Gives the focus back unless something else has it by now; for when the menu has closed,
    /// which leaves the focus to the window as a whole, where no key reaches anything.
    Q_INVOKABLE void giveBack();

Q_SIGNALS:
    /// A modal layer is about to cover the window or to leave it, and notes after this what has the
    /// focus. An open menu has to be closed by then: the layer cannot give it the focus back.
    void coverChanging();

protected:
    void itemChange(ItemChange change, const ItemChangeData &value) override;

private:
    FormerFocus m_formerFocus;
    QMetaObject::Connection m_cover;
};

} // namespace tarne
