// Blocks come at their moment, not at the next round one: the event loop's coarse timers, which
// save wake-ups, would gather what has to stay apart.

#include "QtRunLoop.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <memory>

using namespace std::chrono_literals;

namespace tarne::test {
namespace {

using Clock = std::chrono::steady_clock;

/// Coarse timers of a second are up to 50 ms late.
constexpr auto onTime = 4ms;

/// Serves the event loop until all are true, for a minute at most. A busy machine makes many
/// a block late, but not time after time.
template <std::size_t count>
void serveUntilAll(const std::array<bool, count> &flags) {
    const QDeadlineTimer deadline(60s);
    const auto isDone = [&] { return std::ranges::count(flags, true) == count; };
    while (!isDone() && !deadline.hasExpired())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 50);
    EXPECT_TRUE(isDone()) << std::ranges::count(flags, true);
}

TEST(QtRunLoopPunctuality, RepeatingTimersOfASecondFireEachInItsOwnPhase) {
    QtRunLoop loop;
    std::array<bool, 10> wasOnTime{};
    for (std::size_t i = 0; i < wasOnTime.size(); ++i) {
        loop.asyncAfter(i * 97ms, [&, i] {
            std::ignore = loop.scheduleRepeating(1s, [&, i, start = Clock::now()] {
                if ((Clock::now() - start) % 1s < onTime)
                    wasOnTime[i] = true;
            });
        });
    }
    serveUntilAll(wasOnTime);
}

TEST(QtRunLoopPunctuality, ADelayOfAnyPhaseEndsAtItsMoment) {
    // A loop a delay: on one loop the end of one would wake up the others.
    std::array<std::unique_ptr<QtRunLoop>, 10> loops;
    std::array<bool, 10> wasOnTime{};
    std::function<void(std::size_t)> wait = [&](std::size_t i) {
        const auto due = Clock::now() + 1s + i * 97ms;
        loops[i]->asyncAfter(due - Clock::now(), [&, i, due] {
            if (Clock::now() - due < onTime)
                wasOnTime[i] = true;
            else
                wait(i);
        });
    };
    for (std::size_t i = 0; i < loops.size(); ++i) {
        loops[i] = std::make_unique<QtRunLoop>();
        wait(i);
    }
    serveUntilAll(wasOnTime);
}

} // namespace
} // namespace tarne::test
