#include "FeedbackdHaptics.h"

#include "EventLoop.h"
#include "PrivateBus.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tarne::test {
namespace {

using namespace test;

class FeedbackdCues : public testing::Test {
protected:
    void startFeedbackd() {
        m_feedbackd = MockService::bare(m_bus, u"org.sigxcpu.Feedback"_s,
                                        u"/org/sigxcpu/Feedback"_s, u"org.sigxcpu.Feedback"_s);
        m_feedbackd->addMethod(u"TriggerFeedback"_s, u"ssa{sv}i"_s, u"u"_s, u"ret = 1"_s);
    }

    PrivateBus m_bus;
    std::unique_ptr<MockService> m_feedbackd;
    FeedbackdHaptics m_haptics{m_bus.connect()};
};

TEST_F(FeedbackdCues, ALevelChangeIsOneShortTick) {
    startFeedbackd();
    m_haptics.performLevelChange();
    ASSERT_TRUE(m_feedbackd->waitForCalls(u"TriggerFeedback"_s, 1));
    const QVariantList arguments = m_feedbackd->calls(u"TriggerFeedback"_s).constFirst();
    EXPECT_EQ(arguments.at(0).toString(), u"com.tarne.app"_s);
    EXPECT_EQ(arguments.at(1).toString(), u"button-pressed"_s);
    EXPECT_EQ(arguments.at(3).toInt(), -1);
}

TEST_F(FeedbackdCues, TwoCuesAreTwoTicks) {
    startFeedbackd();
    m_haptics.performLevelChange();
    m_haptics.performLevelChange();
    EXPECT_TRUE(m_feedbackd->waitForCalls(u"TriggerFeedback"_s, 2));
}

TEST_F(FeedbackdCues, WithoutFeedbackdNothingHappens) {
    m_haptics.performLevelChange();
    QCoreApplication::processEvents();
}

TEST_F(FeedbackdCues, AHangingFeedbackdIsNotWaitedFor) {
    startFeedbackd();
    m_feedbackd->hang();
    EXPECT_LT(timeOf([&] { m_haptics.performLevelChange(); }), 100ms);
    m_feedbackd->resume();
    EXPECT_TRUE(m_feedbackd->waitForCalls(u"TriggerFeedback"_s, 1));
}

TEST_F(FeedbackdCues, AFeedbackdThatComesBackIsUsedAgain) {
    startFeedbackd();
    m_feedbackd->kill();
    m_haptics.performLevelChange();
    startFeedbackd();
    m_haptics.performLevelChange();
    EXPECT_TRUE(m_feedbackd->waitForCalls(u"TriggerFeedback"_s, 1));
}

TEST(FeedbackdCuesWithoutABus, DoNothing) {
    FeedbackdHaptics(noBus()).performLevelChange();
}

} // namespace
} // namespace tarne::test
