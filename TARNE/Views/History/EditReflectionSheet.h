#pragma once

#include "Calendar.h"
#include "SessionHistoryEntry.h"

#include <QBindable>
#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <functional>

namespace tarne {

/// A sheet that edits the reflection of one entry. The text and the flag are the presenter's: what
/// is typed is in the presenter's text at once, also after "Cancel". Nothing in the system presents
/// it.
class EditReflectionSheet final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by what presents it.")
    Q_PROPERTY(QString dateText READ dateText CONSTANT FINAL)
    Q_PROPERTY(
        QString reflection READ reflection WRITE setReflection NOTIFY reflectionChanged FINAL)

public:
    using OnSave = std::function<void(const QString &reflection)>;

    /// What the two bindings reach outlives the sheet.
    EditReflectionSheet(SessionHistoryEntry entry, QBindable<QString> reflection,
                        QBindable<bool> isPresented, Calendar calendar, OnSave onSave);

    [[nodiscard]] QString dateText() const { return formatDate(m_entry.sessionDate); }
    /// The locale's full date and short time.
    [[nodiscard]] QString formatDate(Date date) const;

    [[nodiscard]] QString reflection() const { return m_reflection.value(); }
    void setReflection(const QString &reflection) { m_reflection.setValue(reflection); }

    /// Closes the sheet and does nothing else.
    Q_INVOKABLE void cancel();
    /// Hands the text over and closes the sheet.
    Q_INVOKABLE void save();

Q_SIGNALS:
    void reflectionChanged();

private:
    SessionHistoryEntry m_entry;
    QBindable<QString> m_reflection;
    QPropertyNotifier m_reflectionNotifier;
    QBindable<bool> m_isPresented;
    Calendar m_calendar;
    OnSave m_onSave;
};

} // namespace tarne
