#pragma once

#include "DurationSelectionView.h"
#include "SessionFixture.h"

#include <QProperty>

#include <memory>

namespace tarne::test {

/// The duration sheet over a real controller, with the timer screen's properties in the test's
/// hand.
class DurationSelectionTest : public SessionTest {
protected:
    /// Presents the sheet for a length in seconds.
    void open(double seconds) {
        selectedDuration = seconds;
        isPresented = true;
        m_sheet = std::make_unique<DurationSelectionView>(controller(), &selectedDuration,
                                                          &isPresented, [this] { ++completions; });
        m_sheet->appear();
    }

    /// The presented sheet; for 25 minutes unless the test has opened another.
    DurationSelectionView &sheet() {
        if (!m_sheet)
            open(1500.0);
        return *m_sheet;
    }

    /// Writes into the field, and opens its row first.
    void type(const QString &minutes) {
        if (!sheet().showCustomInput())
            sheet().toggleCustomInput();
        sheet().setCustomDuration(minutes);
    }

    double storedDefault() { return UserPreferences::load(defaults).defaultDuration; }

    QProperty<double> selectedDuration{1500.0};
    QProperty<bool> isPresented{true};
    int completions = 0;

private:
    std::unique_ptr<DurationSelectionView> m_sheet;
};

} // namespace tarne::test
