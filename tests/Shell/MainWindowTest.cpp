#include "MainWindow.h"

#include <QGuiApplication>
#include <QQmlEngine>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

namespace tarne::test {
namespace {

class MainWindowTest : public testing::Test {
protected:
    QQmlEngine engine;
    MainWindow window{&engine};
};

TEST_F(MainWindowTest, IsFramelessWhiteAndAtLeast800By600) {
    EXPECT_TRUE(window.flags() & Qt::FramelessWindowHint);
    EXPECT_EQ(window.color(), QColor(Qt::white));
    EXPECT_EQ(window.minimumSize(), QSize(800, 600));
}

TEST_F(MainWindowTest, OffersNoZoomAndNoFullScreen) {
    EXPECT_FALSE(window.flags() & Qt::WindowMaximizeButtonHint);
    EXPECT_FALSE(window.flags() & Qt::WindowFullscreenButtonHint);
}

TEST_F(MainWindowTest, BeginsInTheMiddleOfItsScreenAndNoLargerThanThat) {
    ASSERT_EQ(window.screen()->availableGeometry(), QRect(0, 0, 800, 800));
    window.placeOnScreen();
    EXPECT_EQ(window.geometry(), QRect(0, 50, 800, 700));
}

TEST_F(MainWindowTest, TakesWhatIsAvailableOfASmallerScreen) {
    const QSize wanted = MainWindow::contentSize;
    EXPECT_EQ(MainWindow::placeWithin(QRect(0, 30, 1920, 1050), wanted),
              QRect(460, 205, 1000, 700));
    EXPECT_EQ(MainWindow::placeWithin(QRect(0, 30, 1366, 584), wanted), QRect(183, 30, 1000, 584));
    EXPECT_EQ(MainWindow::placeWithin(QRect(60, 0, 900, 640), wanted), QRect(60, 0, 900, 640));
    EXPECT_EQ(MainWindow::placeWithin(QRect(60, 20, 580, 340), wanted), QRect(60, 20, 580, 340));
}

TEST_F(MainWindowTest, UndoesAZoomAndAFullScreenFromOutside) {
    window.placeOnScreen();
    window.show();
    window.setWindowStates(Qt::WindowMaximized);
    QCoreApplication::processEvents();
    EXPECT_EQ(window.windowStates(), Qt::WindowNoState);
    window.setWindowStates(Qt::WindowFullScreen);
    QCoreApplication::processEvents();
    EXPECT_EQ(window.windowStates(), Qt::WindowNoState);
}

TEST_F(MainWindowTest, ClosingHidesItAndPresentingShowsItAgain) {
    QSignalSpy shown(&window, &MainWindow::shown);
    QSignalSpy closed(&window, &MainWindow::closed);
    window.show();
    EXPECT_EQ(shown.size(), 1);
    window.close();
    EXPECT_EQ(closed.size(), 1);
    EXPECT_FALSE(window.isVisible());
    window.present();
    EXPECT_TRUE(window.isVisible());
    EXPECT_EQ(shown.size(), 2);
}

TEST_F(MainWindowTest, SettingThePropertiesAgainMovesNothing) {
    window.placeOnScreen();
    window.show();
    QCoreApplication::processEvents();
    const QRect before = window.geometry();
    window.applyProperties();
    QCoreApplication::processEvents();
    EXPECT_EQ(window.geometry(), before);
    EXPECT_TRUE(window.isVisible());
}

/// A place of the window, and the cursor of what can be dragged there.
struct Place {
    const char *name;
    QPoint at;
    Qt::CursorShape shape;
};

class MainWindowEdges : public testing::TestWithParam<Place> {};

TEST_P(MainWindowEdges, ShowWhereADragResizes) {
    QQmlEngine engine;
    MainWindow window(&engine);
    window.resize(1000, 700);
    window.show();
    QTest::mouseMove(&window, {500, 350});
    QTest::mouseMove(&window, GetParam().at);
    EXPECT_EQ(window.cursor().shape(), GetParam().shape);
    QTest::mouseMove(&window, {500, 350});
    EXPECT_EQ(window.cursor().shape(), Qt::ArrowCursor);
}

INSTANTIATE_TEST_SUITE_P(Places, MainWindowEdges,
                         testing::Values(Place{"Left", {0, 350}, Qt::SizeHorCursor},
                                         Place{"Right", {999, 350}, Qt::SizeHorCursor},
                                         Place{"Top", {500, 0}, Qt::SizeVerCursor},
                                         Place{"Bottom", {500, 699}, Qt::SizeVerCursor},
                                         Place{"TopLeft", {4, 4}, Qt::SizeFDiagCursor},
                                         Place{"BottomRight", {995, 695}, Qt::SizeFDiagCursor},
                                         Place{"TopRight", {995, 4}, Qt::SizeBDiagCursor},
                                         Place{"BottomLeft", {4, 695}, Qt::SizeBDiagCursor},
                                         Place{"InsideTheLeft", {5, 350}, Qt::ArrowCursor},
                                         Place{"InsideTheRight", {994, 350}, Qt::ArrowCursor}),
                         [](const auto &place) { return place.param.name; });

} // namespace
} // namespace tarne::test
