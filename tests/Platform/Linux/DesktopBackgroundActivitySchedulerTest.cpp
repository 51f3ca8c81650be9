#include "DesktopBackgroundActivityScheduler.h"

#include "EventLoop.h"
#include "ManualTime.h"
#include "PrivateBus.h"

#include <QDBusArgument>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tarne::test {
namespace {

using namespace test;

const QString service = u"org.freedesktop.login1"_s;
const QString manager = u"org.freedesktop.login1.Manager"_s;

class ADesktopBackgroundActivity : public testing::Test {
protected:
    void startLogind() { m_logind = MockService::fromTemplate(m_bus, u"logind"_s, service); }

    struct Inhibitor {
        QString what, who, why, mode;
    };

    QList<Inhibitor> inhibitors() {
        QList<Inhibitor> found;
        const auto list =
            m_logind->call(manager, u"ListInhibitors"_s).constFirst().value<QDBusArgument>();
        list.beginArray();
        while (!list.atEnd()) {
            Inhibitor one;
            uint user = 0;
            uint process = 0;
            list.beginStructure();
            list >> one.what >> one.who >> one.why >> one.mode >> user >> process;
            list.endStructure();
            found += one;
        }
        return found;
    }
    bool waitForInhibitors(int count) {
        return serveUntil([&] { return inhibitors().size() == count; });
    }

    PrivateBus m_bus;
    std::unique_ptr<MockService> m_logind;
    ManualTime m_time;
    DesktopBackgroundActivityScheduler m_scheduler{m_bus.connect(), m_time};
    std::unique_ptr<BackgroundActivity> m_activity = m_scheduler.makeActivity(u"com.tarne.timer"_s);
    BackgroundActivity::Finished m_finish;
};

TEST_F(ADesktopBackgroundActivity, KeepsTheIdleDesktopFromSuspending) {
    startLogind();
    m_activity->schedule([](const auto &) {});
    ASSERT_TRUE(waitForInhibitors(1));
    const Inhibitor inhibitor = inhibitors().constFirst();
    EXPECT_EQ(inhibitor.what, u"idle"_s);
    EXPECT_EQ(inhibitor.who, u"TARNE"_s);
    EXPECT_EQ(inhibitor.why, u"com.tarne.timer"_s);
    EXPECT_EQ(inhibitor.mode, u"block"_s);
}

TEST_F(ADesktopBackgroundActivity, RunsItsBlockOnceOnTheMainQueue) {
    startLogind();
    int runs = 0;
    m_activity->schedule([&](const auto &) { ++runs; });
    EXPECT_EQ(runs, 0);
    m_time.advance(1h);
    EXPECT_EQ(runs, 1);
}

TEST_F(ADesktopBackgroundActivity, LetsGoWhenItIsFinished) {
    startLogind();
    m_activity->schedule([&](auto finish) { m_finish = finish; });
    m_time.runPending();
    ASSERT_TRUE(waitForInhibitors(1));
    m_finish();
    EXPECT_TRUE(waitForInhibitors(0));
}

TEST_F(ADesktopBackgroundActivity, LetsGoWhenItIsInvalidatedAsOftenAsOneLikes) {
    startLogind();
    m_activity->schedule([&](auto finish) { m_finish = finish; });
    m_time.runPending();
    ASSERT_TRUE(waitForInhibitors(1));
    m_activity->invalidate();
    m_activity->invalidate();
    EXPECT_TRUE(waitForInhibitors(0));
    m_finish(); // Reported later: ignored.
}

TEST_F(ADesktopBackgroundActivity, LetsGoWhenItIsDestroyed) {
    startLogind();
    m_activity->schedule([](const auto &) {});
    ASSERT_TRUE(waitForInhibitors(1));
    m_activity.reset();
    EXPECT_TRUE(waitForInhibitors(0));
}

TEST_F(ADesktopBackgroundActivity, IsNotRunWhenItIsInvalidatedBefore) {
    int runs = 0;
    m_activity->schedule([&](const auto &) { ++runs; });
    m_activity->invalidate();
    m_time.advance(1h);
    EXPECT_EQ(runs, 0);
}

TEST_F(ADesktopBackgroundActivity, ALockThatComesAfterItsEndIsGivenBack) {
    startLogind();
    m_logind->hang();
    m_activity->schedule([&](auto finish) { m_finish = finish; });
    m_time.runPending();
    m_finish();
    m_logind->resume();
    EXPECT_TRUE(m_logind->waitForCalls(u"Inhibit"_s, 1));
    EXPECT_TRUE(waitForInhibitors(0));
}

TEST_F(ADesktopBackgroundActivity, RunsWithoutLogind) {
    int runs = 0;
    m_activity->schedule([&](auto finish) {
        ++runs;
        finish();
    });
    m_time.runPending();
    EXPECT_EQ(runs, 1);
}

TEST_F(ADesktopBackgroundActivity, AHangingLogindIsNotWaitedFor) {
    startLogind();
    m_logind->hang();
    EXPECT_LT(timeOf([&] { m_activity->schedule([](const auto &) {}); }), 100ms);
    m_logind->resume();
}

TEST_F(ADesktopBackgroundActivity, TakesALockThatComesLate) {
    startLogind();
    m_logind->hang();
    m_activity->schedule([](const auto &) {});
    EXPECT_FALSE(serveUntil([] { return false; }, 2500ms));
    m_logind->resume();
    EXPECT_TRUE(m_logind->waitForCalls(u"Inhibit"_s, 1));
    EXPECT_FALSE(serveUntil([&] { return inhibitors().isEmpty(); }, 500ms));
}

TEST_F(ADesktopBackgroundActivity, ARestartedLogindIsAskedAnew) {
    startLogind();
    m_activity->schedule([](const auto &) {});
    ASSERT_TRUE(waitForInhibitors(1));
    m_logind->kill();
    startLogind();
    EXPECT_TRUE(waitForInhibitors(1));
}

TEST(DesktopBackgroundActivityWithoutABus, RunsAllTheSame) {
    ManualTime time;
    DesktopBackgroundActivityScheduler scheduler(noBus(), time);
    const auto activity = scheduler.makeActivity(u"com.tarne.timer"_s);
    int runs = 0;
    activity->schedule([&](const auto &) { ++runs; });
    time.runPending();
    EXPECT_EQ(runs, 1);
}

} // namespace
} // namespace tarne::test
