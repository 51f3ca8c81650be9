#pragma once

#include "TextureItem.h"

#include <QBasicTimer>
#include <QPointer>

#include <chrono>

namespace tarne {

/// A picture that moves by itself, at the rate its own class asks for and no higher. Nothing at all
/// runs while it cannot be seen: hidden, in a hidden or minimised window, or disabled, as
/// everything behind a modal layer is.
class AnimatedTexture : public tarne::TextureItem {
    Q_OBJECT
    QML_ANONYMOUS

public:
    explicit AnimatedTexture(std::chrono::milliseconds frameInterval, QQuickItem *parent = nullptr);

    /// Whether it can be seen now.
    [[nodiscard]] bool isShown() const;
    /// Whether its timer runs.
    [[nodiscard]] bool isAnimating() const { return m_timer.isActive(); }

protected:
    /// Whether there is anything left to animate.
    [[nodiscard]] virtual bool isMoving() const = 0;
    /// Moves on by `seconds`. The picture is painted again afterwards.
    virtual void advance(double seconds) = 0;
    /// It has come into sight, or out of it.
    virtual void shownChanged(bool isShown);
    /// Starts or stops the timer; to be called when what `isMoving` tells has changed.
    void updateTimer();

    void componentComplete() override;
    void itemChange(ItemChange change, const ItemChangeData &value) override;
    void timerEvent(QTimerEvent *event) override;
    bool eventFilter(QObject *object, QEvent *event) override;

private:
    void watch(QQuickWindow *window);
    void updateShown();

    const std::chrono::milliseconds m_frameInterval;
    QBasicTimer m_timer;
    QPointer<QQuickWindow> m_window;
    bool m_wasShown = false;
};

} // namespace tarne
