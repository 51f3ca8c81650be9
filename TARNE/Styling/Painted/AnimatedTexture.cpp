#include "AnimatedTexture.h"

#include <QEvent>
#include <QQuickWindow>
#include <QTimerEvent>

namespace tarne {

AnimatedTexture::AnimatedTexture(std::chrono::milliseconds frameInterval, QQuickItem *parent)
    : TextureItem(parent), m_frameInterval(frameInterval) {}

bool AnimatedTexture::isShown() const {
    return isComponentComplete() && isVisible() && isEnabled() && m_window &&
           m_window->isVisible() && m_window->isExposed() &&
           m_window->visibility() != QWindow::Minimized;
}

void AnimatedTexture::shownChanged(bool) {}

void AnimatedTexture::updateTimer() {
    if (!isShown() || !isMoving())
        m_timer.stop();
    else if (!m_timer.isActive())
        m_timer.start(static_cast<int>(m_frameInterval.count()), Qt::CoarseTimer, this);
}

void AnimatedTexture::componentComplete() {
    TextureItem::componentComplete();
    updateShown();
}

void AnimatedTexture::itemChange(ItemChange change, const ItemChangeData &value) {
    TextureItem::itemChange(change, value);
    if (change == ItemSceneChange)
        watch(value.window);
    if (change == ItemSceneChange || change == ItemVisibleHasChanged ||
        change == ItemEnabledHasChanged)
        updateShown();
}

void AnimatedTexture::watch(QQuickWindow *window) {
    if (m_window) {
        m_window->removeEventFilter(this);
        disconnect(m_window, nullptr, this, nullptr);
    }
    m_window = window;
    if (!window)
        return;
    window->installEventFilter(this);
    connect(window, &QWindow::visibilityChanged, this, &AnimatedTexture::updateShown);
}

bool AnimatedTexture::eventFilter(QObject *object, QEvent *event) {
    // The window learns of its exposure from the event, so it is asked when that has been handled.
    if (event->type() == QEvent::Expose)
        QMetaObject::invokeMethod(this, &AnimatedTexture::updateShown, Qt::QueuedConnection);
    return TextureItem::eventFilter(object, event);
}

void AnimatedTexture::updateShown() {
    const bool shown = isShown();
    if (shown != m_wasShown) {
        m_wasShown = shown;
        shownChanged(shown);
    }
    updateTimer();
}

void AnimatedTexture::timerEvent(QTimerEvent *event) {
    if (event->timerId() != m_timer.timerId()) {
        TextureItem::timerEvent(event);
        return;
    }
    // Reckoned by frames and not by the clock: after a pause the movement goes on where it was.
    advance(std::chrono::duration<double>(m_frameInterval).count());
    repaint();
    updateTimer();
}

} // namespace tarne
