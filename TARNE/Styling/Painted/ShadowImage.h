#pragma once

#include <QColor>
#include <QImage>
#include <QQuickItem>

namespace tarne {

/// The soft shadow of a rounded rectangle, without a shader: as large as the shape that casts it
/// and placed behind it, it draws beyond its own edges. Only the corners are painted, once; the
/// sides are stretched from them, and the middle, which the shape covers, is left out.
class ShadowImage : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(QColor color MEMBER m_color WRITE setColor NOTIFY looksChanged FINAL)
    /// The corner radius of the shape.
    Q_PROPERTY(
        double cornerRadius MEMBER m_cornerRadius WRITE setCornerRadius NOTIFY looksChanged FINAL)
    /// The blur radius as the looks name it, in points.
    Q_PROPERTY(double blurRadius MEMBER m_blurRadius WRITE setBlurRadius NOTIFY looksChanged FINAL)
    Q_PROPERTY(double offsetX MEMBER m_offsetX WRITE setOffsetX NOTIFY looksChanged FINAL)
    Q_PROPERTY(double offsetY MEMBER m_offsetY WRITE setOffsetY NOTIFY looksChanged FINAL)

public:
    explicit ShadowImage(QQuickItem *parent = nullptr);

    void setColor(const QColor &color);
    void setCornerRadius(double radius);
    void setBlurRadius(double radius);
    void setOffsetX(double offset);
    void setOffsetY(double offset);

Q_SIGNALS:
    void looksChanged();

protected:
    void updatePolish() override;
    QSGNode *updatePaintNode(QSGNode *node, UpdatePaintNodeData *data) override;
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;
    void itemChange(ItemChange change, const ItemChangeData &value) override;

private:
    template <typename Value>
    void assign(Value &member, const Value &value);

    QColor m_color;
    double m_cornerRadius = 0;
    double m_blurRadius = 0;
    double m_offsetX = 0;
    double m_offsetY = 0;

    QImage m_picture;
    /// The width of the corners of `m_picture` in points, or 0 where it shows the whole shadow.
    double m_cornerWidth = 0;
};

} // namespace tarne
