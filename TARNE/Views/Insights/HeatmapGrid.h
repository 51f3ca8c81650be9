#pragma once

#include "InsightsView.h"
#include "TextureItem.h"

#include <QPointer>

namespace tarne {

/// The cells of the heat map, all of them one picture: 52 columns of seven, of a fixed size. They
/// do not react to the pointer.
class HeatmapGrid : public tarne::TextureItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(tarne::InsightsView *view READ view WRITE setView NOTIFY viewChanged REQUIRED FINAL)

public:
    static constexpr double cellSize = 15;
    static constexpr double gap = 2;

    explicit HeatmapGrid(QQuickItem *parent = nullptr);

    [[nodiscard]] InsightsView *view() const { return m_view; }
    void setView(InsightsView *view);

Q_SIGNALS:
    void viewChanged();

protected:
    QImage paintPicture(double devicePixelRatio) override;

private:
    QPointer<InsightsView> m_view;
};

} // namespace tarne
