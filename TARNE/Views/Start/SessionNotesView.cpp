#include "SessionNotesView.h"

#include "SessionViewModel.h"

#include <QPointer>

#include <chrono>
#include <utility>

using namespace std::chrono_literals;

namespace tarne {

SessionNotesView::SessionNotesView(SessionViewModel &sessionViewModel,
                                   NotificationCenter &notificationCenter, RunLoop &runLoop,
                                   QBindable<bool> isPresented, std::function<void()> onStart)
    : m_sessionViewModel(sessionViewModel),
      m_notificationCenter(notificationCenter),
      m_runLoop(runLoop),
      m_isPresented(isPresented),
      m_onStart(std::move(onStart)) {}

void SessionNotesView::setSessionGoal(const QString &goal) {
    if (m_sessionGoal == goal)
        return;
    const bool wasEmpty = isGoalEmpty();
    m_sessionGoal = goal;
    Q_EMIT sessionGoalChanged();
    if (isGoalEmpty() != wasEmpty)
        Q_EMIT isGoalEmptyChanged();
}

bool SessionNotesView::isGoalEmpty() const {
    return QStringView(m_sessionGoal).trimmed().isEmpty();
}

void SessionNotesView::appear() {
    setSessionGoal(m_sessionViewModel.loadLastGoal());
    m_reactivation = m_notificationCenter.addObserver(notifications::didBecomeActive,
                                                      [this] { releaseFocusSoon(); });
}

void SessionNotesView::disappear() {
    m_reactivation = {};
}

void SessionNotesView::releaseFocusSoon() {
    m_runLoop.asyncAfter(100ms, [self = QPointer(this)] {
        if (self)
            Q_EMIT self->focusReleased();
    });
}

void SessionNotesView::startSession() {
    m_sessionViewModel.saveGoal(m_sessionGoal);
    m_isPresented.setValue(false);
    m_onStart();
}

void SessionNotesView::close() {
    m_isPresented.setValue(false);
}

} // namespace tarne
