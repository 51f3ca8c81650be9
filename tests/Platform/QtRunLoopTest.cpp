#include "QtRunLoop.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>

#include <gtest/gtest.h>

#include <limits>
#include <thread>

using namespace std::chrono_literals;

namespace tarne {
namespace {

/// Serves the event loop until `done` holds, for twenty seconds at most.
void serveUntil(const std::function<bool()> &done) {
    const QDeadlineTimer deadline(20s);
    while (!done() && !deadline.hasExpired())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 50);
    ASSERT_TRUE(done());
}

TEST(QtRunLoop, RunsBlocksInTheOrderInWhichTheyWerePosted) {
    QtRunLoop loop;
    QString order;
    loop.async([&] { order += QLatin1Char('a'); });
    loop.async([&] { order += QLatin1Char('b'); });
    loop.async([&] { order += QLatin1Char('c'); });
    EXPECT_TRUE(order.isEmpty());
    serveUntil([&] { return order.size() == 3; });
    EXPECT_EQ(order, QStringLiteral("abc"));
}

TEST(QtRunLoop, RunsADelayedBlockThatFellDueBeforeOneThatWasPostedLater) {
    QtRunLoop loop;
    QString order;
    loop.asyncAfter(20ms, [&] { order += QLatin1Char('d'); });
    loop.asyncAfter(1ms, [&] { order += QLatin1Char('c'); });
    // A main thread that blocks past both moments.
    const QDeadlineTimer busy(30ms);
    while (!busy.hasExpired())
        std::this_thread::yield();
    loop.async([&] { order += QLatin1Char('p'); });
    serveUntil([&] { return order.size() == 3; });
    EXPECT_EQ(order, QStringLiteral("cdp"));
}

TEST(QtRunLoop, RunsABlockThatAnotherThreadPosts) {
    QtRunLoop loop;
    const auto mainThread = std::this_thread::get_id();
    std::thread::id ranOn;
    std::thread poster([&] { loop.async([&] { ranOn = std::this_thread::get_id(); }); });
    poster.join();
    serveUntil([&] { return ranOn != std::thread::id(); });
    EXPECT_EQ(ranOn, mainThread);
}

TEST(QtRunLoop, LetsAnEarlierBlockOvertakeOneThatIsWaitedFor) {
    QtRunLoop loop;
    QString order;
    loop.asyncAfter(60ms, [&] { order += QLatin1Char('2'); });
    loop.async([&] { loop.asyncAfter(5ms, [&] { order += QLatin1Char('1'); }); });
    serveUntil([&] { return order.size() == 2; });
    EXPECT_EQ(order, QStringLiteral("12"));
}

TEST(QtRunLoop, ABlockThatPostsItselfForEverDoesNotStopTheEventLoop) {
    QtRunLoop loop;
    std::function<void()> again = [&] { loop.async(again); };
    loop.async(again);
    int fired = 0;
    const auto timer = loop.scheduleRepeating(1ms, [&] { ++fired; });
    serveUntil([&] { return fired > 2; });
    loop.invalidate(timer);
}

TEST(QtRunLoop, ARepeatingTimerFiresUntilItIsInvalidatedFromItsOwnBlock) {
    QtRunLoop loop;
    int fired = 0;
    RunLoop::Timer timer = RunLoop::Timer::None;
    timer = loop.scheduleRepeating(1ms, [&] {
        if (++fired == 3)
            loop.invalidate(timer);
    });
    bool later = false;
    loop.asyncAfter(100ms, [&] { later = true; });
    serveUntil([&] { return later; });
    EXPECT_EQ(fired, 3);
}

TEST(QtRunLoop, ARepeatingTimerFiresAtWholeIntervalsAfterItsStartHoweverLateItIs) {
    const QtRunLoop::MonotonicTime due{10s};
    const auto nextFiring = [&](QtRunLoop::MonotonicTime::duration late) {
        return QtRunLoop::nextFiring(due, 1s, due + late) - due;
    };
    EXPECT_EQ(nextFiring(0s), 1s);
    EXPECT_EQ(nextFiring(1ms), 1s);
    EXPECT_EQ(nextFiring(999ms), 1s);
    EXPECT_EQ(nextFiring(1s), 2s) << "the one that was missed is not made up for";
    EXPECT_EQ(nextFiring(2400ms), 3s);
    EXPECT_EQ(nextFiring(48h + 1ms), 48h + 1s);
    EXPECT_EQ(nextFiring(-1ms), 0s) << "it is yet to come";
}

TEST(QtRunLoop, ARepeatingTimerKeepsItsPhaseWhenTheThreadWasBusy) {
    using Clock = std::chrono::steady_clock;
    constexpr auto interval = 100ms;
    QtRunLoop loop;
    const auto start = Clock::now();
    bool wasBusy = false;
    bool isInPhase = false;
    const auto timer = loop.scheduleRepeating(interval, [&] {
        const auto late = (Clock::now() - start) % interval;
        isInPhase = wasBusy && late < interval / 5;
        if (!std::exchange(wasBusy, true))
            std::this_thread::sleep_until(start + interval * 7 / 2);
    });
    // Any firing that is on time will do: one that has lost its phase is not, time after time.
    serveUntil([&] { return isInPhase; });
    loop.invalidate(timer);
}

TEST(QtRunLoop, InvalidatingAnUnknownTimerDoesNothing) {
    QtRunLoop loop;
    loop.invalidate(RunLoop::Timer::None);
    loop.invalidate(RunLoop::Timer{42});
}

TEST(QtRunLoop, ADelayOfAnyLengthHoldsNothingUp) {
    using Seconds = RunLoop::Seconds;
    // Beyond what a timer of Qt holds, what the clock's own ticks hold, and every number.
    for (const double delay : {3e6, 1e10, 1e300, std::numeric_limits<double>::infinity()}) {
        QtRunLoop loop;
        QString order;
        loop.asyncAfter(Seconds(delay), [&] { order += QLatin1Char('l'); });
        loop.asyncAfter(1ms, [&] { order += QLatin1Char('s'); });
        serveUntil([&] { return !order.isEmpty(); });
        // Once more, with nothing but the long delay to wait for.
        loop.async([&] { order += QLatin1Char('p'); });
        serveUntil([&] { return order.size() == 2; });
        EXPECT_EQ(order, QStringLiteral("sp")) << delay;
    }
}

TEST(QtRunLoop, ADelayThatIsNegativeOrNoNumberCountsAsNone) {
    QtRunLoop loop;
    QString order;
    loop.async([&] { order += QLatin1Char('a'); });
    loop.asyncAfter(RunLoop::Seconds(std::numeric_limits<double>::quiet_NaN()),
                    [&] { order += QLatin1Char('b'); });
    loop.asyncAfter(-1h, [&] { order += QLatin1Char('c'); });
    serveUntil([&] { return order.size() == 3; });
    EXPECT_EQ(order, QStringLiteral("abc"));
}

} // namespace
} // namespace tarne
