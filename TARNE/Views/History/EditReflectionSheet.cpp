#include "EditReflectionSheet.h"

#include "DateFormatter.h"

namespace tarne {

EditReflectionSheet::EditReflectionSheet(SessionHistoryEntry entry, QString reflection,
                                         Calendar calendar, OnSave onSave)
    : m_entry(std::move(entry)),
      m_reflection(std::move(reflection)),
      m_calendar(std::move(calendar)),
      m_onSave(std::move(onSave)) {}

QString EditReflectionSheet::formatDate(Date date) const {
    return DateFormatter(m_calendar).fullDateAndShortTime(date);
}

void EditReflectionSheet::setReflection(const QString &reflection) {
    if (m_reflection == reflection)
        return;
    m_reflection = reflection;
    Q_EMIT reflectionChanged();
}

void EditReflectionSheet::cancel() {
    close();
}

void EditReflectionSheet::save() {
    m_onSave(m_reflection);
    close();
}

void EditReflectionSheet::close() {
    if (std::exchange(m_isPresented, false))
        Q_EMIT isPresentedChanged();
}

} // namespace tarne
