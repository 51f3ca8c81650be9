#include "HeatmapGrid.h"

#include "TARNEStyle.h"

#include <QPainter>

#include <cmath>

namespace tarne {

namespace {

constexpr int columns = 52;
constexpr int gridRows = 7;
constexpr double cornerRadius = 2;
constexpr double outlineWidth = 0.5;
constexpr double outlineOpacity = 0.2;
constexpr double step = HeatmapGrid::cellSize + HeatmapGrid::gap;

void paintCell(QPainter &painter, const QPointF &corner, const QColor &color) {
    const QRectF cell(corner, QSizeF(HeatmapGrid::cellSize, HeatmapGrid::cellSize));
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawRoundedRect(cell, cornerRadius, cornerRadius);
    QColor outline = SystemColors::gray;
    outline.setAlphaF(outlineOpacity);
    painter.setPen(QPen(outline, outlineWidth));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(cell, cornerRadius, cornerRadius);
}

} // namespace

HeatmapGrid::HeatmapGrid(QQuickItem *parent) : TextureItem(parent) {
    setImplicitSize(columns * step - gap, gridRows * step - gap);
}

void HeatmapGrid::setView(InsightsView *view) {
    if (m_view == view)
        return;
    if (m_view)
        m_view->disconnect(this);
    m_view = view;
    if (m_view)
        connect(m_view, &InsightsView::figuresChanged, this, [this] { repaint(); });
    repaint();
    Q_EMIT viewChanged();
}

QImage HeatmapGrid::paintPicture(double devicePixelRatio) {
    if (!m_view || width() <= 0 || height() <= 0)
        return {};
    QImage picture((size() * devicePixelRatio).toSize(), QImage::Format_ARGB32_Premultiplied);
    picture.setDevicePixelRatio(devicePixelRatio);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    for (const WeekData &week : m_view->weeklyData()) {
        double y = 0;
        for (const HeatmapDayData &day : week.days) {
            paintCell(painter, QPointF(week.weekIndex * step, y), InsightsView::heatmapColor(day));
            y += step;
        }
    }
    return picture;
}

} // namespace tarne
