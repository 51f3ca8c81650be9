#pragma once

#include "FormerFocus.h"
#include "WindowMoveArea.h"

#include <QPointer>

namespace tarne {

/// The layer under a modal panel. While `isPresented` it covers the whole of its window above all
/// that lay there before, and everything behind it is disabled: out of reach of the pointer, of the
/// Tab key and of assistive tools, and counted as not shown, so that no animation runs there.
/// Layers stack; each covers those presented before it, and takes over what one of these had
/// covered when that one goes first. The focus goes into the layer and, when it leaves, back to
/// where it was, for the reason it was there. It covers what the window is moved by, and moves it
/// in its place. The press that brings it up or takes it away presses nothing more (`PressGuard`).
class ModalLayer : public tarne::WindowMoveArea {
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(
        bool isPresented MEMBER m_isPresented WRITE setPresented NOTIFY isPresentedChanged FINAL)

public:
    explicit ModalLayer(QQuickItem *parent = nullptr);
    ~ModalLayer() override;

    void setPresented(bool isPresented);

    /// The layer that covers all others in `window`, or null.
    [[nodiscard]] static const ModalLayer *topmost(const QQuickWindow &window);

Q_SIGNALS:
    void isPresentedChanged();

protected:
    void itemChange(ItemChange change, const ItemChangeData &value) override;
    void wheelEvent(QWheelEvent *event) override;
    void hoverMoveEvent(QHoverEvent *event) override;

private:
    void cover();
    void uncover();
    void fillWindow();
    /// The layer that has covered this one, or null.
    [[nodiscard]] ModalLayer *layerAbove() const;

    bool m_isPresented = false;
    /// What this layer has disabled, to be enabled again.
    QList<QPointer<QQuickItem>> m_covered;
    FormerFocus m_formerFocus;
    QPointer<QQuickItem> m_content;
};

} // namespace tarne
