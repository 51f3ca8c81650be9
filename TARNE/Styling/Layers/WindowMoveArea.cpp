#include "WindowMoveArea.h"

#include <QGuiApplication>
#include <QQuickWindow>
#include <QStyleHints>

namespace tarne {

WindowMoveArea::WindowMoveArea(QQuickItem *parent) : QQuickItem(parent) {
    setAcceptedMouseButtons(Qt::LeftButton);
}

void WindowMoveArea::mousePressEvent(QMouseEvent *event) {
    event->accept();
    m_isHeld = event->button() == Qt::LeftButton;
    m_isDrag = false;
}

void WindowMoveArea::mouseMoveEvent(QMouseEvent *event) {
    const QEventPoint &point = event->points().constFirst();
    const QPointF way = point.scenePosition() - point.scenePressPosition();
    if (m_isDrag || way.manhattanLength() < QGuiApplication::styleHints()->startDragDistance())
        return;
    m_isDrag = true;
    // Input that waits comes before what is queued.
    QMetaObject::invokeMethod(this, &WindowMoveArea::moveIfHeld, Qt::QueuedConnection);
}

void WindowMoveArea::mouseReleaseEvent(QMouseEvent *) {
    m_isHeld = false;
}

void WindowMoveArea::mouseUngrabEvent() {
    m_isHeld = false;
}

void WindowMoveArea::moveIfHeld() {
    if (m_isHeld && window())
        window()->startSystemMove();
}

} // namespace tarne
