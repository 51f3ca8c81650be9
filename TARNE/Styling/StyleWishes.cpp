#include "StyleWishes.h"

#include <QQmlEngine>

#include <utility>

namespace tarne {

StyleWishes &StyleWishes::of(QQmlEngine &engine) {
    return *engine.singletonInstance<StyleWishes *>(qmlTypeId("TARNE.Styling", 1, 0, "Wishes"));
}

void StyleWishes::setWishes(const DesktopWishes &wishes) {
    const DesktopWishes before = std::exchange(m_wishes, wishes);
    if (before.reducedMotion != wishes.reducedMotion)
        Q_EMIT reducedMotionChanged();
    if (before.contrastMore != wishes.contrastMore)
        Q_EMIT contrastMoreChanged();
    if (before.textScale != wishes.textScale)
        Q_EMIT textScaleChanged();
}

} // namespace tarne
