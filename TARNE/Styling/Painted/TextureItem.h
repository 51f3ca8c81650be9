#pragma once

#include <QImage>
#include <QQuickItem>

namespace tarne {

/// An item that shows one picture, painted on the GUI thread when its looks change and kept as a
/// texture, so that a scene that is scaled, faded or redrawn pays a blit and nothing else. Nothing
/// is painted while it is hidden. The edges are those of the raster painter, smooth on the software
/// scene graph as on a GPU.
class TextureItem : public QQuickItem {
    Q_OBJECT
    QML_ANONYMOUS

public:
    explicit TextureItem(QQuickItem *parent = nullptr);

protected:
    /// The picture in device pixels, premultiplied, or a null image for nothing. It covers
    /// `pictureRect()`.
    virtual QImage paintPicture(double devicePixelRatio) = 0;
    /// Where the picture lies in the item's coordinates; the item's own rectangle unless told
    /// otherwise. A shadow reaches beyond its item.
    [[nodiscard]] virtual QRectF pictureRect() const;
    /// To be called when what `paintPicture` reads has changed.
    void repaint();

    void updatePolish() override;
    QSGNode *updatePaintNode(QSGNode *node, UpdatePaintNodeData *data) override;
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;
    void itemChange(ItemChange change, const ItemChangeData &value) override;

private:
    [[nodiscard]] double devicePixelRatio() const;

    QImage m_picture;
    bool m_isPictureStale = true;
    bool m_isTextureStale = true;
};

} // namespace tarne
