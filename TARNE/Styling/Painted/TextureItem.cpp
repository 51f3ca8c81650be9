#include "TextureItem.h"

#include <QQuickWindow>
#include <QSGImageNode>

namespace tarne {

TextureItem::TextureItem(QQuickItem *parent) : QQuickItem(parent) {
    setFlag(ItemHasContents);
}

QRectF TextureItem::pictureRect() const {
    return boundingRect();
}

void TextureItem::repaint() {
    m_isPictureStale = true;
    polish();
}

double TextureItem::devicePixelRatio() const {
    return window() ? window()->effectiveDevicePixelRatio() : 1.0;
}

void TextureItem::updatePolish() {
    // What is hidden is painted when it comes into sight.
    if (!isVisible())
        return;
    m_isPictureStale = false;
    m_picture = pictureRect().isEmpty() ? QImage() : paintPicture(devicePixelRatio());
    m_isTextureStale = true;
    update();
}

QSGNode *TextureItem::updatePaintNode(QSGNode *node, UpdatePaintNodeData *) {
    if (m_picture.isNull()) {
        delete node;
        return nullptr;
    }
    auto *image = static_cast<QSGImageNode *>(node);
    if (!image) {
        image = window()->createImageNode();
        image->setOwnsTexture(true);
        image->setFiltering(QSGTexture::Linear);
        m_isTextureStale = true;
    }
    if (m_isTextureStale) {
        image->setTexture(window()->createTextureFromImage(m_picture));
        m_isTextureStale = false;
    }
    image->setRect(pictureRect());
    return image;
}

void TextureItem::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) {
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    if (newGeometry.size() != oldGeometry.size())
        repaint();
}

void TextureItem::itemChange(ItemChange change, const ItemChangeData &value) {
    if (change == ItemDevicePixelRatioHasChanged || (change == ItemSceneChange && value.window))
        repaint();
    if (change == ItemVisibleHasChanged && value.boolValue && m_isPictureStale)
        polish();
    QQuickItem::itemChange(change, value);
}

} // namespace tarne
