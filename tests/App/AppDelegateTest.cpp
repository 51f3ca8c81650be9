#include "AppDelegate.h"
#include "MainWindow.h"

#include <QQmlEngine>
#include <QStringList>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

using testing::ElementsAre;

class AppDelegateTest : public testing::Test {
protected:
    QStringList calls;
    AppDelegate delegate{
        {.start = [this] { calls += u"start"_s; }, .stop = [this] { calls += u"stop"_s; }}};
};

TEST_F(AppDelegateTest, StartsTheServerAtLaunchAlsoWithoutAWindow) {
    delegate.applicationDidFinishLaunching(nullptr);
    EXPECT_THAT(calls, ElementsAre(u"start"_s));
}

TEST_F(AppDelegateTest, TreatsTheWindowAfterTheServerHasStarted) {
    QQmlEngine engine;
    MainWindow window(&engine);
    window.setMinimumSize({1, 1});
    window.setFlag(Qt::FramelessWindowHint, false);
    window.setColor(Qt::black);
    QSize minimumAtStart;
    AppDelegate watching({.start = [&] { minimumAtStart = window.minimumSize(); }, .stop = {}});
    watching.applicationDidFinishLaunching(&window);
    EXPECT_EQ(minimumAtStart, QSize(1, 1));
    EXPECT_EQ(window.minimumSize(), QSize(800, 600));
    EXPECT_TRUE(window.flags() & Qt::FramelessWindowHint);
    EXPECT_EQ(window.color(), QColor(Qt::white));
}

TEST_F(AppDelegateTest, LivesOnWhenTheLastWindowCloses) {
    EXPECT_FALSE(delegate.applicationShouldTerminateAfterLastWindowClosed());
}

TEST_F(AppDelegateTest, TerminatesWithoutAQuestionAndStopsTheServer) {
    EXPECT_TRUE(delegate.applicationShouldTerminate());
    EXPECT_THAT(calls, ElementsAre());
    delegate.applicationWillTerminate();
    EXPECT_THAT(calls, ElementsAre(u"stop"_s));
}

} // namespace
} // namespace tarne::test
