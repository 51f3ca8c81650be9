#include "UiDriver.h"

#include <gtest/gtest.h>

#include <cmath>

// Runs twice: at 100 % and, by an environment that only a program's start can set, at 125 %.

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

/// A shape on white, cut out of a picture of the window, in device pixels.
class LooksAtEveryScale : public testing::Test {
protected:
    static QImage draw(const QString &qml, const QRectF &points) {
        UiDriver ui(u"import QtQuick\nimport TARNE.Styling\nRectangle { "_s + qml + u" }"_s,
                    QSize(440, 300));
        const QImage picture = ui.picture();
        const double ratio = ui.view().effectiveDevicePixelRatio();
        return picture.copy(
            QRectF(points.topLeft() * ratio, points.size() * ratio).toAlignedRect());
    }
    static int darkness(const QImage &picture, int x, int y) {
        return 255 - picture.pixelColor(x, y).green();
    }
    static int darkest(const QImage &picture) {
        int most = 0;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x)
                most = std::max(most, darkness(picture, x, y));
        }
        return most;
    }
    /// Expects a bar across the whole picture, whose two ends are round and alike.
    static void expectRoundBar(const QImage &picture) {
        const int full = darkest(picture);
        const int right = picture.width() - 1;
        ASSERT_GT(full, 30);
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x <= right / 2; ++x) {
                EXPECT_NEAR(darkness(picture, x, y), darkness(picture, right - x, y), full / 8)
                    << x << ',' << y;
            }
        }
        const int middle = picture.height() / 2;
        EXPECT_GT(darkness(picture, 0, middle), full / 2);
        EXPECT_LT(darkness(picture, 0, 0), full / 2);
        EXPECT_LT(darkness(picture, 0, picture.height() - 1), full / 2);
        EXPECT_EQ(darkness(picture, picture.width() / 2, middle), full);
    }
};

TEST_F(LooksAtEveryScale, ASheetsDragIndicatorIsABarWithTwoRoundEnds) {
    expectRoundBar(draw(u"SheetPanel { x: 8; y: 3; width: 436 - 16; hasDragIndicator: true; color: "
                        "'white'; shadowColor: 'transparent' }"_s,
                        QRectF(200, 8, 36, 5)));
}

TEST_F(LooksAtEveryScale, AProgressBarsTrackAndItsFullValueAreBarsWithTwoRoundEnds) {
    expectRoundBar(draw(u"ProgressBar { x: 40; y: 40 }"_s, QRectF(40, 40, 80, 6)));
    expectRoundBar(draw(u"ProgressBar { x: 40; y: 40; value: 1 }"_s, QRectF(40, 40, 80, 6)));
}

TEST_F(LooksAtEveryScale, AProgressBarsValueIsABarWithTwoRoundEnds) {
    expectRoundBar(draw(u"ProgressBar { x: 40; y: 40; value: 0.5; Component.onCompleted: "
                        "children[0].visible = false }"_s,
                        QRectF(40, 40, 40, 6)));
}

} // namespace
} // namespace tarne::test
