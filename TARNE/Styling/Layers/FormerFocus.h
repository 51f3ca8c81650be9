#pragma once

#include <QPointer>
#include <QQuickItem>

namespace tarne {

/// What had the focus of a window when something else was about to take it, and how it came by it.
class FormerFocus {
public:
    FormerFocus() = default;
    /// Notes what has the focus in `window`, or would have it if the window were active.
    explicit FormerFocus(const QQuickWindow &window);

    /// Gives the focus back, for the reason for which it was there. Where what had it is gone, its
    /// surroundings know best who is next.
    void giveBack() const;

private:
    QPointer<QQuickItem> m_item;
    Qt::FocusReason m_reason = Qt::PopupFocusReason;
};

} // namespace tarne
