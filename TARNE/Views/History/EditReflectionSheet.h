#pragma once

#include "Calendar.h"
#include "SessionHistoryEntry.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

#include <functional>

namespace tarne {

/// A sheet that edits the reflection of one entry. It hands the text over, and its presenter
/// closes it. Nothing in the system presents it.
class EditReflectionSheet final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by what presents it.")
    Q_PROPERTY(QString dateText READ dateText CONSTANT FINAL)
    Q_PROPERTY(
        QString reflection READ reflection WRITE setReflection NOTIFY reflectionChanged FINAL)
    Q_PROPERTY(bool isPresented READ isPresented NOTIFY isPresentedChanged FINAL)

public:
    using OnSave = std::function<void(const QString &reflection)>;

    EditReflectionSheet(SessionHistoryEntry entry, QString reflection, Calendar calendar,
                        OnSave onSave);

    [[nodiscard]] QString dateText() const { return formatDate(m_entry.sessionDate); }
    /// The locale's full date and short time.
    [[nodiscard]] QString formatDate(Date date) const;

    [[nodiscard]] QString reflection() const { return m_reflection; }
    void setReflection(const QString &reflection);

    [[nodiscard]] bool isPresented() const { return m_isPresented; }

    Q_INVOKABLE void cancel();
    Q_INVOKABLE void save();

Q_SIGNALS:
    void reflectionChanged();
    void isPresentedChanged();

private:
    void close();

    SessionHistoryEntry m_entry;
    QString m_reflection;
    Calendar m_calendar;
    OnSave m_onSave;
    bool m_isPresented = true;
};

} // namespace tarne
