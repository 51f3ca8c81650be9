#include "DurationSelectionView.h"

#include "SessionViewModel.h"

#include <utility>

namespace tarne {

DurationSelectionView::DurationSelectionView(SessionViewModel &sessionViewModel,
                                             QBindable<double> selectedDuration,
                                             QBindable<bool> isPresented,
                                             std::function<void()> onComplete)
    : DurationControls(selectedDuration),
      m_sessionViewModel(sessionViewModel),
      m_isPresented(isPresented),
      m_onComplete(std::move(onComplete)) {}

void DurationSelectionView::close() {
    m_isPresented.setValue(false);
}

void DurationSelectionView::submit() {
    if (!m_sessionViewModel.updateSessionDuration(selectedDuration()))
        return;
    m_isPresented.setValue(false);
    m_onComplete();
}

} // namespace tarne
