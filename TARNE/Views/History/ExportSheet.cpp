#include "ExportSheet.h"

#include "Pasteboard.h"

namespace tarne {

ExportSheet::ExportSheet(QString text, Pasteboard &pasteboard)
    : m_text(std::move(text)), m_pasteboard(pasteboard) {}

void ExportSheet::done() {
    if (std::exchange(m_isPresented, false))
        Q_EMIT isPresentedChanged();
}

void ExportSheet::copyToClipboard() {
    m_pasteboard.clearContents();
    m_pasteboard.setString(m_text);
}

} // namespace tarne
