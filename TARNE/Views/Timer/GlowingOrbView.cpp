#include "GlowingOrbView.h"

#include "BlurredShape.h"
#include "TARNEStyle.h"

#include <QPainter>
#include <QQuickWindow>

#include <algorithm>
#include <cmath>

using namespace std::chrono_literals;

namespace tarne {
namespace {

/// Entries of the table of distances: fine enough that neighbours at the circle's edge are a
/// fiftieth of a pixel apart.
constexpr int glowEntries = 16384;

/// From the middle to where the glow ends at scale 1.0, in points.
double reach(const OrbLook &look) {
    return look.size / 2 + blurExtent(std::max(0.0, look.glowRadius));
}

/// The opacity of circle and glow together, `distance` points from the middle.
double orbCoverage(const OrbLook &look, double distance, double devicePixelRatio) {
    const double beyondEdge = distance - look.size / 2;
    const double circle = std::clamp(0.5 - beyondEdge * devicePixelRatio, 0.0, 1.0);
    return circle + (1 - circle) * blurCoverage(beyondEdge, look.glowRadius);
}

} // namespace

GlowingOrbView::GlowingOrbView(QQuickItem *parent) : AnimatedTexture(100ms, parent) {
    setImplicitSize(250, 250);
}

void GlowingOrbView::setProgress(double progress) {
    if (m_progress == progress || !std::isfinite(progress))
        return;
    m_progress = progress;
    // A moving orb takes the new look with its next frame, at most 100 ms away.
    if (!isAnimating())
        repaint();
    Q_EMIT progressChanged();
}

void GlowingOrbView::setActive(bool isActive) {
    if (m_isActive == isActive)
        return;
    m_isActive = isActive;
    if (isActive)
        startAnimations();
    else
        stopAnimations();
    Q_EMIT isActiveChanged();
}

void GlowingOrbView::setPaused(bool isPaused) {
    if (m_isPaused == isPaused)
        return;
    m_isPaused = isPaused;
    if (isPaused)
        stopPulse(0.3);
    else if (m_isActive)
        startAnimations();
    repaint();
    Q_EMIT isPausedChanged();
}

void GlowingOrbView::setStill(bool isStill) {
    if (m_isStill == isStill)
        return;
    m_isStill = isStill;
    updateTimer();
    repaint();
    Q_EMIT isStillChanged();
}

void GlowingOrbView::setOnScreen(bool isOnScreen) {
    if (m_isOnScreen == isOnScreen)
        return;
    m_isOnScreen = isOnScreen;
    if (!isOnScreen)
        m_hasAppeared = false;
    appear();
    Q_EMIT isOnScreenChanged();
}

void GlowingOrbView::startAnimations() {
    m_pulse.start();
    updateTimer();
    Q_EMIT pulseAnimationChanged();
}

void GlowingOrbView::stopAnimations() {
    stopPulse(0.5);
}

void GlowingOrbView::stopPulse(double seconds) {
    m_pulse.stop(seconds);
    updateTimer();
    Q_EMIT pulseAnimationChanged();
}

void GlowingOrbView::shownChanged(bool) {
    appear();
}

void GlowingOrbView::appear() {
    if (m_isOnScreen && isShown() && !std::exchange(m_hasAppeared, true))
        startAnimations();
}

void GlowingOrbView::itemChange(ItemChange change, const ItemChangeData &value) {
    // Made invisible, by its face of the screen, it appears anew the next time. A sheet above it
    // and a minimised or newly mapped window only hold it.
    if (change == ItemVisibleHasChanged && !value.boolValue)
        m_hasAppeared = false;
    AnimatedTexture::itemChange(change, value);
}

QRectF GlowingOrbView::pictureRect() const {
    const double half = std::ceil(reach(look()) * OrbPulse::largestScale) + 1;
    const QPointF middle(std::round(width() / 2), std::round(height() / 2));
    return {middle.x() - half, middle.y() - half, 2 * half, 2 * half};
}

void GlowingOrbView::updateLook(double devicePixelRatio) {
    const OrbLook now = look();
    if (m_paintedLook == now && m_paintedRatio == devicePixelRatio && !m_glow.empty())
        return;
    m_paintedLook = now;
    m_paintedRatio = devicePixelRatio;
    updateGlow();
    updateHighlight();
}

void GlowingOrbView::updateGlow() {
    m_glow.resize(glowEntries + 1);
    const OrbLook &now = m_paintedLook;
    const double end = reach(now);
    // A clock that was set back takes the progress below 0, and the intensity with it.
    const double opacity = std::clamp(now.intensity, 0.0, 1.0);
    for (int entry = 0; entry < glowEntries; ++entry) {
        const double distance = end * std::sqrt((entry + 0.5) / glowEntries);
        const double coverage = orbCoverage(now, distance, m_paintedRatio);
        const int alpha = static_cast<int>(std::lround(255 * opacity * coverage));
        m_glow[static_cast<std::size_t>(entry)] =
            qPremultiply(qRgba(now.color.red(), now.color.green(), now.color.blue(), alpha));
    }
    m_glow.back() = 0;
}

void GlowingOrbView::updateHighlight() {
    const QSizeF points = pictureRect().size();
    m_highlight = QImage((points * m_paintedRatio).toSize(), QImage::Format_ARGB32_Premultiplied);
    m_highlight.setDevicePixelRatio(m_paintedRatio);
    m_highlight.fill(Qt::transparent);
    QPainter painter(&m_highlight);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(std::max(0.0, m_paintedLook.intensity) * 0.3);
    painter.setPen(Qt::NoPen);
    painter.setBrush(SystemColors::white);
    const double offset = m_paintedLook.size * 0.1;
    const double radius = m_paintedLook.size * 0.3;
    painter.drawEllipse(QPointF(points.width() / 2 - offset, points.height() / 2 - offset), radius,
                        radius);
}

QImage GlowingOrbView::paintPicture(double devicePixelRatio) {
    updateLook(devicePixelRatio);
    QImage image(m_highlight.size(), QImage::Format_ARGB32_Premultiplied);
    const double end = reach(m_paintedLook) * devicePixelRatio * pulseScale();
    const auto entriesPerSquare = static_cast<float>(glowEntries / (end * end));
    const float last = glowEntries;
    const float middle = static_cast<float>(image.width()) / 2 - 0.5F;
    const int side = image.width();
    const int half = (side + 1) / 2;
    // One quarter is looked up; the others are its reflections.
    for (int row = 0; row < half; ++row) {
        auto *const line = reinterpret_cast<QRgb *>(image.scanLine(row));
        const float y = static_cast<float>(row) - middle;
        for (int column = 0; column < half; ++column) {
            const float x = static_cast<float>(column) - middle;
            const float entry = std::min((x * x + y * y) * entriesPerSquare, last);
            line[column] = m_glow[static_cast<std::size_t>(entry)];
        }
        std::reverse_copy(line, line + side / 2, line + half);
        const int opposite = side - 1 - row;
        if (opposite != row)
            std::copy_n(line, side, reinterpret_cast<QRgb *>(image.scanLine(opposite)));
    }

    image.setDevicePixelRatio(devicePixelRatio);
    QPainter(&image).drawImage(0, 0, m_highlight);
    return image;
}

} // namespace tarne
