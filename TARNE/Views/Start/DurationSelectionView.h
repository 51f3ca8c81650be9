#pragma once

#include "DurationControls.h"

#include <functional>

namespace tarne {

class SessionViewModel;

/// The first sheet of a new session: the user picks a length and goes on.
///
/// Made anew for each presentation. A choice moves the timer screen's length at once; it is stored
/// as the new default only by "Continue".
class DurationSelectionView final : public tarne::DurationControls {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the timer screen.")

public:
    /// The controller and the properties behind the bindings outlive the view. `onComplete` runs
    /// after the sheet was closed by "Continue".
    DurationSelectionView(SessionViewModel &sessionViewModel, QBindable<double> selectedDuration,
                          QBindable<bool> isPresented, std::function<void()> onComplete);

    /// The close button: abandons the new session.
    Q_INVOKABLE void close();

    /// The "Continue" button. A length that the controller refuses leaves the sheet open, with no
    /// message.
    Q_INVOKABLE void submit();

protected:
    void durationChosen(double) override {}

private:
    SessionViewModel &m_sessionViewModel;
    QBindable<bool> m_isPresented;
    std::function<void()> m_onComplete;
};

} // namespace tarne
