#pragma once

#include "GlowingOrbView.h"

namespace tarne::test {

/// The orb that is visible below an item, or null.
inline const GlowingOrbView *orbBelow(const QQuickItem &item) {
    for (const QQuickItem *const child : item.childItems()) {
        if (!child->isVisible())
            continue;
        if (const auto *const found = qobject_cast<const GlowingOrbView *>(child))
            return found;
        if (const auto *const found = orbBelow(*child))
            return found;
    }
    return nullptr;
}

} // namespace tarne::test
