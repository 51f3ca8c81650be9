#include "BlurredShape.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <numbers>

namespace tarne {
namespace {

/// Blurring rounds a corner off; the distance to a rounder box is a close stand-in for the real
/// convolution, which has no closed form.
double blurredCornerRadius(double cornerRadius, double radius) {
    return std::hypot(cornerRadius, radius * 0.6);
}

/// The distance from (x, y), reckoned from the middle, to the edge of a rounded box; negative
/// inside.
double distanceToBox(double x, double y, const QSizeF &box, double cornerRadius) {
    const double reach = std::min({cornerRadius, box.width() / 2, box.height() / 2});
    const double dx = std::abs(x) - box.width() / 2 + reach;
    const double dy = std::abs(y) - box.height() / 2 + reach;
    const double outside = std::hypot(std::max(dx, 0.0), std::max(dy, 0.0));
    const double inside = std::min(std::max(dx, dy), 0.0);
    return outside + inside - reach;
}

/// The share of a bell curve that lies more than `deviations` to the right of its middle. Read from
/// a table, which is right to a millionth: working it out each time takes ten times as long.
double upperTail(double deviations) {
    constexpr double end = 5;
    constexpr int steps = 2000;
    static const auto table = [] {
        std::array<double, 2 * steps + 2> tails{};
        for (int i = 0; i <= 2 * steps + 1; ++i)
            tails.at(static_cast<std::size_t>(i)) =
                0.5 * std::erfc((i - steps) * end / steps / std::numbers::sqrt2);
        return tails;
    }();
    const double place = (std::clamp(deviations, -end, end) / end + 1) * steps;
    const auto before = static_cast<std::size_t>(place);
    return std::lerp(table.at(before), table.at(before + 1), place - static_cast<double>(before));
}

} // namespace

double blurExtent(double radius) {
    return std::ceil(radius * 1.5);
}

double blurCoverage(double distance, double radius) {
    if (radius <= 0)
        return std::clamp(0.5 - distance, 0.0, 1.0);
    const double deviation = radius / 2;
    return upperTail(distance / deviation);
}

QImage blurredBox(const QSizeF &box, double cornerRadius, double radius, const QColor &color,
                  double devicePixelRatio) {
    const double extent = blurExtent(radius);
    const QSizeF whole(box.width() + 2 * extent, box.height() + 2 * extent);
    QImage image((whole * devicePixelRatio).toSize(), QImage::Format_ARGB32_Premultiplied);
    const double rounding = blurredCornerRadius(cornerRadius, radius);
    for (int row = 0; row < image.height(); ++row) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(row));
        const double y = (row + 0.5) / devicePixelRatio - whole.height() / 2;
        for (int column = 0; column < image.width(); ++column) {
            const double x = (column + 0.5) / devicePixelRatio - whole.width() / 2;
            const double coverage = blurCoverage(distanceToBox(x, y, box, rounding), radius);
            const int alpha = static_cast<int>(std::lround(coverage * color.alpha()));
            line[column] = qPremultiply(qRgba(color.red(), color.green(), color.blue(), alpha));
        }
    }
    return image;
}

} // namespace tarne
