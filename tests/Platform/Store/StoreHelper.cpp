// A second process for the store's tests, ended by a kill or by the end of its standard input.
//
//   store_helper session FOLDER FIRST   writes the session and timer keys as a running session
//                                       does, ten times as fast, counting up from FIRST; prints
//                                       "NUMBER SECONDS" after each tick (monotonic clock)
//   store_helper lock FILE              holds the write lock; prints "locked"
//   store_helper lock-all FILE          lets nobody else even read; prints "locked"

#include "QtRunLoop.h"
#include "StoredUserDefaults.h"
#include "SystemClock.h"

#include <SQLiteCpp/Database.h>

#include <QCoreApplication>

#include <cstdio>
#include <ctime>

#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace tarne;

namespace {

/// The values carry the number of their moment, so that a mixture of two shows.
class Session {
public:
    Session(UserDefaults &defaults, qint64 first) : m_defaults(defaults), m_number(first) {}

    void tick() {
        ++m_number;
        const auto number = static_cast<double>(m_number);
        m_defaults.setObject(u"TimerStartTime"_s, Date::fromReferenceSeconds(number));
        m_defaults.setObject(u"TimerOriginalDuration"_s, number);
        m_defaults.setObject(u"TimerIsActive"_s, true);
        m_defaults.setObject(u"TimerSessionGoal"_s, QString::number(m_number));
        timespec now{};
        clock_gettime(CLOCK_MONOTONIC, &now);
        std::printf("%lld %ld.%09ld\n", static_cast<long long>(m_number),
                    static_cast<long>(now.tv_sec), now.tv_nsec);
        std::fflush(stdout);
    }

    void publish() {
        const auto number = static_cast<double>(m_number);
        publish(1, QString::number(m_number), number);
        m_defaults.setObject(u"LastUpdate"_s, number);
        m_defaults.synchronize();
    }

    void publishCleared() {
        publish(0, QString(), 0.0);
        m_defaults.synchronize();
    }

private:
    void publish(qint64 active, const QString &text, double number) {
        m_defaults.setObject(u"SessionActive"_s, active);
        m_defaults.setObject(u"SessionGoals"_s, text);
        m_defaults.setObject(u"SessionId"_s, text);
        m_defaults.setObject(u"TimeRemaining"_s, number);
        m_defaults.setObject(u"SessionDuration"_s, number);
        m_defaults.setObject(u"SessionProgress"_s, number);
    }

    UserDefaults &m_defaults;
    qint64 m_number;
};

int runSession(int argc, char **argv) {
    const QCoreApplication application(argc, argv);
    const SystemClock clock;
    QtRunLoop runLoop;
    StoredUserDefaults defaults(QString::fromLocal8Bit(argv[2]),
                                {.restored = {u"UserPreferences"_s}, .passing = {}}, clock,
                                runLoop);
    Session session(defaults, QByteArray(argv[3]).toLongLong());
    constexpr RunLoop::Seconds period{0.1};
    const auto every = [&](void (Session::*step)()) {
        std::ignore = runLoop.scheduleRepeating(period, [&session, step] { (session.*step)(); });
    };
    session.tick();
    every(&Session::tick);
    every(&Session::publish);
    runLoop.asyncAfter(period / 2, [&] { every(&Session::publishCleared); });
    return QCoreApplication::exec();
}

int holdLock(const char *file, bool fromReadersToo) {
    SQLite::Database database(file, SQLite::OPEN_READWRITE, 1000);
    if (fromReadersToo)
        database.exec("PRAGMA locking_mode = EXCLUSIVE");
    database.exec("BEGIN IMMEDIATE; CREATE TABLE IF NOT EXISTS other (x)");
    std::puts("locked");
    std::fflush(stdout);
    char byte = 0;
    while (::read(STDIN_FILENO, &byte, 1) > 0) {
    }
    database.exec("ROLLBACK");
    return 0;
}

} // namespace

int main(int argc, char **argv) {
    const QByteArray task(argc > 2 ? argv[1] : "");
    if (task == "session" && argc == 4)
        return runSession(argc, argv);
    if (task == "lock" || task == "lock-all")
        return holdLock(argv[2], task == "lock-all");
    return 2;
}
