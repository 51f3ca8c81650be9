#include "ShadowImage.h"

#include "BlurredShape.h"
#include "TARNEStyle.h"

#include <QQuickWindow>
#include <QSGImageNode>

#include <array>
#include <memory>

namespace tarne {
namespace {

/// Owns the texture that its patches share.
class PatchesNode : public QSGNode {
public:
    void setTexture(QSGTexture *texture) { m_texture.reset(texture); }
    [[nodiscard]] QSGTexture *texture() const { return m_texture.get(); }

    void addPatch(QQuickWindow *window, const QRectF &target, const QRectF &source) {
        QSGImageNode *patch = window->createImageNode();
        patch->setTexture(m_texture.get());
        patch->setOwnsTexture(false);
        patch->setFiltering(QSGTexture::Linear);
        patch->setRect(target);
        patch->setSourceRect(source);
        patch->setFlag(OwnedByParent);
        appendChildNode(patch);
    }

private:
    std::unique_ptr<QSGTexture> m_texture;
};

} // namespace

ShadowImage::ShadowImage(QQuickItem *parent)
    : QQuickItem(parent), m_color(TARNEStyle::Colors::shadow) {
    setFlag(ItemHasContents);
}

template <typename Value>
void ShadowImage::assign(Value &member, const Value &value) {
    if (member == value)
        return;
    member = value;
    polish();
    Q_EMIT looksChanged();
}

void ShadowImage::setColor(const QColor &color) {
    assign(m_color, color);
}
void ShadowImage::setCornerRadius(double radius) {
    assign(m_cornerRadius, radius);
}
void ShadowImage::setBlurRadius(double radius) {
    assign(m_blurRadius, radius);
}
void ShadowImage::setOffsetX(double offset) {
    assign(m_offsetX, offset);
}
void ShadowImage::setOffsetY(double offset) {
    assign(m_offsetY, offset);
}

void ShadowImage::updatePolish() {
    const double ratio = window() ? window()->effectiveDevicePixelRatio() : 1.0;
    const double extent = blurExtent(m_blurRadius);
    // From here inwards along an edge the shadow no longer changes.
    const double corner = std::ceil(m_cornerRadius + m_blurRadius + 2 * extent);
    const bool isStretched = width() > 2 * corner + 1 && height() > 2 * corner + 1;
    m_cornerWidth = isStretched ? corner : 0;
    const QSizeF box =
        isStretched ? QSizeF(2 * (corner - extent) + 1, 2 * (corner - extent) + 1) : size();
    m_picture =
        box.isEmpty() ? QImage() : blurredBox(box, m_cornerRadius, m_blurRadius, m_color, ratio);
    update();
}

QSGNode *ShadowImage::updatePaintNode(QSGNode *node, UpdatePaintNodeData *) {
    // The patches are laid anew on every change: there are few, and changes are rare.
    delete node;
    if (m_picture.isNull())
        return nullptr;
    auto *patches = new PatchesNode;
    patches->setTexture(window()->createTextureFromImage(m_picture));

    const double extent = blurExtent(m_blurRadius);
    const QRectF whole =
        boundingRect().adjusted(-extent, -extent, extent, extent).translated(m_offsetX, m_offsetY);
    const QSizeF pixels = m_picture.size();
    if (m_cornerWidth == 0) {
        patches->addPatch(window(), whole, QRectF(QPointF(), pixels));
        return patches;
    }
    const double ratio = pixels.width() / (2 * m_cornerWidth + 1);
    const double cut = m_cornerWidth * ratio;
    const std::array targetX{whole.left(), whole.left() + m_cornerWidth,
                             whole.right() - m_cornerWidth, whole.right()};
    const std::array targetY{whole.top(), whole.top() + m_cornerWidth,
                             whole.bottom() - m_cornerWidth, whole.bottom()};
    const std::array source{0.0, cut, pixels.width() - cut, pixels.width()};
    for (std::size_t row = 0; row < 3; ++row) {
        for (std::size_t column = 0; column < 3; ++column) {
            if (row == 1 && column == 1)
                continue;
            patches->addPatch(window(),
                              QRectF(QPointF(targetX[column], targetY[row]),
                                     QPointF(targetX[column + 1], targetY[row + 1])),
                              QRectF(QPointF(source[column], source[row]),
                                     QPointF(source[column + 1], source[row + 1])));
        }
    }
    return patches;
}

void ShadowImage::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) {
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    if (newGeometry.size() != oldGeometry.size())
        polish();
}

void ShadowImage::itemChange(ItemChange change, const ItemChangeData &value) {
    if (change == ItemDevicePixelRatioHasChanged || (change == ItemSceneChange && value.window))
        polish();
    QQuickItem::itemChange(change, value);
}

} // namespace tarne
