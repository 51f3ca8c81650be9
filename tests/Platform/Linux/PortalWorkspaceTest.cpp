#include "PortalWorkspace.h"

#include "EventLoop.h"
#include "PrivateBus.h"
#include "TestMain.h"

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::IsEmpty;

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tarne::test {
namespace {

using namespace test;

const QUrl page(u"https://example.org/a b?q=ü"_s);

class APortalWorkspace : public testing::Test {
protected:
    void startPortal(const QString &code = u"ret = dbus.ObjectPath('/request')"_s) {
        m_portal = MockService::bare(m_bus, u"org.freedesktop.portal.Desktop"_s,
                                     u"/org/freedesktop/portal/desktop"_s,
                                     u"org.freedesktop.portal.OpenURI"_s);
        m_portal->addMethod(u"OpenURI"_s, u"ssa{sv}"_s, u"o"_s, code);
    }

    PortalWorkspace::Opener recordingOpener(bool opens = true) {
        return [this, opens](const QUrl &url) {
            m_opened.push_back(url);
            return opens;
        };
    }

    PrivateBus m_bus;
    std::unique_ptr<MockService> m_portal;
    std::vector<QUrl> m_opened;
    PortalWorkspace m_workspace{m_bus.connect(), recordingOpener()};
};

TEST_F(APortalWorkspace, AsksThePortal) {
    startPortal();
    m_workspace.open(page);
    ASSERT_TRUE(m_portal->waitForCalls(u"OpenURI"_s, 1));
    const auto calls = m_portal->calls(u"OpenURI"_s);
    EXPECT_EQ(calls.at(0).at(0).toString(), QString());
    EXPECT_EQ(calls.at(0).at(1).toString(), u"https://example.org/a%20b?q=%C3%BC"_s);
    EXPECT_THAT(m_opened, IsEmpty());
}

TEST_F(APortalWorkspace, WithoutAPortalThePageIsOpenedTheOtherWay) {
    m_workspace.open(page);
    EXPECT_THAT(m_opened, IsEmpty()); // Never from within the call.
    EXPECT_TRUE(serveUntil([&] { return !m_opened.empty(); }));
    EXPECT_THAT(m_opened, ElementsAre(page));
}

TEST_F(APortalWorkspace, ARefusingPortalIsGoneRound) {
    startPortal(u"raise dbus.exceptions.DBusException('no', name='org.example.No')"_s);
    m_workspace.open(page);
    EXPECT_TRUE(serveUntil([&] { return !m_opened.empty(); }));
}

TEST_F(APortalWorkspace, AHangingPortalBlocksNothingAndIsGoneRoundAfterItsTimeOut) {
    startPortal();
    m_portal->hang();
    EXPECT_LT(timeOf([&] { m_workspace.open(page); }), 100ms);
    EXPECT_LT(timeOf([&] { EXPECT_TRUE(serveUntil([&] { return !m_opened.empty(); })); }), 4s);
    m_portal->resume();
}

TEST_F(APortalWorkspace, APortalThatComesBackIsAskedAgain) {
    startPortal();
    m_portal->kill();
    startPortal();
    m_workspace.open(page);
    EXPECT_TRUE(m_portal->waitForCalls(u"OpenURI"_s, 1));
}

TEST(PortalWorkspaceWithoutABus, OpensThePageTheOtherWay) {
    std::vector<QUrl> opened;
    PortalWorkspace workspace(noBus(), [&](const QUrl &url) {
        opened.push_back(url);
        return true;
    });
    workspace.open(page);
    EXPECT_TRUE(serveUntil([&] { return !opened.empty(); }));
}

TEST(PortalWorkspaceWithoutABus, SaysSoWhenNobodyOpensThePage) {
    const ExpectedWarning warning(u"nothing opens pages of example.org"_s);
    bool asked = false;
    PortalWorkspace workspace(noBus(), [&](const QUrl &) {
        asked = true;
        return false;
    });
    workspace.open(page);
    EXPECT_TRUE(serveUntil([&] { return asked; }));
}

} // namespace
} // namespace tarne::test
