#pragma once

#include "TextureItem.h"

#include <QColor>

namespace tarne {

/// A rounded rectangle or, with a radius of half its side, a circle, filled plainly or with a
/// vertical gradient and outlined inside its edge. In place of Rectangle where something scales or
/// fades, or where it is only a few points high: the software scene graph draws the corners of a
/// scaled Rectangle with jags, and those of a small one out of place where a point is not a whole
/// number of pixels.
///
/// It is drawn in whole pixels: half a pixel at its right or lower edge would halve the outline.
class RoundedBox : public tarne::TextureItem {
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(QColor color MEMBER m_color WRITE setColor NOTIFY looksChanged FINAL)
    /// The colour at the bottom edge; without one the fill is plain.
    Q_PROPERTY(
        QColor bottomColor MEMBER m_bottomColor WRITE setBottomColor NOTIFY looksChanged FINAL)
    Q_PROPERTY(
        QColor outlineColor MEMBER m_outlineColor WRITE setOutlineColor NOTIFY looksChanged FINAL)
    Q_PROPERTY(
        double outlineWidth MEMBER m_outlineWidth WRITE setOutlineWidth NOTIFY looksChanged FINAL)
    Q_PROPERTY(double radius MEMBER m_radius WRITE setRadius NOTIFY looksChanged FINAL)

public:
    using TextureItem::TextureItem;

    void setColor(const QColor &color);
    void setBottomColor(const QColor &color);
    void setOutlineColor(const QColor &color);
    void setOutlineWidth(double width);
    void setRadius(double radius);

Q_SIGNALS:
    void looksChanged();

protected:
    QImage paintPicture(double devicePixelRatio) override;
    [[nodiscard]] QRectF pictureRect() const override;

private:
    template <typename Value>
    void assign(Value &member, const Value &value);

    QColor m_color = Qt::transparent;
    QColor m_bottomColor;
    QColor m_outlineColor = Qt::transparent;
    double m_outlineWidth = 0;
    double m_radius = 0;
};

} // namespace tarne
