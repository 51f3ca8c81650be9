#include "SilentBuses.h"

#include "PrivateBus.h"
#include "TestMain.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tarne::test {
namespace {

constexpr auto patience = 200ms;

/// What it finds stands in the environment, where the tests' own addresses come back afterwards.
class SilentBuses : public testing::Test {
protected:
    SilentBuses() { become(m_bus.address().toUtf8(), m_bus.address().toUtf8()); }
    ~SilentBuses() override { become(m_sessionBefore, m_systemBefore); }

    static void become(const QByteArray &session, const QByteArray &system) {
        qputenv("DBUS_SESSION_BUS_ADDRESS", session);
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", system);
    }

    PrivateBus &bus() { return m_bus; }
    QByteArray address() const { return m_bus.address().toUtf8(); }

private:
    QByteArray m_sessionBefore = qgetenv("DBUS_SESSION_BUS_ADDRESS");
    QByteArray m_systemBefore = qgetenv("DBUS_SYSTEM_BUS_ADDRESS");
    PrivateBus m_bus;
};

TEST_F(SilentBuses, ThatAnswerStayInTheEnvironment) {
    doWithoutSilentBuses(10s);
    EXPECT_EQ(qgetenv("DBUS_SESSION_BUS_ADDRESS"), address());
    EXPECT_EQ(qgetenv("DBUS_SYSTEM_BUS_ADDRESS"), address());
}

TEST_F(SilentBuses, AreTakenOutOfItAndToldOf) {
    const PrivateBus other;
    become(address(), other.address().toUtf8());
    bus().hang();
    {
        const ExpectedWarning told(u"the session bus does not answer"_s);
        doWithoutSilentBuses(patience);
    }
    bus().resume();
    EXPECT_EQ(qgetenv("DBUS_SESSION_BUS_ADDRESS"), "unix:path=/nonexistent");
    EXPECT_EQ(qgetenv("DBUS_SYSTEM_BUS_ADDRESS"), other.address().toUtf8());
}

TEST_F(SilentBuses, AreTheFirstOfTheirAddresses) {
    bus().hang();
    EXPECT_FALSE(busAnswers(address() + ";unix:path=/nonexistent", patience));
    bus().resume();
    EXPECT_TRUE(busAnswers(address() + ";unix:path=/nonexistent", 10s));
}

TEST_F(SilentBuses, AreNoneWhereNobodyListensAndWhereOnlyAConnectionTells) {
    bus().stop();
    EXPECT_TRUE(busAnswers(address(), patience));
    EXPECT_TRUE(busAnswers("unix:path=/nonexistent", patience));
    EXPECT_TRUE(busAnswers("unix:path=" + QByteArray(200, 'x'), patience));
    EXPECT_TRUE(busAnswers("unix:abstract=nobody", patience));
    EXPECT_TRUE(busAnswers("tcp:host=localhost,port=1", patience));
    EXPECT_TRUE(busAnswers("", patience));
}

} // namespace
} // namespace tarne::test
