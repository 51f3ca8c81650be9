#include "ClipboardPasteboard.h"

#include <QClipboard>
#include <QGuiApplication>

namespace tarne {

void ClipboardPasteboard::clearContents() {
    QGuiApplication::clipboard()->clear();
}

void ClipboardPasteboard::setString(const QString &text) {
    QGuiApplication::clipboard()->setText(text);
}

} // namespace tarne
