#pragma once

#include <QColor>
#include <QImage>
#include <QSizeF>

namespace tarne {

/// How far the blur of a shadow reaches beyond the shape that casts it, in points; `radius` is the
/// radius that the looks name, twice the deviation of the bell curve behind it.
[[nodiscard]] double blurExtent(double radius);

/// How much of a half plane's shadow is left at `distance` points outside its edge (negative:
/// inside), from 1 to 0. A radius of 0 is a hard edge, smoothed over one point.
[[nodiscard]] double blurCoverage(double distance, double radius);

/// The shadow of a rounded rectangle of `box` points, in device pixels, `blurExtent` wider on all
/// four sides.
[[nodiscard]] QImage blurredBox(const QSizeF &box, double cornerRadius, double radius,
                                const QColor &color, double devicePixelRatio);

} // namespace tarne
