#pragma once

#include "FeedbackSectionsModel.h"
#include "FocusSession.h"
#include "GeminiAnswer.h"
#include "GoalOutcomesModel.h"
#include "ParsedFeedback.h"

#include <QBindable>
#include <QColor>
#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <functional>
#include <memory>
#include <optional>

namespace tarne {

class HTTPClient;
class KeychainManager;
class Log;
class Pasteboard;
class RunLoop;
class SessionViewModel;

/// What the coaching at the end of a session needs of its surroundings. Everything outlives the
/// screens.
struct FeedbackPlatform {
    KeychainManager &keychain;
    HTTPClient &httpClient;
    RunLoop &runLoop;
    Pasteboard &pasteboard;
    Log &log;
    QString geminiEndpoint; ///< Scheme and host.
};

/// The sheet that closes a session: how the goals went, the coaching that Gemini gives, the
/// reflection once more, and the end of it all.
///
/// Made anew for each presentation, and each asks Gemini once, when it stands on the screen. A
/// request is never cancelled: an answer that arrives when the sheet is gone is lost. It is read on
/// the transport's thread and delivered through the main queue; everything else is main thread
/// only.
class SessionFeedbackView final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the reflection sheet.")
    Q_PROPERTY(Panel panel READ panel NOTIFY panelChanged FINAL)
    Q_PROPERTY(QString feedbackError READ feedbackError NOTIFY panelChanged FINAL)
    Q_PROPERTY(tarne::FeedbackSectionsModel *sections READ sections CONSTANT FINAL)
    Q_PROPERTY(tarne::GoalOutcomesModel *goals READ goals CONSTANT FINAL)
    Q_PROPERTY(bool hasGoals READ hasGoals NOTIFY goalsChanged FINAL)
    Q_PROPERTY(QString progressText READ progressText NOTIFY goalsChanged FINAL)
    Q_PROPERTY(double progressValue READ progressValue NOTIFY goalsChanged FINAL)
    Q_PROPERTY(QColor progressColor READ progressColor NOTIFY goalsChanged FINAL)
    Q_PROPERTY(
        QString reflection READ reflection WRITE setReflection NOTIFY reflectionChanged FINAL)
    Q_PROPERTY(bool isEditingReflection READ isEditingReflection WRITE setEditingReflection NOTIFY
                   isEditingReflectionChanged FINAL)

public:
    /// What stands in the place of the coaching, by what is known: the call is under way, it has
    /// failed, its answer is there.
    enum class Panel { Loading, Error, Sections, Nothing };
    Q_ENUM(Panel)

    /// The controller and the property behind the binding outlive the view. `onComplete` runs at
    /// the end of `finishSession`, after the sheet was closed.
    SessionFeedbackView(SessionViewModel &sessionViewModel, FeedbackPlatform platform,
                        QBindable<bool> isPresented, std::function<void()> onComplete);
    ~SessionFeedbackView() override;

    [[nodiscard]] bool isLoadingFeedback() const { return m_isLoadingFeedback; }
    /// One line, empty when nothing has failed.
    [[nodiscard]] QString feedbackError() const { return m_feedbackError.value_or(QString()); }
    /// The model's text as it came; nothing reads it.
    [[nodiscard]] const QString &feedback() const { return m_feedback; }
    [[nodiscard]] const std::optional<ParsedFeedback> &parsedFeedback() const {
        return m_parsedFeedback;
    }
    [[nodiscard]] Panel panel() const;
    [[nodiscard]] FeedbackSectionsModel *sections() { return &m_sections; }

    [[nodiscard]] GoalOutcomesModel *goals() { return &m_goals; }
    [[nodiscard]] bool hasGoals() const { return !m_goals.goals().empty(); }
    /// Goals rated as completed; a partial success does not count.
    [[nodiscard]] qsizetype completedGoalsCount() const;
    [[nodiscard]] QString progressText() const;
    /// The share of completed goals, 0 to 1; 0 without goals.
    [[nodiscard]] double progressValue() const;
    [[nodiscard]] QColor progressColor() const;

    /// As shown and edited here; only `finishSession` passes it on.
    [[nodiscard]] const QString &reflection() const { return m_reflection; }
    void setReflection(const QString &reflection);
    [[nodiscard]] bool isEditingReflection() const { return m_isEditingReflection; }
    void setEditingReflection(bool editing);

    /// The sheet comes up: takes the session's reflection.
    void appear();
    /// The sheet stands on the screen, directly after it came up: asks Gemini, the first time only,
    /// about the session as it was then. A hung key store blocks this for seconds.
    Q_INVOKABLE void generateFeedback();

    /// "Save & Share": puts a summary of the session on the clipboard, whatever is known by now.
    /// Saves nothing.
    Q_INVOKABLE void saveAndShareFeedback();
    /// "Finish Session": stores the edited reflection, merges the coaching into the history when
    /// there is any, and closes the sheet.
    Q_INVOKABLE void finishSession();
    /// The close button: back to the reflection sheet. The coaching is dropped.
    Q_INVOKABLE void close();

Q_SIGNALS:
    void panelChanged();
    void goalsChanged();
    void reflectionChanged();
    void isEditingReflectionChanged();

private:
    /// Runs on the transport's thread.
    using GeminiCompletion = std::function<void(const GeminiResult &result)>;
    /// What the main thread needs to know of a call that has ended.
    struct Outcome {
        GeminiResult result;
        ParsedFeedback sections; ///< Of the answer; empty when there is none.
    };
    /// Is there as long as the view; see `m_presence`.
    struct Presence {};

    void setupInitialState();
    void showGoals();
    void callGeminiAPI(const QString &prompt, const QString &apiKey, GeminiCompletion completion);
    void deliver(const Outcome &outcome);
    void fail(const QString &message);

    SessionViewModel &m_sessionViewModel;
    FeedbackPlatform m_platform;
    QBindable<bool> m_isPresented;
    std::function<void()> m_onComplete;

    QString m_feedback;
    /// Until Gemini is asked: the time may run out while the sheet is being drawn.
    std::optional<FocusSession> m_sessionOnAppearing;
    bool m_hasAsked = false;
    bool m_isLoadingFeedback = true;
    std::optional<QString> m_feedbackError;
    std::optional<ParsedFeedback> m_parsedFeedback;
    QString m_reflection;
    bool m_isEditingReflection = false;

    FeedbackSectionsModel m_sections;
    GoalOutcomesModel m_goals;

    /// By this an outcome knows, on the main thread, whether anybody is left to take it.
    std::shared_ptr<Presence> m_presence = std::make_shared<Presence>();
};

/// Makes the view for one presentation.
using MakeFeedbackView = std::function<std::unique_ptr<SessionFeedbackView>(
    QBindable<bool> isPresented, std::function<void()> onComplete)>;

} // namespace tarne
