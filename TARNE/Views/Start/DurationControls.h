#pragma once

#include <QBindable>
#include <QList>
#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace tarne {

/// What the duration sheet and the inline picker have in common: the preset lengths, a field for
/// minutes typed by hand with its validation, and the words for the current choice.
///
/// The choice itself belongs to the screen that shows the controls. It is reached through a
/// binding, which must outlive this object. Lengths are carried in seconds, the controls speak in
/// whole minutes.
class DurationControls : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("What the sheet and the picker have in common.")
    Q_PROPERTY(QList<int> presetDurations READ presetDurations CONSTANT FINAL)
    Q_PROPERTY(int selectedPreset READ selectedPreset NOTIFY selectedDurationChanged FINAL)
    Q_PROPERTY(
        QString selectedDurationText READ selectedDurationText NOTIFY selectedDurationChanged FINAL)
    Q_PROPERTY(bool showCustomInput READ showCustomInput NOTIFY showCustomInputChanged FINAL)
    Q_PROPERTY(QString customDuration READ customDuration WRITE setCustomDuration NOTIFY
                   customDurationChanged FINAL)
    Q_PROPERTY(QString customInputError READ customInputError NOTIFY customInputErrorChanged FINAL)
    Q_PROPERTY(
        bool canSetCustomDuration READ canSetCustomDuration NOTIFY customInputErrorChanged FINAL)

public:
    /// Minutes, in the order of the buttons.
    [[nodiscard]] static QList<int> presetDurations() { return {15, 25, 45, 60}; }

    /// The preset of the current choice, in minutes; 0 when it is none. The fraction of a minute is
    /// dropped.
    [[nodiscard]] int selectedPreset() const;
    [[nodiscard]] QString selectedDurationText() const;
    [[nodiscard]] bool showCustomInput() const { return m_showCustomInput; }
    /// The text in the field, whatever it is. It survives presets and a closed row.
    [[nodiscard]] QString customDuration() const { return m_customDuration; }
    void setCustomDuration(const QString &text);
    /// The message below the field; empty when there is none.
    [[nodiscard]] QString customInputError() const { return m_customInputError; }
    /// An empty field can be "set": only then does it say what is missing.
    [[nodiscard]] bool canSetCustomDuration() const { return m_customInputError.isEmpty(); }

    /// Opens the row with the field when the choice is none of the presets.
    void appear();

    Q_INVOKABLE void selectPreset(int minutes);
    Q_INVOKABLE void toggleCustomInput();
    /// The "Set" button: chooses what the field holds when that is 5 to 180 minutes.
    Q_INVOKABLE void applyCustomDuration();

    /// "1 hour 30 minutes", or "25 minutes" below an hour.
    [[nodiscard]] static QString formatDuration(double seconds);

Q_SIGNALS:
    void selectedDurationChanged();
    void showCustomInputChanged();
    void customDurationChanged();
    void customInputErrorChanged();

protected:
    explicit DurationControls(QBindable<double> selectedDuration);

    [[nodiscard]] double selectedDuration() const { return m_selectedDuration.value(); }
    /// Called when the user has chosen a length by a preset or by "Set".
    virtual void durationChosen(double seconds) = 0;

private:
    [[nodiscard]] qint64 selectedMinutes() const;
    void validateCustomDuration();
    void setShowCustomInput(bool show);
    void setCustomInputError(const QString &message);

    QBindable<double> m_selectedDuration;
    QPropertyNotifier m_selectedDurationNotifier;
    bool m_showCustomInput = false;
    QString m_customDuration;
    QString m_customInputError;
};

} // namespace tarne
