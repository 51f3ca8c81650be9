#include "EditReflectionSheet.h"

#include "DateFormatter.h"

namespace tarne {

EditReflectionSheet::EditReflectionSheet(SessionHistoryEntry entry, QBindable<QString> reflection,
                                         QBindable<bool> isPresented, Calendar calendar,
                                         OnSave onSave)
    : m_entry(std::move(entry)),
      m_reflection(reflection),
      m_reflectionNotifier(m_reflection.addNotifier([this] { Q_EMIT reflectionChanged(); })),
      m_isPresented(isPresented),
      m_calendar(std::move(calendar)),
      m_onSave(std::move(onSave)) {}

QString EditReflectionSheet::formatDate(Date date) const {
    return DateFormatter(m_calendar).fullDateAndShortTime(date);
}

void EditReflectionSheet::cancel() {
    m_isPresented.setValue(false);
}

void EditReflectionSheet::save() {
    m_onSave(reflection());
    m_isPresented.setValue(false);
}

} // namespace tarne
