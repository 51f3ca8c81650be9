#pragma once

#include "FeedbackFakes.h"
#include "SessionFixture.h"

#include <QProperty>

#include <memory>

namespace tarne::test {

/// The end of a session over a real controller.
class FeedbackTest : public SessionTest {
protected:
    FeedbackPlatform feedbackPlatform() { return m_fakes.platform(); }
    std::unique_ptr<SessionReflectionView> makeReflection(QBindable<bool> isShown,
                                                          std::function<void()> onComplete) {
        return m_fakes.sheets(controller())(isShown, std::move(onComplete));
    }

    /// A session of 25 minutes with its goals rated in order and reflected on.
    void reflectOn(const QString &goalLine, const std::vector<GoalStatus> &statuses,
                   const QString &reflection) {
        start(goalLine, 1500.0);
        QHash<QUuid, GoalStatus> ratings;
        for (std::size_t i = 0; i < statuses.size(); ++i)
            ratings[controller().currentSession()->goals[i].id] = statuses[i];
        controller().updateGoalStatuses(ratings);
        controller().saveReflection(reflection);
        log.takeLines();
    }

    /// The feedback sheet; presented on first use.
    SessionFeedbackView &feedback() {
        if (!m_feedback)
            presentFeedback();
        return *m_feedback;
    }

    /// Presents the feedback sheet anew.
    void presentFeedback() {
        isPresented = true;
        m_feedback = std::make_unique<SessionFeedbackView>(controller(), feedbackPlatform(),
                                                           &isPresented, [this] { ++completions; });
        m_feedback->appear();
        m_feedback->generateFeedback();
    }

    /// Gemini answers with this text, given as the inside of a JSON string.
    void answer(const QByteArray &text) {
        gemini.answer(FeedbackFakes::answerWith(text));
        time.runPending();
    }
    void answerInFourSections() {
        gemini.answer(FeedbackFakes::answerInFourSections());
        time.runPending();
    }

private:
    FeedbackFakes m_fakes{time, log};

protected:
    MemoryKeychain &items = m_fakes.items;
    KeychainManager &keychain = m_fakes.keychain;
    QueuedHTTPClient &gemini = m_fakes.gemini;
    RecordingPasteboard &pasteboard = m_fakes.pasteboard;
    QProperty<bool> isPresented{true};
    int completions = 0;

private:
    std::unique_ptr<SessionFeedbackView> m_feedback;
};

} // namespace tarne::test
