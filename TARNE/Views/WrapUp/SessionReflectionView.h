#pragma once

#include "GoalRatingsModel.h"
#include "SessionFeedbackView.h"

#include <QBindable>
#include <QHash>
#include <QObject>
#include <QProperty>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

#include <functional>
#include <memory>

namespace tarne {

class SessionViewModel;

/// The sheet in which the user, at the end of a session, rates each goal and writes a reflection.
///
/// Nothing reaches the controller before `completeReflection`, which presents the feedback sheet
/// above this one. Made anew for each presentation; what is closed away is lost. Main thread only.
class SessionReflectionView final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the timer screen.")
    Q_PROPERTY(tarne::GoalRatingsModel *goals READ goals CONSTANT FINAL)
    Q_PROPERTY(bool hasGoals READ hasGoals NOTIFY stateChanged FINAL)
    Q_PROPERTY(QStringList statusNames READ statusNames CONSTANT FINAL)
    Q_PROPERTY(
        QString reflection READ reflection WRITE setReflection NOTIFY reflectionChanged FINAL)
    Q_PROPERTY(bool canComplete READ canComplete NOTIFY stateChanged FINAL)
    Q_PROPERTY(bool showingFeedback READ showingFeedback NOTIFY showingFeedbackChanged FINAL)
    Q_PROPERTY(tarne::SessionFeedbackView *feedback READ feedback NOTIFY feedbackChanged FINAL)

public:
    /// The controller and the property behind the binding outlive the view. `onComplete` runs when
    /// the whole flow has ended, after this sheet was closed.
    SessionReflectionView(SessionViewModel &sessionViewModel, MakeFeedbackView makeFeedbackView,
                          QBindable<bool> isPresented, std::function<void()> onComplete);
    ~SessionReflectionView() override;

    [[nodiscard]] GoalRatingsModel *goals() { return &m_goals; }
    [[nodiscard]] bool hasGoals() const { return !m_goals.goals().empty(); }
    /// The verdicts on offer, in words, in their order.
    [[nodiscard]] static QStringList statusNames();
    [[nodiscard]] const QHash<QUuid, GoalStatus> &goalStatuses() const { return m_goalStatuses; }
    /// Opens empty, whatever the session holds.
    [[nodiscard]] const QString &reflection() const { return m_reflection; }
    void setReflection(const QString &reflection);
    /// Every goal is rated or, where there is none, something is written.
    [[nodiscard]] bool canComplete() const;

    [[nodiscard]] bool showingFeedback() const { return m_showingFeedback; }
    /// The feedback sheet's view while its flag is true; afterwards the one that was last shown,
    /// for the time in which the sheet leaves the screen. None before the first presentation.
    [[nodiscard]] SessionFeedbackView *feedback() const { return m_feedback.get(); }

    /// Takes over verdicts that the session's goals have already.
    void appear();

    /// Chooses a verdict, by its position, for the goal in a row. It can be changed but not taken
    /// back. A row or a verdict that there is not is ignored.
    Q_INVOKABLE void rate(int row, int status);
    /// The complete button: stores verdicts and reflection in the session, and asks for feedback.
    Q_INVOKABLE void completeReflection();
    /// The close button: drops what was chosen and written since the last completion.
    Q_INVOKABLE void close();

Q_SIGNALS:
    /// The goals, their verdicts or `canComplete` may be others now.
    void stateChanged();
    void reflectionChanged();
    void showingFeedbackChanged(bool showing);
    void feedbackChanged();

private:
    void setupInitialState();
    void showGoals();
    void presentFeedback();
    void finishFlow();

    SessionViewModel &m_sessionViewModel;
    MakeFeedbackView m_makeFeedbackView;
    QBindable<bool> m_isPresented;
    std::function<void()> m_onComplete;

    QString m_reflection;
    QHash<QUuid, GoalStatus> m_goalStatuses;
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(SessionReflectionView, bool, m_showingFeedback, false,
                                         &SessionReflectionView::showingFeedbackChanged)
    GoalRatingsModel m_goals;
    std::unique_ptr<SessionFeedbackView> m_feedback;
};

/// Makes the view for one presentation.
using MakeReflectionView = std::function<std::unique_ptr<SessionReflectionView>(
    QBindable<bool> isPresented, std::function<void()> onComplete)>;

} // namespace tarne
