#pragma once

#include "BackgroundActivityScheduler.h"
#include "HapticFeedback.h"
#include "UserNotificationCenter.h"

#include <QStringList>

#include <memory>
#include <vector>

namespace tarne::test {

/// Keeps notification requests; answers at once, late or never, with or without an error, and
/// grants or refuses.
class RecordingUserNotifications final : public UserNotificationCenter {
public:
    using AuthorizationDone = std::function<void(bool, std::optional<QString>)>;

    void requestAuthorization(AuthorizationDone done) override {
        ++authorizationRequests;
        if (answersLate)
            lateAuthorizations.push_back(std::move(done));
        else if (!answersNever)
            done(!refuses && !error, error);
    }
    void add(const NotificationRequest &request, Completion done) override {
        if (whenAdding)
            whenAdding();
        added.push_back(request);
        if (request.trigger)
            pending.push_back(request);
        calls += QStringLiteral("add ") + request.identifier;
        if (answersLate)
            lateCompletions.push_back(std::move(done));
        else if (!answersNever && done)
            done(error);
    }
    void removePendingNotificationRequests(const QStringList &identifiers) override {
        std::erase_if(pending, [&](const auto &r) { return identifiers.contains(r.identifier); });
        calls += QStringLiteral("remove ") + identifiers.join(QLatin1Char(','));
    }
    void removeAllPendingNotificationRequests() override {
        if (whenRemovingAll)
            whenRemovingAll();
        pending.clear();
        calls += QStringLiteral("removeAll");
    }

    std::vector<NotificationRequest> added;            ///< Every request ever added.
    std::vector<NotificationRequest> pending;          ///< Those with a moment that nobody removed.
    std::vector<Completion> lateCompletions;           ///< For the test to call.
    std::vector<AuthorizationDone> lateAuthorizations; ///< Likewise.
    QStringList calls;                                 ///< "add ID", "remove ID,ID", "removeAll".
    int authorizationRequests = 0;

    std::function<void()> whenAdding;      ///< What a test looks at before a request is kept.
    std::function<void()> whenRemovingAll; ///< Likewise, before all are removed.
    std::optional<QString> error;          ///< The error that every answer carries.
    bool refuses = false;                  ///< The user said no, which is no error.
    bool answersLate = false;
    bool answersNever = false;
};

class CountingHaptics final : public HapticFeedback {
public:
    void performLevelChange() override {
        if (whenPerforming)
            whenPerforming();
        ++count;
    }

    int count = 0;
    std::function<void()> whenPerforming; ///< What a test looks at while a cue is given.
};

/// Background activities that do nothing but tell how they stand.
class RecordingBackgroundActivities final : public BackgroundActivityScheduler {
public:
    struct State {
        QString identifier;
        bool scheduled = false;
        bool finished = false;
        bool invalidated = false;
    };

    std::unique_ptr<BackgroundActivity> makeActivity(const QString &identifier) override {
        auto state = std::make_shared<State>();
        state->identifier = identifier;
        activities.push_back(state);
        return std::make_unique<Activity>(state);
    }

    std::vector<std::shared_ptr<State>> activities;

private:
    class Activity final : public BackgroundActivity {
    public:
        explicit Activity(std::shared_ptr<State> state) : m_state(std::move(state)) {}
        void schedule(std::function<void(Finished)> block) override {
            m_state->scheduled = true;
            block([state = m_state] { state->finished = true; });
        }
        void invalidate() override { m_state->invalidated = true; }

    private:
        std::shared_ptr<State> m_state;
    };
};

} // namespace tarne::test
