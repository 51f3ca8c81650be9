#include "NotifierProgram.h"
#include "SystemClock.h"

#include <QProcess>

#include <cmath>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tarne::test {
namespace {

/// The screen adds a goal whose reminder is due at the next full minute, and is killed.
TEST(AGoalsReminder, ComesAnHourAheadWithTheProgramOfTheScheduleGone) {
    NotifierProgram program;
    const auto daemon = MockService::fromTemplate(program.bus(), u"notification_daemon"_s,
                                                  u"org.freedesktop.Notifications"_s,
                                                  uR"({"capabilities": "body"})"_s);
    const SystemClock clock;
    // Far enough away for the screen to come up on a busy machine.
    const double moment = std::ceil((clock.now().secondsSince1970() + 15.0) / 60.0) * 60.0;
    QProcess schedule;
    schedule.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    schedule.start(QStringLiteral(TARNE_SCHEDULE_PROGRAM),
                   {program.bus().address(), u"Write <b>the report</b>"_s,
                    QString::number(moment + 3600.0, 'f', 0)});
    ASSERT_TRUE(serveUntil([&] { return schedule.canReadLine(); }));
    EXPECT_EQ(schedule.readLine(), "accepted\n");
    schedule.kill();
    ASSERT_TRUE(serveUntil([&] { return schedule.state() == QProcess::NotRunning; }));
    EXPECT_TRUE(daemon->calls(u"Notify"_s).isEmpty());

    ASSERT_TRUE(serveUntil([&] { return !daemon->calls(u"Notify"_s).isEmpty(); }, 90s));
    EXPECT_GE(clock.now().secondsSince1970(), moment);
    EXPECT_LT(clock.now().secondsSince1970(), moment + 10.0);
    const QVariantList shown = daemon->calls(u"Notify"_s).at(0);
    EXPECT_EQ(shown.at(3).toString(), u"Focus Session Reminder"_s);
    EXPECT_EQ(shown.at(4).toString(),
              u"Your scheduled focus session 'Write <b>the report</b>' starts in 1 hour"_s);
    EXPECT_TRUE(program.hasEnded());
}

} // namespace
} // namespace tarne::test
