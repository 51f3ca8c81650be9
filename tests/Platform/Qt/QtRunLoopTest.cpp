#include "QtRunLoop.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <string>
#include <thread>
#include <utility>
#include <vector>

using namespace std::chrono_literals;

namespace tarne::test {
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
    bool later = false;
    RunLoop::Timer timer = RunLoop::Timer::None;
    timer = loop.scheduleRepeating(1ms, [&] {
        if (++fired != 3)
            return;
        loop.invalidate(timer);
        loop.asyncAfter(100ms, [&] { later = true; });
    });
    serveUntil([&] { return later; });
    EXPECT_EQ(fired, 3);
}

TEST(QtRunLoop, ARepeatingTimerFiresAtWholeIntervalsAfterItsStartHoweverLateItIs) {
    const QtRunLoop::MonotonicTime due{10s};
    const auto lastFiring = [&](QtRunLoop::MonotonicTime::duration late) {
        return QtRunLoop::lastFiring(due, 1s, due + late) - due;
    };
    EXPECT_EQ(lastFiring(0s), 0s);
    EXPECT_EQ(lastFiring(1ms), 0s);
    EXPECT_EQ(lastFiring(999ms), 0s);
    EXPECT_EQ(lastFiring(1s), 1s);
    EXPECT_EQ(lastFiring(2400ms), 2s);
    EXPECT_EQ(lastFiring(48h + 1ms), 48h);
}

/// Blocks the thread for so long, on the processor.
void keepBusy(std::chrono::microseconds time) {
    const auto end = std::chrono::steady_clock::now() + time;
    while (std::chrono::steady_clock::now() < end) {
    }
}

/// One firing of a repeating timer.
struct Firing {
    char timer;
    std::chrono::steady_clock::time_point moment;
};

/// Two repeating timers of one interval, A made before B.
class TwoRepeatingTimers : public testing::Test {
protected:
    using Clock = std::chrono::steady_clock;

    ~TwoRepeatingTimers() override { stop(); }

    void stop() {
        for (const auto timer : std::exchange(m_timers, {}))
            m_loop.invalidate(timer);
        m_firings.clear();
    }

    /// `inFiring` runs in every firing of either.
    void make(std::chrono::milliseconds interval, std::chrono::microseconds apart,
              const std::function<void()> &inFiring) {
        m_start = Clock::now();
        for (const char name : {'A', 'B'}) {
            m_timers.push_back(m_loop.scheduleRepeating(interval, [=, this] {
                m_firings.push_back({name, Clock::now()});
                inFiring();
            }));
            keepBusy(apart);
        }
    }

    void awaitFirings(std::size_t count) {
        serveUntil([&] { return m_firings.size() >= count; });
    }

    std::string order() const {
        std::string order;
        for (const Firing &firing : m_firings)
            order += firing.timer;
        return order;
    }

    Clock::time_point m_start;
    std::vector<Firing> m_firings;

private:
    QtRunLoop m_loop;
    std::vector<RunLoop::Timer> m_timers;
};

TEST_F(TwoRepeatingTimers, NeverChangePlaces) {
    constexpr auto interval = 20ms;
    make(interval, 100us, [] { keepBusy(300us); });
    awaitFirings(400);
    // Where the machine itself stood still for an interval, one of the two has missed a turn.
    for (std::size_t i = 1; i < m_firings.size(); ++i) {
        const auto &[former, next] = std::pair(m_firings[i - 1], m_firings[i]);
        const bool stoodStill = next.moment - former.moment >= interval;
        ASSERT_TRUE(former.timer != next.timer || stoodStill) << order() << " at " << i;
    }
}

TEST_F(TwoRepeatingTimers, AreCaughtUpInTheOrderOfTheirLastMoments) {
    // A's first firing holds the thread until both have missed one: A's last moment is at 400 ms,
    // B's at 280 and at 480.
    // Where the machine itself stood still, other moments are the last, and it is tried again.
    const auto isInTime = [this](std::size_t firing, std::chrono::milliseconds latest) {
        return m_firings[firing].moment - m_start < latest;
    };
    for (int attempt = 0; attempt < 20; ++attempt) {
        stop();
        make(200ms, 80ms, [this] { std::this_thread::sleep_until(m_start + 500ms); });
        awaitFirings(3);
        if (isInTime(0, 280ms) && isInTime(1, 600ms))
            break;
    }
    EXPECT_EQ(order().substr(0, 3), "AAB");
}

/// Of the eleven firings behind a busy time of a timer, how many are on its grid.
std::ptrdiff_t onTimeBehindABusyTime() {
    using Clock = std::chrono::steady_clock;
    constexpr auto interval = 100ms;
    QtRunLoop loop;
    const auto start = Clock::now();
    std::vector<Clock::duration> behindTheGrid;
    const auto timer = loop.scheduleRepeating(interval, [&] {
        behindTheGrid.push_back((Clock::now() - start) % interval);
        if (behindTheGrid.size() == 1)
            std::this_thread::sleep_until(start + interval * 7 / 2);
    });
    // The second makes up for the busy time, half an interval behind the grid.
    serveUntil([&] { return behindTheGrid.size() == 13; });
    loop.invalidate(timer);
    return std::count_if(behindTheGrid.begin() + 2, behindTheGrid.end(),
                         [&](auto behind) { return behind < interval / 4; });
}

TEST(QtRunLoop, ARepeatingTimerKeepsItsPhaseWhenTheThreadWasBusy) {
    // A machine that stands still makes many late, but not time after time. A timer that counts
    // from the busy time is late every time.
    std::ptrdiff_t onTime = 0;
    for (int attempt = 0; attempt < 10 && onTime < 8; ++attempt)
        onTime = onTimeBehindABusyTime();
    EXPECT_GE(onTime, 8);
}

TEST(QtRunLoop, ARepeatingTimerGoesOnWhileABlockRunsAnEventLoopOfItsOwn) {
    QtRunLoop loop;
    int fired = 0;
    const auto timer = loop.scheduleRepeating(5ms, [&] { ++fired; });
    bool isDone = false;
    loop.async([&] {
        serveUntil([&] { return fired > 2; });
        isDone = true;
    });
    serveUntil([&] { return isDone; });
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
} // namespace tarne::test
