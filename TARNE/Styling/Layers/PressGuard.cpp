#include "PressGuard.h"

#include <QGuiApplication>
#include <QQuickWindow>
#include <QStyleHints>

#include <cmath>

namespace tarne {

PressGuard &PressGuard::of(QQuickWindow &window) {
    auto *const known = window.findChild<PressGuard *>(QString(), Qt::FindDirectChildrenOnly);
    return known ? *known : *new PressGuard(window);
}

PressGuard::PressGuard(QQuickWindow &window) : QObject(&window) {
    window.installEventFilter(this);
}

void PressGuard::coverChanged() {
    m_spentPress = m_lastPress;
    m_spentKeys = m_heldKeys;
    Q_EMIT coverChanging();
}

bool PressGuard::eventFilter(QObject *watched, QEvent *event) {
    switch (event->type()) {
    case QEvent::MouseButtonPress:
        return mousePressed(static_cast<const QMouseEvent &>(*event));
    case QEvent::MouseButtonDblClick:
        // Comes after the second press.
        return m_droppedButtons.testFlag(static_cast<const QMouseEvent *>(event)->button());
    case QEvent::MouseButtonRelease:
        return mouseReleased(static_cast<const QMouseEvent &>(*event));
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TouchCancel:
        return touched(static_cast<const QTouchEvent &>(*event));
    case QEvent::KeyPress:
        return keyPressed(static_cast<const QKeyEvent &>(*event));
    case QEvent::KeyRelease:
        return keyReleased(static_cast<const QKeyEvent &>(*event));
    default:
        return QObject::eventFilter(watched, event);
    }
}

bool PressGuard::pressed(const Press &press) {
    const QStyleHints &hints = *QGuiApplication::styleHints();
    const int distance =
        press.isTouch ? hints.touchDoubleTapDistance() : hints.mouseDoubleClickDistance();
    if (m_spentPress && m_spentPress->isTouch == press.isTouch &&
        m_spentPress->button == press.button &&
        press.timestamp - m_spentPress->timestamp <
            static_cast<quint64>(hints.mouseDoubleClickInterval()) &&
        std::abs(press.position.x() - m_spentPress->position.x()) <= distance &&
        std::abs(press.position.y() - m_spentPress->position.y()) <= distance)
        return true;
    m_spentPress.reset();
    m_lastPress = press;
    return false;
}

bool PressGuard::mousePressed(const QMouseEvent &event) {
    const bool isDropped = pressed({.isTouch = false,
                                    .button = event.button(),
                                    .position = event.globalPosition(),
                                    .timestamp = event.timestamp()});
    m_droppedButtons.setFlag(event.button(), isDropped);
    return isDropped;
}

bool PressGuard::mouseReleased(const QMouseEvent &event) {
    const bool isDropped = m_droppedButtons.testFlag(event.button());
    m_droppedButtons.setFlag(event.button(), false);
    return isDropped;
}

bool PressGuard::touched(const QTouchEvent &event) {
    if (event.type() == QEvent::TouchBegin)
        m_isTouchDropped = pressed({.isTouch = true,
                                    .button = Qt::NoButton,
                                    .position = event.points().constFirst().globalPosition(),
                                    .timestamp = event.timestamp()});
    return m_isTouchDropped;
}

bool PressGuard::keyPressed(const QKeyEvent &event) {
    if (event.isAutoRepeat())
        return m_spentKeys.contains(event.key());
    m_spentKeys.remove(event.key());
    m_heldKeys.insert(event.key());
    return false;
}

bool PressGuard::keyReleased(const QKeyEvent &event) {
    if (event.isAutoRepeat())
        return m_spentKeys.contains(event.key());
    m_heldKeys.remove(event.key());
    return m_spentKeys.remove(event.key());
}

} // namespace tarne
