#include "DurationPickerView.h"

#include "SessionViewModel.h"

namespace tarne {

DurationPickerView::DurationPickerView(SessionViewModel &sessionViewModel,
                                       QBindable<double> selectedDuration)
    : DurationControls(selectedDuration), m_sessionViewModel(sessionViewModel) {}

void DurationPickerView::durationChosen(double seconds) {
    UserPreferences preferences = m_sessionViewModel.userPreferences();
    preferences.defaultDuration = seconds;
    m_sessionViewModel.updatePreferences(preferences);
}

} // namespace tarne
