#pragma once

#include <QQuickItem>

namespace tarne {

/// A place to drag the window by: the platform takes over once a press is known for a drag. It is
/// asked at most once a press, and not when the button is up again by the time that all waiting
/// input has been handled, since a window manager would then move the window until the next click.
class WindowMoveArea : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT

public:
    explicit WindowMoveArea(QQuickItem *parent = nullptr);

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseUngrabEvent() override;

private:
    void moveIfHeld();

    bool m_isHeld = false;
    bool m_isDrag = false;
};

} // namespace tarne
