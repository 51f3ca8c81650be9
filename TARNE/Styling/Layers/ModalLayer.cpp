#include "ModalLayer.h"

#include "PressGuard.h"

#include <QCursor>
#include <QQuickWindow>

namespace tarne {

ModalLayer::ModalLayer(QQuickItem *parent) : WindowMoveArea(parent) {
    setVisible(false);
    setFlag(ItemIsFocusScope);
    setAcceptedMouseButtons(Qt::AllButtons);
    setAcceptHoverEvents(true);
    setCursor(Qt::ArrowCursor);
}

ModalLayer::~ModalLayer() {
    uncover();
}

void ModalLayer::setPresented(bool isPresented) {
    if (m_isPresented == isPresented)
        return;
    m_isPresented = isPresented;
    if (isPresented)
        cover();
    else
        uncover();
    Q_EMIT isPresentedChanged();
}

const ModalLayer *ModalLayer::topmost(const QQuickWindow &window) {
    const ModalLayer *top = nullptr;
    for (const QQuickItem *const child : window.contentItem()->childItems()) {
        const auto *const layer = qobject_cast<const ModalLayer *>(child);
        if (layer && layer->m_content && (!top || layer->z() > top->z()))
            top = layer;
    }
    return top;
}

void ModalLayer::itemChange(ItemChange change, const ItemChangeData &value) {
    // It knows only the presses that it has seen.
    if (change == ItemSceneChange && value.window)
        PressGuard::of(*value.window);
    // Asked to appear before it had a window, it does so as soon as it has one.
    if (change == ItemSceneChange && value.window && m_isPresented && !m_content)
        QMetaObject::invokeMethod(this, &ModalLayer::cover, Qt::QueuedConnection);
    QQuickItem::itemChange(change, value);
}

void ModalLayer::cover() {
    if (!window() || m_content || !m_isPresented)
        return;
    PressGuard::of(*window()).coverChanged();
    m_content = window()->contentItem();
    m_formerFocus = FormerFocus(*window());
    const QList<QQuickItem *> siblings = m_content->childItems();
    for (QQuickItem *sibling : siblings) {
        if (sibling == this || !sibling->isEnabled())
            continue;
        sibling->setEnabled(false);
        m_covered.append(sibling);
    }
    setParentItem(m_content);
    // Behind none of its new siblings, whatever heights they ask for.
    double top = 0;
    for (const QQuickItem *sibling : siblings)
        top = std::max(top, sibling->z());
    setZ(top + 1);
    connect(m_content, &QQuickItem::widthChanged, this, &ModalLayer::fillWindow);
    connect(m_content, &QQuickItem::heightChanged, this, &ModalLayer::fillWindow);
    fillWindow();
    setVisible(true);
    forceActiveFocus(Qt::PopupFocusReason);
}

void ModalLayer::uncover() {
    if (!m_content)
        return;
    disconnect(m_content, nullptr, this, nullptr);
    if (m_content->window())
        PressGuard::of(*m_content->window()).coverChanged();
    ModalLayer *const above = layerAbove();
    m_content.clear();
    setVisible(false);
    if (above) {
        setEnabled(true);
        above->m_covered.removeAll(this);
        above->m_covered += std::exchange(m_covered, {});
        above->m_formerFocus = m_formerFocus;
        return;
    }
    for (const QPointer<QQuickItem> &item : std::exchange(m_covered, {})) {
        if (item)
            item->setEnabled(true);
    }
    m_formerFocus.giveBack();
}

ModalLayer *ModalLayer::layerAbove() const {
    for (QQuickItem *const child : m_content->childItems()) {
        auto *const layer = qobject_cast<ModalLayer *>(child);
        if (layer && layer->m_covered.contains(this))
            return layer;
    }
    return nullptr;
}

void ModalLayer::fillWindow() {
    setSize(m_content->size());
}

void ModalLayer::wheelEvent(QWheelEvent *event) {
    event->accept();
}
void ModalLayer::hoverMoveEvent(QHoverEvent *event) {
    event->accept();
}

} // namespace tarne
