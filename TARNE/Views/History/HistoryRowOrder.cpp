#include "HistoryRowOrder.h"

#include <algorithm>

namespace tarne {

void HistoryRowOrder::put(QQuickItem *row, int index) {
    const QQuickItem *const list = row->parentItem();
    if (!list)
        return;
    const QList<QQuickItem *> siblings = list->childItems();
    const auto next = std::find_if(siblings.cbegin(), siblings.cend(), [=](const QQuickItem *one) {
        const QVariant place = one->property("index");
        return place.isValid() && place.toInt() > index;
    });
    if (next != siblings.cend())
        row->stackBefore(*next);
}

} // namespace tarne
