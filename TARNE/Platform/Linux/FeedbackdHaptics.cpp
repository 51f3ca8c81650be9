#include "FeedbackdHaptics.h"

using namespace Qt::StringLiterals;

namespace tarne {

FeedbackdHaptics::FeedbackdHaptics(QDBusConnection sessionBus)
    : m_feedbackd(std::move(sessionBus), {u"org.sigxcpu.Feedback"_s, u"/org/sigxcpu/Feedback"_s,
                                          u"org.sigxcpu.Feedback"_s}) {}

void FeedbackdHaptics::performLevelChange() {
    // Of the events that every theme knows, "button-pressed" is the one that is a single short
    // tick, as a step of a level is; the bells and messages ring or hum for a while.
    constexpr int onceEach = -1;
    m_feedbackd.tell(u"TriggerFeedback"_s,
                     {u"com.tarne.app"_s, u"button-pressed"_s, QVariantMap(), onceEach});
}

} // namespace tarne
