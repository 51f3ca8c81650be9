#include "ExportSheet.h"

#include "Pasteboard.h"

namespace tarne {

ExportSheet::ExportSheet(QString text, QBindable<bool> isPresented, Pasteboard &pasteboard)
    : m_text(std::move(text)), m_isPresented(isPresented), m_pasteboard(pasteboard) {}

void ExportSheet::done() {
    m_isPresented.setValue(false);
}

void ExportSheet::copyToClipboard() {
    m_pasteboard.clearContents();
    m_pasteboard.setString(m_text);
}

} // namespace tarne
