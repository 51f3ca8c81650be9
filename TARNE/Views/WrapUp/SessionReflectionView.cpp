#include "SessionReflectionView.h"

#include "ParsedGoals.h"
#include "SessionViewModel.h"

#include <algorithm>
#include <utility>

namespace tarne {

SessionReflectionView::SessionReflectionView(SessionViewModel &sessionViewModel,
                                             MakeFeedbackView makeFeedbackView,
                                             QBindable<bool> isPresented,
                                             std::function<void()> onComplete)
    : m_sessionViewModel(sessionViewModel),
      m_makeFeedbackView(std::move(makeFeedbackView)),
      m_isPresented(isPresented),
      m_onComplete(std::move(onComplete)) {
    connect(&m_sessionViewModel, &SessionViewModel::currentSessionChanged, this,
            &SessionReflectionView::showGoals);
    showGoals();
}

SessionReflectionView::~SessionReflectionView() = default;

QStringList SessionReflectionView::statusNames() {
    QStringList names;
    for (const GoalStatus status : allGoalStatuses)
        names += displayName(status);
    return names;
}

void SessionReflectionView::setReflection(const QString &reflection) {
    if (m_reflection == reflection)
        return;
    m_reflection = reflection;
    Q_EMIT reflectionChanged();
    Q_EMIT stateChanged();
}

bool SessionReflectionView::canComplete() const {
    if (!hasGoals())
        return !m_reflection.trimmed().isEmpty();
    return std::ranges::all_of(m_goals.goals(), [this](const SessionGoal &goal) {
        return m_goalStatuses.contains(goal.id);
    });
}

void SessionReflectionView::appear() {
    setupInitialState();
}

void SessionReflectionView::setupInitialState() {
    for (const SessionGoal &goal : m_goals.goals()) {
        if (goal.status)
            m_goalStatuses[goal.id] = *goal.status;
    }
    showGoals();
}

void SessionReflectionView::showGoals() {
    m_goals.show(parsedGoals(m_sessionViewModel.currentSession()), m_goalStatuses);
    Q_EMIT stateChanged();
}

void SessionReflectionView::rate(int row, int status) {
    if (row < 0 || row >= m_goals.rowCount() || status < 0 ||
        status >= static_cast<int>(allGoalStatuses.size()))
        return;
    m_goalStatuses[m_goals.goals()[static_cast<std::size_t>(row)].id] =
        allGoalStatuses.at(static_cast<std::size_t>(status));
    showGoals();
}

void SessionReflectionView::completeReflection() {
    m_sessionViewModel.updateGoalStatuses(m_goalStatuses);
    m_sessionViewModel.saveReflection(m_reflection);
    presentFeedback();
}

void SessionReflectionView::presentFeedback() {
    if (m_showingFeedback)
        return;
    // The view is there before its flag is raised: bindings hear of the flag before anybody else.
    // The one before it is deleted last, when nothing on the screen refers to it any more.
    const auto previous =
        std::exchange(m_feedback, m_makeFeedbackView(&m_showingFeedback, [this] { finishFlow(); }));
    Q_EMIT feedbackChanged();
    m_showingFeedback = true;
    m_feedback->appear();
}

void SessionReflectionView::finishFlow() {
    close();
    m_onComplete();
}

void SessionReflectionView::close() {
    // What is shown stays as it is while the sheet leaves, whatever becomes of the session.
    m_sessionViewModel.disconnect(this);
    m_isPresented.setValue(false);
}

} // namespace tarne
