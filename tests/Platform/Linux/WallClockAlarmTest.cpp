#include "WallClockAlarm.h"

#include "EventLoop.h"
#include "SystemClock.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

#include <cmath>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tarne::test {
namespace {

using namespace test;

/// What the kernel says of this process's only timer file.
QByteArray timerState() {
    const QDir descriptors(u"/proc/self/fd"_s);
    const auto names = descriptors.entryList(QDir::Files | QDir::System);
    for (const QString &name : names) {
        QFile info(u"/proc/self/fdinfo/"_s + name);
        if (!info.open(QIODevice::ReadOnly))
            continue;
        const QByteArray text = info.readAll();
        if (text.contains("settime flags"))
            return text;
    }
    return {};
}

TEST(WallClockAlarm, RingsOnceAtItsMoment) {
    const SystemClock clock;
    WallClockAlarm alarm;
    int rings = 0;
    QObject::connect(&alarm, &WallClockAlarm::rang, &alarm, [&] { ++rings; });
    const Date moment =
        Date::fromReferenceSeconds(std::floor(clock.now().secondsSinceReferenceDate()) + 1.0);
    alarm.set(moment);
    EXPECT_TRUE(serveUntil([&] { return rings > 0; }));
    EXPECT_GE(clock.now(), moment);
    EXPECT_LT(clock.now() - moment, 5.0);
    EXPECT_FALSE(serveUntil([&] { return rings > 1; }, 100ms));
}

TEST(WallClockAlarm, AMomentThatIsPastRingsAtOnce) {
    WallClockAlarm alarm;
    int rings = 0;
    QObject::connect(&alarm, &WallClockAlarm::rang, &alarm, [&] { ++rings; });
    for (const Date past : {SystemClock().now() - 60, Date::fromReferenceSeconds(-1e12)}) {
        rings = 0;
        alarm.set(past);
        EXPECT_TRUE(serveUntil([&] { return rings == 1; }));
    }
}

TEST(WallClockAlarm, AClearedAlarmDoesNotRing) {
    WallClockAlarm alarm;
    bool rang = false;
    QObject::connect(&alarm, &WallClockAlarm::rang, &alarm, [&] { rang = true; });
    alarm.set(SystemClock().now() - 60);
    alarm.clear();
    EXPECT_FALSE(serveUntil([&] { return rang; }, 100ms));
}

TEST(WallClockAlarm, AMomentBeyondTheKernelsTimeIsStillAhead) {
    WallClockAlarm alarm;
    bool rang = false;
    QObject::connect(&alarm, &WallClockAlarm::rang, &alarm, [&] { rang = true; });
    alarm.set(Date::fromReferenceSeconds(1e300));
    EXPECT_FALSE(serveUntil([&] { return rang; }, 100ms));
}

TEST(WallClockAlarm, WaitsOnTheWallClockAndIsToldWhenThatIsSet) {
    WallClockAlarm alarm;
    alarm.set(SystemClock().now() + 3600);
    const QByteArray state = timerState();
    EXPECT_TRUE(state.contains("clockid: 0\n")) << state.constData(); // CLOCK_REALTIME
    // TFD_TIMER_ABSTIME and TFD_TIMER_CANCEL_ON_SET, in octal.
    EXPECT_TRUE(state.contains("settime flags: 03\n")) << state.constData();
}

} // namespace
} // namespace tarne::test
