#include "RoundedBox.h"

#include <QPainter>
#include <QPainterPath>
#include <QQuickWindow>

namespace tarne {

template <typename Value>
void RoundedBox::assign(Value &member, const Value &value) {
    if (member == value)
        return;
    member = value;
    repaint();
    Q_EMIT looksChanged();
}

void RoundedBox::setColor(const QColor &color) {
    assign(m_color, color);
}
void RoundedBox::setBottomColor(const QColor &color) {
    assign(m_bottomColor, color);
}
void RoundedBox::setOutlineColor(const QColor &color) {
    assign(m_outlineColor, color);
}
void RoundedBox::setOutlineWidth(double width) {
    assign(m_outlineWidth, width);
}
void RoundedBox::setRadius(double radius) {
    assign(m_radius, radius);
}

QRectF RoundedBox::pictureRect() const {
    const double ratio = window() ? window()->effectiveDevicePixelRatio() : 1.0;
    return {QPointF(), QSizeF((size() * ratio).toSize()) / ratio};
}

QImage RoundedBox::paintPicture(double devicePixelRatio) {
    const QRectF box = pictureRect();
    QImage image((box.size() * devicePixelRatio).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    image.setDevicePixelRatio(devicePixelRatio);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);

    const double radius = std::min({m_radius, box.width() / 2, box.height() / 2});
    QBrush fill(m_color);
    if (m_bottomColor.isValid()) {
        QLinearGradient gradient(box.topLeft(), box.bottomLeft());
        gradient.setColorAt(0, m_color);
        gradient.setColorAt(1, m_bottomColor);
        fill = gradient;
    }
    QPainterPath shape;
    shape.addRoundedRect(box, radius, radius);
    painter.fillPath(shape, fill);

    if (m_outlineWidth > 0) {
        const double inset = m_outlineWidth / 2;
        painter.setPen(QPen(m_outlineColor, m_outlineWidth));
        painter.drawRoundedRect(box.adjusted(inset, inset, -inset, -inset), radius - inset,
                                radius - inset);
    }
    return image;
}

} // namespace tarne
