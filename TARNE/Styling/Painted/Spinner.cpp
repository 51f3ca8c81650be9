#include "Spinner.h"

#include <QPainter>

using namespace std::chrono_literals;

namespace tarne {
namespace {

constexpr int spokes = 8;

} // namespace

Spinner::Spinner(QQuickItem *parent) : AnimatedTexture(100ms, parent) {
    setImplicitSize(32, 32);
}

void Spinner::advance(double) {
    m_step = (m_step + 1) % spokes;
}

QImage Spinner::paintPicture(double devicePixelRatio) {
    QImage image((size() * devicePixelRatio).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    image.setDevicePixelRatio(devicePixelRatio);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(width() / 2, height() / 2);
    painter.setPen(Qt::NoPen);
    const double half = std::min(width(), height()) / 2;
    const QRectF spoke(-half * 0.09, -half * 0.9, half * 0.18, half * 0.42);
    for (int index = 0; index < spokes; ++index) {
        const int age = (m_step - index + spokes) % spokes;
        painter.setBrush(QColor(0, 0, 0, 160 - age * 17));
        painter.save();
        painter.rotate(360.0 / spokes * index);
        painter.drawRoundedRect(spoke, spoke.width() / 2, spoke.width() / 2);
        painter.restore();
    }
    return image;
}

} // namespace tarne
