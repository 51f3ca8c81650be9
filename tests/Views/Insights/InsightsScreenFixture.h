#pragma once

#include "HeatmapGrid.h"
#include "InsightsView.h"
#include "SessionFixture.h"
#include "UiDriver.h"

#include <memory>

namespace tarne::test {

/// The insights in a window, over a real controller and a manual clock, on 2026-03-02, a Monday, at
/// noon.
class InsightsScreenTest : public SessionTest {
protected:
    static CurrentCalendar calendar() {
        return [] { return Calendar(QTimeZone::utc(), QLocale(QStringLiteral("en_US"))); };
    }
    InsightsView &view() {
        if (!m_view)
            m_view = std::make_unique<InsightsView>(controller(), time, calendar());
        return *m_view;
    }
    /// The window; made on first use, so that a test can prepare the store.
    UiDriver &screen(const QSize &size = QSize(1000, 800)) {
        if (!m_screen) {
            m_screen = std::make_unique<UiDriver>(
                QUrl(QStringLiteral("qrc:/qt/qml/TARNE/Views/InsightsScreen.qml")),
                QVariantMap{{QStringLiteral("view"), QVariant::fromValue(&view())}}, size);
        }
        return *m_screen;
    }
    const HeatmapGrid &grid() { return *screen().root()->findChild<HeatmapGrid *>(); }
    /// The upper left corner of a cell in the window, column 0 and row 0 being the oldest Sunday.
    QPoint cornerOfCell(int column, int row) {
        constexpr double step = HeatmapGrid::cellSize + HeatmapGrid::gap;
        return grid().mapToScene(QPointF(column * step, row * step)).toPoint();
    }
    /// What the middle of a cell looks like.
    QColor cell(int column, int row) {
        return screen().picture().pixelColor(cornerOfCell(column, row) + QPoint(7, 7));
    }
    /// A translucent colour as it is seen on a ground.
    static QColor on(const QColor &ground, const QColor &color) {
        const auto blend = [&](float under, float over) {
            return under + (over - under) * color.alphaF();
        };
        return QColor::fromRgbF(blend(ground.redF(), color.redF()),
                                blend(ground.greenF(), color.greenF()),
                                blend(ground.blueF(), color.blueF()));
    }
    static QColor onWhite(const QColor &color) { return on(Qt::white, color); }

private:
    std::unique_ptr<InsightsView> m_view;
    std::unique_ptr<UiDriver> m_screen;
};

MATCHER_P(LooksLike, color, "") {
    return std::abs(arg.red() - color.red()) <= 2 && std::abs(arg.green() - color.green()) <= 2 &&
           std::abs(arg.blue() - color.blue()) <= 2;
}

} // namespace tarne::test
