#pragma once

#include "DurationControls.h"

namespace tarne {

class SessionViewModel;

/// The controls of the duration sheet inline: a choice is stored as the new default at once, and
/// there is nothing to close or to go on to. No screen holds one.
class DurationPickerView final : public tarne::DurationControls {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Needs a session controller.")

public:
    /// The controller and the property behind the binding outlive the view.
    DurationPickerView(SessionViewModel &sessionViewModel, QBindable<double> selectedDuration);

protected:
    void durationChosen(double seconds) override;

private:
    SessionViewModel &m_sessionViewModel;
};

} // namespace tarne
