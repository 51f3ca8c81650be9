#include "DurationControls.h"

#include "DecimalInteger.h"
#include "WholeNumber.h"

using namespace Qt::StringLiterals;

namespace tarne {

namespace {

constexpr qint64 minimumMinutes = 5;
constexpr qint64 maximumMinutes = 180;
constexpr double secondsPerMinute = 60.0;

/// The message for a text in the field; empty when there is none.
QString validationError(const QString &text) {
    if (text.isEmpty())
        return {};
    const auto minutes = decimalInteger(text);
    if (!minutes)
        return u"Please enter a valid number"_s;
    if (*minutes < minimumMinutes)
        return u"Duration must be at least 5 minutes"_s;
    if (*minutes > maximumMinutes)
        return u"Duration must be at most 180 minutes"_s;
    return {};
}

QString counted(qint64 number, QLatin1StringView unit) {
    return QString::number(number) + u' ' + unit + (number == 1 ? ""_L1 : "s"_L1);
}

} // namespace

DurationControls::DurationControls(QBindable<double> selectedDuration)
    : m_selectedDuration(selectedDuration),
      m_selectedDurationNotifier(
          m_selectedDuration.addNotifier([this] { Q_EMIT selectedDurationChanged(); })) {}

qint64 DurationControls::selectedMinutes() const {
    return saturatedWholeNumber(selectedDuration() / secondsPerMinute);
}

int DurationControls::selectedPreset() const {
    const qint64 minutes = selectedMinutes();
    return presetDurations().contains(minutes) ? static_cast<int>(minutes) : 0;
}

QString DurationControls::selectedDurationText() const {
    return formatDuration(selectedDuration());
}

void DurationControls::appear() {
    if (selectedPreset() != 0)
        return;
    setCustomDuration(QString::number(selectedMinutes()));
    setShowCustomInput(true);
}

void DurationControls::setCustomDuration(const QString &text) {
    if (m_customDuration == text)
        return;
    m_customDuration = text;
    Q_EMIT customDurationChanged();
    validateCustomDuration();
}

void DurationControls::validateCustomDuration() {
    setCustomInputError(validationError(m_customDuration));
}

void DurationControls::selectPreset(int minutes) {
    const double seconds = minutes * secondsPerMinute;
    m_selectedDuration.setValue(seconds);
    setCustomInputError({});
    setShowCustomInput(false);
    durationChosen(seconds);
}

void DurationControls::toggleCustomInput() {
    setShowCustomInput(!m_showCustomInput);
    if (!m_showCustomInput)
        setCustomInputError({});
}

void DurationControls::applyCustomDuration() {
    const auto minutes = decimalInteger(m_customDuration);
    if (!minutes || *minutes < minimumMinutes || *minutes > maximumMinutes) {
        setCustomInputError(u"Please enter a number between 5 and 180"_s);
        return;
    }
    const double seconds = static_cast<double>(*minutes) * secondsPerMinute;
    m_selectedDuration.setValue(seconds);
    setCustomInputError({});
    durationChosen(seconds);
}

QString DurationControls::formatDuration(double seconds) {
    const qint64 total = saturatedWholeNumber(seconds);
    const qint64 hours = total / 3600;
    const QString minutes = counted(total % 3600 / 60, "minute"_L1);
    return hours > 0 ? counted(hours, "hour"_L1) + u' ' + minutes : minutes;
}

void DurationControls::setShowCustomInput(bool show) {
    if (m_showCustomInput == show)
        return;
    m_showCustomInput = show;
    Q_EMIT showCustomInputChanged();
}

void DurationControls::setCustomInputError(const QString &message) {
    if (m_customInputError == message)
        return;
    m_customInputError = message;
    Q_EMIT customInputErrorChanged();
}

} // namespace tarne
